// The fill is compared with a plain one, which asks for every pixel how many sides lie to its left.
#include "qrvel/output/even_odd_fill.h"

#include <gtest/gtest.h>

#include <chrono>
#include <climits>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace qrvel {
namespace {

constexpr uint32_t INK = 0xFF0000FFU;
constexpr int32_t WIDTH = 150;  // more than two words of 64 bits
constexpr int32_t HEIGHT = 20;

using Polygon = std::vector<OUTPoint>;

struct SheetLayout {
    std::vector<uint32_t> pixels = std::vector<uint32_t>(std::size_t{WIDTH} * HEIGHT);
    PixelArea area{.origin = pixels.data(), .stride = WIDTH, .width = WIDTH, .height = HEIGHT};

    std::string text() const {
        std::string text;
        for (int32_t y = HEIGHT - 1; y >= 0; --y) {
            for (int32_t x = 0; x < WIDTH; ++x) {
                text += *area.at(x, y) == INK ? '#' : '.';
            }
            text += '\n';
        }
        return text;
    }
};

bool isLeftOf(OUTPoint from, OUTPoint to, int32_t x, int32_t y) {
    if (from.y > to.y) std::swap(from, to);
    if (y < from.y || y >= to.y) return false;
    using Wide = __int128;
    return Wide{x - Wide{from.x}} * (Wide{to.y} - from.y) >= (Wide{y} - from.y) * (Wide{to.x} - from.x);
}

std::string plain(const std::vector<Polygon>& polygons) {
    SheetLayout sheet;
    for (int32_t y = 0; y < HEIGHT; ++y) {
        for (int32_t x = 0; x < WIDTH; ++x) {
            int sides = 0;
            for (const Polygon& polygon : polygons) {
                for (std::size_t i = 0; i < polygon.size(); ++i) {
                    sides += isLeftOf(polygon[i], polygon[(i + 1) % polygon.size()], x, y) ? 1 : 0;
                }
            }
            if (sides % 2 == 1) *sheet.area.at(x, y) = INK;
        }
    }
    return sheet.text();
}

std::string filled(EvenOddFill& fill, const std::vector<Polygon>& polygons) {
    SheetLayout sheet;
    Polygon points;
    std::vector<int32_t> counts;
    for (const Polygon& polygon : polygons) {
        points.insert(points.end(), polygon.begin(), polygon.end());
        counts.push_back(static_cast<int32_t>(polygon.size()));
    }
    fill.fill(sheet.area, points, counts, INK);
    return sheet.text();
}

TEST(EvenOddFill, FillsThePixelsWithAnOddNumberOfSidesToTheirLeft) {
    std::mt19937 random(1);
    EvenOddFill fill;  // one for all: nothing stays behind
    for (const int32_t reach : {30, 200, 100000, INT_MAX}) {
        std::uniform_int_distribution<int32_t> any(reach == INT_MAX ? INT_MIN : -reach, reach);
        for (int round = 0; round < 300; ++round) {
            std::vector<Polygon> polygons(random() % 4);
            for (Polygon& polygon : polygons) {
                polygon.resize(random() % 7);
                for (OUTPoint& point : polygon) {
                    point = {.x = any(random), .y = any(random)};
                }
            }
            ASSERT_EQ(filled(fill, polygons), plain(polygons)) << "reach " << reach << ", round " << round;
        }
    }
}

TEST(EvenOddFill, CoversAsManyPixelsAsABox) {
    EvenOddFill fill;
    const std::string text = filled(fill, {{{2, 3}, {7, 3}, {7, 5}, {2, 5}}});
    EXPECT_EQ(std::count(text.begin(), text.end(), '#'), 5 * 2);
    EXPECT_EQ(filled(fill, {{{-9, -9}, {999, -9}, {999, 999}, {-9, 999}}}),
              filled(fill, {{{0, 0}, {WIDTH, 0}, {WIDTH, HEIGHT}, {0, HEIGHT}}}));
}

TEST(EvenOddFill, LeavesAHole) {
    EvenOddFill fill;
    const std::string text =
        filled(fill, {{{0, 0}, {140, 0}, {140, 20}, {0, 20}}, {{60, 5}, {130, 5}, {130, 10}, {60, 10}}});
    EXPECT_EQ(std::count(text.begin(), text.end(), '#'), 140 * 20 - 70 * 5);
}

TEST(EvenOddFill, AnEmptyAreaTakesNothing) {
    EvenOddFill fill;
    const OUTPoint points[] = {{0, 0}, {9, 0}, {9, 9}};
    const int32_t counts[] = {3};
    std::vector<uint32_t> pixels(30);
    for (const auto& [width, height] : {std::pair{0, 3}, {3, 0}, {0, 0}}) {
        fill.fill({.origin = pixels.data(), .stride = 3, .width = width, .height = height}, points, counts, INK);
    }
    EXPECT_EQ(pixels, std::vector<uint32_t>(30));
}

// Half a million points that all cross every row are what one command can ask for.
TEST(EvenOddFill, TakesTheLargestPolygonInAMoment) {
    SheetLayout sheet;
    Polygon points;
    for (int32_t i = 0; i < 256 * 2000; ++i) {
        points.push_back({.x = i % WIDTH, .y = i % 2 == 0 ? INT_MIN : INT_MAX});
    }
    const int32_t counts[] = {static_cast<int32_t>(points.size())};
    EvenOddFill fill;
    const auto start = std::chrono::steady_clock::now();
    fill.fill(sheet.area, points, counts, INK);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
    // The sides up to column 49 are there 3414 times, which is as if they were not, and the others 3413 times.
    Polygon odd = {points.front()};
    odd.insert(odd.end(), points.begin() + 49, points.begin() + WIDTH);
    EXPECT_EQ(sheet.text(), plain({odd}));
}

}  // namespace
}  // namespace qrvel
