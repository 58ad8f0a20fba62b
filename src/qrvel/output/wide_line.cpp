#include "qrvel/output/wide_line.h"

#include <cmath>

namespace qrvel {

namespace {

struct Range {
    double left = 1.0;  // empty while left > right
    double right = 0.0;

    bool empty() const { return left > right; }
    void include(double from, double to) {
        left = empty() ? from : std::min(left, from);
        right = std::max(right, to);
    }
};

// All points not farther than a radius from a segment. It is convex, so each pixel row cuts it in one range.
class Capsule {
  public:
    Capsule(double x1, double y1, double x2, double y2) : x_(x1), y_(y1), dx_(x2 - x1), dy_(y2 - y1) {
        const double length = std::hypot(dx_, dy_);
        if (length > 0.0) {
            unitX_ = dx_ / length;
            unitY_ = dy_ / length;
            perSquare_ = 1.0 / length / length;
        }
    }

    Range row(double y, double radius) const {
        Range range;
        if (radius < 0.0) return range;
        includeDisc(range, x_, y - y_, radius);
        includeDisc(range, x_ + dx_, y - y_ - dy_, radius);
        includeSide(range, y, unitY_ * radius, -unitX_ * radius);
        includeSide(range, y, -unitY_ * radius, unitX_ * radius);
        return range;
    }

    double distance(double x, double y) const {
        const double along = std::clamp(((x - x_) * dx_ + (y - y_) * dy_) * perSquare_, 0.0, 1.0);
        const double offX = x - x_ - along * dx_;
        const double offY = y - y_ - along * dy_;
        return std::sqrt(offX * offX + offY * offY);
    }

  private:
    static void includeDisc(Range& range, double centre, double height, double radius) {
        // The product keeps its precision where radius and height are large and nearly equal.
        const double square = (radius - height) * (radius + height);
        if (square < 0.0) return;
        const double half = std::sqrt(square);
        range.include(centre - half, centre + half);
    }

    // The long side that runs beside the segment at an offset.
    void includeSide(Range& range, double y, double offsetX, double offsetY) const {
        const double height = y - y_ - offsetY;
        if (dy_ == 0.0 || height * dy_ < 0.0 || std::abs(height) > std::abs(dy_)) return;
        const double x = x_ + offsetX + dx_ * (height / dy_);
        range.include(x, x);
    }

    double x_, y_, dx_, dy_;
    double unitX_ = 0.0, unitY_ = 0.0, perSquare_ = 0.0;
};

struct Span {
    int32_t first;
    int32_t last;
};

// The pixels in a range, cut to those from `from` to `to`.
Span spanOf(const Range& range, int32_t from, int32_t to) {
    return {.first = static_cast<int32_t>(std::clamp(std::ceil(range.left), from + 0.0, to + 1.0)),
            .last = static_cast<int32_t>(std::clamp(std::floor(range.right), from - 1.0, to + 0.0))};
}

struct Brush {
    const PixelArea& area;
    const Capsule& capsule;
    double radius;
    uint32_t colour;

    void smooth(int32_t y, Span columns) const {
        for (int32_t x = columns.first; x <= columns.last; ++x) {
            const double coverage = std::clamp(radius + 0.5 - capsule.distance(x, y), 0.0, 1.0);
            blendPixel(*area.at(x, y), colour, static_cast<uint32_t>(std::lround(coverage * 255.0)));
        }
    }

    void row(int32_t y) const {
        const Range touched = capsule.row(y, radius + 0.5);
        if (touched.empty()) return;
        const Span all = spanOf(touched, 0, area.width - 1);
        if (all.first > all.last) return;
        const Range covered = capsule.row(y, radius - 0.5);
        if (covered.empty()) {
            smooth(y, all);
            return;
        }
        const Span solid = spanOf(covered, all.first, all.last);
        if (solid.first > solid.last) {
            smooth(y, all);
            return;
        }
        smooth(y, {.first = all.first, .last = solid.first - 1});
        std::fill(area.at(solid.first, y), area.at(solid.last, y) + 1, colour);
        smooth(y, {.first = solid.last + 1, .last = all.last});
    }
};

}  // namespace

void drawWideLine(const PixelArea& area, int32_t x1, int32_t y1, int32_t x2, int32_t y2, int32_t width,
                  uint32_t colour) {
    // An even width has its middle between two pixels; so its straight sides fall on pixel borders and stay sharp.
    const double middle = width % 2 == 0 ? 0.5 : 0.0;
    const Capsule capsule(x1 + middle, y1 + middle, x2 + middle, y2 + middle);
    const double radius = width / 2.0;
    const double reach = radius + 0.5 + middle;
    if (std::max(x1, x2) + reach < 0.0 || std::min(x1, x2) - reach > area.width) return;

    const Brush brush{.area = area, .capsule = capsule, .radius = radius, .colour = colour};
    const Range high{.left = std::min(y1, y2) - reach, .right = std::max(y1, y2) + reach};
    const Span rows = spanOf(high, 0, area.height - 1);
    for (int32_t y = rows.first; y <= rows.last; ++y) {
        brush.row(y);
    }
}

}  // namespace qrvel
