// The action bar: Qt's menu bar, made from the viewer's rows.
#pragma once

#include <QAction>
#include <QMenuBar>
#include <QPointer>
#include <span>
#include <vector>

#include "actbar.h"
#include "handles.h"

namespace qrvel {

struct ActionBar : Object {
    static constexpr Kind KIND = Kind::ActionBar;
    ActionBar(WHandle of, std::span<ACTBARRow> table) : object(of), rows(table) {}
    ~ActionBar() override;

    // The number of a row with that action under one of the pull-downs; -1 for none.
    int findItem(uint32_t action) const;

    WHandle object;               // that the actions go to
    std::span<ACTBARRow> rows;    // the viewer's
    QPointer<QMenuBar> menus;     // the shell's window owns it
    std::vector<QAction*> items;  // a row each, owned by the menus
    uint32_t itemKind = 0;        // of the action messages: of items,
    uint32_t helpKind = 0;        // of those of class 'L',
    uint32_t keyKind = 0;         // and of accelerators
};

}  // namespace qrvel
