// Letters and digits of ASCII, whatever the language of the session.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace plotter {

inline uint8_t toByte(char c) {
    return static_cast<uint8_t>(c);
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
