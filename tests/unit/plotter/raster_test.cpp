#include "plotter/raster.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>

namespace plotter {
namespace {

using namespace std::string_literals;

// ---- one row ----

struct DecodeRow {
    std::string name;
    int method;
    std::string seed;
    std::string data;
    std::string expected;
};

class RowDecoding : public testing::TestWithParam<DecodeRow> {};

TEST_P(RowDecoding, GivesTheRow) {
    RowDecoder decoder;
    decoder.reset(400);
    ASSERT_TRUE(decoder.decode(0, GetParam().seed));
    ASSERT_TRUE(decoder.decode(GetParam().method, GetParam().data));
    EXPECT_EQ(std::string(decoder.row().begin(), decoder.row().end()), GetParam().expected);
}

// clang-format off
const DecodeRow DECODE_ROWS[] = {
    {"AsIs",              0, "",         "AB",                              "AB"},
    {"AsIsShorter",       0, "XXXX",     "AB",                              "AB"},
    {"AsIsBeyond",        0, "",         std::string(500, 'A'),             std::string(400, 'A')},
    {"Runs",              1, "",         "\2A\0B"s,                         "AAAB"},
    {"RunsBeyond",        1, "",         "\xff" "A\xff" "B",                std::string(256, 'A') + std::string(144, 'B')},
    {"Packed",            2, "",         "\2ABC\xfeX",                      "ABCXXX"},
    {"PackedNothing",     2, "",         "\x80\0A\x80"s,                    "A"},
    {"PackedLongest",     2, "",         "\x81" "A",                        std::string(128, 'A')},
    {"PackedCutLiteral",  2, "",         "\5AB",                            "AB"},
    {"PackedCutRun",      2, "",         "\0A\xfe"s,                        "A"},
    {"Delta",             3, "AAAAAAAA", "\x23XY\1Z",                       "AAAXYAZA"},
    {"DeltaNothing",      3, "AB",       "",                                "AB"},
    {"DeltaFromStart",    3, "AAAAAAAA", "\xe0" "12345678",                 "12345678"},
    {"DeltaFar",          3, "A",        "\x1f\0X"s,                        "A" + std::string(30, '\0') + "X"},
    {"DeltaFarther",      3, "A",        "\x1f\xff\1X",                     "A" + std::string(286, '\0') + "X"},
    {"DeltaBeyond",       3, "A",        "\x1f\xff\xff\xff\0X"s,            "A"},
    {"DeltaCut",          3, "AAAA",     "\x60" "XY",                       "XYAA"},
    {"Literals",          9, "AAAAAAAA", "\x12XYZ",                         "AAXYZAAA"},
    {"LiteralsFar",       9, "A",        "\x78\0X"s,                        "A" + std::string(14, '\0') + "X"},
    {"LiteralsMany",      9, "",         "\7\1" "123456789",                "123456789"},
    {"Repeated",          9, "AAAAAAAA", "\xa2" "B",                        "ABBBBAAA"},
    {"RepeatedFar",       9, "AAAAAAAA", "\xe0\2C",                         "AAAAACCA"},
    {"RepeatedMany",      9, "",         "\x9f\0C"s,                        std::string(33, 'C')},
    {"RepeatedMore",      9, "",         "\x9f\xff\1C",                     std::string(289, 'C')},
    {"BothExtended",      9, "",         "\xff\1\2C",                       std::string(4, '\0') + std::string(35, 'C')},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(All, RowDecoding, testing::ValuesIn(DECODE_ROWS),
                         [](const auto& row) { return row.param.name; });

TEST(RowDecoding, LeavesTheRowWhereDataMakeNone) {
    RowDecoder decoder;
    decoder.reset(10);
    ASSERT_TRUE(decoder.decode(0, "AB"));
    EXPECT_FALSE(decoder.decode(1, "\1AB"));
    EXPECT_FALSE(decoder.decode(7, "AB"));
    EXPECT_EQ(std::string(decoder.row().begin(), decoder.row().end()), "AB");
    EXPECT_EQ(decoder.at(1), 'B');
    EXPECT_EQ(decoder.at(2), 0);
}

// ---- pictures ----

// Keeps what is drawn as letters by place; rectangles must not lie over each other.
struct Canvas {
    std::map<std::pair<int, int>, char> cells;  // by row and column, in plotter units, rows counting downwards
    std::size_t rectangles = 0;
    Report report;
    Raster raster{[this](const Area& area, const Ink& ink) { draw(area, ink); }, report};

    static char letterOf(Colour colour) {
        static const std::map<Colour, char> LETTERS = {
            {{0, 0, 0}, '#'},     {{255, 0, 0}, 'R'},   {{0, 255, 0}, 'G'},   {{0, 0, 255}, 'B'},
            {{255, 255, 0}, 'Y'}, {{255, 0, 255}, 'M'}, {{0, 255, 255}, 'C'}, {{255, 255, 255}, 'W'}};
        const auto at = LETTERS.find(colour);
        return at == LETTERS.end() ? '?' : at->second;
    }

    void draw(const Area& area, const Ink& ink) {
        EXPECT_EQ(ink.pen, -1);
        for (const Ring& ring : area) {
            ++rectangles;
            Box box;
            for (const Point p : ring) {
                box.add(p);
            }
            const auto toCell = [](double value) { return static_cast<int>(std::lround(value)); };
            for (int row = toCell(-box.high.y); row < toCell(-box.low.y); ++row) {
                for (int column = toCell(box.low.x); column < toCell(box.high.x); ++column) {
                    EXPECT_TRUE(cells.emplace(std::pair(row, column), letterOf(ink.colour)).second) << "drawn twice";
                }
            }
        }
    }

    std::string text() const {
        std::string lines;
        int row = 0;
        std::string line;
        for (const auto& [at, letter] : cells) {
            for (; row < at.first; ++row) {
                lines += line + "\n";
                line.clear();
            }
            line.resize(static_cast<std::size_t>(at.second), '.');
            line += letter;
        }
        return lines + line;
    }
};

// A pixel is a plotter unit; the first one lies right of and below 0, 0.
RasterPlace place(std::optional<std::size_t> columns) {
    return {{1, 0, 0, 0, -1, 0}, columns, {}};
}

const std::vector<Colour> MONO = {{255, 255, 255}, {0, 0, 0}};
const std::vector<Colour> PRIMARIES = {{0, 0, 0},   {255, 0, 0},   {0, 255, 0},   {255, 255, 0},
                                       {0, 0, 255}, {255, 0, 255}, {0, 255, 255}, {255, 255, 255}};

TEST(Raster, JoinsEqualRows) {
    Canvas canvas;
    canvas.raster.begin(place(8), {}, MONO);
    canvas.raster.addRow(0, "\x3c");
    canvas.raster.addRow(0, "\x3c");
    canvas.raster.addRow(0, "\xc3");
    canvas.raster.addRow(3, "");
    EXPECT_EQ(canvas.rectangles, 0u);
    canvas.raster.end();
    EXPECT_EQ(canvas.text(), "..####\n..####\n##....##\n##....##");
    EXPECT_EQ(canvas.rectangles, 3u);
    EXPECT_EQ(canvas.raster.rows(), 4u);
}

TEST(Raster, CutsAtItsColumns) {
    Canvas canvas;
    canvas.raster.begin(place(3), {}, MONO);
    canvas.raster.addRow(0, "\xff\xff");
    canvas.raster.end();
    EXPECT_EQ(canvas.text(), "###");
}

TEST(Raster, WithoutColumnsIsAsWideAsItsData) {
    Canvas canvas;
    canvas.raster.begin(place({}), {}, {{0, 0, 0}, {255, 0, 0}});
    canvas.raster.addRow(0, "\x80");
    canvas.raster.addRow(0, "\xff\x01");
    canvas.raster.end();
    EXPECT_EQ(canvas.text(), "R#######\nRRRRRRRR#######R");
}

TEST(Raster, TakesPlanes) {
    Canvas canvas;
    PixelFormat format;
    format.bits = 3;
    canvas.raster.begin(place(8), format, PRIMARIES);
    canvas.raster.addPlane(0, "\x55");
    canvas.raster.addPlane(0, "\x33");
    canvas.raster.addRow(0, "\x0f");
    canvas.raster.addRow(0, "\x80");  // the first plane alone: the others are zeros
    canvas.raster.end();
    EXPECT_EQ(canvas.text(), "#RGYBMC\nR#######");
}

TEST(Raster, TakesPixels) {
    Canvas canvas;
    PixelFormat format;
    format.encoding = PixelFormat::Encoding::IndexByPixel;
    format.bits = 4;
    canvas.raster.begin(place(4), format, PRIMARIES);
    canvas.raster.addRow(0, "\x12\x47");
    canvas.raster.end();
    EXPECT_EQ(canvas.text(), "RGB");
}

TEST(Raster, TakesDirectPixels) {
    Canvas canvas;
    PixelFormat format;
    format.encoding = PixelFormat::Encoding::DirectByPixel;
    format.bits = 8;
    canvas.raster.begin(place(3), format, {});
    canvas.raster.addRow(0, "\xff\0\0\xff\xff\xff\0\xff\0"s);
    format.subtractive = true;
    canvas.raster.begin({{1, 0, 0, 0, -1, -1}, 2, {}}, format, {});
    canvas.raster.addRow(0, "\xff\0\0\0\0\xff"s);
    canvas.raster.end();
    EXPECT_EQ(canvas.text(), "R.G\nCY");
}

TEST(Raster, TakesDirectPlanes) {
    Canvas canvas;
    PixelFormat format;
    format.encoding = PixelFormat::Encoding::DirectByPlane;
    canvas.raster.begin(place(4), format, {});
    canvas.raster.addPlane(0, "\xa0");
    canvas.raster.addPlane(0, "\x60");
    canvas.raster.addRow(0, "\x20");
    canvas.raster.end();
    EXPECT_EQ(canvas.text(), "RG.#");
}

TEST(Raster, TakesBlocks) {
    Canvas canvas;
    canvas.raster.begin(place(8), {}, MONO);
    //                       as it is      repeated 1 time  empty, 1        by runs      unknown      by difference
    canvas.raster.addRow(5,
                         "\0\0\1\xf0"
                         "\5\0\1"
                         "\4\0\1"
                         "\1\0\2\0\x0f"
                         "\7\0\1A"
                         "\3\0\2\0\x81"s);
    canvas.raster.end();
    EXPECT_EQ(canvas.text(), "####\n####\n\n....####\n#......#");
}

TEST(Raster, SkipsRowsAndForgetsTheLastOne) {
    Canvas canvas;
    canvas.raster.begin(place(8), {}, MONO);
    canvas.raster.addRow(0, "\xf0");
    canvas.raster.skipRows(2);
    canvas.raster.addRow(3, "\1A"s);  // beyond its 8 columns
    canvas.raster.addRow(3, "\0\x80"s);
    canvas.raster.end();
    EXPECT_EQ(canvas.text(), "####\n\n\n\n#");
}

TEST(Raster, KeepsThePlaceOfARowItCannotRead) {
    Canvas canvas;
    canvas.raster.begin(place(8), {}, MONO);
    canvas.report.setOffset(11);
    canvas.raster.addRow(7, "\xf0");
    canvas.report.setOffset(12);
    canvas.raster.addRow(0, "\xf0");
    canvas.raster.addRow(1, "\1");  // no row at all
    canvas.raster.addRow(0, "\x0f");
    canvas.raster.end();
    EXPECT_EQ(canvas.text(), "\n####\n....####");
    ASSERT_EQ(canvas.report.passedOver().size(), 1u);
    EXPECT_EQ(canvas.report.passedOver()[0].what, "raster compression 7");
    EXPECT_EQ(canvas.report.passedOver()[0].offset, 11u);
}

TEST(Raster, BeginsFurtherRight) {
    Canvas canvas;
    canvas.raster.begin(place({}), {}, MONO);
    canvas.raster.setLeft(3);
    canvas.raster.addRow(0, "\xc0");
    canvas.raster.end();
    EXPECT_EQ(canvas.text(), "...##");
}

TEST(Raster, EndsAtTheLastRowOfItsPage) {
    Canvas canvas;
    canvas.raster.begin({{1, 0, 0, 0, -1, 0}, 8, 2}, {}, MONO);
    for (int row = 0; row < 5; ++row) {
        canvas.raster.addRow(0, "\x80");
    }
    canvas.raster.end();
    EXPECT_EQ(canvas.text(), "#\n#");
    EXPECT_TRUE(canvas.report.bounds().empty());
}

// Where the extents of a large picture end up, and what it is made of.
struct Extent {
    Box box;
    std::size_t rectangles = 0;
    std::map<Colour, double> areas;
    Report report;
    Raster raster{[this](const Area& area, const Ink& ink) {
                      for (const Ring& ring : area) {
                          ++rectangles;
                          std::ranges::for_each(ring, [&](Point p) { box.add(p); });
                          areas[ink.colour] += (ring[1].x - ring[0].x) * (ring[0].y - ring[3].y);
                      }
                  },
                  report};
};

TEST(Raster, IsReducedToWhatAPageShows) {
    Extent extent;
    constexpr std::size_t COLUMNS = 8000;
    extent.raster.setFileSize(1'000'000);
    extent.raster.begin(place(COLUMNS), {}, MONO);
    extent.raster.addRow(0, std::string(COLUMNS / 8, '\xaa'));
    for (int row = 1; row < 1501; ++row) {
        extent.raster.addRow(3, "");
    }
    extent.raster.end();
    // Every second pixel is black: grey everywhere.
    EXPECT_EQ(extent.box.low, (Point{0, -1501}));
    EXPECT_EQ(extent.box.high, (Point{8000, 0}));
    EXPECT_EQ(extent.rectangles, 1u);
    EXPECT_EQ(extent.areas[(Colour{119, 119, 119})] + extent.areas[(Colour{136, 136, 136})], 8000.0 * 1501);
}

TEST(Raster, WidensWhereColumnsAreUnknown) {
    Extent extent;
    extent.raster.begin(place({}), {}, MONO);
    extent.raster.addRow(0, "\xff");
    extent.raster.addRow(0, std::string(1000, '\xff'));
    extent.raster.addRow(0, std::string(2000, '\xff'));
    for (int row = 0; row < 5; ++row) {
        extent.raster.addRow(3, "");
    }
    extent.raster.end();
    EXPECT_EQ(extent.box.high.x, 16000);
    EXPECT_EQ(extent.box.low.y, -8);
    EXPECT_GT(extent.areas[(Colour{0, 0, 0})], 16000.0 * 4 - 1);
}

TEST(Raster, OfNoiseKeepsToItsRectangles) {
    Extent extent;
    PixelFormat format;
    constexpr std::size_t COLUMNS = 1600;
    extent.raster.begin(place(COLUMNS), format, MONO);
    uint32_t random = 1;
    for (int row = 0; row < 1600; ++row) {
        std::string bytes;
        for (std::size_t i = 0; i < COLUMNS / 8; ++i) {
            random = random * 1664525 + 1013904223;
            bytes += static_cast<char>(random >> 24);
        }
        extent.raster.addRow(0, bytes);
    }
    extent.raster.end();
    EXPECT_GT(extent.rectangles, 10'000u);
    EXPECT_LE(extent.rectangles, MOST_RECTANGLES / 2);
}

TEST(Raster, BoundsItsRows) {
    Extent extent;
    extent.raster.begin(place(8), {}, MONO);
    extent.raster.addRow(0, "\x80");
    extent.raster.skipRows(2147483648.0);
    extent.raster.addRow(0, "\x80");
    extent.raster.end();
    EXPECT_EQ(extent.raster.rows(), MOST_ROWS);
    ASSERT_EQ(extent.report.bounds().size(), 1u);
    EXPECT_EQ(extent.report.bounds()[0].what, "raster: rows");
}

TEST(Raster, BoundsItsWork) {
    Extent extent;
    extent.raster.setFileSize(0);
    extent.raster.begin(place(MOST_COLUMNS * 2), {}, MONO);
    for (int row = 0; row < 200; ++row) {
        extent.raster.addRow(9, "\x9f" + std::string(140, '\xff') + "\1\xaa");
    }
    extent.raster.end();
    ASSERT_FALSE(extent.report.bounds().empty());
    EXPECT_EQ(extent.report.bounds()[0].what, "raster: steps of decoding");
}

TEST(Raster, SurvivesWhatIsNotOpen) {
    Extent extent;
    extent.raster.addRow(0, "A");
    extent.raster.addPlane(0, "A");
    extent.raster.skipRows(5);
    extent.raster.end();
    EXPECT_EQ(extent.rectangles, 0u);
    extent.raster.begin(place(0), {}, MONO);
    extent.raster.addPlane(0, "A");
    extent.raster.addPlane(0, "A");
    extent.raster.addRow(0, "A");
    extent.raster.end();
    EXPECT_EQ(extent.rectangles, 0u);
}

}  // namespace
}  // namespace plotter
