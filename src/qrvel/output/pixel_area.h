// The pixels of a surface, seen the way the output device counts them: y grows upward from the lower left corner.
// Whoever draws through it knows nothing of the image's scan lines, which are stored from the top.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace qrvel {

struct PixelArea {
    uint32_t* origin = nullptr;  // pixel (0, 0), the lower left one; not owned
    std::ptrdiff_t stride = 0;  // pixels from a row to the next higher one; negative where rows are stored from the top
    int32_t width = 0;
    int32_t height = 0;

    uint32_t* at(std::ptrdiff_t x, std::ptrdiff_t y) const { return origin + y * stride + x; }
    bool contains(int32_t x, int32_t y) const {
        return static_cast<uint32_t>(x) < static_cast<uint32_t>(width) &&
               static_cast<uint32_t>(y) < static_cast<uint32_t>(height);
    }
    // Whether two points lie beyond the same side, so that nothing between them is inside.
    bool isBeside(int32_t x1, int32_t y1, int32_t x2, int32_t y2) const {
        return std::max(x1, x2) < 0 || std::min(x1, x2) >= width || std::max(y1, y2) < 0 || std::min(y1, y2) >= height;
    }
};

// Fills from one corner to the other, both included, cut to the area. Nothing if left > right or bottom > top.
inline void fillBox(const PixelArea& area, int64_t left, int64_t bottom, int64_t right, int64_t top, uint32_t colour) {
    left = std::max<int64_t>(left, 0);
    bottom = std::max<int64_t>(bottom, 0);
    right = std::min<int64_t>(right, area.width - 1);
    top = std::min<int64_t>(top, area.height - 1);
    if (left > right) return;
    for (int64_t y = bottom; y <= top; ++y) {
        std::fill(area.at(left, y), area.at(right, y) + 1, colour);
    }
}

// Mixes two channels, which stand in the bytes 0 and 2 of their words, in 255 parts, rounded.
inline uint32_t mixChannels(uint32_t over, uint32_t under, uint32_t parts) {
    const uint32_t sum = over * parts + under * (255 - parts) + 0x00800080U;
    return ((sum + ((sum >> 8) & 0x00FF00FFU)) >> 8) & 0x00FF00FFU;
}

// Lays a colour over a pixel; coverage 0 leaves it, 255 replaces it.
inline void blendPixel(uint32_t& pixel, uint32_t colour, uint32_t coverage) {
    const uint32_t redAndBlue = mixChannels(colour & 0x00FF00FFU, pixel & 0x00FF00FFU, coverage);
    const uint32_t green = mixChannels((colour >> 8) & 0xFFU, (pixel >> 8) & 0xFFU, coverage);
    pixel = 0xFF000000U | redAndBlue | ((green & 0xFFU) << 8);
}

}  // namespace qrvel
