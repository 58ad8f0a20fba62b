// Areas by the winding rule made even-odd ones, and large ones cut into pieces.
#include "plotter/areas.h"

#include <numbers>
#include <set>

#include "plane_text.h"
#include "rows.h"

namespace {

using namespace plotter;

Ring square(double low, double high) {
    return {{low, low}, {high, low}, {high, high}, {low, high}};
}

Ring reversed(Ring ring) {
    std::ranges::reverse(ring);
    return ring;
}

// A star whose edges cross: every second corner of an odd number is left out.
Ring star(std::size_t corners, double size) {
    Ring ring;
    for (std::size_t i = 0; i < corners; ++i) {
        const double angle = 4 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(corners);
        ring.push_back({size * std::cos(angle), size * std::sin(angle)});
    }
    return ring;
}

// ---- the winding rule ----

struct WindingRow : NamedRow {
    Area area;
    bool changes;
};

// clang-format off
const WindingRow WINDING_ROWS[] = {
    {{"Nothing"},           {},                                                       false},
    {{"Triangle"},          {{{0, 0}, {10, 0}, {5, 5}}},                              false},
    {{"Square"},            {square(0, 10)},                                          false},
    {{"Hole"},              {square(0, 10), reversed(square(3, 7))},                  false},
    {{"NoHole"},            {square(0, 10), square(3, 7)},                            true},
    {{"Overlapping"},       {square(0, 10), square(5, 15)},                           true},
    {{"BackToBack"},        {square(0, 10), {{10, 0}, {20, 0}, {20, 10}, {10, 10}}},  false},
    {{"Twice"},             {square(0, 10), square(0, 10)},                           true},
    {{"ToAndFro"},          {square(0, 10), reversed(square(0, 10))},                 false},
    {{"Bow"},               {{{0, 0}, {10, 10}, {10, 0}, {0, 10}}},                   false},
    {{"Pentagram"},         {star(5, 100)},                                           true},
    {{"FlatRing"},          {square(0, 10), {{0, 5}, {10, 5}, {5, 5}}},               false},
};
// clang-format on

class FlattenWinding : public testing::TestWithParam<WindingRow> {};

TEST_P(FlattenWinding, LeavesAloneWhatMeansTheSame) {
    const Flattened flat = flattenWinding(GetParam().area);
    EXPECT_TRUE(flat.whole);
    EXPECT_EQ(flat.area != GetParam().area, GetParam().changes) << plane_text::of(flat.area);
}

TEST_P(FlattenWinding, HasTheSameInside) {
    const Area flat = flattenWinding(GetParam().area).area;
    plane_text::Random random(3);
    for (int sample = 0; sample < 500; ++sample) {
        const Point p = plane_text::point(random, 30);
        EXPECT_EQ(plane_text::isInside(flat, p, FillRule::EvenOdd),
                  plane_text::isInside(GetParam().area, p, FillRule::Winding))
            << plane_text::of(p);
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, FlattenWinding, testing::ValuesIn(WINDING_ROWS), byRowName);

TEST(FlattenWinding, RandomOnesHaveTheSameInside) {
    plane_text::Random random(4);
    for (int i = 0; i < 200; ++i) {
        // Whole numbers make edges that lie on each other and corners on edges.
        Area area = {plane_text::line(random, 15, 10), plane_text::line(random, 6, 10), star(7, 8)};
        if (i % 2 == 0) {
            for (Ring& ring : area) {
                for (Point& p : ring)
                    p = {std::round(p.x), std::round(p.y)};
            }
        }
        const Area flat = flattenWinding(area).area;
        for (int sample = 0; sample < 100; ++sample) {
            const Point p = plane_text::point(random, 10);
            EXPECT_EQ(plane_text::isInside(flat, p, FillRule::EvenOdd),
                      plane_text::isInside(area, p, FillRule::Winding))
                << i << " " << plane_text::of(p);
        }
    }
}

TEST(FlattenWinding, ACrossOfTwoBarsHasFewCorners) {
    const Area cross = {{{0, 4}, {10, 4}, {10, 6}, {0, 6}}, {{4, 0}, {6, 0}, {6, 10}, {4, 10}}};
    EXPECT_EQ(plane_text::of(flattenWinding(cross).area), "4,0 4,4 6,4 6,0 | 0,4 0,6 10,6 10,4 | 4,6 4,10 6,10 6,6");
}

TEST(FlattenWinding, GivesUpWhenItTakesTooLong) {
    const Area area = {star(101, 1000)};
    const std::size_t needed = flattenWinding(area).steps;
    EXPECT_TRUE(flattenWinding(area, needed).whole);
    const Flattened given = flattenWinding(area, needed - 1);
    EXPECT_FALSE(given.whole);
    EXPECT_EQ(given.area, area);
    EXPECT_LE(given.steps, needed);
}

TEST(FlattenWinding, SurvivesWhatIsNotANumber) {
    const double inf = std::numeric_limits<double>::infinity();
    const Area area = {square(0, 10), square(2, 8), {{inf, 0}, {std::nan(""), 3}, {1, -inf}, {2, 2}}};
    EXPECT_TRUE(plane_text::isInside(flattenWinding(area).area, {5, 5}, FillRule::EvenOdd));
}

// ---- cutting ----

constexpr AreaLimits LIMITS = {100, 10, 0.5};

Ring randomOutline(plane_text::Random& random, std::size_t corners) {
    Ring ring;
    for (std::size_t i = 0; i < corners; ++i) {
        const double angle = 2 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(corners);
        const double size = plane_text::number(random, 300, 1000);
        ring.push_back({size * std::cos(angle), size * std::sin(angle)});
    }
    return ring;
}

Area manySquares(int count) {
    Area area;
    for (int i = 0; i < count; ++i) {
        const int row = i / 20;
        const Point at = {(i % 20) * 47.0 - 500, row * 47.0 - 500};
        area.push_back({at, at + Point{40, 0}, at + Point{40, 40}, at + Point{0, 40}});
    }
    return area;
}

struct CutRow : NamedRow {
    Area area;
};

const CutRow CUT_ROWS[] = {
    {{"Outline"}, {[] {
         plane_text::Random random(5);
         return randomOutline(random, 3000);
     }()}},
    {{"Scribble"}, {[] {
         plane_text::Random random(6);
         return plane_text::line(random, 300, 1000);
     }()}},
    {{"Squares"}, manySquares(400)},
    {{"SquaresInOne"},
     [] {
         Area area = manySquares(300);
         area.push_back({{-900, -900}, {900, -900}, {900, 900}, {-900, 900}});
         return area;
     }()},
    {{"Comb"}, {[] {
         Ring ring;
         for (int i = 0; i < 500; ++i) {
             const double x = i * 3 - 750;
             ring.insert(ring.end(), {{x, -900}, {x, 900}, {x + 2, 900}, {x + 2, -900}});
         }
         return ring;
     }()}},
};

class CutArea : public testing::TestWithParam<CutRow> {
  public:
    CutArea() {
        whole = cutArea(GetParam().area, LIMITS, [this](const Area& piece) { pieces.push_back(piece); });
    }

    bool whole = false;
    std::vector<Area> pieces;
};

TEST_P(CutArea, StaysWithinTheLimits) {
    EXPECT_TRUE(whole);
    EXPECT_GT(pieces.size(), 1U);
    for (const Area& piece : pieces) {
        EXPECT_LE(piece.size(), LIMITS.rings);
        for (const Ring& ring : piece)
            EXPECT_LE(ring.size(), LIMITS.points);
    }
}

TEST_P(CutArea, TogetherThePiecesAreTheArea) {
    plane_text::Random random(7);
    for (int sample = 0; sample < 1000; ++sample) {
        const Point p = plane_text::point(random, 1000);
        const auto holding = std::ranges::count_if(
            pieces, [p](const Area& piece) { return plane_text::isInside(piece, p, FillRule::EvenOdd); });
        EXPECT_EQ(holding, plane_text::isInside(GetParam().area, p, FillRule::EvenOdd) ? 1 : 0) << plane_text::of(p);
    }
}

TEST_P(CutArea, NewCornersAreOnTheGrid) {
    std::set<std::pair<double, double>> corners;
    for (const Ring& ring : GetParam().area) {
        for (const Point p : ring)
            corners.emplace(p.x, p.y);
    }
    const auto isOnGrid = [](double number) { return std::fmod(number, LIMITS.grid) == 0; };
    for (const Area& piece : pieces) {
        for (const Ring& ring : piece) {
            for (const Point p : ring) {
                EXPECT_TRUE(corners.contains({p.x, p.y}) || isOnGrid(p.x) || isOnGrid(p.y)) << plane_text::of(p);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, CutArea, testing::ValuesIn(CUT_ROWS), byRowName);

TEST(CutArea, LeavesAloneWhatFits) {
    Ring ring;
    for (std::size_t i = 0; i < LIMITS.points; ++i)
        ring.push_back({static_cast<double>(i), static_cast<double>(i % 2)});
    const Area fitting(LIMITS.rings, ring);
    std::vector<Area> pieces;
    EXPECT_TRUE(cutArea(fitting, LIMITS, [&](const Area& piece) { pieces.push_back(piece); }));
    ASSERT_EQ(pieces.size(), 1U);
    EXPECT_EQ(pieces[0], fitting);
}

struct HopelessRow : NamedRow {
    Area area;
};

const HopelessRow HOPELESS_ROWS[] = {
    // Smaller than the grid, all of them.
    {{"TinyRings"}, Area(5000, {{0.1, 0.1}, {0.2, 0.1}, {0.2, 0.2}})},
    {{"SameRings"}, Area(5000, {{0, 0}, {1000, 0}, {500, 1000}})},
    {{"TinyScribble"}, {[] {
         plane_text::Random random(8);
         return plane_text::line(random, 20'000, 3);
     }()}},
};

class HopelessCut : public testing::TestWithParam<HopelessRow> {};

TEST_P(HopelessCut, EndsAndSaysSo) {
    std::size_t points = 0;
    const bool whole = cutArea(GetParam().area, LIMITS, [&](const Area& piece) {
        EXPECT_LE(piece.size(), LIMITS.rings);
        for (const Ring& ring : piece) {
            EXPECT_LE(ring.size(), LIMITS.points);
            points += ring.size();
        }
    });
    EXPECT_FALSE(whole);
    EXPECT_GT(points, 0U);
    EXPECT_LT(points, 2'000'000U);
}

INSTANTIATE_TEST_SUITE_P(Rows, HopelessCut, testing::ValuesIn(HOPELESS_ROWS), byRowName);

}  // namespace
