#include "qrvel/channel/host_server.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "host/protocol.h"
#include "qrvel/base/application.h"
#include "qrvel/base/notices.h"
#include "qrvel/base/own_texts.h"
#include "qrvel/channel/error_text.h"
#include "system/descriptors.h"

namespace qrvel {

namespace {

constexpr std::size_t MOST_PATH = sizeof(sockaddr_un::sun_path) - 1;
constexpr int MOST_AT_THE_DOOR = 50;
// What hosts do not get: files, printing and windows need descriptors too, and Qt ends the process without them.
constexpr int DESCRIPTORS_OF_OUR_OWN = 12;
constexpr char TAKEN[] = "another viewer has that name";

QByteArray folderOf(const QByteArray& path) {
    return path.left(path.lastIndexOf('/'));
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

void raiseDescriptorLimit() {
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}

kelsystem::FileId idOf(const QByteArray& path) {
    return kelsystem::fileIdOfItself(path.toStdString());
}

sockaddr_un addressOf(const QByteArray& path) {
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    std::memcpy(address.sun_path, path.constData(), std::min(static_cast<std::size_t>(path.size()), MOST_PATH));
    return address;
}

int makeSocket() {
    return socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

// What connecting there answers: 0 or an error number.
int tryDoor(const QByteArray& path) {
    const sockaddr_un address = addressOf(path);
    const int caller = makeSocket();
    if (caller < 0) return errno;
    const int result = connect(caller, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    const int error = result == 0 ? 0 : errno;
    close(caller);
    return error;
}

// A viewer that crashed leaves its socket behind.
void removeForsaken(const QByteArray& path) {
    struct stat about = {};
    if (lstat(path.constData(), &about) == 0 && S_ISSOCK(about.st_mode)) unlink(path.constData());
}

// The file gets the socket's own mode: nobody else may connect.
bool bindTo(int socket, const QByteArray& path) {
    const sockaddr_un address = addressOf(path);
    return fchmod(socket, S_IRUSR | S_IWUSR) == 0 &&
           bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
           listen(socket, MOST_AT_THE_DOOR) == 0;
}

}  // namespace

bool NameLock::isHeld() const {
    return file_ >= 0 && kelsystem::fileIdOf(file_) == idOf(path_);
}

void NameLock::letGo() {
    if (file_ < 0) return;
    if (isHeld()) unlink(path_.constData());  // before the lock goes, so that it is never another's file
    close(std::exchange(file_, -1));
}

// The one who had it may take the file away between our opening and our locking it; then there is another to lock.
bool NameLock::take(const QByteArray& path) {
    letGo();
    path_ = path;
    for (;;) {
        const int file = open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
        if (file < 0) return false;
        if (flock(file, LOCK_EX | LOCK_NB) != 0) {
            close(file);
            errno = EWOULDBLOCK;
            return false;
        }
        file_ = file;
        if (isHeld()) return true;
        close(std::exchange(file_, -1));
    }
}

HostServer::HostServer(std::chrono::milliseconds betweenLooks, Arrived arrived) : arrived_(std::move(arrived)) {
    looks_.setInterval(betweenLooks);
    QObject::connect(&looks_, &QTimer::timeout, [this] { look(); });
}

QString HostServer::refusal(const QString& problem) const {
    return ownText(OwnText::CannotListen).arg(QString::fromLocal8Bit(path_), problem);
}

QString HostServer::takeName() {
    if (QString problem = problemWithFolder(folderOf(path_)); !problem.isEmpty()) return problem;
    if (static_cast<std::size_t>(path_.size()) > MOST_PATH) return "the path is too long";
    if (name_.isHeld() || name_.take(lockPath_)) return {};
    return errno == EWOULDBLOCK ? QString(TAKEN) : errorText();
}

// The name is ours, but somebody may have taken another viewer's lock away.
QString HostServer::open() {
    const int answer = tryDoor(path_);
    if (answer == 0 || answer == EAGAIN) return TAKEN;  // one with a full door is there too
    if (answer == ECONNREFUSED) removeForsaken(path_);
    socket_ = makeSocket();
    if (socket_ < 0 || !bindTo(socket_, path_)) {
        QString reason = errorText();
        close();
        return reason;
    }
    file_ = idOf(path_);
    notifier_ = std::make_unique<QSocketNotifier>(socket_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { accept(); });
    return {};
}

// As long as the socket is open no other file gets its identity.
void HostServer::close() {
    notifier_.reset();
    if (isFound()) unlink(path_.constData());
    file_ = {};
    if (socket_ >= 0) ::close(std::exchange(socket_, -1));
}

bool HostServer::isFound() const {
    return file_ != kelsystem::FileId{} && file_ == idOf(path_);
}

void HostServer::look() {
    if (notifier_) notifier_->setEnabled(true);
    if (isFound() && name_.isHeld()) return;
    QString problem = takeName();
    if (!isFound()) {
        close();
        if (problem.isEmpty()) problem = open();
    }
    if (problem != std::exchange(said_, problem)) sayLine(problem.isEmpty() ? "listening again" : refusal(problem));
}

void HostServer::accept() {
    const int host = accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC);
    if (host < 0) {
        // Nobody can come in, and the notifier would not rest: the next look tries again.
        if (errno == EMFILE || errno == ENFILE) notifier_->setEnabled(false);
        return;
    }
    if (kelsystem::descriptorsAreLeft(DESCRIPTORS_OF_OUR_OWN)) return arrived_(host);
    ::close(host);
    if (!std::exchange(full_, true)) sayLine("host: too few descriptors are left for another");
}

bool HostServer::listen(const QByteArray& name) {
    path_ = QByteArray::fromStdString(kelhost::channelPath(name.toStdString()));
    // No name of a channel begins with a dot, so no socket has the lock's.
    lockPath_ = folderOf(path_) + "/.kelhpgl." + name + ".lock";
    QString problem = takeName();
    if (problem.isEmpty()) problem = open();
    if (!problem.isEmpty()) {
        sayLine(refusal(problem));
        // Nothing that a user must be asked about: hosts that start a viewer at the same time find the other one.
        if (problem == TAKEN) endProcess(1);
        return false;
    }
    raiseDescriptorLimit();
    looks_.start();
    return true;
}

}  // namespace qrvel
