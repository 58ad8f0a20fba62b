// LT and UL, and lines cut into dashes.
#include "plotter/line_types.h"

#include "plotter/instructions.h"

#include "plotted.h"
#include "rows.h"

namespace {

using namespace plotter;

// An instruction and its numbers.
struct Step {
    enum class Kind { Lt, Ul, Line };
    Kind kind;
    std::vector<double> numbers;  // of a line: x and y in turn
};

Step lt(std::vector<double> numbers) {
    return {Step::Kind::Lt, std::move(numbers)};
}
Step ul(std::vector<double> numbers) {
    return {Step::Kind::Ul, std::move(numbers)};
}
Step line(std::vector<double> numbers) {
    return {Step::Kind::Line, std::move(numbers)};
}

Line pointsOf(const std::vector<double>& numbers) {
    Line points;
    for (std::size_t i = 0; i + 1 < numbers.size(); i += 2)
        points.push_back({numbers[i], numbers[i + 1]});
    return points;
}

void carryOut(Plotted& plot, const std::vector<Step>& steps) {
    for (const Step& step : steps) {
        if (step.kind == Step::Kind::Lt) plot.run(lineType, step.numbers);
        if (step.kind == Step::Kind::Ul) plot.run(userLineType, step.numbers);
        if (step.kind != Step::Kind::Line) continue;
        const Line points = pointsOf(step.numbers);
        plot.machine.drawLine(points);
        plot.machine.state.position = points.back();
    }
}

struct LineRow : NamedRow {
    std::vector<Step> steps;
    const char* drawn;
};

// P1 and P2 are 5000 from each other.
// clang-format off
const LineRow LINE_ROWS[] = {
    {{"Solid"},            {line({0,0, 9,0, 9,9})},                          "0,0 9,0 9,9"},
    {{"Millimetres"},      {lt({2,50,1}), line({0,0, 5000,0})},              "0,0 1000,0 | 2000,0 3000,0 | 4000,0 5000,0"},
    {{"Fitted"},           {lt({-2,50,1}), line({0,0, 5000,0})},
     "0,0 416.667,0 | 1250,0 2083.333,0 | 2916.667,0 3750,0 | 4583.333,0 5000,0"},
    {{"DashAndDot"},       {lt({4,50,1}), line({0,0, 4000,0})},              "0,0 1600,0 | 1800,0 | 2000,0 3600,0 | 3800,0"},
    {{"AroundACorner"},    {lt({2,50,1}), line({1000,1000, 2500,1000, 2500,3500})},
     "1000,1000 2000,1000 | 2500,1500 2500,2500"},
    {{"PerCent"},          {lt({2}), line({0,0, 600,0})},                    "0,0 100,0 | 200,0 300,0 | 400,0 500,0"},
    {{"CornerInADash"},    {lt({2,50,1}), line({0,0, 600,0, 600,600})},      "0,0 600,0 600,400"},
    {{"CornerAtADashEnd"}, {lt({2,50,1}), line({0,0, 1000,0, 1000,1500})},   "0,0 1000,0 | 1000,1000 1000,1500"},
    {{"GoesOn"},           {lt({2,50,1}), line({0,0, 600,0}), line({600,0, 3000,0})},
     "0,0 600,0 | 600,0 1000,0 | 2000,0 3000,0"},
    {{"BeginsAgain"},      {lt({2,50,1}), line({0,0, 600,0}), line({0,9, 1500,9})},
     "0,0 600,0 | 0,9 1000,9"},
    {{"DotsOnce"},         {lt({1,50,1}), line({0,0, 4000,0}), line({4000,0, 5000,0})},
     "0,0 | 2000,0 | 4000,0"},
    {{"FittedDots"},       {lt({-1,50,1}), line({0,0, 3000,0, 3000,2000})},
     "0,0 | 1500,0 | 3000,0 | 3000,2000"},
    {{"FittedDotsGoOn"},   {lt({-1,50,1}), line({0,0, 2000,0}), line({2000,0, 4000,0})},
     "0,0 | 2000,0 | 4000,0"},
    {{"FittedCorner"},     {lt({-2,50,1}), line({0,0, 2000,0, 2000,2000})},
     "0,0 500,0 | 1500,0 2000,0 2000,500 | 2000,1500 2000,2000"},
    {{"FittedShort"},      {lt({-2,50,1}), line({0,0, 100,0})},              "0,0 25,0 | 75,0 100,0"},
    {{"DotsAtThePoints"},  {lt({0}), line({0,0, 5,0, 5,5}), line({5,5, 7,7})}, "0,0 | 5,0 | 5,5 | 7,7"},
    {{"NoLength"},         {lt({2,50,1}), line({5,5, 5,5})},                 "5,5"},
    {{"NoLengthInADash"},  {lt({2,50,1}), line({0,0, 0,0, 600,0, 600,0})},   "0,0 600,0"},
    {{"Dot"},              {lt({4,50,1}), line({5,5})},                      "5,5"},

    {{"LengthIsKept"},     {lt({2,50,1}), lt({3}), line({0,0, 2000,0})},     "0,0 1400,0"},
    {{"LengthBelowZero"},  {lt({2,50,1}), lt({2,-1}), line({0,0, 2000,0})},  "0,0 1000,0"},
    {{"LengthZero"},       {lt({2,0}), line({0,0, 300,0})},                  "0,0 100,0 | 200,0 300,0"},
    {{"LengthInPerCent"},  {lt({2,50,1}), lt({2,8}), line({0,0, 400,0})},    "0,0 200,0"},
    {{"UnknownType"},      {lt({2,50,1}), lt({9,5}), lt({-9}), lt({98}), line({0,0, 2000,0})}, "0,0 1000,0"},
    {{"VeryUnknownType"},  {lt({-2147483648.0}), lt({1e300}), line({0,0, 9,0})}, "0,0 9,0"},
    {{"Off"},              {lt({2,50,1}), lt({}), line({0,0, 2000,0})},      "0,0 2000,0"},

    {{"Restored"},         {lt({2,50,1}), line({0,0, 1500,0}), lt({}), line({1500,0, 1500,9, 1500,0}), lt({99}),
                            line({1500,0, 3000,0})},
     "0,0 1000,0 | 1500,0 1500,9 1500,0 | 2000,0 3000,0"},
    {{"NotRestoredElsewhere"}, {lt({2,50,1}), line({0,0, 1500,0}), lt({}), line({0,9, 5,9}), lt({99}), line({5,9, 4005,9})},
     "0,0 1000,0 | 0,9 5,9 | 5,9 4005,9"},
    {{"NothingToRestore"}, {line({0,0, 5,0}), lt({99}), line({5,0, 6,0})},   "0,0 5,0 | 5,0 6,0"},

    {{"User"},             {ul({2,3,1}), lt({2,50,1}), line({0,0, 4000,0})}, "0,0 1500,0 | 2000,0 3500,0"},
    {{"UserNegative"},     {ul({-2,3,1}), lt({-2,50,1}), line({0,0, 2000,0})}, "0,0 750,0 | 1250,0 2000,0"},
    {{"UserOdd"},          {ul({2,1,1,2}), lt({2,50,1}), line({0,0, 4000,0})},
     "0,0 500,0 | 1000,0 2500,0 | 3000,0 4000,0"},
    {{"UserOddFitted"},    {ul({2,2,1,1}), lt({-2,50,1}), line({0,0, 4000,0})},
     "0,0 500,0 | 1000,0 2500,0 | 3000,0 4000,0"},
    {{"UserOfOnePart"},    {ul({2,7}), lt({2,50,1}), line({0,0, 5000,0})},   "0,0 5000,0"},
    {{"UserComesWithLt"},  {lt({2,50,1}), ul({2,3,1}), line({0,0, 2000,0})}, "0,0 1000,0"},
    {{"UserBack"},         {ul({2,3,1}), ul({2}), lt({2,50,1}), line({0,0, 2000,0})}, "0,0 1000,0"},
    {{"UserAllBack"},      {ul({2,3,1}), ul({}), lt({2,50,1}), line({0,0, 2000,0})},  "0,0 1000,0"},
    {{"UserBelowZero"},    {ul({2,3,-1}), lt({2,50,1}), line({0,0, 2000,0})}, "0,0 1000,0"},
    {{"UserOfNothing"},    {ul({2,0,0}), lt({2,50,1}), line({0,0, 2000,0})},  "0,0 1000,0"},
    {{"UserUnknown"},      {ul({9,3,1}), ul({0,3,1}), lt({2,50,1}), line({0,0, 2000,0})}, "0,0 1000,0"},
};
// clang-format on

class DashedLine : public testing::TestWithParam<LineRow> {};

TEST_P(DashedLine, IsDrawn) {
    Plotted plot;
    plot.machine.state.coordinates.p1 = {0, 0};
    plot.machine.state.coordinates.p2 = {3000, 4000};
    carryOut(plot, GetParam().steps);
    EXPECT_EQ(plot.text(), GetParam().drawn);
    EXPECT_EQ(plot.bounds(), "");
}

INSTANTIATE_TEST_SUITE_P(Rows, DashedLine, testing::ValuesIn(LINE_ROWS), byRowName);

// ---- pattern lengths ----

TEST(PatternLength, FollowsTheScaledRectangle) {
    Plotted plot;
    Coordinates& coordinates = plot.machine.state.coordinates;
    coordinates.p1 = {0, 0};
    coordinates.p2 = {8000, 3000};
    plot.run(lineType, {2, 10});
    EXPECT_NEAR(patternLength(plot.machine), std::hypot(8000, 3000) / 10, 1e-9);
    coordinates.scaling = {Scaling::Type::Anisotropic, 0, 4, 0, 3};
    EXPECT_NEAR(patternLength(plot.machine), std::hypot(8000, 3000) / 10, 1e-9);
    coordinates.scaling = {Scaling::Type::Isotropic, 0, 4, 0, 3};
    EXPECT_NEAR(patternLength(plot.machine), 500, 1e-9);
}

TEST(PatternLength, MillimetresAreThoseOfThePaper) {
    Plotted plot;
    plot.run(lineType, {2, 10, 1});
    EXPECT_EQ(patternLength(plot.machine), 400);
    plot.machine.state.coordinates.frame.scaleX = 0.5;
    plot.machine.state.coordinates.frame.scaleY = 2;
    EXPECT_EQ(patternLength(plot.machine), 800);
}

// ---- what always holds ----

struct TypeRow : NamedRow {
    int32_t type;
    double share;  // of a long line that is drawn
};

// clang-format off
constexpr TypeRow TYPE_ROWS[] = {
    {{"One"},   1, 0.0}, {{"Two"},   2, 0.5}, {{"Three"}, 3, 0.7}, {{"Four"},  4, 0.8},
    {{"Five"},  5, 0.8}, {{"Six"},   6, 0.7}, {{"Seven"}, 7, 0.7}, {{"Eight"}, 8, 0.6},
};
// clang-format on

class EveryType : public testing::TestWithParam<TypeRow> {
  public:
    static LineTypes typesOf(int32_t type) {
        LineTypes types;
        types.choice.type = type;
        types.choice.pattern = types.patterns[static_cast<std::size_t>(std::abs(type)) - 1];
        return types;
    }
    static double lengthOf(std::span<const Point> points) {
        double sum = 0;
        for (std::size_t i = 1; i < points.size(); ++i)
            sum += length(points[i] - points[i - 1]);
        return sum;
    }
};

TEST_P(EveryType, DrawsItsShareOfALine) {
    for (const int sign : {1, -1}) {
        LineTypes types = typesOf(GetParam().type * sign);
        double drawn = 0;
        const Line line = {{0, 0}, {300, 400}, {300, -600}};
        EXPECT_TRUE(dashLine(types, 100, line, [&](std::span<const Point> dash) { drawn += lengthOf(dash); }));
        EXPECT_NEAR(drawn, 1500 * GetParam().share, 1e-6);
    }
}

// Cut into many calls, a line has the same dashes: only that they are in pieces.
TEST_P(EveryType, RunsOnFromLineToLine) {
    plane_text::Random random(9);
    const Line line = plane_text::line(random, 40, 300);
    const auto samplesOf = [&](bool inPieces) {
        LineTypes types = typesOf(GetParam().type);
        double drawn = 0;
        std::size_t dots = 0;
        const auto count = [&](std::span<const Point> dash) {
            drawn += lengthOf(dash);
            dots += dash.size() == 1;
        };
        if (!inPieces) dashLine(types, 100, line, count);
        for (std::size_t i = 1; inPieces && i < line.size(); ++i) {
            dashLine(types, 100, std::span(line).subspan(i - 1, 2), count);
        }
        return std::pair(std::round(drawn * 1000), dots);
    };
    EXPECT_EQ(samplesOf(false), samplesOf(true));
}

// The patterns with dashes and gaps exchanged fill the gaps, and nothing twice.
TEST_P(EveryType, DashesAndGapsTogetherAreTheLine) {
    plane_text::Random random(10);
    const Line line = plane_text::line(random, 20, 300);
    LineTypes types = typesOf(GetParam().type);
    LineTypes others = types;
    Pattern& gaps = others.choice.pattern;
    std::ranges::copy_backward(types.choice.pattern.parts.begin(), types.choice.pattern.parts.end() - 1,
                               gaps.parts.end());
    gaps.parts[0] = 0;
    ++gaps.count;
    double drawn = 0;
    const auto add = [&](std::span<const Point> dash) { drawn += lengthOf(dash); };
    dashLine(types, 37, line, add);
    // An even number of parts behind a dot of nothing: each pattern begins with one, and the next ends the last.
    dashLine(others, 37, line, add);
    EXPECT_NEAR(drawn, lengthOf(line), 1e-6);
}

// Fitted lines begin and end with the pen down, at every corner.
TEST_P(EveryType, FittedOnesReachTheCorners) {
    plane_text::Random random(11);
    const Line line = plane_text::line(random, 20, 300);
    LineTypes types = typesOf(-GetParam().type);
    std::vector<Point> ends;
    dashLine(types, 100, line, [&](std::span<const Point> dash) { ends.insert(ends.end(), dash.begin(), dash.end()); });
    EXPECT_EQ(ends.front(), line.front());
    EXPECT_EQ(ends.back(), line.back());
    for (const Point corner : line)
        EXPECT_EQ(std::ranges::count(ends, corner), 1) << plane_text::of(corner);
}

INSTANTIATE_TEST_SUITE_P(Rows, EveryType, testing::ValuesIn(TYPE_ROWS), byRowName);

// ---- bounds ----

struct BoundRow : NamedRow {
    double patternLength;
    double lineLength;
    bool dashed;
};

// clang-format off
constexpr BoundRow BOUND_ROWS[] = {
    {{"Short"},            SHORTEST_PATTERN,       100,    true},
    {{"TooShort"},         SHORTEST_PATTERN * 0.9, 100,    false},
    {{"Zero"},             0,                      100,    false},
    {{"NotANumber"},       NAN,                    100,    false},
    {{"InfinitePattern"},  INFINITY,               100,    false},
    {{"InfiniteLine"},     100,                    INFINITY, false},
    {{"Many"},             1,                      4e5,    true},
    {{"TooMany"},          1,                      1e6,    false},
    {{"FarTooMany"},       1,                      1e300,  false},
};
// clang-format on

class DashBound : public testing::TestWithParam<BoundRow> {};

TEST_P(DashBound, MakesLinesSolid) {
    for (const int32_t type : {2, -2}) {
        LineTypes types = EveryType::typesOf(type);
        std::size_t pieces = 0;
        const Line line = {{0, 0}, {GetParam().lineLength, 0}};
        EXPECT_EQ(dashLine(types, GetParam().patternLength, line, [&](std::span<const Point>) { ++pieces; }),
                  GetParam().dashed);
        EXPECT_EQ(pieces > 1, GetParam().dashed);
        EXPECT_LE(pieces, MOST_DASHES);
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, DashBound, testing::ValuesIn(BOUND_ROWS), byRowName);

TEST(DashBound, IsNotLiftedByIn) {
    Plotted plot;
    const Line line = {{0, 0}, {3000, 0}};
    plot.run(lineType, {2, 0.25, 1});
    plot.machine.drawLine(line);
    const std::size_t left = plot.machine.state.lineTypes.dashes.left();
    EXPECT_LE(left, MOST_DASHES - 300);
    plot.machine.initialise();
    EXPECT_EQ(plot.machine.state.lineTypes.dashes.left(), left);
    EXPECT_EQ(plot.machine.state.lineTypes.choice.type, LineTypes::SOLID);
}

TEST(DashBound, IsReported) {
    Plotted plot;
    const Line line = {{0, 0}, {3e6, 0}};
    plot.run(lineType, {2, 0.025, 1});
    plot.machine.drawLine(line);
    EXPECT_EQ(plot.text(), "0,0 3000000,0");
    EXPECT_EQ(plot.bounds(), "dashes");
}

}  // namespace
