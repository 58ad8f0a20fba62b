// The action bar: Qt's menu bar, made from the viewer's rows.
#pragma once

#include <QAction>
#include <QMenuBar>
#include <QPointer>
#include <span>
#include <vector>

#include "qrvel/base/handles.h"
#include "toolkit/actbar.h"

namespace qrvel {

struct ActionBar : Object {
    static constexpr Kind KIND = Kind::ActionBar;
    ActionBar(WHandle of, std::span<ACTBARRow> table) : object(of), rows(table) {}
    ~ActionBar() override;

    // Does what choosing the item with that action does, if there is one and it is enabled.
    void choose(uint32_t action) const;
    // The item's text, '&' before its letter; empty where there is none.
    QString textOf(uint32_t action) const;
    // Sends the message of a row.
    void post(const ACTBARRow& row) const;

    WHandle object;                        // that the actions go to
    std::span<ACTBARRow> rows;             // the viewer's
    QPointer<QMenuBar> menus;              // the shell's window owns it
    std::vector<QPointer<QAction>> items;  // a row each, owned by the menus
    uint32_t itemKind = 0;                 // of the action messages: of items,
    uint32_t helpKind = 0;                 // of those of class 'L'
};

}  // namespace qrvel
