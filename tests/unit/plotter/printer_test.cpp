#include "plotter/printer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace plotter {
namespace {

using namespace std::string_literals;

std::string number(double value) {
    return std::to_string(std::lround(value));
}

// Writes down what is drawn, rounded: "dot 240,508", "line 0,0 10,10", "area 0,0 10,10" (two corners), "page".
class WrittenSheet : public Sheet {
  public:
    std::string text;
    Box extent;
    Ink last;

    void line(std::span<const Point> points, const Ink& ink) override {
        text += points.size() == 1 ? "dot" : "line";
        for (const Point p : points) {
            text += " " + number(p.x) + "," + number(p.y);
            extent.add(p);
        }
        finish(ink);
    }
    void area(const Area& rings, const Ink& ink) override {
        for (const Ring& ring : rings) {
            Box box;
            std::ranges::for_each(ring, [&](Point p) { box.add(p), extent.add(p); });
            text += "area " + number(box.low.x) + "," + number(box.low.y) + " " + number(box.high.x) + "," +
                    number(box.high.y);
            finish(ink);
        }
    }
    void nextPage() override { text += "page; "; }

  private:
    void finish(const Ink& ink) {
        last = ink;
        text += "; ";
    }
};

// A printer and a machine, and of the plotter's language three instructions of a letter: + draws a dot where the pen
// is, 1 takes the pen to 1000,1000, and I is IN.
struct Rig {
    WrittenSheet sheet;
    Report report;
    Machine machine{Traits{}, sheet, report, 0};
    Printer printer{machine, [this](std::string_view macro) { walk(macro); }};

    void run(std::string_view bytes) {
        printer.begin(bytes);
        walk(bytes);
        printer.finish();
    }
    void walk(std::string_view bytes) {
        for (std::size_t at = 0; at < bytes.size();) {
            if (printer.language() == Language::Plotter && bytes[at] != ESCAPE) {
                instruct(bytes[at++]);
                continue;
            }
            const std::size_t next = printer.step(bytes, at);
            ASSERT_GT(next, at);
            at = next;
        }
    }
    void instruct(char letter) {
        if (letter == '+') {
            machine.drawSolid({&machine.state.position, 1});
        } else if (letter == '1') {
            machine.state.position = {1000, 1000};
        } else if (letter == 'I') {
            machine.initialise();
        }
    }
};

struct Row {
    std::string name;
    std::string bytes;
    std::string expected;
};

class PrinterDraws : public testing::TestWithParam<Row> {};

TEST_P(PrinterDraws, OnTheSheet) {
    Rig rig;
    rig.run(GetParam().bytes);
    EXPECT_EQ(rig.sheet.text, GetParam().expected);
}

const std::string RESET =
    "\x1b"
    "E";
const std::string EXIT = "\x1b%-12345X";

// A dot of raster at 1016 dots an inch is a plotter unit.
std::string raster(const std::string& start, const std::string& rows) {
    return RESET + "\x1b&l26A\x1b*t1016R" + start + rows + "\x1b*rC";
}

// clang-format off
const Row ROWS[] = {
    // the frame, and the pen in it
    {"FirstEntry",        RESET + "\x1b%0B+",                                          "dot 254,508; "},
    {"EntryOnA4",         RESET + "\x1b&l26A\x1b%0B+",                                 "dot 240,508; "},
    {"EntryOnItsSide",    RESET + "\x1b&l1O\x1b%0B+",                                  "dot 203,508; "},
    {"EntryByName",       EXIT + "@PJL SET PAPER=A4\r\n@PJL ENTER LANGUAGE=PCL\r\n\x1b%0B+", "dot 240,508; "},
    {"FrameAtCursor",     RESET + "\x1b*c2880x2160Y\x1b*p300x300Y\x1b*c0T\x1b%0B+",    "dot 1270,6604; "},
    {"FrameOfAPlot",      RESET + "\x1b*c2880x2160Y\x1b*p300x300Y\x1b*c0T\x1b*c8k6L\x1b%0B1+", "dot 1770,7104; "},
    {"SameFrameKeepsPen", RESET + "\x1b%0B1\x1b%0A\x1b%0B+",                           "dot 1254,1508; "},
    {"NewFrameTakesPen",  RESET + "\x1b%0B1\x1b%0A\x1b*c2880X\x1b%0B+",                "dot 254,508; "},
    {"PenFromCursor",     RESET + "\x1b&l26A\x1b*p300x300Y\x1b%1B+",                   "dot 1256,10353; "},
    {"CursorFromPen",     RESET + "\x1b%0B1\x1b%1A\x1b%0B\x1b%0A\x1b*p+300X\x1b%1B+",  "dot 2270,1508; "},
    {"CursorKept",        RESET + "\x1b*p0x0Y\x1b%0B1\x1b%0A\x1b%1B+",                 "dot 254,10668; "},
    {"CursorPushed",      RESET + "\x1b%0B1\x1b%1A\x1b&f0S\x1b*p0x0Y\x1b&f1S\x1b%1B+", "dot 1254,1508; "},
    {"StandAlone",        RESET + "\x1b%-1B+",                                         "dot 0,0; "},
    {"EntryTooLarge",     RESET + "\x1b%4B\x1b%0B+",                                   "dot 254,508; "},
    {"EntryTwice",        RESET + "\x1b%0B1\x1b%1B+",                                  "dot 1254,1508; "},
    // which language
    {"Bare",              "+",                                                         "dot 0,0; "},
    {"BareWithDevice",    "\x1b.(;\x1b.I81;;17:+",                                     "dot 0,0; "},
    {"BareWithRaster",    "1\x1b%0A\x1b*b2W++\x1b*rC\x1b%0B",                          "area 7,7597 10,7600; area 14,7597 17,7600; "
                                                                                       "area 20,7597 27,7600; area 34,7597 37,7600; "
                                                                                       "area 41,7597 44,7600; area 47,7597 54,7600; "},
    {"NoEntryByJob",      EXIT + "@PJL ENTER LANGUAGE = hp-gl/2\r\n+",                 "dot 0,0; "},
    {"NoEntryAfterReset", EXIT + "@PJL ENTER LANGUAGE=HPGL2\n" + RESET + "+",          "dot 0,0; "},
    {"JobWithoutLanguage", EXIT + "@PJL JOB\n@PJL SET X=Y\n+",                         "dot 0,0; "},
    {"JobWithoutExit",    "@PJL ENTER LANGUAGE=HPGL2\r\n+",                            "dot 0,0; "},
    {"JobTwice",          EXIT + EXIT + "@PJL COMMENT \"+\"\n" + EXIT + "@PJL ENTER LANGUAGE=HPGL2\n+", "dot 0,0; "},
    {"JobAfterReset",     EXIT + "@PJL JOB\r\n" + RESET + "@PJL ENTER LANGUAGE=PCL\r\n\x1b%0B+", "dot 254,508; "},
    {"ForgottenEntry",    RESET + "IN;+",                                              "dot 254,508; "},
    {"DroppedInAPlot",    RESET + "\x1b%0B\x1b*b2W++\x1b&l26A\x1b(8U+",                "dot 254,508; "},
    {"NulsAtTheEnd",      EXIT + "@PJL ENTER LANGUAGE=HPGL2\n+" + EXIT + "@PJL EOJ\n\0\0"s, "dot 0,0; page; "},
    // pages
    {"FormFeed",          RESET + "\x1b%0B+\x1b%0A\f\f\x1b%0B+",                       "dot 254,508; page; dot 254,508; "},
    {"Eject",             RESET + "\x1b%0B+\x1b%1A\x1b&l0H\n\x1b%0A",                  "dot 254,508; page; "},
    {"TwoJobs",           RESET + "\x1b%0B+" + EXIT + RESET + "\x1b%0B+" + RESET,      "dot 254,508; page; dot 254,508; page; "},
    {"OtherPaper",        RESET + "\x1b%0B+\x1b%0A\x1b&l26A\x1b%0B+",                  "dot 254,508; page; dot 240,508; "},
    {"OwnPaper",          RESET + "\x1b&f7200I\x1b&f14400J\x1b&l101A\x1b*p0x0Y\x1b%1B+", "dot 254,19812; "},
    {"UnknownPaper",      RESET + "\x1b&l26A\x1b&l99A\x1b%0B+",                        "dot 240,508; "},
    // the cursor
    {"Decipoints",        RESET + "\x1b&a720h1440V\x1b%1B+",                           "dot 1270,8636; "},
    {"ColumnsAndRows",    RESET + "\x1b&a10c6R\x1b%1B+",                               "dot 1270,9525; "},
    {"Relative",          RESET + "\x1b*p300x300Y\x1b*p-300x+300Y\x1b%1B+",            "dot 254,8636; "},
    {"OtherUnits",        RESET + "\x1b&u100D\x1b*p100x100Y\x1b%1B+",                  "dot 1270,9652; "},
    {"FirstLine",         RESET + "\x1b%1B+",                                          "dot 254,10541; "},
    {"LeftMargin",        RESET + "\x1b&a10L\r\x1b%1B+",                               "dot 1270,10541; "},
    {"LineFeeds",         RESET + "\n\n\x1b=\x1b%1B+",                                 "dot 254,10118; "},
    {"ReturnFeeds",       RESET + "\x1b&k1G\r\x1b%1B+",                                "dot 254,10372; "},
    {"Tab",               RESET + "\t\x1b%1B+",                                        "dot 1067,10541; "},
    {"BlankAdvances",     RESET + "  \b\x1b%1B+",                                      "dot 356,10541; "},
    {"PitchAdvances",     RESET + "\x1b(s0p20H  \x1b%1B+",                             "dot 356,10541; "},
    {"LastLineFeeds",     RESET + "\x1b%0B+\x1b%0A\x1b&a9999V\n\x1b%1B+",              "dot 254,508; page; dot 254,10541; "},
    {"TurnedUp",          RESET + "\x1b&a90P\x1b*p300x0Y\x1b%1B+",                     "dot 254,1016; "},
    {"TurnedOver",        RESET + "\x1b&a180P\x1b*p0x0Y\x1b%1B+",                      "dot 8382,508; "},
    {"TurnedDown",        RESET + "\x1b&a270P\x1b*p300x0Y\x1b%1B+",                    "dot 8382,10160; "},
    // rules
    {"Rule",              RESET + "\x1b*p0x0Y\x1b*c300a30b0P",                         "area 254,10566 1270,10668; "},
    {"RuleByDecipoints",  RESET + "\x1b*p0x0Y\x1b*c720h72v2g2P",                       "area 254,10566 1270,10668; "},
    {"WhiteRule",         RESET + "\x1b*p0x0Y\x1b*c300a30b1P",                         ""},
    {"RuleUpwards",       RESET + "\x1b*p300x300Y\x1b&a90P\x1b*c300a30b0P",            "area 1270,9652 1372,10668; "},
    // raster
    {"Raster",            raster("\x1b*p0x0Y\x1b*r1A", "\x1b*b1W\xf0"),                "area 240,11368 244,11369; "},
    {"RasterAtCursor",    raster("\x1b*p300x0Y\x1b*r1A", "\x1b*b1W\xf0"),              "area 1256,11368 1260,11369; "},
    {"RasterAtMargin",    raster("\x1b*p300x0Y\x1b*r0A", "\x1b*b1W\xf0"),              "area 240,11368 244,11369; "},
    {"RasterUnstarted",   raster("\x1b*p300x0Y", "\x1b*b1W\xf0"),                      "area 240,11368 244,11369; "},
    {"RasterRows",        raster("\x1b*p0x0Y\x1b*r1A", "\x1b*b1w\xf0" "1w\xf0" "3y1W\xf0"), "area 240,11367 244,11369; area 240,11363 244,11364; "},
    {"RasterScaled",      raster("\x1b*p0x0Y\x1b*r8s2T\x1b*t720h360V\x1b*r3A", "\x1b*b1w\xf0" "1W\xf0"), "area 240,10861 748,11369; "},
    {"RasterThenCursor",  raster("\x1b*p0x0Y\x1b*r1A", "\x1b*b1w\xf0" "1W\xf0") + "\x1b%1B+", "area 240,11367 244,11369; dot 240,11367; "},
    {"RasterCutAtPaper",  raster("\x1b*p0x0Y\x1b*r60000s1A", "\x1b*b0m9999W" + std::string(9999, '\xff')), "area 240,11368 8159,11369; "},
    {"RasterTurned",      raster("\x1b*p0x0Y\x1b&a90P\x1b*p0x0Y\x1b*r1A", "\x1b*b1W\xf0"), "area 240,0 241,4; "},
    {"RasterAlongPaper",  RESET + "\x1b&l26a1O\x1b*t1016R\x1b*r3F\x1b*r0A\x1b*b1W\xf0\x1b*rC", "area 11676,8395 11677,8399; "},
    // macros
    {"Macro",             RESET + "\x1b&f5y0X\x1b%0B+\x1b%0A\x1b&f1X\x1b&f2X\x1b&f2X", "dot 254,508; dot 254,508; "},
    {"MacroCalled",       RESET + "\x1b*p300x300Y\x1b&f0X\x1b*p0x0Y\x1b&f1X\x1b&f3X\x1b%1B+", "dot 1270,9652; "},
    {"MacroExecuted",     RESET + "\x1b*p300x300Y\x1b&f0X\x1b*p0x0Y\x1b&f1X\x1b&f2X\x1b%1B+", "dot 254,10668; "},
    {"MacroWithData",     RESET + "\x1b&f0X\x1b*b5W\x1b&f1X\x1b%0B+\x1b%0A\x1b&f1X",   ""},
    {"MacroOverlaid",     RESET + "\x1b&f0X\x1b%0B1+\x1b%0A\x1b&f1x4X\x1b%0B+\x1b%0A\f\f",   "dot 254,508; dot 1254,1508; page; "},
    {"MacroUnknown",      RESET + "\x1b&f7y2X",                                        ""},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(All, PrinterDraws, testing::ValuesIn(ROWS), [](const auto& row) { return row.param.name; });

// ---- captions ----

Box extentOf(const std::string& bytes) {
    Rig rig;
    rig.run(bytes);
    return rig.sheet.extent;
}

TEST(Captions, AreAsHighAsTheirFont) {
    // Capitals of 24 points are 0.7 of that high: 237 plotter units.
    const Box box = extentOf(RESET + "\x1b(s1p24v4148T\x1b*p300x300YH");
    EXPECT_NEAR(box.low.y, 9652, 0.5);
    EXPECT_NEAR(box.height(), 237, 0.5);
    EXPECT_GT(box.low.x, 1270);
    EXPECT_LT(box.high.x, 1270 + 24 * 1016.0 / 72);
}

TEST(Captions, StandInCellsWhereTheFontIsFixed) {
    const Box one = extentOf(RESET + "\x1b*p300x300YH");
    const Box three = extentOf(RESET + "\x1b*p300x300YH H");
    EXPECT_NEAR(three.high.x - one.high.x, 2 * 101.6, 0.01);
    EXPECT_NEAR(one.low.x, 1270, 0.01);
    EXPECT_NEAR(one.width(), 101.6 / 1.5, 0.01);
}

TEST(Captions, HaveWidthsOfTheirOwnWhereItIsProportional) {
    const std::string font = RESET + "\x1b(s1p12v4148T\x1b*p300x300Y";
    EXPECT_LT(extentOf(font + "illi.").width(), extentOf(font + "mwwm.").width() / 2);
}

TEST(Captions, RunInTheDirectionOfText) {
    const Box box = extentOf(RESET + "\x1b*p1200x1200Y\x1b&a90PHHHH");
    EXPECT_NEAR(box.high.x, 254 + 4 * 1016, 0.5);
    EXPECT_LT(box.low.x, box.high.x);
    EXPECT_NEAR(box.low.y, 11176 - 508 - 4 * 1016, 0.5);
    EXPECT_GT(box.height(), 300);
}

TEST(Captions, EndAtTheEdgeOfThePage) {
    EXPECT_LT(extentOf(RESET + std::string(500, 'H')).high.x, 8636);
}

TEST(Captions, AreDecodedByTheirSymbolSet) {
    const auto drawn = [](const std::string& text) {
        Rig rig;
        rig.run(RESET + text);
        return rig.sheet.text;
    };
    const std::string umlaut = drawn("\x1b(8U\xd8");  // Roman-8
    EXPECT_NE(umlaut, drawn("A"));
    EXPECT_EQ(drawn("\x1b(0N\xc4"), umlaut);
    EXPECT_EQ(drawn("\x1b(10U\x8e"), umlaut);
    EXPECT_EQ(drawn("\xc3\x84"), umlaut);  // UTF-8
    EXPECT_EQ(drawn("\x1b)0N\x0e\xc4"), umlaut);
    EXPECT_EQ(drawn("\x1b&p1X\xd8"), umlaut);
}

TEST(Captions, OfUnknownCharactersAreBoxesAndReported) {
    Rig rig;
    rig.run(RESET + "\xe2\xbf\xbf");
    EXPECT_NE(rig.sheet.text, "");
    ASSERT_EQ(rig.report.passedOver().size(), 1u);
    EXPECT_EQ(rig.report.passedOver()[0].what, "text character U+2FFF");
}

TEST(Captions, AreBoundedOnAPage) {
    Rig rig;
    rig.run(RESET + "\x1b&l0L" + [] {
        std::string text;
        for (std::size_t i = 0; i < MOST_CAPTION_CHARACTERS + 10; ++i) {
            text += i % 50 == 0 ? "\r-" : "-";
        }
        return text;
    }());
    EXPECT_EQ(std::ranges::count(rig.sheet.text, ';'), static_cast<std::ptrdiff_t>(MOST_CAPTION_CHARACTERS));
    ASSERT_EQ(rig.report.bounds().size(), 1u);
    EXPECT_EQ(rig.report.bounds()[0].what, "text of a page");
}

TEST(Captions, AreInTheForegroundsColour) {
    Rig rig;
    rig.run(RESET + "\x1b*r3U\x1b*v4SA");
    EXPECT_EQ(rig.sheet.last.pen, 4);
    EXPECT_EQ(rig.sheet.last.colour, (Colour{0, 0, 255}));
}

// ---- colours ----

struct ColourRow {
    std::string name;
    std::string escapes;  // then a row of one pixel of index 1
    Colour expected;
};

class RasterColour : public testing::TestWithParam<ColourRow> {};

TEST_P(RasterColour, IsThePalettes) {
    Rig rig;
    rig.run(RESET + GetParam().escapes + "\x1b*r1s1A\x1b*b1V\x80\x1b*b1W" + "\0"s + "\x1b*rC");
    EXPECT_EQ(rig.sheet.last.pen, -1);
    EXPECT_EQ(rig.sheet.last.colour, GetParam().expected);
    EXPECT_EQ(rig.printer.colourPrinter(), GetParam().name != "Default" && GetParam().name != "Mono");
}

// clang-format off
const ColourRow COLOURS[] = {
    {"Default",        "",                                                              {0, 0, 0}},
    {"Mono",           "\x1b*r1U",                                                      {0, 0, 0}},
    {"Additive",       "\x1b*r3U",                                                      {255, 0, 0}},
    {"Subtractive",    "\x1b*r-3U",                                                     {0, 255, 255}},
    {"BlackFirst",     "\x1b*r-4U",                                                     {0, 0, 0}},
    {"Configured",     "\x1b*v6W\0\0\3\1\1\1"s,                                         {255, 0, 0}},
    {"ConfiguredCmy",  "\x1b*v6W\1\0\3\1\1\1"s,                                         {0, 255, 255}},
    {"Assigned",       "\x1b*v6W\0\0\3\10\10\10\x1b*v51a102b204c1I"s,                   {51, 102, 204}},
    {"AssignedCmy",    "\x1b*v6W\1\0\3\10\10\10\x1b*v51a102b204c1I"s,                   {204, 153, 51}},
    {"AssignedBits",   "\x1b*v6W\0\0\3\1\1\1\x1b*v255a0b1c1I"s,                         {255, 0, 255}},
    {"AssignedAway",   "\x1b*r3U\x1b*v1a1b1c99I",                                       {255, 0, 0}},
    {"Restored",       "\x1b*r3U\x1b*p0P\x1b*v6W\1\0\3\1\1\1\x1b*p1P\x1b*r3U"s,         {255, 0, 0}},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(All, RasterColour, testing::ValuesIn(COLOURS), [](const auto& row) { return row.param.name; });

TEST(Palette, IsWhatThePensHaveToo) {
    Rig rig;
    rig.run(RESET + "\x1b%0B\x1b%0A\x1b*r-3U\x1b*p0P\x1b*r3U\x1b%0B");
    EXPECT_EQ(rig.machine.state.pens.colourOf(1), (Colour{255, 0, 0}));
    rig.walk("\x1b%0A\x1b*p1P\x1b%0B");
    EXPECT_EQ(rig.machine.state.pens.colourOf(1), (Colour{0, 255, 255}));
}

TEST(Palette, OfPixelsWithoutOneLeavesThePens) {
    Rig rig;
    rig.run(RESET + "\x1b*v6W\0\3\10\10\10\10\x1b%0B"s);
    EXPECT_EQ(rig.machine.state.pens.colourOf(1), (Colour{0, 0, 0}));
    EXPECT_TRUE(rig.printer.colourPrinter());
}

// ---- what it says of the file ----

struct FactRow {
    std::string name;
    std::string bytes;
    std::string expected;
};

class PrinterSays : public testing::TestWithParam<FactRow> {};

TEST_P(PrinterSays, OfTheFile) {
    Rig rig;
    rig.run(GetParam().bytes);
    std::string facts;
    facts += rig.printer.isPrinterPage() ? "page " : "";
    facts += rig.printer.choosesPage() ? "chosen " : "";
    facts += rig.printer.sawEnvelope() ? "envelope " : "";
    facts += rig.machine.found().hpgl2 ? "hpgl2 " : "";
    EXPECT_EQ(facts, GetParam().expected);
}

// clang-format off
const FactRow FACTS[] = {
    {"Bare",         "+",                                             ""},
    {"Device",       "\x1b.(;+",                                      ""},
    {"Printer",      RESET + "\x1b%0B+",                              "page envelope hpgl2 "},
    {"EntryAlone",   "\x1b%0B+",                                      "page envelope hpgl2 "},
    {"StandAlone",   "\x1b%-1B+",                                     "envelope hpgl2 "},
    {"ByJob",        EXIT + "@PJL ENTER LANGUAGE=HPGL2\n+",           "envelope hpgl2 "},
    {"OwnPage",      RESET + "\x1b&l26A\x1b%0B+",                     "page chosen envelope hpgl2 "},
    {"OwnFrame",     RESET + "\x1b*c720X\x1b%0B+",                    "page chosen envelope hpgl2 "},
    {"PageByJob",    EXIT + "@PJL SET PAPER=A3\n" + RESET + "\x1b%0B+", "page chosen envelope hpgl2 "},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(All, PrinterSays, testing::ValuesIn(FACTS), [](const auto& row) { return row.param.name; });

TEST(Printer, LeavesTheEngravingOfLasersOut) {
    Rig rig;
    rig.run(RESET + "\x1b&y0A\x1b*b7MLT\x1b*r1A\x1b*b2W++\x1b*rC");
    EXPECT_EQ(rig.sheet.text, "");
    ASSERT_EQ(rig.report.passedOver().size(), 1u);
    EXPECT_EQ(rig.report.passedOver()[0].what, "engraving (ESC*b#W)");
}

TEST(Printer, ReportsAFileThatEndsInARow) {
    Rig rig;
    rig.run(RESET + "\x1b*r1A\x1b*b9W\xff");
    EXPECT_EQ(rig.report.ending(), Ending::InBinary);
    EXPECT_NE(rig.sheet.text, "");
}

TEST(Printer, BoundsMacrosThatRunMacros) {
    Rig rig;
    rig.run(RESET + "\x1b&f1y0X\x1b%0B+\x1b%0A\x1b&f2X\x1b&f1X\x1b&f2X");
    EXPECT_EQ(std::ranges::count(rig.sheet.text, ';'), MOST_MACRO_DEPTH);
    EXPECT_EQ(rig.report.bounds().at(0).what, "macros in macros");
}

TEST(Printer, BoundsTheBytesOfMacros) {
    Rig rig;
    std::string file = RESET + "\x1b&f1y0X" + std::string(1'000'000, '\0') + "\x1b&f1X";
    for (int run = 0; run < 6; ++run) {
        file += "\x1b&f2X";
    }
    rig.run(file);
    EXPECT_EQ(rig.report.bounds().at(0).what, "bytes of macros");
    EXPECT_EQ(rig.report.bounds().at(0).count, 2u);
}

// Numbers that are no measure of anything, in every escape that is known.
TEST(Printer, SurvivesEnormousValues) {
    std::string file = RESET;
    for (const char* group : {"&l", "&f", "*p", "&a", "&u", "*c", "&k", "&d", "*t", "*r", "*b", "*v", "(s", "("}) {
        for (char letter = 'A'; letter <= 'Z'; ++letter) {
            for (const char* value : {"99999999999999999999", "-99999999999999999999", "0", ".000000001", ""}) {
                if (std::string(group) + letter != "*bW" && std::string(group) + letter != "*bV" && letter != 'W') {
                    file += "\x1b"s + group + value + letter + "Ab\t\n\r\b\x1b%1B+\x1b%1A\x1b*r1A\x1b*b2W\xaa\x55";
                }
            }
        }
    }
    Rig rig;
    rig.run(file);
    EXPECT_FALSE(rig.sheet.extent.empty());
    EXPECT_TRUE(std::isfinite(rig.sheet.extent.width()) && std::isfinite(rig.sheet.extent.height()));
}

}  // namespace
}  // namespace plotter
