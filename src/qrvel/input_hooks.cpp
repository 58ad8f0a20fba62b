// What the main loop asks about a message before it is dispatched.
#include <QToolTip>

#include "application.h"
#include "windows.h"

// Function keys are hot keys only of a help line.
int32_t Wwntranshotkey(const tagMSG* /*message*/, uint32_t /*id*/) {
    return 0;
}

// Qt follows the mouse by itself; a key or a button takes away the tip that is shown.
void WTTIwnmousemsg(void* /*window*/, uint32_t id) {
    if (id != WM_MOUSEMOVE) QToolTip::hideText();
}
