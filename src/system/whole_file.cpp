#include "system/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace kelsystem {

namespace {

namespace fs = std::filesystem;

constexpr mode_t ANYBODY = 0666;
constexpr mode_t PERMISSIONS = 0777;
constexpr mode_t OWNER_ONLY = 0600;  // until it is whole

// The name of a file that is not in its place yet begins so.
constexpr char BESIDE[] = ".kelhpgl-";
constexpr int MOST_ATTEMPTS = 100;
constexpr int MOST_LINKS = 40;  // that lead to each other, as the kernel has it

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

// Gives a file without a name one that nobody has; empty where that does not work.
std::string linkBeside(int descriptor, const fs::path& file) {
    const std::string open = "/proc/self/fd/" + std::to_string(descriptor);
    for (int attempt = 0; attempt < MOST_ATTEMPTS; ++attempt) {
        std::string name = folderOf(file) / (BESIDE + std::to_string(getpid()) + '-' + std::to_string(attempt));
        if (linkat(AT_FDCWD, open.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0) return name;
        if (errno != EEXIST) break;
    }
    return {};
}

}  // namespace

fs::path behindLinks(const std::string& file) {
    fs::path found = file;
    std::error_code none;
    for (int links = 0; links < MOST_LINKS && fs::is_symlink(fs::symlink_status(found, none)); ++links) {
        const fs::path to = fs::read_symlink(found, none);
        found = to.is_absolute() ? to : folderOf(found) / to;
    }
    return found;
}

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

WholeFile::WholeFile(const std::string& file) : target_(behindLinks(file)), problem_(obstacleTo(file)) {
    if (!problem_.empty()) return;
    descriptor_ = open(folderOf(target_).c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, OWNER_ONLY);
    if (descriptor_ >= 0) return;
    beside_ = folderOf(target_) / (BESIDE + std::string("XXXXXX"));
    descriptor_ = mkostemp(beside_.data(), O_CLOEXEC);
    if (descriptor_ < 0) {
        beside_.clear();
        fail(errno);
    }
}

WholeFile::~WholeFile() {
    if (descriptor_ >= 0) close(descriptor_);
    if (!beside_.empty()) unlink(beside_.c_str());
}

bool WholeFile::fail(int error) {
    problem_ = std::strerror(error);
    return false;
}

// A file without a name gets one beside its place first: a link does not replace what is there, and a renaming does.
bool WholeFile::putInPlace() {
    if (beside_.empty()) {
        const std::string name = linkBeside(descriptor_, target_);
        if (name.empty()) return false;
        beside_ = name;
    }
    if (std::rename(beside_.c_str(), target_.c_str()) != 0) return false;
    beside_.clear();
    return true;
}

bool WholeFile::finish() {
    if (descriptor_ < 0) return false;
    if (fchmod(descriptor_, permissionsFor(target_)) != 0 || !isOnDisk(descriptor_)) return fail(errno);
    const SignalsWait signalsWait;
    return putInPlace() || fail(errno);
}

std::string writeWhole(const std::string& name, std::string_view bytes) {
    WholeFile file(name);
    if (file.problem().empty() && !writeAll(file.descriptor(), bytes)) return std::strerror(errno);
    file.finish();
    return file.problem();
}

}  // namespace kelsystem
