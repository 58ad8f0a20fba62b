// What a stroke is drawn with.
#pragma once

#include <cstdint>
#include <tuple>

namespace plotter {

struct Colour {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;
    friend bool operator==(const Colour&, const Colour&) = default;
    friend bool operator<(const Colour& a, const Colour& b) {
        return std::tie(a.red, a.green, a.blue) < std::tie(b.red, b.green, b.blue);
    }
};

inline constexpr Colour BLACK = {0, 0, 0};
inline constexpr Colour WHITE = {255, 255, 255};

struct Ink {
    int32_t pen = 1;        // as the file numbers it
    Colour colour = BLACK;  // that the file gives the pen; of no meaning where the file gives no colours
    double shade = 1;       // 1: the pen's own colour, 0: the paper's
    double width = 0;       // plotter units; 0: the thinnest line
    friend bool operator==(const Ink&, const Ink&) = default;
};

}  // namespace plotter
