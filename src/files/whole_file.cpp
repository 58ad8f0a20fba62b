#include "whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace kelfiles {

namespace {

namespace fs = std::filesystem;

constexpr mode_t ANYBODY = 0666;
constexpr mode_t PERMISSIONS = 0777;

class SignalsWait {
  public:
    SignalsWait() {
        sigset_t all;
        sigfillset(&all);
        sigprocmask(SIG_SETMASK, &all, &before_);
    }
    ~SignalsWait() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
    SignalsWait(const SignalsWait&) = delete;
    SignalsWait& operator=(const SignalsWait&) = delete;

  private:
    sigset_t before_;
};

fs::path behindLinks(const std::string& file) {
    std::error_code missing;
    const fs::path found = fs::canonical(file, missing);
    return missing ? fs::path(file) : found;
}

fs::path folderOf(const fs::path& file) {
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

mode_t permissionsFor(const fs::path& file) {
    struct stat before = {};
    if (stat(file.c_str(), &before) == 0) return before.st_mode & PERMISSIONS;
    const mode_t mask = umask(0);
    umask(mask);
    return ANYBODY & ~mask;
}

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) return false;
        if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

// A folder whose disk cannot be waited for (EINVAL) is none the worse.
bool isOnDisk(int descriptor) {
    return fsync(descriptor) == 0 || errno == EINVAL;
}

// Answers an error number, or 0.
int fill(int descriptor, std::string_view bytes, mode_t permissions) {
    const bool filled = writeAll(descriptor, bytes) && fchmod(descriptor, permissions) == 0 && isOnDisk(descriptor);
    const int error = filled ? 0 : errno;
    return close(descriptor) == 0 || error != 0 ? error : errno;
}

}  // namespace

std::string obstacleTo(const std::string& file) {
    struct stat about = {};
    const fs::path target = behindLinks(file);
    if (stat(file.c_str(), &about) == 0) {
        if (S_ISDIR(about.st_mode)) return std::strerror(EISDIR);
        if (!S_ISREG(about.st_mode)) return "Not an ordinary file";
        if (access(target.c_str(), W_OK) != 0) return std::strerror(errno);
    } else if (errno != ENOENT) {
        return std::strerror(errno);
    }
    return access(folderOf(target).c_str(), W_OK | X_OK) == 0 ? "" : std::strerror(errno);
}

std::string writeWhole(const std::string& file, std::string_view bytes) {
    if (std::string obstacle = obstacleTo(file); !obstacle.empty()) return obstacle;
    const SignalsWait signalsWait;
    const fs::path target = behindLinks(file);
    std::string beside = folderOf(target) / ".kelhpgl-XXXXXX";
    const int descriptor = mkostemp(beside.data(), O_CLOEXEC);
    if (descriptor < 0) return std::strerror(errno);
    int error = fill(descriptor, bytes, permissionsFor(target));
    if (error == 0 && std::rename(beside.c_str(), target.c_str()) != 0) error = errno;
    if (error == 0) return {};
    unlink(beside.c_str());
    return std::strerror(error);
}

}  // namespace kelfiles
