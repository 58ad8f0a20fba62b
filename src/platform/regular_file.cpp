#include "platform/regular_file.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <string>

namespace {

FileGuard* theGuard = nullptr;

// What the kernel makes up while it is read may have no end.
bool isMadeUp(int file) {
    struct statfs system {};
    return fstatfs(file, &system) == 0 && (system.f_type == PROC_SUPER_MAGIC || system.f_type == SYSFS_MAGIC ||
                                           system.f_type == DEBUGFS_MAGIC || system.f_type == TRACEFS_MAGIC);
}

// Opens what was looked at, and not what may have taken its name meanwhile. Answers a descriptor or -1.
int openLookedAt(int looked, const char* name) {
    struct stat status {};
    if (fstat(looked, &status) != 0 || !S_ISREG(status.st_mode) || isMadeUp(looked)) return -1;
    if (theGuard != nullptr && !theGuard->mayOpen(name, looked, static_cast<uint64_t>(status.st_size))) return -1;
    const std::string path = "/proc/self/fd/" + std::to_string(looked);
    return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
}

int openDescriptor(const char* name) {
    const int looked = open(name, O_PATH | O_CLOEXEC);
    if (looked < 0) return -1;
    const int file = openLookedAt(looked, name);
    close(looked);
    return file;
}

// A stream over a descriptor that asks the guard.
struct Reading {
    int file;
    uint64_t bytes;
};

ssize_t readPiece(void* cookie, char* buffer, size_t room) {
    auto* reading = static_cast<Reading*>(cookie);
    if (theGuard != nullptr && !theGuard->mayGoOn(reading->bytes)) {
        errno = ECANCELED;
        return -1;
    }
    const ssize_t count = read(reading->file, buffer, room);
    if (count > 0) reading->bytes += static_cast<uint64_t>(count);
    return count;
}

int closeReading(void* cookie) {
    auto* reading = static_cast<Reading*>(cookie);
    const int result = close(reading->file);
    delete reading;
    return result;
}

}  // namespace

void guardRegularFiles(FileGuard* guard) {
    theGuard = guard;
}

std::FILE* openRegularFile(const char* name) {
    const int file = openDescriptor(name);
    if (file < 0) return nullptr;
    auto* reading = new (std::nothrow) Reading{.file = file, .bytes = 0};
    std::FILE* stream =
        reading == nullptr
            ? nullptr
            : fopencookie(reading, "rb", {.read = readPiece, .write = nullptr, .seek = nullptr, .close = closeReading});
    if (stream != nullptr) return stream;
    close(file);
    delete reading;
    return nullptr;
}
