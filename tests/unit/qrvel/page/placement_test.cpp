// Where on its paper a drawing comes to lie.
#include "qrvel/page/placement.h"

#include "rows.h"

namespace qrvel {
namespace {

constexpr SheetLayout A4 = {.width = 210.0,
                            .height = 297.0,
                            .margin = 10.0,
                            .bleed = 2.0,
                            .unit = 0.025,
                            .areaWidth = 7600,
                            .areaHeight = 11080,
                            .fit = false};
constexpr SheetLayout FIT = {.width = 297.0,
                             .height = 297.0,
                             .margin = 10.0,
                             .bleed = 2.0,
                             .unit = 0.025,
                             .areaWidth = 11080,
                             .areaHeight = 11080,
                             .fit = true};

struct PlacementRow : NamedRow {
    const SheetLayout& sheet;
    double left, low, width, height;  // drawn, units
    double paperWidth, paperHeight;   // millimetres
    double originX, originY;          // millimetres
};

// clang-format off
constexpr PlacementRow ROWS[] = {
    {"FillsTheArea",      A4,     0,     0,  7600, 11080, 210.0, 297.0,  10.0,   10.0},
    {"SlackAbove",        A4,     0,     0,  7600,  1080, 210.0, 297.0,  10.0,  135.0},
    {"SlackBelow",        A4,     0, 10000,  7600,  1080, 210.0, 297.0,  10.0, -115.0},
    {"SlackOnTheRight",   A4,     0,     0,   600, 11080, 210.0, 297.0,  97.5,   10.0},
    {"SlackOnTheLeft",    A4,  7000,     0,   600, 11080, 210.0, 297.0, -77.5,   10.0},
    {"SlackAllAround",    A4,  1000,  2000,   400,   800, 210.0, 297.0,  75.0,   88.5},
    {"InTheMiddle",       A4,  3600,  5000,   400,  1080, 210.0, 297.0,  10.0,   10.0},
    {"HorizontalLine",    A4,     0,   100,  7600,     0, 210.0, 297.0,  10.0,  146.0},
    {"VerticalLine",      A4,   100,     0,     0, 11080, 210.0, 297.0, 102.5,   10.0},
    {"FitWide",           FIT,    0,     0, 11080,  4000, 297.0, 120.0,  10.0,   10.0},
    {"FitHigh",           FIT,    0,     0,  4000, 11080, 120.0, 297.0,  10.0,   10.0},
    {"FitCropsAllAround", FIT,  100,   200,  1000,   500,  45.0,  32.5,   7.5,    5.0},
    {"FitLine",           FIT,    0,   400, 11080,     0, 297.0,  20.0,  10.0,    0.0},
};
// clang-format on

class Placements : public testing::TestWithParam<PlacementRow> {};

TEST_P(Placements, CentreTheDrawing) {
    const PlacementRow& row = GetParam();
    const Placement placed = place(QRectF(row.left, row.low, row.width, row.height), row.sheet);
    EXPECT_NEAR(placed.paper.width(), row.paperWidth, 1e-9);
    EXPECT_NEAR(placed.paper.height(), row.paperHeight, 1e-9);
    EXPECT_NEAR(placed.origin.x(), row.originX, 1e-9);
    EXPECT_NEAR(placed.origin.y(), row.originY, 1e-9);
    EXPECT_EQ(placed.unit, row.sheet.unit);
}

INSTANTIATE_TEST_SUITE_P(Rows, Placements, testing::ValuesIn(ROWS), byRowName);

TEST(Placements, OfNothingIsTheWholeSheet) {
    for (const SheetLayout& sheet : {A4, FIT}) {
        const Placement placed = place({}, sheet);
        EXPECT_EQ(placed.paper, QSizeF(sheet.width, sheet.height));
        EXPECT_EQ(placed.origin, QPointF(10.0, 10.0));
    }
}

}  // namespace
}  // namespace qrvel
