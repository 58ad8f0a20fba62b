// Files as OpenFile, _lwrite and _lclose see them, and files that nobody vouches for.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <limits>
#include <set>
#include <string>
#include <utility>

#include "platform/log_file.h"
#include "platform/posix.h"

namespace {

// What an open that keeps nothing open answers: no descriptor ever has this number, so closing it closes nothing.
constexpr HFILE NOTHING_OPEN = std::numeric_limits<HFILE>::max();

bool isRegular(mode_t mode) {
    if (S_ISREG(mode)) return true;
    errno = S_ISDIR(mode) ? EISDIR : EINVAL;
    return false;
}

int closeFailed(int file) {
    const int cause = errno;
    close(file);
    errno = cause;
    return HFILE_ERROR;
}

// 0 to 2 belong to the standard streams, even when the process was started without them; and 0 is no handle.
int aboveStandardStreams(int file) {
    if (file > STDERR_FILENO) return file;
    const int moved = fcntl(file, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    closeFailed(file);
    return moved;
}

// Non-blocking until it is known what the name stands for: a fifo without another end would hold the process up. What
// is written to is no link, so that nobody else's file is behind the name.
int openRegular(const char* name, int flags) {
    if ((flags & O_ACCMODE) != O_RDONLY) flags |= O_NOFOLLOW;
    const int opened = open(name, flags | O_NONBLOCK | O_CLOEXEC | O_NOCTTY, 0666);
    if (opened < 0) return HFILE_ERROR;
    struct stat status {};
    if (fstat(opened, &status) != 0 || !isRegular(status.st_mode)) return closeFailed(opened);
    const int file = aboveStandardStreams(opened);
    if (file >= 0) fcntl(file, F_SETFL, fcntl(file, F_GETFL) & ~O_NONBLOCK);
    return file;
}

// A file system that knows no locks is used without them; only another holder is a reason to refuse.
bool lockFile(int file, UINT style) {
    const int kind = (style & OF_SHARE_EXCLUSIVE) != 0 ? LOCK_EX : LOCK_SH;
    return flock(file, kind | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

int accessFlags(UINT style) {
    if ((style & OF_CREATE) != 0) return O_RDWR | O_CREAT;
    return (style & OF_WRITE) != 0 ? O_WRONLY : O_RDONLY;
}

// A file that has been made or emptied here bears this attribute. No other is emptied: a name alone does not say whose
// content it is. On a file system without attributes only the empty ones are left, and those of this process.
constexpr char LOG_MARK[] = "user.kelhpgl.log";

// This process knows its own also where there are no attributes.
std::set<std::pair<dev_t, ino_t>>& ownLogs() {
    static std::set<std::pair<dev_t, ino_t>> logs;
    return logs;
}

bool emptyLog(int file) {
    struct stat status {};
    if (fstat(file, &status) != 0) return false;
    const std::pair log(status.st_dev, status.st_ino);
    if (status.st_size != 0 && fgetxattr(file, LOG_MARK, nullptr, 0) < 0 && !ownLogs().contains(log)) {
        errno = EEXIST;
        return false;
    }
    if (ftruncate(file, 0) != 0) return false;
    fsetxattr(file, LOG_MARK, "", 0, 0);
    ownLogs().insert(log);
    return true;
}

// Empties the file only when the lock is held, so that what another holds exclusively keeps its content.
HFILE openLocked(LPCSTR name, UINT style) {
    const int file = openRegular(name, accessFlags(style));
    if (file < 0) return HFILE_ERROR;
    if (!lockFile(file, style)) return closeFailed(file);
    if ((style & OF_CREATE) != 0 && !emptyLog(file)) return closeFailed(file);
    return file;
}

HFILE findRegular(LPCSTR name) {
    struct stat status {};
    return lstat(name, &status) == 0 && isRegular(status.st_mode) ? NOTHING_OPEN : HFILE_ERROR;
}

// Making the file and taking it away again would be seen by whoever watches the folder.
HFILE findRoomFor(LPCSTR name) {
    struct stat status {};
    if (lstat(name, &status) == 0) errno = EEXIST;
    if (errno != ENOENT || *name == '\0') return HFILE_ERROR;
    const std::string path = name;
    const size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    return faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0 ? NOTHING_OPEN : HFILE_ERROR;
}

HFILE openAs(LPCSTR name, UINT style) {
    if ((style & OF_EXIST) != 0) return (style & OF_CREATE) != 0 ? findRoomFor(name) : findRegular(name);
    return openLocked(name, style);
}

void describe(OFSTRUCT& info, LPCSTR name, int error) {
    info = {};
    info.cBytes = sizeof info;
    info.fFixedDisk = 1;
    info.nErrCode = static_cast<WORD>(error);
    std::strncpy(info.szPathName, name, sizeof info.szPathName - 1);
}

}  // namespace

namespace posix {

HFILE openFile(LPCSTR name, OFSTRUCT* info, UINT style) {
    const LPCSTR path = name != nullptr ? name : "";
    const HFILE file = openAs(path, style);
    const int error = file == HFILE_ERROR ? errno : 0;
    if (info != nullptr) describe(*info, path, error);
    return file;
}

UINT writeFile(HFILE file, LPCSTR bytes, UINT count) {
    UINT written = 0;
    while (written < count) {
        const ssize_t step = write(file, bytes + written, count - written);
        if (step < 0 && errno == EINTR) continue;
        if (step <= 0) return written > 0 ? written : static_cast<UINT>(HFILE_ERROR);
        written += static_cast<UINT>(step);
    }
    return written;
}

HFILE closeFile(HFILE file) {
    return close(file) == 0 ? 0 : HFILE_ERROR;
}

}  // namespace posix

std::FILE* openLogFile(const char* name) {
    const int file = openLocked(name, OF_CREATE | OF_WRITE);
    if (file < 0) return nullptr;
    std::FILE* stream = fdopen(file, "w");
    if (stream == nullptr) closeFailed(file);
    return stream;
}
