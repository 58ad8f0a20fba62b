// The bytes of a plot, taken out of what mail, archives and editors have wrapped them in.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace plotter {

// Of a compressed file, bytes that are unpacked: the largest plots there are, and far more than a short file can hold
// that is not made to harm. What is beyond is left out.
inline constexpr std::size_t MOST_UNPACKED_BYTES = std::size_t{256} << 20;
inline constexpr std::size_t MOST_UNPACKED_TO_ONE = 1000;

struct PreparedBytes {
    std::string_view bytes;                    // of the plot; all offsets in reports count from their start
    std::shared_ptr<const std::string> owned;  // what `bytes` lies in; null: in the file itself
    std::string remark;                        // for a person, English; empty when nothing was lost
};

// Takes off, where a file has it: compression, a byte order mark, two bytes a character, parity bits, NULs in front,
// and a text editor's second byte of every high one in encoded lines. A file with none of these is not copied.
PreparedBytes prepareBytes(std::string_view file);

}  // namespace plotter
