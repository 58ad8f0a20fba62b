// Which files these are, whatever their names: by device and inode.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <utility>

namespace kelfiles {

class FileIds {
  public:
    // A file that is not there adds nothing.
    void add(const std::string& file);
    void add(int descriptor);
    bool hold(const std::string& file) const;

  private:
    std::set<std::pair<uint64_t, uint64_t>> ids_;
};

}  // namespace kelfiles
