// What is drawn on a page, kept in the order in which it was drawn: only when all of it is known can it be centred.
//
// Four bytes a point, and in a file where they are many, so a plot of millions of lines is kept whole: what cannot be
// seen on the sheet is cut off on the way in, and the rest has coordinates of 15 bits. Lines that go on where the one
// before ended are joined. Each operation that keeps something throws std::bad_alloc when there is no room for it.
#pragma once

#include <QPolygonF>
#include <QRectF>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "qrvel/base/paper.h"
#include "system/spooled_array.h"
#include "toolkit/out.h"

namespace qrvel {

// Units of a sheet; begins: a stroke or a polygon begins here.
class PagePoint {
  public:
    // Units a point may lie outside of the area, which has at most 16384 a side. A pen of twice that width, with its
    // middle further out, is not seen any more.
    static constexpr int MOST_OUTSIDE = 8191;

    PagePoint(int x, int y, bool begins)
        : x_(static_cast<uint16_t>((x + MOST_OUTSIDE) | (begins ? BEGINS : 0))),
          y_(static_cast<uint16_t>(y + MOST_OUTSIDE)) {}

    int x() const { return (x_ & ~BEGINS) - MOST_OUTSIDE; }
    int y() const { return y_ - MOST_OUTSIDE; }
    bool begins() const { return (x_ & BEGINS) != 0; }

  private:
    static constexpr int BEGINS = 0x8000;

    uint16_t x_;
    uint16_t y_;
};

// Characters beside each other; units of a sheet.
struct PageText {
    double x;  // the baseline's start
    double y;
    double cellWidth;        // of a character; a negative one runs to the left, mirrored
    double height;           // of a capital
    std::string_view bytes;  // Latin-1
};

class Recording {
  public:
    // The sheet says what is cut off.
    explicit Recording(const SheetLayout& sheet);

    void clear();
    bool isEmpty() const { return steps_.empty(); }
    // That it takes, in memory and in its files.
    std::size_t bytes() const {
        return points_.size() * sizeof(PagePoint) + steps_.size() * sizeof(Step) + texts_.size() * sizeof(Text) +
               characters_.size();
    }
    // Of all that was drawn in the area of the sheet; nothing when nothing was.
    std::optional<QRectF> bounds() const;

    // Whether wide pens or letters may reach further into the margins than they should: they cannot be cut.
    bool overflows() const { return overflows_; }

    // Any coordinates. width: of the stroke, units; 0 for a thin one. colour: 0xFFRRGGBB.
    void line(OUTPoint from, OUTPoint to, int32_t width, uint32_t colour);
    // Polygons one after the other in `points`, as one even-odd area.
    void area(std::span<const OUTPoint> points, std::span<const int32_t> counts, uint32_t colour);
    void rectangle(const QRectF& rectangle, uint32_t colour);
    // width: of the whole text; height: of a capital.
    void text(OUTPoint baseline, int32_t width, int32_t height, std::string_view bytes, uint32_t colour);

    // Hands everything out again: drawer.stroke(points, width, colour), drawer.area(points, colour), both with a span
    // of PagePoint, and drawer.text(PageText, colour). Strokes have round ends, and two points at least.
    template <class Drawer>
    void drawOn(Drawer& drawer) const;

  private:
    enum class Kind : uint8_t { Stroke, Area, Text };
    struct Step {
        Kind kind;
        uint32_t colour;
        int32_t width;
        std::size_t end;  // behind its points or texts
    };
    struct Text {
        double x, y, cellWidth, height;
        std::size_t begin, length;  // in characters_
    };

    // What a stroke may touch, whose middle may lie so far outside of the area.
    struct Reach {
        int low;  // from (low, low)
        int right;
        int top;  // to (right, top)

        bool holds(OUTPoint point) const {
            return point.x >= low && point.x <= right && point.y >= low && point.y <= top;
        }
    };
    Reach reachOf(int outside) const {
        return {.low = -outside, .right = areaWidth_ + outside, .top = areaHeight_ + outside};
    }
    QRectF kept() const { return QRectF(0.0, 0.0, areaWidth_, areaHeight_).adjusted(-bleed_, -bleed_, bleed_, bleed_); }
    static bool cut(OUTPoint& from, OUTPoint& to, const Reach& reach);
    void addPolygon(std::span<const OUTPoint> points);
    void addCutPolygon(const QPolygonF& polygon);
    void closeArea(std::size_t before, uint32_t colour);
    void addRun(const Text& run, std::string_view bytes, uint32_t colour);
    void addOutline(const Text& cell, unsigned char character, uint32_t colour);
    bool open(Kind kind, int32_t width, uint32_t colour);
    void addPoint(int x, int y, bool begins);
    void include(int x, int y);

    int areaWidth_;
    int areaHeight_;
    int bleed_;   // units around the area that are kept
    Reach thin_;  // of thin strokes, and of areas
    kelsystem::SpooledArray<Step> steps_;
    kelsystem::SpooledArray<PagePoint> points_;
    kelsystem::SpooledArray<Text> texts_;
    std::string characters_;
    bool overflows_ = false;
    OUTPoint lowest_{};  // corners of what was drawn
    OUTPoint highest_{};
};

template <class Drawer>
void Recording::drawOn(Drawer& drawer) const {
    std::size_t point = 0;
    std::size_t text = 0;
    for (const Step& step : steps_.all()) {
        if (step.kind == Kind::Text) {
            for (; text < step.end; ++text) {
                const Text& kept = texts_.all()[text];
                drawer.text(PageText{.x = kept.x,
                                     .y = kept.y,
                                     .cellWidth = kept.cellWidth,
                                     .height = kept.height,
                                     .bytes = std::string_view(characters_).substr(kept.begin, kept.length)},
                            step.colour);
            }
            continue;
        }
        const std::span points = points_.all().subspan(point, step.end - point);
        point = step.end;
        if (step.kind == Kind::Stroke) {
            drawer.stroke(points, step.width, step.colour);
        } else {
            drawer.area(points, step.colour);
        }
    }
}

}  // namespace qrvel
