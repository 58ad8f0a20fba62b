#include "display_server.h"

#include <QString>
#include <QtGlobal>

#include "x11_notify.h"

bool isDisplayReachable() {
    const QString platform = qEnvironmentVariable("QT_QPA_PLATFORM");
    if (!platform.isEmpty() && !platform.startsWith("xcb")) return true;
    const bool wayland = platform.isEmpty() && !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    return wayland || x11::isReachable();
}
