// How often a pass draws the same polygon, whatever the data says.
#include "render/redraw_allowance.h"

#include "picture_text.h"
#include "recorder/recorder.h"
#include "render/interpreter.h"
#include "shell/shell_state.h"

namespace {

// How often a pass draws a polygon.
int64_t drawings() {
    int64_t count = 0;
    recorder::drawingSink = [&](std::string_view call) {
        count += call.starts_with("OUTgeomline ") || call.starts_with("OUTwinsolidpolygons ") ? 1 : 0;
    };
    HPGLinterpretCompactCode(TheShell.parser, &TheShell.display, 1);
    recorder::drawingSink = nullptr;
    return count;
}

// There and back again: a thousand points behind the first.
std::string polygon() {
    return "PM0;" + times(4, "PR" + times(125, "1,0,") + ";") + times(4, "PR" + times(125, "-1,0,") + ";") + "PM2;";
}

constexpr int64_t MOST_DRAWINGS = 20'000'000 / 1002 + 2;  // with the first of each kind

// A polygon that is drawn again and again by two letters.
TEST(PolygonPoints, AreLimitedAPass) {
    const FreshViewer viewer;
    const auto drawn = [](int64_t n) {
        parseText(polygon() + times(static_cast<int>(n), "FP") + "EP");
        return drawings();
    };
    EXPECT_EQ(traceOf(1, [&] { EXPECT_EQ(drawn(MOST_DRAWINGS - 1), MOST_DRAWINGS); }), "");
    EXPECT_EQ(traceOf(1, [&] { EXPECT_EQ(drawn(MOST_DRAWINGS + 5), MOST_DRAWINGS); }),
              "WARNING-HPGLinterpretCompactCode: polygons are drawn too often, the rest of them is left out\n");
}

// However many polygons there are, each may be filled and edged.
TEST(PolygonPoints, OfNewPolygonsAreFree) {
    const FreshViewer viewer;
    parseText(times(12'000, "PM0;CI1000,.36;PM2;FPEP"));  // 24 million points
    EXPECT_EQ(traceOf(1, [] { EXPECT_EQ(drawings(), 2 * 12'000); }), "");
}

// Two thousand blocks have room for 7.5 million points; each may be drawn four times.
TEST(PolygonPoints, GrowWithTheData) {
    const FreshViewer viewer;
    std::vector<std::string> blocks(2000, codeOf(times(20, "FP")));
    blocks.front() = codeOf(polygon());
    setBlocks(blocks);
    EXPECT_EQ(drawings(), 30'000'000 / 1002 + 1);
}

// How often polygons are drawn in a window of 1000 x 1000 pixels, one a plotter unit.
int64_t drawingsOnAMillionPixels(const std::string& text) {
    TheShell.display.DSizeX = TheShell.display.DSizeY = TheShell.display.DSize = 996;
    TheShell.display.MaxX = TheShell.display.MaxY = TheShell.display.USize = 996;
    parseText(text);
    return drawings();
}

constexpr char SHEET[] = "PM0;PA996,0,996,996,0,996;PM2;";

TEST(PolygonPixels, AreLimitedAPass) {
    const FreshViewer viewer;
    int64_t drawn = 0;
    EXPECT_EQ(traceOf(1, [&] { drawn = drawingsOnAMillionPixels(SHEET + times(900, "FP")); }), "");
    EXPECT_EQ(drawn, 900);
    EXPECT_EQ(traceOf(1, [&] { drawn = drawingsOnAMillionPixels(SHEET + times(5000, "FP")); }),
              "WARNING-HPGLinterpretCompactCode: polygons are drawn too often, the rest of them is left out\n");
    EXPECT_GT(drawn, 900);
    EXPECT_LT(drawn, 1010);
}

TEST(PolygonPixels, OfEdgesCountToo) {
    const FreshViewer viewer;
    const int64_t thin = drawingsOnAMillionPixels(SHEET + times(50'000, "EP"));
    const int64_t wide = drawingsOnAMillionPixels("PW10;" + (SHEET + times(50'000, "EP")));
    EXPECT_GT(thin, 1000);
    EXPECT_LT(thin, 10'000);
    EXPECT_GT(wide, 200);
    EXPECT_LT(wide, thin);
}

// A hundred sides as high as the window, in a tenth of it.
TEST(PolygonPixels, CountTheRowsOfEverySide) {
    const FreshViewer viewer;
    const std::string saw = "PM0;PA" + times(50, "0,996,100,0,") + ";PM2;";
    EXPECT_LT(drawingsOnAMillionPixels(saw + times(5000, "FP")), 900);
}

TEST(PolygonPixels, AboveTheWindowAreFree) {
    const FreshViewer viewer;
    const std::string above = "PA0,2000;PM0;PA996,2000,996,2996,0,2996;PM2;";
    EXPECT_EQ(drawingsOnAMillionPixels(above + times(50'000, "FP")), 50'000);
    EXPECT_EQ(drawingsOnAMillionPixels(above + times(50'000, "EP")), 50'000);
}

TEST(PolygonPixels, OfNewPolygonsAreFree) {
    const FreshViewer viewer;
    EXPECT_EQ(drawingsOnAMillionPixels(times(3000, SHEET + std::string("FPEP"))), 2 * 3000);
}

// Fifty blocks: a thousand pixels for each of 1.5 million bytes.
TEST(PolygonPixels, GrowWithTheData) {
    const FreshViewer viewer;
    drawingsOnAMillionPixels("");
    std::vector<std::string> blocks(50, codeOf(times(5000, "FP")));
    blocks.front() = codeOf(SHEET);
    setBlocks(blocks);
    const int64_t drawn = drawings();
    EXPECT_GT(drawn, 1400);
    EXPECT_LT(drawn, 1510);
}

}  // namespace
