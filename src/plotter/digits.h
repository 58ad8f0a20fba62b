// Reading decimal digits eight at a time: numbers are most of a plot, and asking byte by byte where one ends is most of
// the time that reading it takes.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace plotter {

inline constexpr std::size_t DIGITS_AT_ONCE = 8;

// The digits that eight bytes begin with: how many, and their value. Only for little-endian machines, as all of ours
// are.
inline std::size_t readEightDigits(const char* bytes, uint64_t& value) {
    static_assert(std::endian::native == std::endian::little);
    uint64_t digits = 0;
    std::memcpy(&digits, bytes, sizeof digits);
    digits ^= 0x3030303030303030;
    // A byte that is none of 0 to 9 gets its highest bit set; what it carries over changes only bytes behind it.
    const uint64_t others = ((digits + 0x7676767676767676) | digits) & 0x8080808080808080;
    const std::size_t count = others == 0 ? DIGITS_AT_ONCE : static_cast<std::size_t>(std::countr_zero(others)) / 8;
    if (count == 0) return 0;
    digits <<= (DIGITS_AT_ONCE - count) * 8;  // zeros in front
    digits = (digits * 10 + (digits >> 8)) & 0x00FF00FF00FF00FF;
    digits = (digits * 100 + (digits >> 16)) & 0x0000FFFF0000FFFF;
    value = (digits * 10000 + (digits >> 32)) & 0x00000000FFFFFFFF;
    return count;
}

}  // namespace plotter
