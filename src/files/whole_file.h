// A file that is written whole or not at all.
#pragma once

#include <string>
#include <string_view>

namespace kelfiles {

// What stands in the way of writing it, as far as that can be known before; nothing where it can be written.
std::string obstacleTo(const std::string& file);

// Writes the bytes beside the file and puts them in its place, so that it holds all of them or is as it was before. A
// link to a file is followed. Signals wait meanwhile: the one that ends the program leaves nothing behind. Answers what
// went wrong, or nothing.
std::string writeWhole(const std::string& file, std::string_view bytes);

}  // namespace kelfiles
