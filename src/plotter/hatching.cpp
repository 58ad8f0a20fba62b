#include "plotter/hatching.h"

#include <array>
#include <numbers>
#include <utility>

namespace plotter {

namespace {

// Shorter pieces, and shorter gaps between two of them, come from rounding; plotter units.
constexpr double SHORTEST_PIECE = 1e-6;
// Beyond, a double does not hold every line's number.
constexpr double LAST_LINE = 0x1p52;
// Plotter units: lines closer together are none, and corners further away are none. Far from what any drawing has, and
// near enough that nothing overflows.
constexpr double SMALLEST_PERIOD = 1e-3;
constexpr double FARTHEST_CORNER = 1e15;

bool isNear(Point p) {
    return isWithin(p, FARTHEST_CORNER);
}

// Directions are exact along the axes, or a line along a border would be inside or not by chance.
Point direction(double degrees) {
    const double turns = std::fmod(degrees, 360) / 90;
    if (turns == std::floor(turns)) {
        constexpr std::array<Point, 4> AXES = {Point{1, 0}, Point{0, 1}, Point{-1, 0}, Point{0, -1}};
        return AXES[static_cast<std::size_t>(static_cast<int>(turns) + 4) % 4];
    }
    const double angle = degrees * std::numbers::pi / 180;
    return {std::cos(angle), std::sin(angle)};
}

// Smallest whole number not below; one that is missed by rounding alone counts.
double roundedUp(double number) {
    const double nearest = std::round(number);
    return std::abs(number - nearest) <= 1e-9 * std::max(1.0, std::abs(number)) ? nearest : std::ceil(number);
}

// The lines' own coordinates: along them, and across, upwards or to the right.
class HatchFrame {
  public:
    explicit HatchFrame(const HatchLines& lines) : anchor_(lines.anchor), along_(direction(lines.angle)) {
        if (along_.x < 0 || (along_.x == 0 && along_.y > 0)) along_ = along_ * -1;
        for (const double gap : lines.gaps) {
            if (!(gap > 0)) continue;
            offsets_.push_back(period_);
            period_ += gap;
        }
    }

    bool isValid() const {
        return period_ >= SMALLEST_PERIOD && std::isfinite(period_) && std::isfinite(length(along_)) && isNear(anchor_);
    }

    Point inward(Point p) const {
        const Point q = p - anchor_;
        return {q.x * along_.x + q.y * along_.y, q.y * along_.x - q.x * along_.y};
    }
    Point outward(Point q) const {
        return {anchor_.x + q.x * along_.x - q.y * along_.y, anchor_.y + q.x * along_.y + q.y * along_.x};
    }
    // The first line at this height or above it; beyond LAST_LINE there are none.
    double firstFrom(double height) const {
        double first = std::numeric_limits<double>::infinity();
        for (std::size_t i = 0; i < offsets_.size(); ++i) {
            const double period = roundedUp((height - offsets_[i]) / period_);
            first = std::min(first, period * inPeriod() + static_cast<double>(i));
        }
        return first;
    }
    double heightOf(double line) const {
        const double period = std::floor(line / inPeriod());
        return period * period_ + offsets_[static_cast<std::size_t>(line - period * inPeriod())];
    }

  private:
    double inPeriod() const { return static_cast<double>(offsets_.size()); }

    Point anchor_;
    Point along_;
    std::vector<double> offsets_;
    double period_ = 0;
};

// An edge of the area and the lines that cross it: from first on, before end. Both come from the corners alone, so the
// edges of a ring fit together whatever is lost in rounding.
struct HatchEdge {
    double first = 0, end = 0;
    Point low, high;  // in the frame
    int direction = 0;

    double at(double height) const {
        const double share = (height - low.y) / (high.y - low.y);
        return low.x + (high.x - low.x) * std::clamp(share, 0.0, 1.0);
    }
};

struct LineRange {
    double first, end;
};

// The lines that may be seen, all of them without a box.
LineRange seenLines(const HatchFrame& frame, const std::optional<Box>& seen) {
    if (!seen) return {-LAST_LINE, LAST_LINE};
    if (seen->empty()) return {0, 0};
    LineRange range = {LAST_LINE, -LAST_LINE};
    for (const Point corner :
         {seen->low, seen->high, Point{seen->low.x, seen->high.y}, Point{seen->high.x, seen->low.y}}) {
        const double line = frame.firstFrom(frame.inward(corner).y);
        range = {std::min(range.first, line - 1), std::max(range.end, line + 1)};
    }
    return range;
}

void addEdges(const Ring& ring, const HatchFrame& frame, const LineRange& range, std::vector<HatchEdge>& edges) {
    const auto last = std::find_if(ring.rbegin(), ring.rend(), isNear);
    if (last == ring.rend()) return;
    Point from = frame.inward(*last);
    double fromLine = frame.firstFrom(from.y);
    for (const Point p : ring) {
        if (!isNear(p)) continue;
        const Point to = frame.inward(p);
        const double toLine = frame.firstFrom(to.y);
        HatchEdge edge = {fromLine, toLine, from, to, 1};
        if (toLine < fromLine) edge = {toLine, fromLine, to, from, -1};
        edge.first = std::max(edge.first, range.first);
        edge.end = std::min(edge.end, range.end);
        if (edge.first < edge.end) edges.push_back(edge);
        from = to;
        fromLine = toLine;
    }
}

std::vector<HatchEdge> hatchEdges(const Area& area, const HatchFrame& frame, const LineRange& range) {
    std::vector<HatchEdge> edges;
    for (const Ring& ring : area) {
        addEdges(ring, frame, range, edges);
    }
    std::ranges::sort(edges, {}, &HatchEdge::first);
    return edges;
}

// So few that they can be drawn, each with its place in the drawing's budget.
bool areBounded(const std::vector<HatchEdge>& edges, Budget& pieces) {
    LineRange range = {LAST_LINE, -LAST_LINE};
    double crossings = 0;
    for (const HatchEdge& edge : edges) {
        range = {std::min(range.first, edge.first), std::max(range.end, edge.end)};
        crossings += edge.end - edge.first;
    }
    if (edges.empty()) return true;
    if (range.first <= -LAST_LINE || range.end >= LAST_LINE) return false;
    return range.end - range.first <= static_cast<double>(MOST_HATCH_LINES) && pieces.spend(crossings / 2);
}

struct Crossing {
    double at;
    int direction;
};

// The parts of one line that are inside, joined where they meet.
void insideOf(std::vector<Crossing>& crossings, FillRule rule, std::vector<std::pair<double, double>>& parts) {
    parts.clear();
    std::ranges::sort(crossings, {}, &Crossing::at);
    int winding = 0;
    double begin = 0;
    for (const Crossing& crossing : crossings) {
        const bool was = winding != 0;
        winding = rule == FillRule::EvenOdd ? 1 - winding : winding + crossing.direction;
        if (!was) begin = crossing.at;
        if (winding != 0) continue;
        if (!parts.empty() && begin - parts.back().second <= SHORTEST_PIECE) {
            parts.back().second = crossing.at;
        } else {
            parts.emplace_back(begin, crossing.at);
        }
    }
}

// From line to line, with the edges that each crosses.
class HatchSweep {
  public:
    HatchSweep(std::vector<HatchEdge> edges, FillRule rule, const HatchFrame& frame, const HatchTaker& taker)
        : edges_(std::move(edges)), rule_(rule), frame_(frame), taker_(taker) {}

    void run() {
        double line = 0;
        while (next_ < edges_.size() || !crossed_.empty()) {
            if (crossed_.empty()) line = edges_[next_].first;
            for (; next_ < edges_.size() && edges_[next_].first <= line; ++next_)
                crossed_.push_back(&edges_[next_]);
            draw(line);
            ++line;
            std::erase_if(crossed_, [line](const HatchEdge* edge) { return edge->end <= line; });
        }
    }

  private:
    void draw(double line) {
        const double height = frame_.heightOf(line);
        crossings_.clear();
        for (const HatchEdge* edge : crossed_)
            crossings_.push_back({edge->at(height), edge->direction});
        insideOf(crossings_, rule_, parts_);
        for (const auto& [begin, end] : parts_) {
            if (end - begin <= SHORTEST_PIECE) continue;
            const std::array<Point, 2> piece = {frame_.outward({begin, height}), frame_.outward({end, height})};
            taker_(piece, static_cast<int64_t>(line));
        }
    }

    std::vector<HatchEdge> edges_;  // by their first lines
    FillRule rule_;
    const HatchFrame& frame_;
    const HatchTaker& taker_;
    std::size_t next_ = 0;
    std::vector<const HatchEdge*> crossed_;
    std::vector<Crossing> crossings_;
    std::vector<std::pair<double, double>> parts_;
};

}  // namespace

bool hatchArea(const Area& area, FillRule rule, const HatchLines& lines, const std::optional<Box>& seen, Budget& pieces,
               const HatchTaker& taker) {
    const HatchFrame frame(lines);
    if (!frame.isValid()) return false;
    std::vector<HatchEdge> edges = hatchEdges(area, frame, seenLines(frame, seen));
    if (!areBounded(edges, pieces)) return false;
    HatchSweep(std::move(edges), rule, frame, taker).run();
    return true;
}

}  // namespace plotter
