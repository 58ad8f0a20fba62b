// Pages in pixels. A unit is a millimetre, and the drawings are laid out so that centring moves nothing.
#include "qrvel/page/page_image.h"

#include <functional>

#include "rows.h"

namespace qrvel {
namespace {

constexpr SheetLayout SHEET = {.width = 12.0,
                               .height = 10.0,
                               .margin = 2.0,
                               .bleed = 1.0,
                               .unit = 1.0,
                               .areaWidth = 8,
                               .areaHeight = 6,
                               .fit = false};
constexpr uint32_t INK = 0xFF0000FFU;
constexpr uint32_t RED_INK = 0xFFFF0000U;

std::string pixels(const QImage& image) {
    std::string text;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb colour = image.pixel(x, y);
            text += colour == INK ? '#' : colour == RED_INK ? 'r' : colour == 0xFFFFFFFFU ? '.' : '+';
        }
        text += '\n';
    }
    return text;
}

struct PictureRow : NamedRow {
    double pixelsPerMillimetre;
    bool fit;
    std::function<void(Recording&)> draw;
    const char* picture;
};

void diagonal(Recording& recording) {
    recording.line({0, 0}, {6, 6}, 0, INK);
    recording.line({6, 6}, {8, 6}, 0, RED_INK);
}

void boxes(Recording& recording) {
    recording.rectangle(QRectF(0, 0, 4, 2), INK);
    recording.rectangle(QRectF(4, 2, 4, 4), RED_INK);
}

void hole(Recording& recording) {
    const OUTPoint points[] = {{0, 0}, {8, 0}, {8, 6}, {0, 6}, {2, 2}, {6, 2}, {6, 4}, {2, 4}};
    const int32_t counts[] = {4, 4};
    recording.area(points, counts, INK);
}

// clang-format off
const PictureRow PICTURE_ROWS[] = {
    {"Nothing", 1.0, false, [](Recording&) {},
        "............\n" "............\n" "............\n" "............\n" "............\n"
        "............\n" "............\n" "............\n" "............\n" "............\n"},
    {"Lines", 1.0, false, diagonal,
        "............\n" "........rrr.\n" ".......#....\n" "......#.....\n" ".....#......\n"
        "....#.......\n" "...#........\n" "..#.........\n" "............\n" "............\n"},
    {"Areas", 1.0, false, boxes,
        "............\n" "............\n" "......rrrr..\n" "......rrrr..\n" "......rrrr..\n"
        "......rrrr..\n" "..####......\n" "..####......\n" "............\n" "............\n"},
    {"HalfAsFine", 0.5, false, boxes,
        "......\n" "...rr.\n" "...rr.\n" ".##...\n" "......\n"},
    {"Hole", 1.0, false, hole,
        "............\n" "............\n" "..########..\n" "..########..\n" "..##....##..\n"
        "..##....##..\n" "..########..\n" "..########..\n" "............\n" "............\n"},
    {"Fit", 1.0, true, [](Recording& recording) { recording.rectangle(QRectF(3, 3, 2, 1), INK); },
        "......\n" "......\n" "..##..\n" "......\n" "......\n"},
    {"LaterIsOnTop", 1.0, true, [](Recording& recording) {
            recording.rectangle(QRectF(0, 0, 2, 2), INK);
            recording.line({0, 0}, {0, 1}, 0, RED_INK);
        },
        "......\n" "......\n" "..r#..\n" "..r#..\n" "......\n" "......\n"},
    {"Centred", 1.0, false, [](Recording& recording) { recording.rectangle(QRectF(0, 0, 2, 2), INK); },
        "............\n" "............\n" "............\n" "............\n" ".....##.....\n"
        ".....##.....\n" "............\n" "............\n" "............\n" "............\n"},
};
// clang-format on

class Pictures : public testing::TestWithParam<PictureRow> {};

TEST_P(Pictures, AreDrawn) {
    SheetLayout sheet = SHEET;
    sheet.fit = GetParam().fit;
    Recording recording(sheet);
    GetParam().draw(recording);
    EXPECT_EQ(pixels(drawImage(recording, sheet, GetParam().pixelsPerMillimetre)), GetParam().picture);
}

INSTANTIATE_TEST_SUITE_P(Rows, Pictures, testing::ValuesIn(PICTURE_ROWS), byRowName);

// How many rows of a column a horizontal line covers at least in part.
int thickness(int32_t width, double pixelsPerMillimetre) {
    Recording recording(SHEET);
    recording.line({0, 3}, {8, 3}, width, INK);
    const QImage image = drawImage(recording, SHEET, pixelsPerMillimetre);
    int rows = 0;
    for (int y = 0; y < image.height(); ++y) {
        rows += image.pixel(image.width() / 2, y) != 0xFFFFFFFFU ? 1 : 0;
    }
    return rows;
}

TEST(Lines, AreAsWideAsOnPaper) {
    EXPECT_EQ(thickness(0, 1.0), 1);
    EXPECT_EQ(thickness(0, 5.0), 1);
    EXPECT_NEAR(thickness(0, 50.0), 9, 1);  // 0.18 mm
    EXPECT_NEAR(thickness(0, 100.0), 18, 1);
    EXPECT_NEAR(thickness(2, 10.0), 20, 1);
    EXPECT_NEAR(thickness(1, 0.5), 1, 1);
}

TEST(Images, HaveTheSizeOfThePaper) {
    const auto size = [](const SheetLayout& sheet, double pixelsPerMillimetre) {
        return drawImage(Recording(sheet), sheet, pixelsPerMillimetre).size();
    };
    EXPECT_EQ(size(SHEET, 10.0), QSize(120, 100));
    EXPECT_EQ(size(SHEET, 0.01), QSize(1, 1));
    const SheetLayout a4 = layOut({}, false);
    EXPECT_EQ(size(a4, 300 / 25.4), QSize(2480, 3508));
    EXPECT_EQ(size(a4, 10 / 25.4), QSize(83, 117));
}

TEST(Images, AreRefusedWhereTheyAreTooLarge) {
    const SheetLayout strip = layOut({.width = 10.0, .height = 1000.0}, false);
    EXPECT_FALSE(drawImage(Recording(strip), strip, 32.7).isNull());
    EXPECT_TRUE(drawImage(Recording(strip), strip, 32.8).isNull());
    const SheetLayout most = layOut({.width = 5080.0, .height = 5080.0}, false);
    EXPECT_TRUE(drawImage(Recording(most), most, 16385.0 / 5080.0).isNull());
    EXPECT_TRUE(drawImage(Recording(most), most, 2400 / 25.4).isNull());
    EXPECT_TRUE(drawImage(Recording(most), most, 1e300).isNull());
}

}  // namespace
}  // namespace qrvel
