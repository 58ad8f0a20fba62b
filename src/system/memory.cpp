#include "system/memory.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>

namespace kelsystem {

namespace {

namespace fs = std::filesystem;

constexpr uint64_t NO_LIMIT = std::numeric_limits<uint64_t>::max();

// A file without a number ("max") says nothing.
uint64_t limitIn(const fs::path& file) {
    uint64_t bytes = 0;
    return std::ifstream(file) >> bytes ? bytes : NO_LIMIT;
}

// A group has no more than those that it is in.
uint64_t leastUpTo(const fs::path& root, fs::path group, const char* file) {
    uint64_t least = limitIn(root / file);
    for (; group.has_relative_path(); group = group.parent_path()) {
        least = std::min(least, limitIn(root / group.relative_path() / file));
    }
    return least;
}

// Lines are NUMBER:CONTROLLERS:GROUP; the second version of control groups has no controllers here.
uint64_t limitOfGroups() {
    const fs::path root = "/sys/fs/cgroup";
    uint64_t least = NO_LIMIT;
    std::ifstream groups("/proc/self/cgroup");
    for (std::string line; std::getline(groups, line);) {
        const std::size_t first = line.find(':');
        const std::size_t second = first == std::string::npos ? first : line.find(':', first + 1);
        if (second == std::string::npos) continue;
        const std::string controllers = line.substr(first + 1, second - first - 1);
        const fs::path group = line.substr(second + 1);
        if (controllers.empty()) least = std::min(least, leastUpTo(root, group, "memory.max"));
        if (controllers == "memory")
            least = std::min(least, leastUpTo(root / "memory", group, "memory.limit_in_bytes"));
    }
    return least;
}

uint64_t memoryOfMachine() {
    return static_cast<uint64_t>(sysconf(_SC_PHYS_PAGES)) * static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
}

}  // namespace

uint64_t memoryInAll() {
    static const uint64_t bytes = std::min(memoryOfMachine(), limitOfGroups());
    return bytes;
}

}  // namespace kelsystem
