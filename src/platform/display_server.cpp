#include "platform/display_server.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QDir>
#include <QLibraryInfo>
#include <QString>
#include <QtGlobal>
#include <cstring>

#include "platform/x11_notify.h"

namespace {

bool hasPlugin(const QString& platform) {
    const QDir folder(QLibraryInfo::path(QLibraryInfo::PluginsPath) + "/platforms");
    return !folder.entryList({"libq" + platform + "*.so"}).isEmpty();
}

bool canConnect(const QByteArray& path) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.size() >= qsizetype{sizeof address.sun_path}) return false;
    std::memcpy(address.sun_path, path.constData(), static_cast<size_t>(path.size()));
    const int end = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool connected = end >= 0 && connect(end, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    if (end >= 0) close(end);
    return connected;
}

bool isWaylandReachable() {
    const QByteArray name = qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ? "wayland-0" : qgetenv("WAYLAND_DISPLAY");
    return canConnect(name.startsWith('/') ? name : qgetenv("XDG_RUNTIME_DIR") + '/' + name);
}

bool isReachable(const QString& platform) {
    if (!hasPlugin(platform)) return false;
    if (platform == "xcb") return x11::isReachable();
    return !platform.startsWith("wayland") || isWaylandReachable();
}

}  // namespace

// Qt takes the first that works out of a list, and ends the process when there is none.
bool isDisplayReachable() {
    const QString wanted = qEnvironmentVariable("QT_QPA_PLATFORM", "wayland;xcb");
    for (const QString& platform : wanted.split(';')) {
        if (isReachable(platform.section(':', 0, 0))) return true;
    }
    return false;
}

bool isUnseen(const QString& platform) {
    return platform.startsWith("offscreen") || platform.startsWith("minimal");
}
