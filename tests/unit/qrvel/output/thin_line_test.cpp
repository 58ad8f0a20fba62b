// The thin line is compared with a plain one, which walks the whole line in wide arithmetic and sets what lies inside.
#include "qrvel/output/thin_line.h"

#include <gtest/gtest.h>

#include <chrono>
#include <climits>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace qrvel {
namespace {

constexpr uint32_t INK = 0xFF0000FFU;
constexpr int32_t WIDTH = 61;
constexpr int32_t HEIGHT = 43;

class SheetLayout {
  public:
    SheetLayout(int32_t width, int32_t height)
        : pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)),
          area_{.origin = pixels_.data(), .stride = width, .width = width, .height = height} {}
    SheetLayout() : SheetLayout(WIDTH, HEIGHT) {}
    SheetLayout(SheetLayout&&) = default;  // the pixels stay where they are

    const PixelArea& area() const { return area_; }
    bool operator==(const SheetLayout& other) const { return pixels_ == other.pixels_; }
    void set(int64_t x, int64_t y) {
        if (x >= 0 && x < area_.width && y >= 0 && y < area_.height) *area_.at(x, y) = INK;
    }
    std::string text() const {
        std::string text;
        for (int32_t y = area_.height - 1; y >= 0; --y) {
            for (int32_t x = 0; x < area_.width; ++x) {
                text += *area_.at(x, y) == INK ? '#' : '.';
            }
            text += '\n';
        }
        return text;
    }

  private:
    std::vector<uint32_t> pixels_;
    PixelArea area_;
};

struct Line {
    int32_t x1, y1, x2, y2;
};

// Only the steps near the sheet are visited, by the definition of the line and without the cut under test.
SheetLayout uncut(Line line) {
    using Wide = __int128;
    SheetLayout sheet;
    Wide x1 = line.x1, y1 = line.y1, x2 = line.x2, y2 = line.y2;
    const auto size = [](Wide value) { return value < 0 ? -value : value; };
    const bool alongX = size(x2 - x1) >= size(y2 - y1);
    if (!alongX) {
        std::swap(x1, y1);
        std::swap(x2, y2);
    }
    if (x1 > x2) {
        std::swap(x1, x2);
        std::swap(y1, y2);
    }
    const Wide length = x2 - x1;
    const Wide rise = size(y2 - y1);
    const Wide last = alongX ? WIDTH : HEIGHT;
    for (Wide major = x1 < -1 ? Wide{-1} : x1; major <= x2 && major <= last; ++major) {
        const Wide offset = length == 0 ? 0 : (2 * (major - x1) * rise + length) / (2 * length);
        const Wide minor = y2 < y1 ? y1 - offset : y1 + offset;
        const auto x = static_cast<int64_t>(alongX ? major : minor);
        const auto y = static_cast<int64_t>(alongX ? minor : major);
        sheet.set(x, y);
    }
    return sheet;
}

SheetLayout drawn(Line line) {
    SheetLayout sheet;
    drawThinLine(sheet.area(), line.x1, line.y1, line.x2, line.y2, INK);
    return sheet;
}

// Only what differs becomes text: there are tens of thousands of lines.
void expectShown(const SheetLayout& shown, const SheetLayout& expected, Line line) {
    if (shown == expected) return;
    FAIL() << line.x1 << ' ' << line.y1 << ' ' << line.x2 << ' ' << line.y2 << '\n'
           << shown.text() << "instead of\n"
           << expected.text();
}

void expectSame(Line line) {
    const SheetLayout expected = uncut(line);
    const Line back{.x1 = line.x2, .y1 = line.y2, .x2 = line.x1, .y2 = line.y1};
    ASSERT_NO_FATAL_FAILURE(expectShown(drawn(line), expected, line));
    ASSERT_NO_FATAL_FAILURE(expectShown(drawn(back), expected, back));
}

TEST(ThinLine, CutLinesSetThePixelsOfTheWholeLine) {
    std::mt19937 random(1);
    for (const int32_t reach : {50, 100, 1000, 100000, INT_MAX}) {
        std::uniform_int_distribution<int32_t> any(reach == INT_MAX ? INT_MIN : -reach, reach);
        for (int round = 0; round < 3000; ++round) {
            expectSame({.x1 = any(random), .y1 = any(random), .x2 = any(random), .y2 = any(random)});
        }
    }
}

// On the largest area that an image can be. Its rows lie one pixel apart, so a rising line that goes along x sets pixel
// x + y of a row, each another one.
TEST(ThinLine, StaysExactOnTheLargestArea) {
    constexpr int32_t SIDE = 32767;
    std::vector<uint32_t> row(2 * SIDE);
    const PixelArea area{.origin = row.data(), .stride = 1, .width = SIDE, .height = SIDE};
    std::mt19937 random(1);
    for (int round = 0; round < 300; ++round) {
        const int32_t length = round % 3 == 0 ? SIDE - 1 - round : static_cast<int32_t>(random() % SIDE);
        const int32_t rise = static_cast<int32_t>(random() % static_cast<uint32_t>(length + 1));
        std::vector<uint32_t> expected(row.size());
        for (int64_t i = 0; i <= length; ++i) {
            const int64_t offset = length == 0 ? 0 : (2 * i * rise + length) / (2 * int64_t{length});
            expected[static_cast<std::size_t>(i + offset)] = INK;
        }
        std::fill(row.begin(), row.end(), 0);
        drawThinLine(area, 0, 0, length, rise, INK);
        ASSERT_TRUE(row == expected) << length << ' ' << rise;
    }
}

TEST(ThinLine, LinesIntoTheSheetFromAnywhere) {
    std::mt19937 random(2);
    std::uniform_int_distribution<int32_t> far(INT_MIN, INT_MAX);
    std::uniform_int_distribution<int32_t> near(-3, WIDTH + 3);
    for (int round = 0; round < 5000; ++round) {
        expectSame({.x1 = near(random), .y1 = near(random), .x2 = far(random), .y2 = far(random)});
    }
}

TEST(ThinLine, OutermostCoordinates) {
    const int32_t ends[] = {INT_MIN, INT_MIN + 1, -1, 0, 1, HEIGHT - 1, HEIGHT, INT_MAX - 1, INT_MAX};
    for (const int32_t x1 : ends) {
        for (const int32_t y1 : ends) {
            for (const int32_t x2 : ends) {
                for (const int32_t y2 : ends) {
                    expectSame({.x1 = x1, .y1 = y1, .x2 = x2, .y2 = y2});
                }
            }
        }
    }
}

TEST(ThinLine, BothEndPointsAreSet) {
    for (int32_t x = 0; x < 41; ++x) {
        for (int32_t y = 0; y < 41; ++y) {
            SheetLayout sheet;
            drawThinLine(sheet.area(), 20, 20, x, y, INK);
            EXPECT_EQ(*sheet.area().at(20, 20), INK);
            EXPECT_EQ(*sheet.area().at(x, y), INK) << x << ' ' << y;
        }
    }
}

TEST(ThinLine, OnePointIsOnePixel) {
    SheetLayout sheet(3, 3);
    drawThinLine(sheet.area(), 1, 1, 1, 1, INK);
    EXPECT_EQ(sheet.text(), "...\n.#.\n...\n");
}

TEST(ThinLine, AnEmptyAreaTakesNothing) {
    std::vector<uint32_t> pixels(9);
    for (const auto& [width, height] : {std::pair{0, 3}, {3, 0}, {0, 0}}) {
        const PixelArea none{.origin = pixels.data() + 3, .stride = 1, .width = width, .height = height};
        drawThinLine(none, -5, -7, 9, 30, INK);
        drawThinLine(none, 0, 0, 0, 0, INK);
        drawThinLine(none, 0, 0, 2, 0, INK);
    }
    EXPECT_EQ(pixels, std::vector<uint32_t>(9));
}

TEST(ThinLine, RowsMayRunDownward) {
    std::vector<uint32_t> pixels(6);
    const PixelArea area{.origin = pixels.data() + 3, .stride = -3, .width = 3, .height = 2};
    drawThinLine(area, 0, 0, 1, 1, INK);
    EXPECT_EQ(pixels, (std::vector<uint32_t>{0, INK, 0, INK, 0, 0}));
}

TEST(ThinLine, TimeIsBoundedByTheSheet) {
    SheetLayout sheet;
    const auto begin = std::chrono::steady_clock::now();
    for (int round = 0; round < 100000; ++round) {
        drawThinLine(sheet.area(), INT_MIN, INT_MIN + round, INT_MAX, INT_MAX - round, INK);
        drawThinLine(sheet.area(), INT_MIN, round % HEIGHT, INT_MAX, round % HEIGHT, INK);
    }
    // 200,000 lines of four thousand million pixels: uncut, years; cut, far below a second.
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
    EXPECT_EQ(sheet.text().find('.'), std::string::npos);  // there was one along every row
}

}  // namespace
}  // namespace qrvel
