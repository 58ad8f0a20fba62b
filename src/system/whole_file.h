// A file that is written whole or not at all.
//
// Its bytes go to a file without a name in the same folder, or beside it where the file system has no such files, and
// take its place when they are all on the disk: whoever looks sees what was there before or all of the new. A program
// that is killed meanwhile leaves nothing, but for a moment at the end. A link to a file is followed to its end, and a
// link whose file is missing makes that file.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace kelsystem {

// What stands in the way of writing it, as far as that can be known before; nothing where it can be written.
std::string obstacleTo(const std::string& file);

class WholeFile {
  public:
    explicit WholeFile(const std::string& file);
    ~WholeFile();  // without finish, nothing has happened
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;

    // What went wrong; nothing so far.
    const std::string& problem() const { return problem_; }
    // Open for reading and writing, -1 after a problem; belongs to this object.
    int descriptor() const { return descriptor_; }
    // Puts the file in its place. False when something went wrong.
    bool finish();

  private:
    bool fail(int error);
    bool putInPlace();

    std::filesystem::path target_;
    std::string beside_;  // the name that it has until then; empty: none
    int descriptor_ = -1;
    std::string problem_;
};

// The same with bytes that are there. Answers what went wrong, or nothing.
std::string writeWhole(const std::string& file, std::string_view bytes);

// Where a name leads to: the file behind all links, whether it is there or not.
std::filesystem::path behindLinks(const std::string& file);

}  // namespace kelsystem
