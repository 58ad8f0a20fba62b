#include "system/file_ids.h"

#include <sys/stat.h>

namespace kelsystem {

namespace {

FileId idOf(int result, const struct stat& about) {
    return result == 0 ? FileId{about.st_dev, about.st_ino} : FileId{};
}

}  // namespace

FileId fileIdOf(int descriptor) {
    struct stat about = {};
    return idOf(fstat(descriptor, &about), about);
}

FileId fileIdOf(const std::string& name) {
    struct stat about = {};
    return idOf(stat(name.c_str(), &about), about);
}

FileId fileIdOfItself(const std::string& name) {
    struct stat about = {};
    return idOf(lstat(name.c_str(), &about), about);
}

}  // namespace kelsystem
