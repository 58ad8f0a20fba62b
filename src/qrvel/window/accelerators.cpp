#include "accelerators.h"

#include <QKeySequence>
#include <iterator>

#include "action_bar.h"
#include "application.h"
#include "message_pump.h"

namespace qrvel {

namespace {

// The command is the action of the item.
constexpr pump::Accelerator ACCELERATORS[] = {
    {Qt::Key_P, Qt::ControlModifier, 5},      // print
    {Qt::Key_Q, Qt::ControlModifier, 7},      // exit
    {Qt::Key_Home, Qt::NoModifier, 9},        // complete picture
    {Qt::Key_Backspace, Qt::NoModifier, 10},  // last zoom
    {Qt::Key_R, Qt::ControlModifier, 11},     // rotate
};

void sendItem(uint32_t action) {
    handles().forEach<ActionBar>([&](const ActionBar& bar) { bar.choose(action); });
}

constexpr pump::AcceleratorTable TABLE = {ACCELERATORS, std::size(ACCELERATORS), sendItem};

}  // namespace

QString acceleratorText(uint32_t action) {
    for (const pump::Accelerator& row : ACCELERATORS) {
        if (row.command == action) return QKeySequence(row.key | row.modifiers).toString(QKeySequence::NativeText);
    }
    return {};
}

}  // namespace qrvel

void* WIwnquerymdiaccel() {
    return pump::handleOf(qrvel::TABLE);
}
