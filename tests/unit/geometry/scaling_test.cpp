// Scaling: the deciding axis, the mapping and its clamp.
#include "geometry/scaling.h"

#include <tuple>

#include "geometry/zoom.h"
#include "picture_text.h"
#include "rows.h"

namespace {

constexpr int32_t MIN = INT32_MIN;
constexpr int32_t MAX = INT32_MAX;

// ---- the deciding axis ----------------------------------------------------------------------------------------------

struct FitRow : NamedRow {
    int32_t size[2];  // DSizeX, DSizeY
    ZoomRect view;
    int32_t DSize, USize;
};

// clang-format off
constexpr FitRow FIT_ROWS[] = {
    {"XDecides",              {800, 600}, {   0,    0, 8000, 4000}, 800, 8000},
    {"YDecides",              {800, 600}, {   0,    0, 4000, 8000}, 600, 8000},
    {"TieGoesToY",            {800, 400}, {   0,    0, 8000, 4000}, 400, 4000},
    {"NotFromOrigin",         {800, 600}, {-500, 1000, 7500, 5000}, 800, 8000},
    {"NotANumberX",           {  0, 600}, {   5,    0,    5, 4000}, 600, 4000},
    {"NotANumberY",           {800,   0}, {   0,    5, 8000,    5},   0,    0},
    {"InfiniteX",             {800, 600}, {   5,    0,    5, 4000}, 600, 4000},
    {"InfiniteY",             {800, 600}, {   0,    5, 8000,    5}, 800, 8000},
    {"ExtentWraps",           {800, 600}, { MIN,    0,  MAX,  600}, 800,   -1},  // factors -800 and 1
    {"ReversedView",          {800, 600}, { 100,    0,    0,  600}, 800, -100},
    {"NothingDrawn",          {496, 496}, {1073741823, 1073741823, -1073741823, -1073741823}, 496, -2147483646},
    {"WindowSmallerThanMargin", {-4, 96}, {   0,    0,  100,  100},  -4,  100},
};
// clang-format on

class Fit : public testing::TestWithParam<FitRow> {};

TEST_P(Fit, ChoosesTheAxis) {
    HPGLTransform transform;
    const FitRow& row = GetParam();
    transform.DSizeX = row.size[0];
    transform.DSizeY = row.size[1];
    EXPECT_EQ(HPGLsetScaling(&transform, row.view.MinX, row.view.MinY, row.view.MaxX, row.view.MaxY), 1);
    EXPECT_EQ(transform.DSize, row.DSize);
    EXPECT_EQ(transform.USize, row.USize);
    EXPECT_EQ(transform.MaxX, row.view.MaxX);
    EXPECT_EQ(transform.MaxY, row.view.MaxY);
    EXPECT_EQ(transform.DSizeX, row.size[0]);
    EXPECT_EQ(transform.DSizeY, row.size[1]);
}

INSTANTIATE_TEST_SUITE_P(Rows, Fit, testing::ValuesIn(FIT_ROWS), byRowName);

TEST(Scaling, KeepsAndTracesTheFactors) {
    const FreshViewer viewer;
    HPGLTransform transform;
    const auto scale = [&] {
        transform.DSizeX = 800;
        transform.DSizeY = 600;
        HPGLsetScaling(&transform, 0, 0, 8000, 4000);
    };
    EXPECT_EQ(traceOf(3, scale),
              "\nHPGLsetScaling: FactorX:  0.100000  FactorY:  0.150000  MaxX:  8000  MaxY:   4000\n");
    EXPECT_EQ(traceOf(2, scale), "");
    EXPECT_EQ(transform.FactorX, 0.1);
    EXPECT_EQ(transform.FactorY, 0.15);
}

// ---- mapping --------------------------------------------------------------------------------------------------------

struct MapRow : NamedRow {
    int32_t DSizeX, DSizeY, DSize, USize, MaxX, MaxY;
    int32_t x, y;    // plotter units
    int32_t xd, yd;  // pixels
};

// clang-format off
constexpr MapRow MAP_ROWS[] = {
    {"UpperCorner",        800, 600,   800, 8000, 8000, 4000,    8000,    4000,  802,  602},
    {"Origin",             800, 600,   800, 8000, 8000, 4000,       0,       0,    2,  202},
    {"OneToOne",           100, 100,    50,   50,  100,  100,       0,       0,    2,    2},
    {"TruncatesInside",    100, 100,     1,    2,    0,    0,      -3,      -3,  101,  101},
    {"TruncatesOutside",   100, 100,     1,    2,    0,    0,       3,       3,  103,  103},  // floor would give 104
    {"ProductWraps",         0,   0, 10000,  100,    0,    0, -300000, -300000, 12949674, 12949674},
    // Of a window of 500 pixels.
    {"LastBeforeTheWrap",  496, 496,   496, 4329605, 0,    0, -4329604, -4329604,    3,    3},
    {"FirstBehindIt",      496, 496,   496, 4329605, 0,    0, -4329605, -4329605,  993,  993},
    {"DivisionComesLast",    0,   0,     3,    2,    0,    0,      -2,      -2,   -1,   -1},
    {"DifferenceWraps",      0,   0,     1,    1,  MAX,  MAX,      -1,      -1, MIN + 2, MIN + 2},
    {"NoExtent",           100, 100,     2,    0,    0,    0,      -3,      -3,   96,   96},
    {"SmallestOverMinusOne", 0,   0,     1,   -1,    0,    0,     MIN,     MIN, MIN + 2, MIN + 2},
};
// clang-format on

class Map : public testing::TestWithParam<MapRow> {};

TEST_P(Map, PutsThePoint) {
    const MapRow& row = GetParam();
    HPGLTransform transform;
    std::tie(transform.DSizeX, transform.DSizeY, transform.DSize, transform.USize, transform.MaxX, transform.MaxY) =
        std::tie(row.DSizeX, row.DSizeY, row.DSize, row.USize, row.MaxX, row.MaxY);
    EXPECT_EQ(HPGLmapX(&transform, row.x), row.xd);
    EXPECT_EQ(HPGLmapY(&transform, row.y), row.yd);
}

INSTANTIATE_TEST_SUITE_P(Rows, Map, testing::ValuesIn(MAP_ROWS), byRowName);

struct LengthRow {
    const char* name;
    int32_t DSize, USize, length, pixels;
};

// clang-format off
constexpr LengthRow LENGTH_ROWS[] = {
    {"Truncates",         500, 8000,     47,       2},
    {"TruncatesNegative", 500, 8000,    -47,      -2},
    {"Nothing",           500, 8000,      0,       0},
    {"NoExtent",            2,    0,      5,      10},
    {"ProductWraps",    10000,    1, 300000, -1294967296},
};
// clang-format on

TEST(Scaling, MapsLengthsWithoutOffset) {
    for (const LengthRow& row : LENGTH_ROWS) {
        HPGLTransform transform;
        transform.DSize = row.DSize;
        transform.USize = row.USize;
        EXPECT_EQ(HPGLmapLength(&transform, row.length), row.pixels) << row.name;
    }
}

// ---- clamp ----------------------------------------------------------------------------------------------------------

struct ClampRow : NamedRow {
    int32_t min, max, from, to;
};

// clang-format off
constexpr ClampRow CLAMP_ROWS[] = {
    {"AtMost",          -32768, 32767,  32767,  32767},
    {"AboveMost",       -32768, 32767,  32768,  32767},
    {"FarAbove",        -32768, 32767,    MAX,  32767},
    {"AtLeast",         -32768, 32767, -32768, -32768},
    {"BelowLeast",      -32768, 32767, -32769, -32768},
    {"FarBelow",        -32768, 32767,    MIN, -32768},
    {"ZeroStays",       -32768, 32767,      0,      0},
    {"NegativeStays",   -32768, 32767,     -7,     -7},
    {"LargestStays",       MIN,   MAX,    MAX,    MAX},
    {"SmallestStays",      MIN,   MAX,    MIN,    MIN},
    {"PositiveOnlyFromAbove",   5,  9,      3,      3},
    {"OthersOnlyFromBelow",   -99, -9,      0,      0},
};
// clang-format on

class Clamp : public testing::TestWithParam<ClampRow> {};

TEST_P(Clamp, BoundsOneSide) {
    HPGLTransform transform;
    transform.CoordMin = GetParam().min;
    transform.CoordMax = GetParam().max;
    EXPECT_EQ(HPGLclamp(&transform, GetParam().from), GetParam().to);
}

INSTANTIATE_TEST_SUITE_P(Rows, Clamp, testing::ValuesIn(CLAMP_ROWS), byRowName);

}  // namespace
