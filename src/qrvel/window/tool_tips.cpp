// What the main loop tells the tool tips.
#include <QToolTip>

#include "platform/windows.h"
#include "toolkit/w.h"

// Qt follows the mouse by itself; a key or a button takes away the tip that is shown.
void WTTIwnmousemsg(void* /*window*/, uint32_t id) {
    if (id != WM_MOUSEMOVE) QToolTip::hideText();
}
