#include "qrvel/window/accelerators.h"

#include <QKeySequence>
#include <iterator>

#include "platform/message_pump.h"
#include "qrvel/base/application.h"
#include "qrvel/channel/data_channel.h"
#include "qrvel/window/action_bar.h"

namespace qrvel {

namespace {

// Above the actions of all items.
constexpr uint32_t PAGE_BEFORE = 0x10000;
constexpr uint32_t PAGE_AFTER = 0x10001;

// The command is the action of the item; turning pages is not in the action bar.
constexpr pump::Accelerator ACCELERATORS[] = {
    {Qt::Key_P, Qt::ControlModifier, 5},      // print
    {Qt::Key_Q, Qt::ControlModifier, 7},      // exit
    {Qt::Key_Home, Qt::NoModifier, 9},        // complete picture
    {Qt::Key_Backspace, Qt::NoModifier, 10},  // last zoom
    {Qt::Key_R, Qt::ControlModifier, 11},     // rotate
    {Qt::Key_PageUp, Qt::NoModifier, PAGE_BEFORE},
    {Qt::Key_PageDown, Qt::NoModifier, PAGE_AFTER},
};

void turnPage(int by) {
    if (DataChannel* channel = findDataChannel()) channel->turnPage(by);
}

void sendCommand(uint32_t command) {
    if (command == PAGE_BEFORE) return turnPage(-1);
    if (command == PAGE_AFTER) return turnPage(1);
    handles().forEach<ActionBar>([&](const ActionBar& bar) { bar.choose(command); });
}

constexpr pump::AcceleratorTable TABLE = {ACCELERATORS, std::size(ACCELERATORS), sendCommand};

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
