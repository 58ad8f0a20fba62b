// Lines and areas cut off at a rectangle.
#include "plotter/clipping.h"

#include "plane_text.h"
#include "rows.h"

namespace {

using namespace plotter;

constexpr Box BOX = {{0, 0}, {100, 50}};
constexpr double HUGE_NUMBER = 1e308;
constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

struct SegmentRow : NamedRow {
    Point from, to;
    const char* inside;  // "": nothing
};

// clang-format off
constexpr SegmentRow SEGMENT_ROWS[] = {
    {{"Inside"},           {10, 10},                    {90, 40},                    "10,10 90,40"},
    {{"Across"},           {-100, 25},                  {200, 25},                   "0,25 100,25"},
    {{"Out"},              {50, 25},                    {50, 100},                   "50,25 50,50"},
    {{"In"},               {50, 100},                   {50, 25},                    "50,50 50,25"},
    {{"Slanting"},         {-50, -25},                  {150, 75},                   "0,0 100,50"},
    {{"OnTheBorder"},      {-10, 50},                   {110, 50},                   "0,50 100,50"},
    {{"AlongTheBorder"},   {0, 0},                      {0, 50},                     "0,0 0,50"},
    {{"AtACorner"},        {-10, 10},                   {10, -10},                   "0,0 0,0"},
    {{"PastACorner"},      {-10, 5},                    {5, -10},                    ""},
    {{"Beside"},           {-10, 0},                    {-10, 50},                   ""},
    {{"DotInside"},        {1, 1},                      {1, 1},                      "1,1 1,1"},
    {{"DotOnTheCorner"},   {100, 50},                   {100, 50},                   "100,50 100,50"},
    {{"DotOutside"},       {101, 50},                   {101, 50},                   ""},
    {{"Huge"},             {-HUGE_NUMBER, 25},          {HUGE_NUMBER, 25},           "0,25 100,25"},
    {{"HugeSlanting"},     {-HUGE_NUMBER, -HUGE_NUMBER}, {HUGE_NUMBER, HUGE_NUMBER}, "0,0 50,50"},
    {{"NotANumber"},       {NOT_A_NUMBER, 25},          {50, 25},                    ""},
    {{"Infinite"},         {-INF, NOT_A_NUMBER},        {INF, 25},                   ""},
};
// clang-format on

class ClipSegment : public testing::TestWithParam<SegmentRow> {};

TEST_P(ClipSegment, LeavesWhatIsInside) {
    std::array<Point, 2> ends = {GetParam().from, GetParam().to};
    const bool any = clipSegment(ends[0], ends[1], BOX);
    EXPECT_EQ(any ? plane_text::of(ends) : "", GetParam().inside);
}

INSTANTIATE_TEST_SUITE_P(Rows, ClipSegment, testing::ValuesIn(SEGMENT_ROWS), byRowName);

TEST(ClipSegment, RandomOnesStayOnTheirLine) {
    plane_text::Random random(1);
    int cut = 0;
    for (int i = 0; i < 2000; ++i) {
        const Point a = plane_text::point(random, 150);
        const Point b = plane_text::point(random, 150);
        Point from = a;
        Point to = b;
        if (!clipSegment(from, to, BOX)) continue;
        ++cut;
        EXPECT_TRUE(BOX.holds(from) && BOX.holds(to));
        EXPECT_NEAR(length(from - a) + length(to - from) + length(b - to), length(b - a), 1e-9);
        EXPECT_EQ(BOX.holds(a), from == a);
        EXPECT_EQ(BOX.holds(b), to == b);
    }
    EXPECT_GT(cut, 200);
}

struct LineRow : NamedRow {
    Line points;
    const char* inside;
};

// clang-format off
const LineRow LINE_ROWS[] = {
    {{"Inside"},          {{1, 1}, {2, 1}, {2, 2}},                            "1,1 2,1 2,2"},
    {{"Nothing"},         {},                                                  ""},
    {{"DotInside"},       {{1, 1}},                                            "1,1"},
    {{"DotOutside"},      {{-1, 1}},                                           ""},
    {{"OutAndIn"},        {{90, 10}, {110, 10}, {110, 20}, {90, 20}},          "90,10 100,10 | 100,20 90,20"},
    {{"OutAndBack"},      {{90, 10}, {110, 10}, {90, 10}},                     "90,10 100,10 90,10"},
    {{"Around"},          {{-9, -9}, {109, -9}, {109, 59}, {-9, 59}},          ""},
    {{"TwiceAcross"},     {{-9, 10}, {109, 10}, {109, 20}, {-9, 20}},          "0,10 100,10 | 100,20 0,20"},
    {{"TouchesTheTop"},   {{40, 60}, {50, 50}, {60, 60}},                      ""},
    {{"EndsOnTheBorder"}, {{50, 25}, {50, 50}, {60, 60}},                      "50,25 50,50"},
    {{"BeginsOnIt"},      {{60, 60}, {50, 50}, {50, 25}},                      "50,50 50,25"},
    {{"AlongTheBorder"},  {{-5, 0}, {50, 0}, {105, 0}},                        "0,0 50,0 100,0"},
    {{"NotANumber"},      {{1, 1}, {2, 1}, {NOT_A_NUMBER, 2}, {3, 1}, {4, 1}}, "1,1 2,1 | 3,1 4,1"},
};
// clang-format on

class ClipLine : public testing::TestWithParam<LineRow> {};

TEST_P(ClipLine, LeavesPiecesThatAreLong) {
    plane_text::Pieces pieces;
    clipLine(GetParam().points, BOX, [&](std::span<const Point> piece) { pieces.add(piece); });
    EXPECT_EQ(pieces.text(), GetParam().inside);
}

INSTANTIATE_TEST_SUITE_P(Rows, ClipLine, testing::ValuesIn(LINE_ROWS), byRowName);

TEST(ClipLine, AnEmptyBoxHoldsNothing) {
    plane_text::Pieces pieces;
    const Line line = {{0, 0}, {10, 10}};
    clipLine(line, Box(), [&](std::span<const Point> piece) { pieces.add(piece); });
    EXPECT_EQ(pieces.text(), "");
}

struct AreaRow : NamedRow {
    Area area;
    const char* inside;
};

// clang-format off
const AreaRow AREA_ROWS[] = {
    {{"Inside"},    {{{10, 10}, {20, 10}, {20, 20}}},                   "10,10 20,10 20,20"},
    {{"Outside"},   {{{110, 10}, {120, 10}, {120, 20}}},                ""},
    {{"Beside"},    {{{100, 10}, {120, 10}, {120, 20}, {100, 20}}},     ""},
    {{"All"},       {{{-9, -9}, {109, -9}, {109, 59}, {-9, 59}}},       "0,0 100,0 100,50 0,50"},
    {{"OneOfTwo"},  {{{1, 1}, {2, 1}, {2, 2}}, {{200, 1}, {201, 1}, {201, 2}}}, "1,1 2,1 2,2"},
    {{"Corner"},    {{{90, 40}, {110, 40}, {110, 60}, {90, 60}}},       "90,40 100,40 100,50 90,50"},
};
// clang-format on

class ClipArea : public testing::TestWithParam<AreaRow> {};

// Which corner comes first is left open.
TEST_P(ClipArea, LeavesWhatIsInside) {
    Area area = clipArea(GetParam().area, BOX);
    for (Ring& ring : area) {
        const auto first = std::ranges::min_element(ring, {}, [](Point p) { return std::pair(p.y, p.x); });
        std::ranges::rotate(ring, first);
    }
    EXPECT_EQ(plane_text::of(area), GetParam().inside);
}

INSTANTIATE_TEST_SUITE_P(Rows, ClipArea, testing::ValuesIn(AREA_ROWS), byRowName);

TEST(ClipArea, RandomOnesHaveTheSameInsideByBothRules) {
    plane_text::Random random(2);
    for (int i = 0; i < 100; ++i) {
        const Area area = {plane_text::line(random, 12, 150), plane_text::line(random, 5, 150)};
        const Area inside = clipArea(area, BOX);
        for (int sample = 0; sample < 50; ++sample) {
            const Point p = plane_text::point(random, 150);
            for (const FillRule rule : {FillRule::EvenOdd, FillRule::Winding}) {
                EXPECT_EQ(plane_text::isInside(inside, p, rule), BOX.holds(p) && plane_text::isInside(area, p, rule));
            }
        }
    }
}

}  // namespace
