#include "qrvel/page/recording.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "qrvel/output/label_face.h"
#include "qrvel/output/polygon_cut.h"

namespace qrvel {

namespace {

// Takes off what lies beyond one border of the kept rectangle; false when nothing is left. Both distances are measured
// from the border, positive inside.
bool cutAtBorder(double fromInside, double toInside, double& begin, double& end) {
    if (fromInside < 0.0 && toInside < 0.0) return false;
    const double where = fromInside / (fromInside - toInside);
    if (fromInside < 0.0) begin = std::max(begin, where);
    if (toInside < 0.0) end = std::min(end, where);
    return begin <= end;
}

}  // namespace

Recording::Recording(const SheetLayout& sheet)
    : areaWidth_(sheet.areaWidth),
      areaHeight_(sheet.areaHeight),
      bleed_(static_cast<int>(sheet.bleed / sheet.unit)),
      thin_(reachOf(bleed_)) {
    clear();
}

void Recording::clear() {
    steps_.clear();
    points_.clear();
    texts_.clear();
    characters_.clear();
    overflows_ = false;
    constexpr int MOST = std::numeric_limits<int>::max();
    lowest_ = {.x = MOST, .y = MOST};
    highest_ = {.x = -MOST, .y = -MOST};
}

std::optional<QRectF> Recording::bounds() const {
    const QRectF drawn(QPointF(lowest_.x, lowest_.y), QPointF(highest_.x, highest_.y));
    const QRectF area(0.0, 0.0, areaWidth_, areaHeight_);
    if (isEmpty()) return std::nullopt;
    return QRectF(QPointF(std::clamp(drawn.left(), area.left(), area.right()),
                          std::clamp(drawn.top(), area.top(), area.bottom())),
                  QPointF(std::clamp(drawn.right(), area.left(), area.right()),
                          std::clamp(drawn.bottom(), area.top(), area.bottom())));
}

void Recording::include(int x, int y) {
    lowest_ = {.x = std::min(lowest_.x, x), .y = std::min(lowest_.y, y)};
    highest_ = {.x = std::max(highest_.x, x), .y = std::max(highest_.y, y)};
}

void Recording::addPoint(int x, int y, bool begins) {
    points_.push_back(PagePoint(x, y, begins));
    include(x, y);
}

// Goes on with a step of the same look; true when it had to begin another one.
bool Recording::open(Kind kind, int32_t width, uint32_t colour) {
    const auto looksLike = [&](const Step& step) {
        return step.kind == kind && step.colour == colour && step.width == width;
    };
    if (kind != Kind::Area && !steps_.empty() && looksLike(steps_.back())) return false;
    steps_.push_back({.kind = kind, .colour = colour, .width = width, .end = 0});
    return true;
}

// ---- strokes --------------------------------------------------------------------------------------------------------

bool Recording::cut(OUTPoint& from, OUTPoint& to, const Reach& reach) {
    const QPointF start(from.x, from.y);
    const QPointF stop(to.x, to.y);
    double begin = 0.0;
    double end = 1.0;
    const bool left = cutAtBorder(start.x() - reach.low, stop.x() - reach.low, begin, end) &&
                      cutAtBorder(reach.right - start.x(), reach.right - stop.x(), begin, end) &&
                      cutAtBorder(start.y() - reach.low, stop.y() - reach.low, begin, end) &&
                      cutAtBorder(reach.top - start.y(), reach.top - stop.y(), begin, end);
    if (!left) return false;
    const auto at = [&](double part) {
        const QPoint point = (start + part * (stop - start)).toPoint();
        return OUTPoint{.x = std::clamp(point.x(), reach.low, reach.right),
                        .y = std::clamp(point.y(), reach.low, reach.top)};
    };
    if (begin > 0.0) from = at(begin);
    if (end < 1.0) to = at(end);
    return true;
}

void Recording::line(OUTPoint from, OUTPoint to, int32_t width, uint32_t colour) {
    const Reach reach = width == 0 ? thin_ : reachOf(std::min(bleed_ + width / 2, PagePoint::MOST_OUTSIDE));
    if ((!reach.holds(from) || !reach.holds(to)) && !cut(from, to, reach)) return;
    const bool opened = open(Kind::Stroke, width, colour);
    const bool goesOn = !opened && points_.back().x() == from.x && points_.back().y() == from.y;
    if (opened && width / 2 > bleed_) overflows_ = true;
    if (!goesOn) addPoint(from.x, from.y, true);
    addPoint(to.x, to.y, false);
    steps_.back().end = points_.size();
}

// ---- areas ----------------------------------------------------------------------------------------------------------

void Recording::addCutPolygon(const QPolygonF& polygon) {
    const QPolygonF cut = cutToRectangle(polygon, kept());
    bool begins = true;
    for (const QPointF point : cut) {
        addPoint(static_cast<int>(std::lround(point.x())), static_cast<int>(std::lround(point.y())), begins);
        begins = false;
    }
}

void Recording::addPolygon(std::span<const OUTPoint> points) {
    if (!std::all_of(points.begin(), points.end(), [this](OUTPoint point) { return thin_.holds(point); })) {
        QPolygonF polygon;
        for (const OUTPoint point : points) {
            polygon += QPointF(point.x, point.y);
        }
        addCutPolygon(polygon);
        return;
    }
    bool begins = true;
    for (const OUTPoint point : points) {
        addPoint(point.x, point.y, begins);
        begins = false;
    }
}

// What was added behind the points before is one.
void Recording::closeArea(std::size_t before, uint32_t colour) {
    if (points_.size() == before) return;
    open(Kind::Area, 0, colour);
    steps_.back().end = points_.size();
}

void Recording::area(std::span<const OUTPoint> points, std::span<const int32_t> counts, uint32_t colour) {
    const std::size_t before = points_.size();
    for (const int32_t count : counts) {
        addPolygon(points.first(static_cast<std::size_t>(count)));
        points = points.subspan(static_cast<std::size_t>(count));
    }
    closeArea(before, colour);
}

void Recording::rectangle(const QRectF& rectangle, uint32_t colour) {
    if (rectangle.isEmpty()) return;
    const std::size_t before = points_.size();
    addCutPolygon(QPolygonF(rectangle));
    closeArea(before, colour);
}

// ---- texts ----------------------------------------------------------------------------------------------------------

// A character larger than the sheet is but an area, cut like all others.
void Recording::addOutline(const Text& cell, unsigned char character, uint32_t colour) {
    const std::size_t before = points_.size();
    const QTransform place(cell.cellWidth, 0.0, 0.0, -cell.height, cell.x, cell.y);
    for (const QPolygonF& outline : labelOutline(character).toSubpathPolygons(place)) {
        addCutPolygon(outline);
    }
    closeArea(before, colour);
}

void Recording::addRun(const Text& run, std::string_view bytes, uint32_t colour) {
    if (std::all_of(bytes.begin(), bytes.end(), [](char c) { return c == ' '; })) return;
    Text placed = run;
    placed.begin = characters_.size();
    placed.length = bytes.size();
    characters_ += bytes;
    texts_.push_back(placed);
    open(Kind::Text, 0, colour);
    steps_.back().end = texts_.size();
    const auto low = static_cast<int>(std::floor(run.y));
    const double end = run.x + run.cellWidth * static_cast<double>(bytes.size());
    const QRectF reach(QPointF(run.x, run.y - run.height), QPointF(end, run.y + 2.0 * run.height));
    if (!kept().contains(reach.normalized())) overflows_ = true;
    include(static_cast<int>(std::floor(std::min(run.x, end))), low);
    include(static_cast<int>(std::ceil(std::max(run.x, end))), low + static_cast<int>(std::ceil(run.height)));
}

void Recording::text(OUTPoint baseline, int32_t width, int32_t height, std::string_view bytes, uint32_t colour) {
    if (bytes.empty() || width == 0 || height <= 0) return;
    Text run = {.x = 0.0 + baseline.x,
                .y = 0.0 + baseline.y,
                .cellWidth = width / static_cast<double>(bytes.size()),
                .height = 0.0 + height,
                .begin = 0,
                .length = 0};
    const auto cell = [&](std::size_t i) {
        Text one = run;
        one.x += static_cast<double>(i) * run.cellWidth;
        return one;
    };
    const auto isVisible = [&](std::size_t i) {
        const QRectF reach(cell(i).x, run.y - run.height, run.cellWidth, 3.0 * run.height);
        return reach.normalized().intersects(kept());
    };
    std::size_t first = 0;
    while (first < bytes.size() && !isVisible(first))
        ++first;
    std::size_t end = first;
    while (end < bytes.size() && isVisible(end))
        ++end;

    if (std::abs(run.cellWidth) <= areaWidth_ && height <= areaHeight_) {
        addRun(cell(first), bytes.substr(first, end - first), colour);
        return;
    }
    for (; first < end; ++first) {
        addOutline(cell(first), static_cast<unsigned char>(bytes[first]), colour);
    }
}

}  // namespace qrvel
