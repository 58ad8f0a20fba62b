// What is drawn on a page is kept, joined, and cut to the sheet.
#include "qrvel/page/recording.h"

#include <climits>
#include <cmath>
#include <random>

#include "drawn_text.h"
#include "rows.h"

namespace qrvel {
namespace {

// One unit is a millimetre; what is kept reaches two beyond the area, from (-2, -2) to (102, 52).
constexpr SheetLayout SHEET = {.width = 120.0,
                               .height = 70.0,
                               .margin = 10.0,
                               .bleed = 2.0,
                               .unit = 1.0,
                               .areaWidth = 100,
                               .areaHeight = 50,
                               .fit = false};
constexpr uint32_t BLACK_INK = 0xFF000000U;
constexpr uint32_t RED_INK = 0xFFFF0000U;

using Points = std::vector<OUTPoint>;

// ---- lines ----------------------------------------------------------------------------------------------------------

struct Line {
    OUTPoint from;
    OUTPoint to;
    int32_t width = 0;
    uint32_t colour = BLACK_INK;
};

std::string linesText(const std::vector<Line>& lines) {
    Recording recording(SHEET);
    for (const Line& line : lines) {
        recording.line(line.from, line.to, line.width, line.colour);
    }
    return drawnText(recording);
}

struct LinesRow : NamedRow {
    std::vector<Line> lines;
    const char* drawn;
};

// clang-format off
const LinesRow JOIN_ROWS[] = {
    {"GoOnWhereTheyEnded", {{{0, 0}, {9, 0}}, {{9, 0}, {9, 9}}, {{9, 9}, {0, 0}}}, "stroke 0 000000: 0,0 9,0 9,9 0,0\n"},
    {"ElsewhereBegin",     {{{0, 0}, {9, 0}}, {{9, 1}, {9, 9}}},   "stroke 0 000000: 0,0 9,0 | 9,1 9,9\n"},
    {"FromTheFirstBegin",  {{{0, 0}, {9, 0}}, {{0, 0}, {9, 9}}},   "stroke 0 000000: 0,0 9,0 | 0,0 9,9\n"},
    {"Backward",           {{{0, 0}, {9, 0}}, {{9, 0}, {0, 0}}},   "stroke 0 000000: 0,0 9,0 0,0\n"},
    {"OtherColour",        {{{0, 0}, {9, 0}}, {{9, 0}, {9, 9}, 0, RED_INK}, {{9, 9}, {0, 9}}},
                           "stroke 0 000000: 0,0 9,0\nstroke 0 FF0000: 9,0 9,9\nstroke 0 000000: 9,9 0,9\n"},
    {"OtherWidth",         {{{0, 0}, {9, 0}}, {{9, 0}, {9, 9}, 5}, {{9, 9}, {0, 9}, 5}},
                           "stroke 0 000000: 0,0 9,0\nstroke 5 000000: 9,0 9,9 0,9\n"},
    {"Dot",                {{{5, 5}, {5, 5}}},                     "stroke 0 000000: 5,5 5,5\n"},
    {"WideDot",            {{{5, 5}, {5, 5}, 9}},                  "stroke 9 000000: 5,5 5,5\n"},
    {"DotAtTheEnd",        {{{0, 0}, {9, 0}}, {{9, 0}, {9, 0}}},   "stroke 0 000000: 0,0 9,0 9,0\n"},
    {"AreaCorners",        {{{0, 0}, {100, 50}}},                  "stroke 0 000000: 0,0 100,50\n"},
    {"KeptCorners",        {{{-2, -2}, {102, 52}}},                "stroke 0 000000: -2,-2 102,52\n"},
};

const LinesRow CUT_ROWS[] = {
    {"AtTheLeft",          {{{-22, 10}, {18, 50}}},                "stroke 0 000000: -2,30 18,50\n"},
    {"AtTheRight",         {{{92, 10}, {112, 30}}},                "stroke 0 000000: 92,10 102,20\n"},
    {"Below",              {{{10, -12}, {30, 8}}},                 "stroke 0 000000: 20,-2 30,8\n"},
    {"Above",              {{{10, 42}, {30, 62}}},                 "stroke 0 000000: 10,42 20,52\n"},
    {"AcrossTheWidth",     {{{-900, 7}, {900, 7}}},                "stroke 0 000000: -2,7 102,7\n"},
    {"AcrossTheHeight",    {{{7, 900}, {7, -900}}},                "stroke 0 000000: 7,52 7,-2\n"},
    {"AcrossACorner",      {{{-12, 0}, {8, -20}}},                 ""},
    {"OverACorner",        {{{-12, 12}, {12, -12}}},               "stroke 0 000000: -2,2 2,-2\n"},
    {"AtACorner",          {{{-12, 8}, {8, -12}}},                 "stroke 0 000000: -2,-2 -2,-2\n"},
    {"AlongABorder",       {{{-2, -99}, {-2, 99}}},                "stroke 0 000000: -2,-2 -2,52\n"},
    {"BesideABorder",      {{{-3, -99}, {-3, 99}}},                ""},
    {"LeftOfAll",          {{{-9, 9}, {-5, 20}}},                  ""},
    {"RightOfAll",         {{{103, 9}, {900, 20}}},                ""},
    {"AboveAll",           {{{-900, 53}, {900, 53}}},              ""},
    {"BelowAll",           {{{-900, -3}, {900, -3}}},              ""},
    {"DotOutside",         {{{-7, 9}, {-7, 9}, 9}},                ""},
    {"DotHalfOutside",     {{{-3, 9}, {-3, 9}, 9}},                "stroke 9 000000: -3,9 -3,9\n"},
    {"WideFromOutside",    {{{-30, 9}, {-30, 20}, 80}},            "stroke 80 000000: -30,9 -30,20\n"},
    {"WideTooFarOutside",  {{{-43, 9}, {-43, 20}, 80}},            ""},
    {"WideThroughAll",     {{{-900, 9}, {900, 9}, 80}},            "stroke 80 000000: -42,9 142,9\n"},
    {"OutAndBackBegins",   {{{90, 20}, {110, 20}}, {{110, 20}, {110, 30}}, {{110, 30}, {90, 30}}},
                           "stroke 0 000000: 90,20 102,20 | 102,30 90,30\n"},
    {"OutAndBackSameWay",  {{{90, 20}, {110, 20}}, {{110, 20}, {90, 20}}}, "stroke 0 000000: 90,20 102,20 90,20\n"},
    {"WildFlat",           {{{INT_MIN, 7}, {INT_MAX, 7}}},         "stroke 0 000000: -2,7 102,7\n"},
    {"WildSteep",          {{{7, INT_MAX}, {7, INT_MIN}}},         "stroke 0 000000: 7,52 7,-2\n"},
    {"WildRising",         {{{INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}}}, "stroke 0 000000: -2,-2 52,52\n"},
    {"WildFalling",        {{{INT_MIN, INT_MAX}, {INT_MAX, INT_MIN}}}, "stroke 0 000000: -2,1 1,-2\n"},
    {"WildDot",            {{{INT_MIN, INT_MAX}, {INT_MIN, INT_MAX}, INT_MAX}}, ""},
    {"WildFromInside",     {{{50, 25}, {INT_MAX, 25}}},            "stroke 0 000000: 50,25 102,25\n"},
    {"WildWidth",          {{{0, 0}, {9, 0}, INT_MAX}},            "stroke 2147483647 000000: 0,0 9,0\n"},
};
// clang-format on

class Lines : public testing::TestWithParam<LinesRow> {};

TEST_P(Lines, AreKept) {
    EXPECT_EQ(linesText(GetParam().lines), GetParam().drawn);
}

INSTANTIATE_TEST_SUITE_P(Joined, Lines, testing::ValuesIn(JOIN_ROWS), byRowName);
INSTANTIATE_TEST_SUITE_P(Cut, Lines, testing::ValuesIn(CUT_ROWS), byRowName);

TEST(Lines, AreOnlyJoinedWhereNothingIsInBetween) {
    Recording recording(SHEET);
    recording.line({0, 0}, {9, 0}, 0, BLACK_INK);
    recording.text({20, 20}, 10, 5, "a", BLACK_INK);
    recording.line({9, 0}, {9, 9}, 0, BLACK_INK);
    recording.rectangle(QRectF(9, 9, 1, 1), BLACK_INK);
    recording.line({9, 9}, {0, 9}, 0, BLACK_INK);
    const std::string drawn = drawnText(recording);
    EXPECT_NE(drawn.find("stroke 0 000000: 0,0 9,0\ntext"), std::string::npos) << drawn;
    EXPECT_NE(drawn.find("\nstroke 0 000000: 9,0 9,9\narea"), std::string::npos) << drawn;
    EXPECT_TRUE(drawn.ends_with("\nstroke 0 000000: 9,9 0,9\n")) << drawn;
}

// How far a point lies from the endless line through two others.
long double distance(PagePoint point, OUTPoint from, OUTPoint to) {
    const long double wide = 0.0L + to.x - from.x;
    const long double high = 0.0L + to.y - from.y;
    const long double across = wide * (0.0L + point.y() - from.y) - high * (0.0L + point.x() - from.x);
    return std::abs(across) / std::hypot(wide, high);
}

struct StrokeEnds {
    std::vector<PagePoint> points;
    void stroke(std::span<const PagePoint> kept, int32_t /*width*/, uint32_t /*colour*/) {
        points.assign(kept.begin(), kept.end());
    }
    void area(std::span<const PagePoint> /*kept*/, uint32_t /*colour*/) {}
    void text(const PageText& /*kept*/, uint32_t /*colour*/) {}
};

TEST(Lines, StayOnTheirWayHoweverWild) {
    std::mt19937 random(7);
    int seen = 0;
    for (const int32_t reach : {200, 100000, INT_MAX}) {
        std::uniform_int_distribution<int32_t> any(reach == INT_MAX ? INT_MIN : -reach, reach);
        std::uniform_int_distribution<int32_t> x(0, SHEET.areaWidth), y(0, SHEET.areaHeight);
        for (int round = 0; round < 3000; ++round) {
            const OUTPoint from = {.x = any(random), .y = any(random)};
            // Every second one ends on the sheet, so that something is left of it.
            const OUTPoint to = round % 2 == 0 ? OUTPoint{.x = any(random), .y = any(random)}
                                               : OUTPoint{.x = x(random), .y = y(random)};
            Recording recording(SHEET);
            recording.line(from, to, 0, BLACK_INK);
            StrokeEnds ends;
            recording.drawOn(ends);
            ASSERT_TRUE(round % 2 == 0 || !ends.points.empty()) << from.x << ',' << from.y;
            for (const PagePoint point : ends.points) {
                ASSERT_LE(distance(point, from, to), 1.0L) << from.x << ',' << from.y << ' ' << to.x << ',' << to.y;
                ASSERT_TRUE(point.x() >= -2 && point.x() <= 102 && point.y() >= -2 && point.y() <= 52);
                ++seen;
            }
        }
    }
    EXPECT_GT(seen, 9000);
}

// ---- areas ----------------------------------------------------------------------------------------------------------

// Which squares of the sheet, in the area and the two units around it, are inked: '#' for those whose middle lies
// inside of an odd number of polygons.
class SquareDrawer {
  public:
    static constexpr int LOW = -2, RIGHT = 102, TOP = 52;

    void stroke(std::span<const PagePoint> /*points*/, int32_t /*width*/, uint32_t /*colour*/) {}
    void text(const PageText& /*text*/, uint32_t /*colour*/) {}
    void area(std::span<const PagePoint> points, uint32_t /*colour*/) {
        ++areas;
        std::vector<std::vector<std::pair<double, double>>> polygons;
        for (const PagePoint point : points) {
            if (point.begins()) polygons.emplace_back();
            polygons.back().emplace_back(point.x(), point.y());
        }
        fill(polygons);
    }
    void fill(const std::vector<std::vector<std::pair<double, double>>>& polygons) {
        squares.clear();
        for (int y = LOW; y < TOP; ++y) {
            for (int x = LOW; x < RIGHT; ++x) {
                squares += isInside(polygons, x + 0.5, y + 0.5) ? '#' : '.';
            }
            squares += '\n';
        }
    }

    int areas = 0;
    std::string squares;

  private:
    static bool isInside(const std::vector<std::vector<std::pair<double, double>>>& polygons, double x, double y) {
        bool inside = false;
        for (const auto& polygon : polygons) {
            for (std::size_t i = 0; i < polygon.size(); ++i) {
                auto [x1, y1] = polygon[i];
                auto [x2, y2] = polygon[(i + 1) % polygon.size()];
                if ((y1 > y) != (y2 > y) && x > x1 + (y - y1) * (x2 - x1) / (y2 - y1)) inside = !inside;
            }
        }
        return inside;
    }
};

std::string keptSquares(const std::vector<Points>& polygons) {
    Recording recording(SHEET);
    Points points;
    std::vector<int32_t> counts;
    for (const Points& polygon : polygons) {
        points.insert(points.end(), polygon.begin(), polygon.end());
        counts.push_back(static_cast<int32_t>(polygon.size()));
    }
    recording.area(points, counts, RED_INK);
    SquareDrawer drawer;
    drawer.fill({});
    recording.drawOn(drawer);
    EXPECT_LE(drawer.areas, 1);
    return drawer.squares;
}

std::string trueSquares(const std::vector<Points>& polygons) {
    std::vector<std::vector<std::pair<double, double>>> plain;
    for (const Points& polygon : polygons) {
        plain.emplace_back();
        for (const OUTPoint point : polygon) {
            plain.back().emplace_back(point.x, point.y);
        }
    }
    SquareDrawer drawer;
    drawer.fill(plain);
    return drawer.squares;
}

Points box(int32_t left, int32_t low, int32_t right, int32_t top) {
    return {{left, low}, {right, low}, {right, top}, {left, top}};
}

struct AreaRow : NamedRow {
    std::vector<Points> polygons;
};

// clang-format off
const AreaRow AREA_ROWS[] = {
    {"Inside",           {box(10, 10, 20, 20)}},
    {"WithAHole",        {box(10, 10, 40, 40), box(20, 20, 30, 30)}},
    {"TwoApart",         {box(10, 10, 20, 20), box(50, 10, 60, 20)}},
    {"PastTheLeft",      {box(-50, 10, 20, 20)}},
    {"PastTheRight",     {box(90, 10, 200, 20)}},
    {"PastTheBottom",    {box(10, -90, 20, 20)}},
    {"PastTheTop",       {box(10, 40, 20, 90)}},
    {"AroundAll",        {box(-50, -50, 200, 200)}},
    {"HolePastTheSheet", {box(-50, -50, 200, 200), box(50, 20, 300, 30)}},
    {"OneInOneOut",      {box(10, 10, 20, 20), box(210, 10, 220, 20), box(30, 10, 40, 20)}},
    {"AllOutside",       {box(210, 10, 220, 20), box(-220, 10, -210, 20)}},
    {"Wild",             {box(INT_MIN, INT_MIN, INT_MAX, INT_MAX)}},
    {"WildWithAHole",    {box(INT_MIN, INT_MIN, INT_MAX, INT_MAX), box(10, 10, 40, 40)}},
    {"WildHalf",         {box(INT_MIN, INT_MIN, 50, INT_MAX)}},
    {"WildWedge",        {{{50, 25}, {INT_MAX, 25}, {INT_MAX, INT_MAX}, {50, INT_MAX}}}},
    {"NoPolygon",        {}},
    {"EmptyPolygons",    {{}, {}, box(10, 10, 20, 20), {}}},
    {"OnePoint",         {{{10, 10}}}},
    {"TwoPoints",        {{{10, 10}, {20, 20}}}},
};
// clang-format on

class Areas : public testing::TestWithParam<AreaRow> {};

TEST_P(Areas, CoverTheSameOnTheSheet) {
    EXPECT_EQ(keptSquares(GetParam().polygons), trueSquares(GetParam().polygons));
}

INSTANTIATE_TEST_SUITE_P(Rows, Areas, testing::ValuesIn(AREA_ROWS), byRowName);

// With sides along the axes no rounding moves an edge, so every square must agree.
TEST(Areas, CoverTheSameHoweverWild) {
    std::mt19937 random(3);
    for (const int32_t reach : {60, 400, INT_MAX}) {
        std::uniform_int_distribution<int32_t> any(reach == INT_MAX ? INT_MIN : -reach, reach);
        std::uniform_int_distribution<int32_t> near(-20, 120);
        for (int round = 0; round < 60; ++round) {
            std::vector<Points> polygons(1 + random() % 3);
            for (Points& polygon : polygons) {
                const std::size_t corners = 2 + random() % 4;
                OUTPoint at = {.x = near(random), .y = near(random)};
                const OUTPoint first = at;
                for (std::size_t i = 0; i < corners; ++i) {
                    polygon.push_back(at);
                    at.x = random() % 2 == 0 ? near(random) : any(random);
                    polygon.push_back(at);
                    at.y = random() % 2 == 0 ? near(random) : any(random);
                }
                polygon.push_back(at);
                polygon.push_back({.x = first.x, .y = at.y});
            }
            ASSERT_EQ(keptSquares(polygons), trueSquares(polygons)) << "reach " << reach << ", round " << round;
        }
    }
}

TEST(Areas, InsideKeepTheirPoints) {
    Recording recording(SHEET);
    const OUTPoint points[] = {{0, 0}, {9, 0}, {9, 9}, {20, 20}, {30, 20}, {30, 30}, {20, 30}};
    const int32_t counts[] = {3, 4};
    recording.area(points, counts, RED_INK);
    recording.area(std::span(points).first(3), std::span(counts).first(1), RED_INK);
    EXPECT_EQ(drawnText(recording), "area FF0000: 0,0 9,0 9,9 | 20,20 30,20 30,30 20,30\narea FF0000: 0,0 9,0 9,9\n");
}

TEST(Rectangles, AreCut) {
    const auto squares = [](const QRectF& rectangle) {
        Recording recording(SHEET);
        recording.rectangle(rectangle, RED_INK);
        SquareDrawer drawer;
        drawer.fill({});
        recording.drawOn(drawer);
        return drawer.squares;
    };
    EXPECT_EQ(squares({10, 10, 30, 5}), trueSquares({box(10, 10, 40, 15)}));
    EXPECT_EQ(squares({-10, -10, 30, 30}), trueSquares({box(-10, -10, 20, 20)}));
    EXPECT_EQ(squares({-4294967296.0, -4294967296.0, 8589934592.0, 8589934592.0}),
              trueSquares({box(-9, -9, 999, 999)}));
    EXPECT_EQ(squares({200, 0, 30, 30}), trueSquares({}));
}

// ---- texts ----------------------------------------------------------------------------------------------------------

struct TextRow : NamedRow {
    OUTPoint baseline;
    int32_t width;
    int32_t height;
    const char* bytes;
    const char* drawn;
};

// clang-format off
constexpr TextRow TEXT_ROWS[] = {
    {"Inside",           {10, 20},   30,  5, "abc",   "text FF0000: 10,20 cell 10 high 5 \"abc\"\n"},
    {"CutAtTheLeft",     {-25, 20},  50,  5, "abcde", "text FF0000: -5,20 cell 10 high 5 \"cde\"\n"},
    {"CutAtTheRight",    {85, 20},   50,  5, "abcde", "text FF0000: 85,20 cell 10 high 5 \"ab\"\n"},
    {"CutAtBoth",        {-25, 20}, 150,  5, "abcde", "text FF0000: -25,20 cell 30 high 5 \"abcde\"\n"},
    {"CutAtBothEnds",    {-65, 20}, 250,  5, "abcde", "text FF0000: -15,20 cell 50 high 5 \"bcd\"\n"},
    {"LeftOfAll",        {-80, 20},  50,  5, "abcde", ""},
    {"RightOfAll",       {103, 20},  50,  5, "abcde", ""},
    {"AboveAll",         {10, 70},   30,  5, "abc",   ""},
    {"BelowAll",         {10, -20},  30,  5, "abc",   ""},
    {"Mirrored",         {40, 20},  -30,  5, "abc",   "text FF0000: 40,20 cell -10 high 5 \"abc\"\n"},
    {"MirroredLeft",     {15, 20},  -50,  5, "abcde", "text FF0000: 15,20 cell -10 high 5 \"ab\"\n"},
    {"MirroredRight",    {125, 20}, -50,  5, "abcde", "text FF0000: 105,20 cell -10 high 5 \"cde\"\n"},
    {"SpacesAlone",      {10, 20},   30,  5, "   ",   ""},
    {"SpacesBetween",    {10, 20},   30,  5, "a c",   "text FF0000: 10,20 cell 10 high 5 \"a c\"\n"},
    {"NoBytes",          {10, 20},   30,  5, "",      ""},
    {"NoWidth",          {10, 20},    0,  5, "abc",   ""},
    {"NoHeight",         {10, 20},   30,  0, "abc",   ""},
    {"NegativeHeight",   {10, 20},   30, -5, "abc",   ""},
    {"NarrowerThanBytes",{10, 20},    1,  5, "abcd",  "text FF0000: 10,20 cell 0.25 high 5 \"abcd\"\n"},
    {"WildPlace",        {INT_MIN, INT_MAX}, 30, 5, "abc", ""},
    {"WildStart",        {INT_MIN, 20}, INT_MAX, 5, "abc", ""},
    {"Umlauts",          {10, 20},   20,  5, "\xE4\xDF", "text FF0000: 10,20 cell 10 high 5 \"\xE4\xDF\"\n"},
};
// clang-format on

class Texts : public testing::TestWithParam<TextRow> {};

TEST_P(Texts, AreKeptAsFarAsTheyCanBeSeen) {
    const TextRow& row = GetParam();
    Recording recording(SHEET);
    recording.text(row.baseline, row.width, row.height, row.bytes, RED_INK);
    EXPECT_EQ(drawnText(recording), row.drawn);
}

INSTANTIATE_TEST_SUITE_P(Rows, Texts, testing::ValuesIn(TEXT_ROWS), byRowName);

TEST(Texts, LargerThanTheSheetAreAreas) {
    for (const int32_t width : {101 * 2, -101 * 2, INT_MAX, INT_MIN}) {
        Recording recording(SHEET);
        recording.text({.x = 50, .y = 0}, width, 50, "HH", RED_INK);
        const std::string drawn = drawnText(recording);
        EXPECT_EQ(drawn.find("text"), std::string::npos) << width;
        EXPECT_TRUE(drawn.empty() || QRectF(0, 0, 100, 50).contains(*recording.bounds())) << width;
    }
    Recording high(SHEET);
    high.text({.x = 40, .y = -20}, 20, INT_MAX, "H", RED_INK);
    EXPECT_TRUE(drawnText(high).starts_with("area FF0000: ")) << drawnText(high);
}

// An H as wide as 30 sheets, whose left leg ends in the middle of the sheet.
TEST(Texts, LargerThanTheSheetCoverWhatTheyCover) {
    Recording recording(SHEET);
    recording.text({.x = -777, .y = -1000}, 3000, 3000, "H", RED_INK);
    SquareDrawer drawer;
    recording.drawOn(drawer);
    EXPECT_EQ(drawer.areas, 1);
    const std::string row = drawer.squares.substr(0, drawer.squares.find('\n'));
    EXPECT_TRUE(row.starts_with("####################")) << row;
    EXPECT_TRUE(row.ends_with("....................")) << row;
}

// ---- all together ---------------------------------------------------------------------------------------------------

TEST(Bounds, AreOfWhatWasDrawnInTheArea) {
    Recording recording(SHEET);
    EXPECT_FALSE(recording.bounds().has_value());
    EXPECT_TRUE(recording.isEmpty());
    recording.line({10, 20}, {30, 25}, 0, BLACK_INK);
    EXPECT_EQ(recording.bounds(), QRectF(10, 20, 20, 5));
    recording.rectangle(QRectF(40, 5, 10, 10), BLACK_INK);
    EXPECT_EQ(recording.bounds(), QRectF(10, 5, 40, 20));
    recording.text({60, 30}, 20, 5, "ab", BLACK_INK);
    EXPECT_EQ(recording.bounds(), QRectF(10, 5, 70, 30));
    recording.line({-500, 25}, {500, 25}, 0, BLACK_INK);
    EXPECT_EQ(recording.bounds(), QRectF(0, 5, 100, 30));
    EXPECT_FALSE(recording.isEmpty());
}

TEST(Bounds, OfWhatIsOutsideAreNothing) {
    Recording recording(SHEET);
    recording.line({500, 25}, {600, 25}, 9, BLACK_INK);
    recording.rectangle(QRectF(500, 25, 30, 30), BLACK_INK);
    recording.text({500, 25}, 20, 5, "ab", BLACK_INK);
    EXPECT_TRUE(recording.isEmpty());
    EXPECT_FALSE(recording.bounds().has_value());
}

TEST(Bounds, OfWhatLiesBesideTheAreaStayInIt) {
    Recording recording(SHEET);
    recording.line({-2, -2}, {-1, 52}, 0, BLACK_INK);
    EXPECT_EQ(recording.bounds(), QRectF(0, 0, 0, 50));
}

TEST(Clearing, LeavesNothing) {
    Recording recording(SHEET);
    recording.line({10, 20}, {30, 25}, 0, BLACK_INK);
    recording.rectangle(QRectF(40, 5, 10, 10), BLACK_INK);
    recording.text({60, 30}, 20, 5, "ab", BLACK_INK);
    recording.clear();
    EXPECT_TRUE(recording.isEmpty());
    EXPECT_FALSE(recording.bounds().has_value());
    EXPECT_EQ(drawnText(recording), "");
    recording.line({30, 25}, {40, 25}, 0, BLACK_INK);
    EXPECT_EQ(drawnText(recording), "stroke 0 000000: 30,25 40,25\n");
    EXPECT_EQ(recording.bounds(), QRectF(30, 25, 10, 0));
}

// 15 bits are enough for the largest area and what is kept around it.
TEST(Points, ReachTheFarCornerOfTheFinestSheet) {
    const SheetLayout sheet = layOut({.width = 429.6, .height = 429.6, .fit = false}, false);
    ASSERT_EQ(sheet.areaWidth, 16384);
    Recording recording(sheet);
    recording.line({INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}, 0, BLACK_INK);
    EXPECT_EQ(drawnText(recording), "stroke 0 000000: -80,-80 16464,16464\n");
}

}  // namespace
}  // namespace qrvel
