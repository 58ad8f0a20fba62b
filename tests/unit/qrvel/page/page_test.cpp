// The output device of a sheet of paper.
#include "qrvel/page/page.h"

#include <climits>
#include <functional>

#include "drawn_text.h"
#include "failing_new.h"
#include "qrvel/page/page_delivery.h"
#include "qrvel/page/placement.h"
#include "rows.h"
#include "scratch_folder.h"

namespace qrvel {
namespace {

constexpr SheetLayout SHEET = {.width = 120.0,
                               .height = 70.0,
                               .margin = 10.0,
                               .bleed = 2.0,
                               .unit = 1.0,
                               .areaWidth = 100,
                               .areaHeight = 50,
                               .fit = false};

std::string pageText(const std::function<void(Page&)>& draw) {
    Page page(SHEET);
    page.attributes.fillColour = 0xFF00FF00U;
    draw(page);
    return drawnText(page.recording());
}

TEST(Page, IsAsLargeAsTheAreaOfItsSheet) {
    EXPECT_EQ(Page(SHEET).size(), QSize(100, 50));
}

struct CallRow : NamedRow {
    void (*draw)(Page& page);
    const char* drawn;
};

constexpr OUTPoint POINTS[] = {{10, 10}, {20, 10}, {20, 20}};

// clang-format off
constexpr CallRow CALL_ROWS[] = {
    {"Line",        [](Page& page) { page.line({0, 0}, {9, 5}); },                 "stroke 0 000000: 0,0 9,5\n"},
    {"WideLine",    [](Page& page) { page.wideLine(POINTS, 7); },                  "stroke 7 000000: 10,10 20,10 20,20\n"},
    {"WideDot",     [](Page& page) { page.wideLine({POINTS, 1}, 7); },             "stroke 7 000000: 10,10 10,10\n"},
    {"Outline",     [](Page& page) { page.outline({.x = 1, .y = 2, .width = 3, .height = 4}); },
                    "stroke 0 000000: 1,6 1,2 4,2 4,6 1,6\n"},
    {"FlatOutline", [](Page& page) { page.outline({.x = 1, .y = 2, .width = 3, .height = 0}); },
                    "stroke 0 000000: 1,2 1,2 4,2 4,2 1,2\n"},
    {"WildOutline", [](Page& page) { page.outline({.x = INT_MIN, .y = INT_MIN, .width = UINT_MAX, .height = UINT_MAX}); }, ""},
    {"WilderOutline", [](Page& page) { page.outline({.x = INT_MAX, .y = 25, .width = INT_MAX, .height = INT_MAX}); }, ""},
    {"HalfOutline", [](Page& page) { page.outline({.x = 50, .y = 25, .width = INT_MAX, .height = INT_MAX}); },
                    "stroke 0 000000: 50,52 50,25 102,25\n"},
    {"Polygons",    [](Page& page) { const int32_t count = 3; page.polygons(POINTS, {&count, 1}); },
                    "area 00FF00: 10,10 20,10 20,20\n"},
    {"Text",        [](Page& page) { page.attributes.textWidth = 20; page.attributes.textHeight = 8; page.text({5, 6}, "ab"); },
                    "text 000000: 5,6 cell 10 high 8 \"ab\"\n"},
    {"TextOfNoSize", [](Page& page) { page.text({5, 6}, "ab"); },                  ""},
    {"TrackBox",    [](Page& page) { page.trackBox({.x = 1, .y = 2, .width = 3, .height = 4}); }, ""},
    {"EndOfPaint",  [](Page& page) { page.line({0, 0}, {9, 5}); page.endPaint(); }, "stroke 0 000000: 0,0 9,5\n"},
    {"EmptyFill",   [](Page& page) { page.fill({.x = 10, .y = 10, .width = 0, .height = 5}); }, ""},
};
// clang-format on

class PageCalls : public testing::TestWithParam<CallRow> {};

TEST_P(PageCalls, AreKept) {
    EXPECT_EQ(pageText(GetParam().draw), GetParam().drawn);
}

INSTANTIATE_TEST_SUITE_P(Rows, PageCalls, testing::ValuesIn(CALL_ROWS), byRowName);

TEST(Page, FillsABoxOfAnySize) {
    const auto bounds = [](const PixelBox& box) {
        Page page(SHEET);
        page.fill(box);
        return page.recording().bounds();
    };
    EXPECT_EQ(bounds({.x = 10, .y = 10, .width = 5, .height = 7}), QRectF(10, 10, 5, 7));
    EXPECT_EQ(bounds({.x = -10, .y = -10, .width = 50, .height = 999}), QRectF(0, 0, 40, 50));
    EXPECT_EQ(bounds({.x = INT_MIN, .y = INT_MIN, .width = UINT_MAX, .height = UINT_MAX}), QRectF(0, 0, 100, 50));
    EXPECT_FALSE(bounds({.x = INT_MAX, .y = INT_MAX, .width = UINT_MAX, .height = UINT_MAX}).has_value());
}

// The viewer clears a window by a box over all of it, and then begins.
TEST(Page, ForgetsTheBackgroundWithTheReset) {
    Page page(SHEET);
    page.attributes.lineColour = 0xFF123456U;
    page.attributes.textWidth = 20;
    page.fill({.x = 0, .y = 0, .width = 100, .height = 50});
    page.reset();
    EXPECT_TRUE(page.recording().isEmpty());
    EXPECT_EQ(page.attributes.lineColour, BLACK);
    EXPECT_EQ(page.attributes.textWidth, 0);
    page.line({10, 20}, {30, 20});
    EXPECT_EQ(page.recording().bounds(), QRectF(10, 20, 20, 0));
}

TEST(Page, CentresASinglePoint) {
    for (const bool fit : {false, true}) {
        SheetLayout sheet = SHEET;
        sheet.fit = fit;
        Page page(sheet);
        page.line({10, 20}, {10, 20});
        const Placement placed = place(page.recording().bounds(), sheet);
        EXPECT_EQ(placed.origin + QPointF(10, 20), QPointF(placed.paper.width(), placed.paper.height()) / 2.0);
        EXPECT_EQ(placed.paper, fit ? QSizeF(20, 20) : QSizeF(120, 70));
    }
}

// ---- too large ------------------------------------------------------------------------------------------------------

// As many strokes as do not fit into the memory that is left.
void overfill(Page& page) {
    const failing_new::Guard noMemory(65536);
    for (int i = 0; i < 100000 && !page.isTooLarge(); ++i) {
        page.line({i % 100, 0}, {i % 100, 50});
    }
}

TEST(Page, ThatIsTooLargeKeepsNothing) {
    Page page(SHEET);
    overfill(page);
    EXPECT_TRUE(page.isTooLarge());
    EXPECT_TRUE(page.recording().isEmpty());
    page.line({0, 0}, {9, 9});
    page.fill({.x = 0, .y = 0, .width = 100, .height = 50});
    page.outline({.x = 0, .y = 0, .width = 100, .height = 50});
    EXPECT_TRUE(page.recording().isEmpty());
}

TEST(Page, RunsOutOfMemoryInAnyCall) {
    const OUTPoint points[] = {{10, 10}, {20, 10}, {20, 20}};
    const int32_t count = 3;
    const std::function<void(Page&)> calls[] = {
        [&](Page& page) { page.line(points[0], points[1]); },
        [&](Page& page) { page.wideLine(points, 7); },
        [&](Page& page) { page.outline({.x = 1, .y = 2, .width = 3, .height = 4}); },
        [&](Page& page) { page.fill({.x = 1, .y = 2, .width = 3, .height = 4}); },
        [&](Page& page) {
            page.polygons(points, {&count, 1});
        },
        [&](Page& page) { page.text(points[0], "more than a string holds without memory"); },
    };
    for (const auto& call : calls) {
        Page page(SHEET);
        page.attributes.textWidth = 99;
        page.attributes.textHeight = 9;
        {
            const failing_new::Guard noMemory(1);
            call(page);
        }
        EXPECT_TRUE(page.isTooLarge());
        EXPECT_TRUE(page.recording().isEmpty());
    }
}

constexpr PageFormat FORMATS[] = {PageFormat::Pdf, PageFormat::Svg, PageFormat::Png};

TEST(Delivery, OfAPageThatIsTooLargeLeavesTheFile) {
    const ScratchFolder folder;
    ScratchFolder::write("old.pdf", "old");
    Page page(SHEET);
    overfill(page);
    for (const PageFormat format : FORMATS) {
        EXPECT_EQ(
            deliverPage(page, {.destination = Destination::File, .format = format, .name = "old.pdf", .dpi = 100}),
            "cannot write old.pdf: the page is too large");
    }
    EXPECT_EQ(ScratchFolder::read("old.pdf"), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator("."), {}), 1);
}

TEST(Delivery, OfAnImageThatIsTooLargeLeavesTheFile) {
    const ScratchFolder folder;
    ScratchFolder::write("old.png", "old");
    const Page page(layOut({.width = 5080.0, .height = 5080.0}, false));
    const PageGoal goal = {.destination = Destination::File, .format = PageFormat::Png, .name = "old.png", .dpi = 2400};
    EXPECT_EQ(deliverPage(page, goal), "cannot write old.png: the page is too large");
    EXPECT_EQ(ScratchFolder::read("old.png"), "old");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator("."), {}), 1);
}

TEST(Delivery, ReplacesAFile) {
    const ScratchFolder folder;
    const char* const begins[] = {"%PDF-", "<?xml", "\x89PNG"};
    Page page(SHEET);
    page.line({0, 0}, {9, 9});
    for (std::size_t i = 0; i < std::size(FORMATS); ++i) {
        ScratchFolder::write("file", "old");
        const PageGoal goal = {.destination = Destination::File, .format = FORMATS[i], .name = "file", .dpi = 100};
        EXPECT_EQ(deliverPage(page, goal), "");
        EXPECT_TRUE(ScratchFolder::read("file").starts_with(begins[i])) << begins[i];
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator("."), {}), 1);
}

// What a search in the file finds: the label's characters, a hyphen for the soft one, blanks for what has no picture.
TEST(Delivery, KeepsTextAsText) {
    const ScratchFolder folder;
    Page page(SHEET);
    page.attributes.textWidth = 90;
    page.attributes.textHeight = 9;
    page.text({5, 6},
              "Gr\xF6\xDF"
              "e <&> \xB5m\xAD"
              "a\x01"
              "b");
    const PageGoal goal = {.destination = Destination::File, .format = PageFormat::Svg, .name = "a.svg", .dpi = 100};
    EXPECT_EQ(deliverPage(page, goal), "");
    const std::string written = ScratchFolder::read("a.svg");
    EXPECT_NE(written.find(">Gr\u00F6\u00DFe &lt;&amp;&gt; \u00B5m-a b<"), std::string::npos) << written;
}

TEST(Delivery, ToNowhereSaysSo) {
    const Page page(SHEET);
    const auto problem = [&](int destination, const char* name) {
        return deliverPage(page, {.destination = static_cast<Destination>(destination),
                                  .format = PageFormat::Pdf,
                                  .name = name,
                                  .dpi = 100})
            .toStdString();
    };
    EXPECT_EQ(problem(1, "no such printer"), "cannot print on no such printer: there is no such printer");
    EXPECT_EQ(problem(2, "no such folder/x.pdf"), "cannot write no such folder/x.pdf: No such file or directory");
    EXPECT_EQ(problem(3, ""), "The program that sent the drawing is not there any more, or does not take the page.");
    EXPECT_EQ(problem(0, "x"), "There is no such destination or format.");
    EXPECT_EQ(problem(77, "x"), "There is no such destination or format.");
}

}  // namespace
}  // namespace qrvel
