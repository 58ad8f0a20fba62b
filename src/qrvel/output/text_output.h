// Labels: text stretched to fill a box.
#pragma once

#include <QImage>
#include <array>
#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "qrvel/output/pixel_area.h"

namespace qrvel {

// Where a text goes, in device pixels, y upward.
struct TextBox {
    int32_t x;  // the baseline's start
    int32_t y;
    int32_t width;   // of the whole text; a negative one runs to the left, mirrored
    int32_t height;  // of a capital
};

// Draws texts of the label face and keeps the pictures of the characters it has drawn, by size.
class TextOutput {
  public:
    // bytes: Latin-1. image and area are the same pixels.
    void draw(QImage& image, const PixelArea& area, std::string_view bytes, TextBox box, uint32_t colour);

  private:
    // A character's coverage, 0 to 255, row by row upward; its lower left corner stands at (left, bottom) from the
    // baseline's start.
    struct Glyph {
        int32_t left = 0;
        int32_t bottom = 0;
        int32_t width = 0;
        int32_t height = 0;
        std::vector<uint8_t> coverage;
    };
    using GlyphSet = std::array<std::unique_ptr<Glyph>, 256>;

    static Glyph makeGlyph(unsigned char character, double cellWidth, int32_t height);
    static void putGlyph(const PixelArea& area, const Glyph& glyph, int64_t x, int64_t y, uint32_t colour);
    GlyphSet& setOf(double cellWidth, int32_t height);
    const Glyph& glyphOf(GlyphSet& set, unsigned char character, double cellWidth, int32_t height);

    std::unordered_map<uint64_t, GlyphSet> sets_;  // by height and cell width in 1/64 pixels
    std::size_t bytesKept_ = 0;
};

}  // namespace qrvel
