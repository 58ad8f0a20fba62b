// What a drawing goes to. The OUT operations do the checking and the bookkeeping; a device only draws.
//
// Coordinates are device pixels, y upward from the lower left corner, any 32-bit value.
#pragma once

#include <QSize>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "qrvel/output/colours.h"
#include "toolkit/out.h"

namespace qrvel {

// A box as the operations give it, with sizes of either sign; wide enough that its far corner cannot overflow.
struct PixelBox {
    int64_t x;
    int64_t y;
    int64_t width;
    int64_t height;

    // The same box with sizes that are not negative.
    PixelBox normalised() const {
        return {.x = width < 0 ? x + width : x,
                .y = height < 0 ? y + height : y,
                .width = width < 0 ? -width : width,
                .height = height < 0 ? -height : height};
    }
    bool operator==(const PixelBox&) const = default;
};

// What a reset makes fresh.
struct Attributes {
    uint32_t lineColour = BLACK;
    uint32_t fillColour = WHITE;
    int32_t textWidth = 0;
    int32_t textHeight = 0;
};

class OutputDevice {
  public:
    OutputDevice() = default;
    OutputDevice(const OutputDevice&) = delete;
    OutputDevice& operator=(const OutputDevice&) = delete;
    virtual ~OutputDevice() = default;

    virtual QSize size() const = 0;
    // Fresh attributes, and the colour table made last.
    virtual void reset() {
        attributes = {};
        colours_ = newestColours();
    }
    virtual void endPaint() = 0;

    virtual void line(OUTPoint from, OUTPoint to) = 0;
    // width from 2; two points or more, or one for a dot.
    virtual void wideLine(std::span<const OUTPoint> points, int32_t width) = 0;
    // Boxes are normalised. The outline runs through all four corners; the fill covers width x height pixels.
    virtual void outline(const PixelBox& box) = 0;
    virtual void fill(const PixelBox& box) = 0;
    // Polygons one after the other in `points`, as one even-odd area.
    virtual void polygons(std::span<const OUTPoint> points, std::span<const int32_t> counts) = 0;
    virtual void text(OUTPoint baseline, std::string_view bytes) = 0;
    virtual void trackBox(const PixelBox& box) = 0;

    // The pixel value of a colour index; black for one that the table does not have.
    uint32_t colourAt(int64_t index) const {
        const bool known = colours_ && index >= 0 && static_cast<uint64_t>(index) < colours_->size();
        return known ? (*colours_)[static_cast<std::size_t>(index)] : BLACK;
    }

    // False before the first table.
    bool hasColours() const { return colours_ != nullptr; }

    Attributes attributes;

  private:
    std::shared_ptr<const ColourEntries> colours_;
};

}  // namespace qrvel
