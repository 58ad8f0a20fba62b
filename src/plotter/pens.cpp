#include "plotter/pens.h"

namespace plotter {

namespace {

// clang-format off
constexpr std::array<Colour, 4> FOUR = {
    WHITE, BLACK, Colour{255, 0, 0}, Colour{0, 255, 0}};
constexpr std::array<Colour, 8> EIGHT = {
    WHITE, BLACK, Colour{255, 0, 0}, Colour{0, 255, 0}, Colour{255, 255, 0}, Colour{0, 0, 255}, Colour{255, 0, 255},
    Colour{0, 255, 255}};
// clang-format on

}  // namespace

Colour defaultColour(int32_t pen, int32_t palette) {
    const auto index = static_cast<std::size_t>(pen < 0 ? 0 : pen);
    if (index == 0) return WHITE;
    if (palette <= 2) return BLACK;
    if (palette <= 4) return index < FOUR.size() ? FOUR[index] : BLACK;
    return index < EIGHT.size() ? EIGHT[index] : BLACK;
}

Colour Pens::colourOf(int32_t pen) const {
    const auto given = colours.find(pen);
    return given != colours.end() ? given->second : defaultColour(pen, palette);
}

double Pens::widthOf(int32_t pen) const {
    const auto given = widths.find(pen);
    return given != widths.end() ? given->second : width;
}

}  // namespace plotter
