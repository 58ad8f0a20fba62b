// ASCII, whatever the language of the session.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace plotter {

inline constexpr char BACKSPACE = 0x08;
inline constexpr char TAB = 0x09;
inline constexpr char LINE_FEED = 0x0A;
inline constexpr char VERTICAL_TAB = 0x0B;
inline constexpr char FORM_FEED = 0x0C;
inline constexpr char CARRIAGE_RETURN = 0x0D;
inline constexpr char SHIFT_OUT = 0x0E;
inline constexpr char SHIFT_IN = 0x0F;
inline constexpr char DELETE = 0x7F;

inline uint8_t toByte(char c) {
    return static_cast<uint8_t>(c);
}

// What may stand between the parts of a file, with the bytes that tapes and spoolers fill up with.
inline constexpr std::string_view PADDING(" \t\r\n\f\0", 6);

inline std::size_t skipPadding(std::string_view bytes, std::size_t offset) {
    return std::min(bytes.find_first_not_of(PADDING, offset), bytes.size());
}

inline bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

inline bool isCapital(char c) {
    return c >= 'A' && c <= 'Z';
}

inline char toCapital(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

inline bool sameWord(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, toCapital, toCapital);
}

}  // namespace plotter
