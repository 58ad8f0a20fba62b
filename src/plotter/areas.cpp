#include "plotter/areas.h"

#include <cstdint>
#include <optional>
#include <utility>

#include "plotter/clipping.h"

namespace plotter {

namespace {

// Two coordinates that differ by less than this share of the area's size are the same: crossings are known no better.
constexpr double SAME = 1e-9;

bool isFinite(Point p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
}

// ---- the winding rule ----

struct Edge {
    Point low, high;
    int direction = 0;  // 1: the ring goes up along it, -1: down

    double at(double y) const {
        if (y <= low.y) return low.x;
        if (y >= high.y) return high.x;
        return low.x + (high.x - low.x) * ((y - low.y) / (high.y - low.y));
    }
};

std::vector<Edge> edgesOf(const Area& area) {
    std::vector<Edge> edges;
    for (const Ring& ring : area) {
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const Point a = ring[i];
            const Point b = ring[i + 1 < ring.size() ? i + 1 : 0];
            if (a.y < b.y) edges.push_back({a, b, 1});
            if (a.y > b.y) edges.push_back({b, a, -1});
        }
    }
    std::ranges::sort(edges, {}, [](const Edge& edge) { return edge.low.y; });
    return edges;
}

// An edge in a band: where it comes in below and goes out above.
struct Passing {
    const Edge* edge;
    double low, high;
};

Passing pass(const Edge& edge, double low, double high) {
    return {&edge, edge.at(low), edge.at(high)};
}

// A part of the inside in the making: everything between a line of edges on the left and one on the right.
struct Strip {
    Line left, right;
    const Edge* leftEdge = nullptr;
    const Edge* rightEdge = nullptr;
};

void lengthen(Line& side, const Edge*& sideEdge, const Edge* edge, Point end) {
    if (sideEdge == edge) {
        side.back() = end;
    } else {
        side.push_back(end);
    }
    sideEdge = edge;
}

// Goes upwards from band to band; in each no two edges cross, so they have an order.
class WindingSweep {
  public:
    WindingSweep(std::vector<Edge> edges, double same, std::size_t mostSteps)
        : edges_(std::move(edges)), same_(same), mostSteps_(mostSteps) {}

    // False when there are too many steps.
    bool run() {
        const std::vector<double> heights = heightsOf();
        for (std::size_t i = 1; i < heights.size() && steps_ <= mostSteps_; ++i) {
            band(heights[i - 1], heights[i]);
        }
        close(strips_);
        return steps_ <= mostSteps_;
    }

    std::size_t steps() const { return steps_; }
    // Whether the even-odd rule says something else.
    bool differs() const { return differs_; }
    Area takeRings() { return std::move(rings_); }

  private:
    std::vector<double> heightsOf() const {
        std::vector<double> heights;
        heights.reserve(edges_.size() * 2);
        for (const Edge& edge : edges_) {
            heights.insert(heights.end(), {edge.low.y, edge.high.y});
        }
        std::ranges::sort(heights);
        heights.erase(std::unique(heights.begin(), heights.end()), heights.end());
        return heights;
    }

    void band(double low, double high) {
        std::erase_if(passing_, [low](const Passing& passing) { return passing.edge->high.y <= low; });
        for (; next_ < edges_.size() && edges_[next_].low.y <= low; ++next_) {
            passing_.push_back(pass(edges_[next_], low, high));
        }
        steps_ += passing_.size() + 1;
        for (Passing& passing : passing_) {
            passing = pass(*passing.edge, low, high);
        }
        std::ranges::sort(passing_, [](const Passing& a, const Passing& b) {
            return a.low != b.low ? a.low < b.low : a.high < b.high;
        });
        const std::vector<double> cuts = crossings(low, high);
        double from = low;
        for (std::size_t i = 0; i < cuts.size() && steps_ <= mostSteps_; ++i) {
            partOfBand(from, cuts[i]);
            from = cuts[i];
        }
        if (steps_ <= mostSteps_) partOfBand(from, high);
    }

    // Heights where edges cross inside of the band: sorting by where they go out exchanges exactly the ones that do.
    std::vector<double> crossings(double low, double high) {
        std::vector<double> cuts;
        std::vector<Passing> order = passing_;
        for (std::size_t i = 1; i < order.size(); ++i) {
            for (std::size_t j = i; j > 0 && order[j - 1].high > order[j].high; --j) {
                const double before = order[j].low - order[j - 1].low;
                const double after = order[j - 1].high - order[j].high;
                const double height = low + (high - low) * (before / (before + after));
                if (height > low && height < high) cuts.push_back(height);
                std::swap(order[j - 1], order[j]);
                if (++steps_ > mostSteps_) return cuts;
            }
        }
        std::ranges::sort(cuts);
        cuts.erase(std::unique(cuts.begin(), cuts.end()), cuts.end());
        return cuts;
    }

    void partOfBand(double low, double high) {
        part_.clear();
        for (const Passing& passing : passing_) {
            part_.push_back(pass(*passing.edge, low, high));
        }
        steps_ += part_.size();
        std::ranges::sort(part_, {}, [](const Passing& passing) { return passing.low + passing.high; });
        int winding = 0;
        const Passing* left = nullptr;
        std::vector<Strip> before = std::move(strips_);
        strips_.clear();
        std::size_t candidate = 0;
        for (std::size_t i = 0; i < part_.size(); ++i) {
            if (winding == 0) left = &part_[i];
            winding += part_[i].edge->direction;
            noteRule(winding, i);
            if (winding == 0) inside(*left, part_[i], low, high, before, candidate);
        }
        close(before);
    }

    void noteRule(int winding, std::size_t i) {
        if (winding == 0 || winding % 2 != 0 || i + 1 >= part_.size()) return;
        const double width = part_[i + 1].low + part_[i + 1].high - part_[i].low - part_[i].high;
        differs_ = differs_ || width > same_;
    }

    bool areSame(double a, double b) const { return std::abs(a - b) <= same_; }

    // Everything from left to right is inside: more of a strip, or a new one.
    void inside(const Passing& left, const Passing& right, double low, double high, std::vector<Strip>& before,
                std::size_t& candidate) {
        if (right.low - left.low <= same_ && right.high - left.high <= same_) return;
        while (candidate < before.size() && before[candidate].left.back().x < left.low - same_)
            ++candidate;
        if (candidate < before.size() && areSame(before[candidate].left.back().x, left.low) &&
            areSame(before[candidate].right.back().x, right.low)) {
            strips_.push_back(std::exchange(before[candidate++], {}));
        } else {
            strips_.push_back({{{left.low, low}}, {{right.low, low}}, nullptr, nullptr});
        }
        Strip& strip = strips_.back();
        lengthen(strip.left, strip.leftEdge, left.edge, {left.high, high});
        lengthen(strip.right, strip.rightEdge, right.edge, {right.high, high});
    }

    void close(std::vector<Strip>& strips) {
        for (Strip& strip : strips) {
            if (strip.left.empty()) continue;
            Ring ring = std::move(strip.left);
            ring.insert(ring.end(), strip.right.rbegin(), strip.right.rend());
            ring.erase(std::unique(ring.begin(), ring.end()), ring.end());
            if (ring.size() >= 3) rings_.push_back(std::move(ring));
        }
        strips.clear();
    }

    std::vector<Edge> edges_;  // by their lower ends
    double same_;
    std::size_t mostSteps_;
    std::size_t next_ = 0;  // edge that has not begun
    std::size_t steps_ = 0;
    bool differs_ = false;
    std::vector<Passing> passing_, part_;
    std::vector<Strip> strips_;  // that reach up to here
    Area rings_;
};

bool hasOneMeaning(const Area& area) {
    return area.empty() || (area.size() == 1 && area.front().size() <= 3);
}

// ---- cutting ----

// How often an area is halved: a grid of 2^20 in each direction has no smaller parts.
constexpr int MOST_HALVINGS = 40;
// Points that halving may go through, for each of the area. A plain outline of a million goes through each ten times; a
// scribble crosses the cuts more often than it has points, and every one of them makes more.
constexpr std::size_t MOST_LOOKS_AT_A_POINT = 20;
constexpr std::size_t MOST_LOOKS_ANYWAY = 100'000;

struct CutPart {
    Area area;
    int halvings = 0;
};

bool fits(const Area& area, const AreaLimits& limits) {
    return area.size() <= limits.rings &&
           std::ranges::all_of(area, [&limits](const Ring& ring) { return ring.size() <= limits.points; });
}

std::size_t edgesAcross(const Area& area, const Side& side) {
    std::size_t count = 0;
    for (const Ring& ring : area) {
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const Point next = ring[i + 1 < ring.size() ? i + 1 : 0];
            if ((ring[i].*side.coordinate < side.limit) != (next.*side.coordinate < side.limit)) ++count;
        }
    }
    return count;
}

double middle(const Area& area, double Point::*coordinate) {
    std::vector<double> values;
    values.reserve(pointsOf(area));
    for (const Ring& ring : area) {
        std::ranges::transform(ring, std::back_inserter(values), [coordinate](Point p) { return p.*coordinate; });
    }
    const auto median = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, median);
    return *median;
}

// A line of the grid that has half of the corners on either side; none when the area is no wider than the grid.
std::optional<Side> halving(const Area& area, const Box& box, double Point::*coordinate, double grid) {
    const double centre = box.low.*coordinate + (box.high.*coordinate - box.low.*coordinate) / 2;
    for (const double wanted : {middle(area, coordinate), centre}) {
        const double limit = std::round(wanted / grid) * grid;
        if (limit > box.low.*coordinate && limit < box.high.*coordinate) return Side{coordinate, limit, true};
    }
    return std::nullopt;
}

// The better one of both directions.
std::optional<Side> chooseCut(const Area& area, double grid) {
    const Box box = boxOf(area);
    const std::optional<Side> x = halving(area, box, &Point::x, grid);
    const std::optional<Side> y = halving(area, box, &Point::y, grid);
    if (!x || !y) return x ? x : y;
    return edgesAcross(area, *x) <= edgesAcross(area, *y) ? x : y;
}

Area onSide(const Area& area, const Side& side) {
    Area kept;
    for (const Ring& ring : area) {
        Ring part = clipRing(ring, side);
        if (!part.empty()) kept.push_back(std::move(part));
    }
    return kept;
}

// So many of the rings, and of their points, as are allowed.
Area thinned(Area area, const AreaLimits& limits) {
    std::ranges::stable_sort(area, std::ranges::greater(), &Ring::size);
    if (area.size() > limits.rings) area.resize(limits.rings);
    for (Ring& ring : area) {
        const std::size_t stride = (ring.size() + limits.points - 1) / limits.points;
        std::size_t kept = 0;
        for (std::size_t i = 0; i < ring.size(); i += stride)
            ring[kept++] = ring[i];
        ring.resize(kept);
    }
    return area;
}

Area withoutNonsense(const Area& area) {
    Area kept;
    for (const Ring& ring : area) {
        Ring& copy = kept.emplace_back();
        std::ranges::copy_if(ring, std::back_inserter(copy), isFinite);
        if (copy.size() < 3) kept.pop_back();
    }
    return kept;
}

}  // namespace

Flattened flattenWinding(const Area& area, std::size_t mostSteps) {
    if (hasOneMeaning(area)) return {area};
    if (pointsOf(area) > mostSteps) return {area, 0, false};
    const Area clean = withoutNonsense(area);
    const Box box = boxOf(clean);
    WindingSweep sweep(edgesOf(clean), std::max(box.width(), box.height()) * SAME, mostSteps);
    const bool whole = sweep.run();
    const bool changes = whole && sweep.differs();
    return {changes ? sweep.takeRings() : area, sweep.steps(), whole};
}

bool cutArea(const Area& area, const AreaLimits& limits, const AreaTaker& taker) {
    if (fits(area, limits)) {
        taker(area);
        return true;
    }
    bool whole = true;
    std::vector<CutPart> parts;
    parts.push_back({withoutNonsense(area)});
    std::size_t left = pointsOf(parts.front().area) * MOST_LOOKS_AT_A_POINT + MOST_LOOKS_ANYWAY;
    while (!parts.empty()) {
        const CutPart part = std::move(parts.back());
        parts.pop_back();
        if (fits(part.area, limits)) {
            if (!part.area.empty()) taker(part.area);
            continue;
        }
        const std::size_t points = pointsOf(part.area);
        const std::optional<Side> side = chooseCut(part.area, limits.grid);
        if (!side || part.halvings >= MOST_HALVINGS || points > left) {
            whole = false;
            taker(thinned(part.area, limits));
            continue;
        }
        left -= points;
        parts.push_back({onSide(part.area, {side->coordinate, side->limit, false}), part.halvings + 1});
        parts.push_back({onSide(part.area, *side), part.halvings + 1});
    }
    return whole;
}

}  // namespace plotter
