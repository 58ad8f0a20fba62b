// The help line: a row of function-key buttons under the drawing, and the actions behind them.
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QPointer>
#include <QWidget>
#include <cstdint>
#include <map>
#include <vector>

#include "qrvel/base/handles.h"

namespace qrvel {

struct HelpLine : Object {
    static constexpr Kind KIND = Kind::HelpLine;

    struct Button {
        uint32_t key;  // number of the function key
        bool enabled;
        uint32_t number;  // what the action message carries
        QString text;
    };
    struct Action {
        char letter;  // its class
        QByteArray argument;
    };

    HelpLine(WHandle of, uint32_t sent) : shell(of), kind(sent) {}
    ~HelpLine() override { delete row; }

    // Takes a function key. False when it is none of the line's; one that is disabled is taken and does nothing.
    bool press(uint32_t key) const;

    WHandle shell;
    uint32_t kind;                       // of the action messages
    WHandle object = 0;                  // that they go to
    std::vector<Button> buttons;         // in ascending order of their keys
    std::map<uint32_t, Action> actions;  // by button number
    QPointer<QWidget> row;               // the shell's window owns it
};

// F1 does in that panel what it does in the main window.
void takeHelpKey(QWidget& panel);

}  // namespace qrvel
