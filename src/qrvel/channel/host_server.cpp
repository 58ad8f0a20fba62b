#include "host_server.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

#include "application.h"
#include "error_text.h"
#include "notices.h"
#include "own_texts.h"
#include "protocol.h"

namespace qrvel {

namespace {

constexpr auto BETWEEN_LOOKS = std::chrono::seconds(1);
constexpr std::size_t MOST_PATH = sizeof(sockaddr_un::sun_path) - 1;

bool refuse(const QString& path, const QString& reason) {
    sayLine(ownText(OwnText::CannotListen).arg(path, reason));
    return false;
}

// Where there is no runtime folder, one of the user's own takes its place: nobody else may look into it. Answers why it
// cannot be had, or nothing.
QString problemWithFolder(const QByteArray& folder) {
    if (mkdir(folder.constData(), S_IRWXU) != 0 && errno != EEXIST) return errorText();
    struct stat about = {};
    // A link in place of the runtime folder is its user's own affair, but anybody can make one where all may write.
    const bool anybodys = folder.startsWith("/tmp/");
    if ((anybodys ? lstat : stat)(folder.constData(), &about) != 0) return errorText();
    const bool ours = S_ISDIR(about.st_mode) && about.st_uid == getuid() && (about.st_mode & (S_IRWXG | S_IRWXO)) == 0;
    return ours ? QString() : "its folder is not this user's alone";
}

// Each host takes a descriptor, and one too many would end the listening.
void raiseDescriptorLimit() {
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}

bool isSameFile(int file, const QByteArray& path) {
    struct stat open = {};
    struct stat there = {};
    return fstat(file, &open) == 0 && stat(path.constData(), &there) == 0 && open.st_ino == there.st_ino &&
           open.st_dev == there.st_dev;
}

}  // namespace

NameLock::~NameLock() {
    if (file_ < 0) return;
    unlink(path_.constData());  // before the lock goes, so that it is never another's file
    close(file_);
}

// The one who had it may take the file away between our opening and our locking it; then there is another to lock.
bool NameLock::take(const QByteArray& path) {
    path_ = path;
    for (;;) {
        const int file = open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
        if (file < 0) return false;
        if (flock(file, LOCK_EX | LOCK_NB) != 0) {
            close(file);
            errno = EWOULDBLOCK;
            return false;
        }
        if (isSameFile(file, path)) {
            file_ = file;
            return true;
        }
        close(file);
    }
}

HostServer::HostServer(Arrived arrived) : arrived_(std::move(arrived)) {
    looks_.setInterval(BETWEEN_LOOKS);
    connect(&looks_, &QTimer::timeout, this, [this] {
        if (!isListening() && listenAtPath()) sayLine("listening again");
    });
}

bool HostServer::listenAtPath() {
    QLocalServer::removeServer(path_);  // left by a viewer that crashed
    setSocketOptions(UserAccessOption);
    return QLocalServer::listen(path_) || refuse(path_, errorString());
}

bool HostServer::listen(const QByteArray& name) {
    path_ = QString::fromStdString(kelhost::channelPath(name.toStdString()));
    const QByteArray folder = QFile::encodeName(QFileInfo(path_).path());
    const QString problem = problemWithFolder(folder);
    if (!problem.isEmpty()) return refuse(path_, problem);
    if (static_cast<std::size_t>(QFile::encodeName(path_).size()) > MOST_PATH)
        return refuse(path_, "the path is too long");
    // No name of a channel begins with a dot, so no socket has the lock's.
    if (!name_.take(folder + "/.kelhpgl." + name + ".lock")) {
        if (errno != EWOULDBLOCK) return refuse(path_, errorText());
        // Nothing that a user must be asked about: hosts that start a viewer at the same time find the other one.
        refuse(path_, "another viewer has that name");
        endProcess(1);
    }
    raiseDescriptorLimit();
    looks_.start();
    return listenAtPath();
}

}  // namespace qrvel
