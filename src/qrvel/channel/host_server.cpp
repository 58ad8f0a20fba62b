#include "host_server.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <chrono>
#include <cstring>

#include "application.h"
#include "notices.h"
#include "own_texts.h"
#include "protocol.h"

namespace qrvel {

namespace {

bool refuse(const QString& path, const QString& reason) {
    sayLine(ownText(OwnText::CannotListen).arg(path, reason));
    return false;
}

// Where there is no runtime folder, one of the user's own takes its place: nobody else may look into it.
bool makeFolder(const QByteArray& folder) {
    if (mkdir(folder.constData(), S_IRWXU) == 0) return true;
    struct stat about = {};
    return errno == EEXIST && lstat(folder.constData(), &about) == 0 && S_ISDIR(about.st_mode) &&
           about.st_uid == getuid() && (about.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

}  // namespace

bool HostServer::listen(const QByteArray& name) {
    const QString path = QString::fromStdString(kelhost::channelPath(name.toStdString()));
    const QByteArray folder = QFile::encodeName(QFileInfo(path).path());
    if (!makeFolder(folder)) return refuse(path, "its folder is not this user's alone");
    lock_ = std::make_unique<QLockFile>(path + ".lock");
    lock_->setStaleLockTime(std::chrono::milliseconds(0));  // only the end of its owner makes a lock stale
    if (!lock_->tryLock()) {
        // Nothing that a user must be asked about: hosts that start a viewer at the same time find the other one.
        refuse(path, "another viewer has that name");
        endProcess(1);
    }
    QLocalServer::removeServer(path);  // left by a viewer that crashed
    setSocketOptions(UserAccessOption);
    return QLocalServer::listen(path) || refuse(path, errorString());
}

}  // namespace qrvel
