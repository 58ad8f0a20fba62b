// Fill types, and what comes on the paper of an area.
#include "plotter/fills.h"

#include "plotted.h"
#include "plotter/instructions.h"
#include "plotter/line_types.h"
#include "rows.h"

namespace {

using namespace plotter;

struct Step {
    Procedure procedure;
    std::vector<double> numbers;
};

Step ft(std::vector<double> numbers) {
    return {fillType, std::move(numbers)};
}
Step ac(std::vector<double> numbers) {
    return {anchorCorner, std::move(numbers)};
}
Step uf(std::vector<double> numbers) {
    return {userFill, std::move(numbers)};
}
Step lt(std::vector<double> numbers) {
    return {lineType, std::move(numbers)};
}
Step pt(std::vector<double> numbers) {
    return {penThickness, std::move(numbers)};
}

Area rectangle(Point low, Point high) {
    return {{low, {high.x, low.y}, high, {low.x, high.y}}};
}

// P1 and P2 are 5000 from each other.
void setCorners(Plotted& plot) {
    plot.machine.state.coordinates.p1 = {0, 0};
    plot.machine.state.coordinates.p2 = {3000, 4000};
}

struct FillRow : NamedRow {
    std::vector<Step> steps;
    Box box;
    const char* drawn;
};

constexpr Box WIDE = {{1000, 1000}, {1500, 1450}};
constexpr Box SMALL = {{0, 0}, {100, 100}};

#define LINES_0 \
    "1000,1000 1500,1000 | 1000,1100 1500,1100 | 1000,1200 1500,1200 | 1000,1300 1500,1300 | 1000,1400 1500,1400"
#define LINES_90 \
    "1050,1450 1050,1000 | 1150,1450 1150,1000 | 1250,1450 1250,1000 | 1350,1450 1350,1000 | 1450,1450 1450,1000"
#define SOLID "[0,0 100,0 100,100 0,100]"

// clang-format off
const FillRow FILL_ROWS[] = {
    {{"Solid"},            {},                                                SMALL, SOLID},
    {{"OneWay"},           {ft({3,50}), ft({2})},                             SMALL, SOLID},
    {{"Parallel"},         {ft({3,100,0})},                                   WIDE,  LINES_0},
    {{"Anchored"},         {ft({3,100,90}), ac({1050,1050})},                 WIDE,  LINES_90},
    {{"AnchoredBack"},     {ft({3,50,0}), ac({7,7}), ac({})},                 SMALL, "0,0 100,0 | 0,50 100,50"},
    {{"HalfAnAnchor"},     {ft({3,50,0}), ac({7})},                           SMALL, "0,0 100,0 | 0,50 100,50"},
    {{"LeftBorderIsIn"},   {ft({3,50,90})},                                   SMALL, "0,100 0,0 | 50,100 50,0"},
    {{"DefaultSpacing"},   {ft({3})},                                         SMALL, "0,0 100,0 | 0,50 100,50"},
    {{"SpacingZero"},      {ft({3,20}), ft({3,0})},                           SMALL, "0,0 100,0 | 0,50 100,50"},
    {{"SpacingBelowZero"}, {ft({3,50}), ft({4,-1})},                          SMALL, "0,0 100,0 | 0,50 100,50"},
    {{"AngleAlone"},       {ft({3,50}), ft({3,0,180})},                       SMALL, "0,0 100,0 | 0,50 100,50"},
    {{"Slanting"},         {ft({3,35.355339059327376,45})},                   SMALL, "50,0 100,50 | 0,0 100,100 | 0,50 50,100"},
    {{"Crossed"},          {ft({4,50})},                                      SMALL,
     "0,0 100,0 | 0,50 100,50 | 0,100 0,0 | 50,100 50,0"},
    {{"OptionsAreKept"},   {ft({3,50,0}), ft({1}), ft({3})},                  SMALL, "0,0 100,0 | 0,50 100,50"},
    {{"OptionsOfEach"},    {ft({3,40}), ft({4,50}), ft({3})},                 SMALL, "0,0 100,0 | 0,40 100,40 | 0,80 100,80"},
    {{"OptionsForgotten"}, {ft({3,40}), ft({}), ft({3})},                     SMALL, "0,0 100,0 | 0,50 100,50"},
    {{"UnknownType"},      {ft({3,50}), ft({6}), ft({12}), ft({-1}), ft({1e300})}, SMALL, "0,0 100,0 | 0,50 100,50"},
    {{"User"},             {uf({10,30}), ft({5})},                            SMALL,
     "0,0 100,0 | 0,10 100,10 | 0,40 100,40 | 0,50 100,50 | 0,80 100,80 | 0,90 100,90"},
    {{"UserAngle"},        {uf({50}), ft({5,90})},                            SMALL, "0,100 0,0 | 50,100 50,0"},
    {{"UserWithout"},      {ft({5})},                                         SMALL, "0,0 100,0 | 0,50 100,50"},
    {{"UserBelowZero"},    {uf({50}), uf({9,-9}), ft({5})},                   SMALL, "0,0 100,0 | 0,50 100,50"},
    {{"Dashed"},           {lt({2,1,1}), ft({3,50})},                         SMALL,
     "0,0 20,0 | 40,0 60,0 | 80,0 100,0 | 20,50 40,50 | 60,50 80,50"},
    {{"FinerThanThePen"},  {pt({0.3}), ft({3,12})},                           SMALL, SOLID},
    {{"CoarserThanThePen"}, {pt({0.3}), ft({3,50})},                          SMALL, "0,0 100,0 | 0,50 100,50"},
    {{"Predefined"},       {ft({21,2}), ac({10,0})},                          SMALL, "10,100 10,0 | 64.187,100 64.187,0"},
    {{"PredefinedGrid"},   {ft({21,5}), ac({60,60})},                         SMALL,
     "0,5.813 100,5.813 | 0,60 100,60 | 5.813,100 5.813,0 | 60,100 60,0"},
    {{"PredefinedRoom"},   {ft({21,1}), ac({0,-10})},                         {{0, 0}, {40, 40}}, "[0,0 40,0 40,40 0,40]"},
};
// clang-format on

class FilledArea : public testing::TestWithParam<FillRow> {};

TEST_P(FilledArea, IsDrawn) {
    Plotted plot;
    setCorners(plot);
    for (const Step& step : GetParam().steps)
        plot.run(step.procedure, step.numbers);
    plot.machine.drawArea(rectangle(GetParam().box.low, GetParam().box.high), FillRule::EvenOdd);
    EXPECT_EQ(plot.text(), GetParam().drawn);
    EXPECT_EQ(plot.bounds(), "");
}

INSTANTIATE_TEST_SUITE_P(Rows, FilledArea, testing::ValuesIn(FILL_ROWS), byRowName);

TEST(FilledArea, TakesSpacingsAlongTheUsersXAxis) {
    Plotted plot;
    setCorners(plot);
    plot.machine.state.coordinates.scaling = {Scaling::Type::Anisotropic, 100, 0, 0, 100};
    plot.run(fillType, {3, 1});
    plot.run(anchorCorner, {99, 1});
    plot.machine.drawArea(rectangle({0, 0}, {10, 50}), FillRule::EvenOdd);
    EXPECT_EQ(plot.text(), "0,10 10,10 | 0,40 10,40");
}

TEST(FilledArea, IsLeftOutWhereNobodySeesIt) {
    Plotted plot;
    setCorners(plot);
    plot.run(fillType, {3, 10});
    plot.machine.state.coordinates.window = Box{{0, 20}, {50, 40}};
    plot.machine.drawArea(rectangle({0, -1e9}, {100, 1e9}), FillRule::EvenOdd);
    EXPECT_EQ(plot.text(), "0,20 50,20 | 0,30 50,30 | 0,40 50,40");
    EXPECT_EQ(plot.bounds(), "");
}

TEST(FilledArea, FollowsItsRule) {
    const Area twice = {rectangle({0, 0}, {90, 90})[0], rectangle({30, 30}, {60, 60})[0]};
    for (const auto& [rule, drawn] :
         {std::pair(FillRule::EvenOdd, "0,50 30,50 | 60,50 90,50"), std::pair(FillRule::Winding, "0,50 90,50")}) {
        Plotted plot;
        plot.run(fillType, {3, 50});
        plot.run(anchorCorner, {0, 50});
        plot.machine.drawArea({twice[0], twice[1]}, rule);
        EXPECT_EQ(plot.text(), "0,0 90,0 | " + std::string(drawn));
    }
    Plotted plot;
    plot.machine.drawArea(twice, FillRule::Winding);
    EXPECT_EQ(plot.text(), "[0,0 0,90 90,90 90,0]");
}

// ---- inks ----

struct InkRow : NamedRow {
    std::vector<Step> steps;
    int32_t pen;
    Colour colour;
    double shade;  // negative: nothing is drawn
};

Step rf(std::vector<double> numbers) {
    return {rasterFill, std::move(numbers)};
}

constexpr Colour BLACK = {0, 0, 0};
constexpr Colour RED = {255, 0, 0};

// clang-format off
const InkRow INK_ROWS[] = {
    {{"Solid"},              {},                                                        1, BLACK, 1},
    {{"Shade"},              {ft({10,15})},                                             1, BLACK, 0.15},
    {{"ShadeWithout"},       {ft({10})},                                                1, BLACK, 0.5},
    {{"ShadeIsKept"},        {ft({10,15}), ft({1}), ft({10})},                          1, BLACK, 0.15},
    {{"ShadeTooHigh"},       {ft({10,150})},                                            1, BLACK, 1},
    {{"ShadeOfNothing"},     {ft({10,0})},                                              1, BLACK, -1},
    {{"RasterWithout"},      {ft({11,3})},                                              1, BLACK, 1},
    {{"RasterOfOnePen"},     {rf({3,2,2,2,0,0,0}), ft({11,3})},                         2, RED,   0.25},
    {{"RasterFull"},         {rf({3,3,1,2,2,2}), ft({11,3})},                           2, RED,   1},
    {{"RasterOfTwoPens"},    {rf({3,2,2,1,2,2,2}), ft({11,3})},                         2, {191, 0, 0}, 1},
    {{"RasterInOnePen"},     {rf({3,2,2,2,0,0,0}), ft({11,3,1})},                       1, BLACK, 0.25},
    {{"RasterTooShort"},     {rf({3,2,2,2}), ft({11,3})},                               2, RED,   0.25},
    {{"RasterTooLong"},      {rf({3,2,1,2,0,2,2,2}), ft({11,3})},                       2, RED,   0.5},
    {{"RasterOfWhite"},      {rf({3,2,1,0,0}), ft({11,3})},                             1, BLACK, -1},
    {{"RasterTooLarge"},     {rf({3,256,1,2}), rf({3,0,1,2}), ft({11,3})},              1, BLACK, 1},
    {{"RasterBack"},         {rf({3,2,2,2}), rf({3}), ft({11,3})},                      1, BLACK, 1},
    {{"RasterAllBack"},      {rf({3,2,2,2}), rf({}), ft({11,3})},                       1, BLACK, 1},
    {{"RasterUnknown"},      {rf({3,1,2,2}), rf({9,1,1,2}), ft({11,3}), ft({11,9})},    2, RED,   0.5},
    {{"Downloaded"},         {ft({22,7})},                                              1, BLACK, 0.5},
};
// clang-format on

class FillInk : public testing::TestWithParam<InkRow> {};

TEST_P(FillInk, IsThatOfTheFillType) {
    Plotted plot;
    for (const Step& step : GetParam().steps)
        plot.run(step.procedure, step.numbers);
    plot.machine.drawArea(rectangle({0, 0}, {10, 10}), FillRule::EvenOdd);
    if (GetParam().shade < 0) {
        EXPECT_EQ(plot.text(), "");
        return;
    }
    ASSERT_EQ(plot.text(), "[0,0 10,0 10,10 0,10]");
    EXPECT_EQ(plot.sheet.inks[0].pen, GetParam().pen);
    EXPECT_EQ(plot.sheet.inks[0].colour, GetParam().colour);
    EXPECT_EQ(plot.sheet.inks[0].shade, GetParam().shade);
}

INSTANTIATE_TEST_SUITE_P(Rows, FillInk, testing::ValuesIn(INK_ROWS), byRowName);

TEST(FillInk, WhiteCoversWhenItIsToldTo) {
    Plotted plot;
    plot.machine.state.pens.whiteCovers = true;
    plot.run(fillType, {10, 0});
    plot.machine.drawArea(rectangle({0, 0}, {10, 10}), FillRule::EvenOdd);
    ASSERT_EQ(plot.text(), "[0,0 10,0 10,10 0,10]");
    EXPECT_EQ(plot.sheet.inks[0].shade, 0);
}

TEST(FillInk, WhiteCoversBetweenHatchLines) {
    Plotted plot;
    plot.machine.state.pens.whiteCovers = true;
    plot.run(fillType, {3, 8});
    plot.machine.drawArea(rectangle({0, 0}, {10, 10}), FillRule::EvenOdd);
    ASSERT_EQ(plot.text(), "[0,0 10,0 10,10 0,10] | 0,0 10,0 | 0,8 10,8");
    EXPECT_EQ(plot.sheet.inks[0].shade, 0);
    EXPECT_EQ(plot.sheet.inks[1].shade, 1);
}

struct ScreenRow : NamedRow {
    std::vector<double> numbers;
    double shade;
};

// clang-format off
const ScreenRow SCREEN_ROWS[] = {
    {{"Off"},        {0},         1},
    {{"None"},       {},          1},
    {{"Shade"},      {1, 30},     0.3},
    {{"Default"},    {1},         0.5},
    {{"TooHigh"},    {1, 130},    1},
    {{"Raster"},     {2, 3},      0.25},
    {{"NoRaster"},   {2, 4},      1},
    {{"Predefined"}, {21, 1},     0.25},
    {{"Downloaded"}, {22, 1},     0.5},
    {{"Unknown"},    {7, 1},      0.75},
};
// clang-format on

class Screen : public testing::TestWithParam<ScreenRow> {};

TEST_P(Screen, MakesLinesLighterAndNoFills) {
    Plotted plot;
    plot.run(rasterFill, {3, 2, 2, 1});
    plot.run(screenedVectors, {1, 75});
    plot.run(screenedVectors, GetParam().numbers);
    const Line line = {{0, 0}, {10, 0}};
    plot.machine.drawLine(line);
    plot.machine.drawArea(rectangle({0, 0}, {10, 10}), FillRule::EvenOdd);
    ASSERT_EQ(plot.sheet.inks.size(), 2U);
    EXPECT_EQ(plot.sheet.inks[0].shade, GetParam().shade);
    EXPECT_EQ(plot.sheet.inks[1].shade, 1);
}

INSTANTIATE_TEST_SUITE_P(Rows, Screen, testing::ValuesIn(SCREEN_ROWS), byRowName);

// ---- hatch lines in any area ----

TEST(HatchArea, StaysInsideAndLeavesNothingOut) {
    plane_text::Random random(12);
    for (int i = 0; i < 200; ++i) {
        const Area area = {plane_text::line(random, 9, 100), plane_text::line(random, 5, 100)};
        const HatchLines lines = {plane_text::point(random, 100), plane_text::number(random, -400, 400), {9, 4}};
        const Point along = {std::cos(lines.angle * 3.14159265358979 / 180),
                             std::sin(lines.angle * 3.14159265358979 / 180)};
        for (const FillRule rule : {FillRule::EvenOdd, FillRule::Winding}) {
            Budget pieces(1000);
            EXPECT_TRUE(hatchArea(area, rule, lines, {}, pieces, [&](std::span<const Point> piece, int64_t) {
                ASSERT_EQ(piece.size(), 2U);
                const Point way = piece[1] - piece[0];
                EXPECT_NEAR(std::abs(way.x * along.x + way.y * along.y), length(way), 1e-6);
                const double far = length(way);
                for (const double at : {0.001, far / 3, far / 2, far - 0.001}) {
                    if (at > 0 && at < far) {
                        EXPECT_TRUE(plane_text::isInside(area, piece[0] + way * (at / far), rule));
                    }
                }
                for (const double at : {-0.001, far + 0.001}) {
                    EXPECT_FALSE(plane_text::isInside(area, piece[0] + way * (at / far), rule));
                }
            }));
        }
    }
}

// Areas that share borders have together the lines of one: none twice, none missing.
TEST(HatchArea, NeighboursShareNoLine) {
    for (const double angle : {0.0, 90.0, 180.0, 270.0, 45.0, 135.0, -45.0}) {
        const auto linesIn = [angle](Point low, Point high) {
            double drawn = 0;
            Budget pieces(1000);
            hatchArea(rectangle(low, high), FillRule::EvenOdd, {{0, 0}, angle, {5}}, {}, pieces,
                      [&](std::span<const Point> piece, int64_t) { drawn += length(piece[1] - piece[0]); });
            return drawn;
        };
        const double parts = linesIn({0, 0}, {50, 50}) + linesIn({50, 0}, {100, 50}) + linesIn({0, 50}, {50, 100}) +
                             linesIn({50, 50}, {100, 100});
        EXPECT_NEAR(linesIn({0, 0}, {100, 100}), parts, 1e-6) << angle;
    }
}

struct BoundRow : NamedRow {
    HatchLines lines;
    double size;  // of a square
    bool hatched;
};

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double MANY = static_cast<double>(MOST_HATCH_LINES);

// clang-format off
const BoundRow BOUND_ROWS[] = {
    {{"AsManyAsAllowed"}, {{0, 0}, 0, {1}},              MANY,     true},
    {{"OneMore"},         {{0, 0}, 0, {1}},              MANY + 1, false},
    {{"Zero"},            {{0, 0}, 0, {0}},              10,       false},
    {{"None"},            {{0, 0}, 0, {}},               10,       false},
    {{"Tiny"},            {{0, 0}, 0, {1e-300}},         10,       false},
    {{"NotANumber"},      {{0, 0}, 0, {NOT_A_NUMBER}},   10,       false},
    {{"NoAngle"},         {{0, 0}, NOT_A_NUMBER, {1}},   10,       false},
    {{"HugeAngle"},       {{0, 0}, 1e300, {1}},          10,       true},
    {{"Infinite"},        {{0, 0}, 0, {INFINITY}},       10,       false},
    {{"FarAnchor"},       {{1e300, 0}, 0, {1}},          10,       false},
    {{"HugeArea"},        {{0, 0}, 0, {1}},              1e14,     false},
};
// clang-format on

class HatchBound : public testing::TestWithParam<BoundRow> {};

TEST_P(HatchBound, IsKept) {
    Budget pieces(MOST_HATCH_PIECES);
    std::size_t count = 0;
    const bool done = hatchArea(rectangle({0, 0}, {GetParam().size, GetParam().size}), FillRule::EvenOdd,
                                GetParam().lines, {}, pieces, [&](std::span<const Point>, int64_t) { ++count; });
    EXPECT_EQ(done, GetParam().hatched);
    EXPECT_EQ(count > 0, GetParam().hatched);
    EXPECT_EQ(MOST_HATCH_PIECES - pieces.left(), count);
}

INSTANTIATE_TEST_SUITE_P(Rows, HatchBound, testing::ValuesIn(BOUND_ROWS), byRowName);

TEST(HatchBound, SurvivesCornersThatAreNoNumbers) {
    Budget pieces(100);
    const Area area = {{{0, 0}, {INFINITY, 0}, {10, 0}, {NOT_A_NUMBER, 3}, {10, 10}, {1e300, -1e300}, {0, 10}}};
    plane_text::Pieces drawn;
    EXPECT_TRUE(hatchArea(area, FillRule::Winding, {{0, 0}, 0, {5}}, {}, pieces,
                          [&](std::span<const Point> piece, int64_t) { drawn.add(piece); }));
    EXPECT_EQ(drawn.text(), "0,0 10,0 | 0,5 10,5");
}

TEST(HatchBound, BeyondItAreasAreSolid) {
    Plotted plot;
    plot.run(fillType, {3, 1});
    plot.machine.drawArea(rectangle({0, 0}, {10, 30'000}), FillRule::EvenOdd);
    EXPECT_EQ(plot.text(), "[0,0 10,0 10,30000 0,30000]");
    EXPECT_EQ(plot.bounds(), "hatching");
}

TEST(HatchBound, IsNotLiftedByIn) {
    Plotted plot;
    const std::size_t before = plot.machine.state.fills.hatchPieces.left();
    plot.run(fillType, {3, 1});
    plot.machine.drawArea(rectangle({0, 0}, {10, 30}), FillRule::EvenOdd);
    plot.machine.initialise();
    EXPECT_EQ(plot.machine.state.fills.hatchPieces.left(), before - 30);
    EXPECT_EQ(plot.machine.state.fills.choice.type, FillType::Solid);
}

}  // namespace
