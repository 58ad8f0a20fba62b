#include "plotter/survey_sheet.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace plotter {

namespace {

// Beyond so many colours on a page near ones are counted as one.
constexpr std::size_t MOST_EXACT_COLOURS = 4096;

uint8_t coarse(uint8_t part) {
    return static_cast<uint8_t>((part & 0xF8) | part >> 5);
}

}  // namespace

void SurveySheet::count(PenUse& use, PenKey key, double amount) {
    if (use.size() >= MOST_EXACT_COLOURS && !use.contains(key)) {
        key.colour = {coarse(key.colour.red), coarse(key.colour.green), coarse(key.colour.blue)};
    }
    use[key] += amount;
}

void SurveySheet::settle() {
    if (amount_ == 0) return;
    Page& page = pages_.back();
    count(page.ownColours, keyOf(last_, true), amount_);
    count(page.viewerColours, keyOf(last_, false), amount_);
    amount_ = 0;
}

void SurveySheet::use(const Ink& ink, double amount) {
    if (!(ink == last_)) settle();
    last_ = ink;
    amount_ += amount;
    pages_.back().draws = true;
}

void SurveySheet::line(std::span<const Point> points, const Ink& ink) {
    Box extents = pages_.back().extents;
    double way = 1;
    Point last = points.front();
    for (const Point point : points) {
        extents.add(point);
        way += std::abs(point.x - last.x) + std::abs(point.y - last.y);
        last = point;
    }
    pages_.back().extents = extents;
    // A thin line is as wide as a pen.
    constexpr double THIN = 12;
    use(ink, way * std::max(ink.width, THIN));
}

void SurveySheet::area(const Area& rings, const Ink& ink) {
    Box extents = pages_.back().extents;
    double twice = 0;
    for (const Ring& ring : rings) {
        if (ring.empty()) continue;
        Point last = ring.back();
        for (const Point point : ring) {
            extents.add(point);
            twice += last.x * point.y - point.x * last.y;
            last = point;
        }
    }
    pages_.back().extents = extents;
    use(ink, 1 + std::abs(twice) / 2);
}

void SurveySheet::nextPage() {
    settle();
    tooMany_ = tooMany_ || pages_.size() == MOST_PAGES;
    if (!tooMany_) pages_.emplace_back();
}

std::vector<SurveySheet::Page> SurveySheet::takePages() {
    settle();
    return std::move(pages_);
}

}  // namespace plotter
