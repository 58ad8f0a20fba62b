// What a byte is in the plotter's language.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "plotter/escapes.h"

namespace plotter {

enum class Kind : uint8_t { Other, Blank, Digit, Sign, Point, Letter, End, Escape };

inline constexpr std::array<Kind, 256> KINDS = [] {
    std::array<Kind, 256> kinds = {};
    for (const int blank : {0, 9, 10, 11, 12, 13, 32, 127, int{','}}) {
        kinds[static_cast<std::size_t>(blank)] = Kind::Blank;
    }
    for (std::size_t c = '0'; c <= '9'; ++c) {
        kinds[c] = Kind::Digit;
    }
    for (std::size_t c = 'A'; c <= 'Z'; ++c) {
        kinds[c] = kinds[c + 32] = Kind::Letter;
    }
    kinds['+'] = kinds['-'] = Kind::Sign;
    kinds['.'] = Kind::Point;
    kinds[';'] = Kind::End;
    kinds[ESCAPE] = Kind::Escape;
    // A line that adds a parity bit: what is left without it is meant.
    for (std::size_t c = 128; c < 256; ++c) {
        const Kind kind = kinds[c - 128];
        if (kind != Kind::Escape) kinds[c] = kind;
    }
    return kinds;
}();

inline Kind kindOf(uint8_t byte) {
    return KINDS[byte];
}

inline char capital(uint8_t letter) {
    return static_cast<char>(letter & 0x5F);
}

}  // namespace plotter
