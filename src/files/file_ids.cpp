#include "file_ids.h"

#include <sys/stat.h>

namespace kelfiles {

void FileIds::add(const std::string& file) {
    struct stat about = {};
    if (stat(file.c_str(), &about) == 0) ids_.emplace(about.st_dev, about.st_ino);
}

void FileIds::add(int descriptor) {
    struct stat about = {};
    if (fstat(descriptor, &about) == 0) ids_.emplace(about.st_dev, about.st_ino);
}

bool FileIds::hold(const std::string& file) const {
    struct stat about = {};
    return stat(file.c_str(), &about) == 0 && ids_.contains({about.st_dev, about.st_ino});
}

}  // namespace kelfiles
