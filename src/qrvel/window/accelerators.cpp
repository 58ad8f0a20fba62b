#include "qrvel/window/accelerators.h"

#include <QKeySequence>
#include <iterator>

#include "platform/message_pump.h"
#include "qrvel/window/commands.h"
#include "toolkit/wi.h"

namespace qrvel {

namespace {

constexpr int CONTROL = Qt::ControlModifier, ALT = Qt::AltModifier;

// Of several keys for a command the first is named in the menus.
constexpr pump::Accelerator ACCELERATORS[] = {
    {Qt::Key_P, CONTROL, PRINT},
    {Qt::Key_Q, CONTROL, EXIT},
    {Qt::Key_Home, 0, COMPLETE_PICTURE},
    {Qt::Key_0, CONTROL, COMPLETE_PICTURE},
    {Qt::Key_F2, 0, COMPLETE_PICTURE},
    {Qt::Key_Backspace, 0, LAST_ZOOM},
    {Qt::Key_Left, ALT, LAST_ZOOM},
    {Qt::Key_Right, ALT, GO_FORWARD},
    {Qt::Key_R, CONTROL, ROTATE},
    {Qt::Key_PageUp, 0, PAGE_BEFORE},
    {Qt::Key_PageDown, 0, PAGE_AFTER},
    {Qt::Key_PageUp, CONTROL, FILE_BEFORE},
    {Qt::Key_PageDown, CONTROL, FILE_AFTER},
    {Qt::Key_O, CONTROL, OPEN_FILE},
    {Qt::Key_F5, 0, READ_AGAIN},
    {Qt::Key_R, 0, READ_AGAIN},
    {Qt::Key_Return, ALT, FULL_SCREEN},
    {Qt::Key_Enter, ALT, FULL_SCREEN},
    {Qt::Key_F10, 0, MENU_BAR},
    {Qt::Key_C, CONTROL, COPY_PICTURE},
};

constexpr pump::AcceleratorTable TABLE = {ACCELERATORS, std::size(ACCELERATORS), carryOut};

}  // namespace

QString acceleratorText(uint32_t command) {
    for (const pump::Accelerator& row : ACCELERATORS) {
        if (row.command == command) return QKeySequence(row.key | row.modifiers).toString(QKeySequence::NativeText);
    }
    return {};
}

}  // namespace qrvel

void* WIwnquerymdiaccel() {
    return pump::handleOf(qrvel::TABLE);
}
