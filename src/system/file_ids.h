// Which files these are, whatever their names: by device and inode.
#pragma once

#include <cstdint>
#include <set>
#include <string>

namespace kelsystem {

struct FileId {
    uint64_t device = 0;
    uint64_t inode = 0;  // 0: of no file
    bool operator==(const FileId&) const = default;
    bool operator<(const FileId& other) const {
        return device != other.device ? device < other.device : inode < other.inode;
    }
};

FileId fileIdOf(int descriptor);
// What the name leads to; and what bears it, which may be a link.
FileId fileIdOf(const std::string& name);
FileId fileIdOfItself(const std::string& name);

class FileIds {
  public:
    // A file that is not there adds nothing.
    void add(const std::string& file) { add(fileIdOf(file)); }
    void add(int descriptor) { add(fileIdOf(descriptor)); }
    bool hold(const std::string& file) const { return ids_.contains(fileIdOf(file)); }

  private:
    void add(FileId id) {
        if (id != FileId{}) ids_.insert(id);
    }

    std::set<FileId> ids_;
};

}  // namespace kelsystem
