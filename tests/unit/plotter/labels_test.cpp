// Labels: where their strokes go, and where they leave the pen. Most are of the letter I, which is one stroke in the
// middle of its cell; behind them a line is drawn from where the pen is.
#include "plotter/labels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "plane_text.h"
#include "plotted.h"
#include "plotter/instructions.h"
#include "plotter/lettering.h"
#include "plotter/plot_run.h"

namespace {

struct Drawn {
    std::string text;
    plotter::Report report;
};

// ^C stands for ETX, and so on.
std::string withControls(std::string_view plot) {
    std::string bytes;
    for (std::size_t i = 0; i < plot.size(); ++i) {
        const bool control = plot[i] == '^' && i + 1 < plot.size();
        bytes += control ? static_cast<char>(plot[++i] & 0x1F) : plot[i];
    }
    return bytes;
}

Drawn draw(std::string_view plot, bool hpgl2 = false) {
    Drawn drawn;
    TextSheet sheet;
    plotter::Traits traits;
    traits.hpgl2 = hpgl2;
    // Capitals are 400 wide and 600 high, the advance is 600, and lines are 1200 apart.
    const std::string bytes = withControls("IN;SP1;SI1,1.5;PU1000,1000;" + std::string(plot));
    plotter::PlotRun(bytes, traits, sheet, drawn.report).goOn(plotter::PlotRun::ALL_PAGES, [](std::size_t) {
        return true;
    });
    drawn.text = sheet.pieces.text();
    return drawn;
}

std::string passedOver(const plotter::Report& report) {
    std::string text;
    for (const auto& entry : report.passedOver())
        text += (text.empty() ? "" : ", ") + entry.what;
    return text;
}

struct LabelRow {
    const char* name;
    const char* plot;
    const char* drawn;
};

class LabelPlot : public testing::TestWithParam<LabelRow> {};

TEST_P(LabelPlot, IsDrawnThere) {
    EXPECT_EQ(draw(GetParam().plot).text, GetParam().drawn);
}

// clang-format off
constexpr LabelRow PLACES[] = {
    {"OneLetter",        "LBI^CPR;PD9,0",          "1200,1600 1200,1000 | 1600,1000 1609,1000"},
    {"TwoLetters",       "LBII^CPR;PD9,0",         "1200,1600 1200,1000 | 1800,1600 1800,1000 | 2200,1000 2209,1000"},
    {"Nothing",          "LB^CPR;PD9,0",           "1000,1000 1009,1000"},
    {"Space",            "LB I^C",                 "1800,1600 1800,1000"},
    {"FillsItsBody",     "LBL^C",                  "1028.571,1600 1028.571,1000 | 1028.571,1000 1371.429,1000"},
    {"WideOnesShrink",   "LB-^C",                  "1000,1257.143 1400,1257.143"},
    {"OnGoing",          "LBI^CLBI^C",             "1200,1600 1200,1000 | 1800,1600 1800,1000"},
    {"PenStaysDown",     "PD;LBI^CPA0,0",          "1200,1600 1200,1000 | 1600,1000 0,0"},
    {"NotInAPolygon",    "PM0;LBI^CPM2;PR;PD9,0",  "1000,1000 1009,1000"},

    {"LineFeed",         "LBI^JI^C",               "1200,1600 1200,1000 | 1800,400 1800,-200"},
    {"ReturnAndFeed",    "LBII^M^JI^C",            "1200,1600 1200,1000 | 1800,1600 1800,1000 | 1200,400 1200,-200"},
    {"FeedAndReturn",    "LBI^J^MI^C",             "1200,1600 1200,1000 | 1200,400 1200,-200"},
    {"ReturnOfALater",   "LBI^CLB^MI^C",           "1200,1600 1200,1000 | 1200,1600 1200,1000"},
    {"UpALine",          "LBI^KI^C",               "1200,1600 1200,1000 | 1800,2800 1800,2200"},
    {"BackACell",        "LBI^HI^C",               "1200,1600 1200,1000 | 1200,1600 1200,1000"},
    {"BackHalfACell",    "LBI^II^C",               "1200,1600 1200,1000 | 1500,1600 1500,1000"},
    {"OtherCodes",       "LB^A^B^LI^C",            "1200,1600 1200,1000"},
    {"Transparent",      "TD1;LB^J^MI^C",          "2400,1600 2400,1000"},

    {"PlotSpaces",       "CP2,1;PR;PD9,0",         "2200,2200 2209,2200"},
    {"PlotNewLine",      "LBI^CCP;PR;PD9,0",       "1200,1600 1200,1000 | 1000,-200 1009,-200"},
    {"PlotMovesMargin",  "CP1,-1;LBI^M^C;PR;PD9,0","1800,400 1800,-200 | 1000,-200 1009,-200"},
    {"PlotFractions",    "CP.5,-.25;PR;PD9,0",     "1300,700 1309,700"},
    {"ExtraSpace",       "ES.5,1;LBI^JI^C",        "1200,1600 1200,1000 | 2100,-800 2100,-1400"},
    {"LessSpace",        "ES-.25;LBII^C",          "1200,1600 1200,1000 | 1650,1600 1650,1000"},
    {"NoExtraSpace",     "ES.5,1;ES;LBII^C",       "1200,1600 1200,1000 | 1800,1600 1800,1000"},

    {"Upwards",          "DI0,1;LBII^CPR;PD9,0",   "400,1200 1000,1200 | 400,1800 1000,1800 | 1000,2200 1009,2200"},
    {"UpsideDown",       "DI-1,0;LBI^J^MI^C",      "800,400 800,1000 | 800,1600 800,2200"},
    {"Downwards",        "DI0,-1;LBI^C",           "1600,800 1000,800"},
    {"LengthIsNothing",  "DI0,.001;LBI^C",         "400,1200 1000,1200"},
    {"NoDirection",      "DI0,1;DI0,0;LBI^C",      "400,1200 1000,1200"},
    {"BackToLevel",      "DI0,1;DI;LBI^C",         "1200,1600 1200,1000"},
    {"DirectionByCorners", "IP0,0,1000,2000;DR2,1;DI0,1;DR;LBI^C", "1200,1600 1200,1000"},
    {"DirectionOfCorners", "IP0,0,3000,-4000;DR0,-1;LBI^C", "400,1200 1000,1200"},
    {"DirectionTakesMargin", "LBI^CDI1,0;LB^MI^C", "1200,1600 1200,1000 | 1800,1600 1800,1000"},

    {"MirroredAcross",   "SI-1,1.5;LBII^C",        "800,1600 800,1000 | 200,1600 200,1000"},
    {"MirroredUpright",  "SI1,-1.5;LBI^JI^C",      "1200,400 1200,1000 | 1800,1600 1800,2200"},
    {"OfCorners",        "IP0,0,1000,1000;SR40,60;LBI^C", "1200,1600 1200,1000"},
    {"FollowsCorners",   "IP0,0,1000,1000;SR40,60;IP0,0,2000,500;LBI^C", "1400,1300 1400,1000"},
    {"MirroredByCorners","IP1000,0,0,1000;SR40,60;LBI^C", "800,1600 800,1000"},
    {"ZeroIsNoSize",     "SI0,1;SI2;SR0,1;LBI^C",  "1200,1600 1200,1000"},
    {"DefaultSize",      "SI;LBI^CPR;PD9,0",       "1037.4,1107.6 1037.4,1000 | 1112.2,1000 1121.2,1000"},
    {"DefaultBySR",      "IP0,0,10000,7200;SR;LBI^C", "1037.5,1108 1037.5,1000"},
    {"UserUnits",        "IP0,0,4000,4000;SC0,400,0,800;SU40,120;LBI^C", "1200,1600 1200,1000"},
    {"Slanted",          "SL.5;LBII^C",            "1500,1600 1200,1000 | 2100,1600 1800,1000"},

    {"PathDown",         "DV1;LBII^CPR;PD9,0",     "1200,1600 1200,1000 | 1200,400 1200,-200 | 1000,-1400 1009,-1400"},
    {"PathLeft",         "DV2;LBII^CPR;PD9,0",     "600,1600 600,1000 | 0,1600 0,1000 | -200,1000 -191,1000"},
    {"PathUp",           "DV3;LBII^CPR;PD9,0",     "1200,1600 1200,1000 | 1200,2800 1200,2200 | 1000,3400 1009,3400"},
    {"PathDownFeed",     "DV1;LBI^M^JI^C",         "1200,1600 1200,1000 | 600,1600 600,1000"},
    {"PathUpFeed",       "DV3;LBI^M^JI^C",         "1200,1600 1200,1000 | 1800,1600 1800,1000"},
    {"PathFeedReversed", "DV0,1;LBI^M^JI^C",       "1200,1600 1200,1000 | 1200,2800 1200,2200"},
    {"PathOutOfRange",   "DV4;LBII^C",             "1200,1600 1200,1000 | 1800,1600 1800,1000"},

    {"TerminatorOfOnesOwn", "DT*;LBI*PR;PD9,0",    "1200,1600 1200,1000 | 1600,1000 1609,1000"},
    {"TerminatorDrawn",  "DTI,0;LBI",              "1200,1600 1200,1000"},
    {"TerminatorActs",   "DT^M,0;LBI^MPR;PD9,0",   "1200,1600 1200,1000 | 1000,1000 1009,1000"},
    {"TerminatorDefault","DT*;DT;LBI^C",           "1200,1600 1200,1000"},
    {"TerminatorNotDrawn", "DT*,1;LBI*",           "1200,1600 1200,1000"},

    {"AlternateInLabel", "CS0;CA35;LB^N~^O|^C",    "1000,1685.714 1400,1685.714 | 1800,1714.286 1800,800"},
    {"AlternateStays",   "CA35;LB^N^C;LB~^C",      "1000,1685.714 1400,1685.714"},
    {"AlternateSelected","CA35;SA;LB~^C",          "1000,1685.714 1400,1685.714"},
    {"StandardAgain",    "CA35;SA;SS;LB|^C",       "1200,1714.286 1200,800"},
    {"MarkDoesNotAdvance", "CS2;LBI'I^C",          "1200,1600 1200,1000 | 1171.429,1657.143 1285.714,1771.429 | 1800,1600 1800,1000"},
    {"Utf8",             "LB\xE2\x80\x94^C",       "1000,1257.143 1400,1257.143"},
    {"TwoBytes",         "LM1;LB^@I^@I^@^C",       "1200,1600 1200,1000 | 1800,1600 1800,1000"},

    {"Buffered",         "BLI^CPB;PB;",            "1200,1600 1200,1000 | 1800,1600 1800,1000"},
    {"UserCharacter",    "UC4,7,99,0,1,-4,0,2,-4,-2,-4,4,0,0,1;PD1600,2000",
                         "1400,1525 1400,1600 1000,1600 1200,1300 1000,1000 1400,1000 1400,1075 | 1600,1000 1600,2000"},
    {"UserCharacterLifts", "UC0,0,99,4,0,-99,0,8,99,-4,0",  "1000,1000 1400,1000 | 1400,1600 1000,1600"},
    {"UserCharacterOfNothing", "UC;PR;PD9,0",      "1600,1000 1609,1000"},
    {"Downloaded",       "DL65,0,0,32,32,-128,0,32,32,0;CS99;LBAA^C",
                         "1000,1000 1400,1600 | 1000,1600 1400,1000 | 1600,1000 2000,1600 | 1600,1600 2000,1000"},
    {"DownloadDeleted",  "DL65,0,0,32,32;DL65;CS99;LBA^CPR;PD9,0", "1600,1000 1609,1000"},

    {"Symbol",           "SM+;PU2000,2000;SM;PU0,0",   "2000,2257.143 2000,1742.857 | 1800,2000 2200,2000"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Labels, LabelPlot, testing::ValuesIn(PLACES), [](const auto& row) { return row.param.name; });

// ---- the label origin ----

struct OriginRow {
    int origin;
    double x, y;     // of the first letter's cell, from the pen
    bool penGoesOn;  // to the end of the line; else it stays
};

class Origin : public testing::TestWithParam<OriginRow> {};

std::string letterAt(double x, double y) {
    const plotter::Line line = {{1200 + x, 1600 + y}, {1200 + x, 1000 + y}};
    return plane_text::of(line);
}

TEST_P(Origin, PlacesTheLine) {
    const auto& [origin, x, y, penGoesOn] = GetParam();
    const std::string text = draw("LO" + std::to_string(origin) + ";LBII^CPR;PD9,0").text;
    const std::string letters = letterAt(x, y) + " | " + letterAt(x + 600, y);
    EXPECT_EQ(text, letters + (penGoesOn ? " | 2200,1000 2209,1000" : " | 1000,1000 1009,1000"));
}

TEST_P(Origin, PlacesEachLineOfALabelByItself) {
    const auto& [origin, x, y, penGoesOn] = GetParam();
    const std::string text = draw("LO" + std::to_string(origin) + ";LBII^M^JII^C").text;
    const auto line = [&](double down) { return letterAt(x, y - down) + " | " + letterAt(x + 600, y - down); };
    EXPECT_EQ(text, line(0) + " | " + line(1200));
}

// Two letters are 1000 wide and 600 high.
// clang-format off
constexpr OriginRow ORIGINS[] = {
    { 1,     0,    0, true },  { 2,     0, -300, true },  { 3,     0, -600, true },
    { 4,  -500,    0, false},  { 5,  -500, -300, false},  { 6,  -500, -600, false},
    { 7, -1000,    0, false},  { 8, -1000, -300, false},  { 9, -1000, -600, false},
    {11,   200,  300, true },  {12,   200, -300, true },  {13,   200, -900, true },
    {14,  -500,  300, false},  {15,  -500, -300, false},  {16,  -500, -900, false},
    {17, -1200,  300, false},  {18, -1200, -300, false},  {19, -1200, -900, false},
    {21,     0,    0, true },
    // no origins
    { 0,     0,    0, true },  {10,     0,    0, true },  {20,     0,    0, true },  {22,     0,    0, true },
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(Labels, Origin, testing::ValuesIn(ORIGINS),
                         [](const auto& row) { return "LO" + std::to_string(row.param.origin); });

TEST(Labels, OriginTurnsWithTheDirection) {
    EXPECT_EQ(draw("DI0,1;LO5;LBI^C").text, "700,1000 1300,1000");
    EXPECT_EQ(draw("SI-1,1.5;LO7;LBI^C").text, "1200,1600 1200,1000");
}

TEST(Labels, OriginOfAColumnCountsItsWholeHeight) {
    EXPECT_EQ(draw("DV1;LO5;LBII^C").text, "1000,1900 1000,1300 | 1000,700 1000,100");
}

// ---- symbols ----

TEST(Labels, SymbolStandsOnItsPoint) {
    Plotted plotted(false);
    plotted.machine.state.characters.symbol = '+';
    plotted.machine.state.characters.size = {plotter::CharacterSize::Kind::Absolute, 400, 600};
    drawSymbol(plotted.machine, {5000, 7000});
    EXPECT_EQ(plotted.text(), "5000,7257.143 5000,6742.857 | 4800,7000 5200,7000");
    EXPECT_EQ(plane_text::of(plotted.machine.state.position), "0,0");
}

// ---- fonts ----

// The width of the way to the next character.
double advanceOf(std::string_view plot, bool hpgl2) {
    TextSheet sheet;
    plotter::Report report;
    plotter::Traits traits;
    traits.hpgl2 = hpgl2;
    const std::string bytes = withControls("IN;SP1;PU0,0;" + std::string(plot) + ";PD;PU0,9");
    plotter::PlotRun(bytes, traits, sheet, report).goOn(plotter::PlotRun::ALL_PAGES, [](std::size_t) { return true; });
    const std::string text = sheet.pieces.text();
    return std::stod(text.substr(text.rfind("| ") + 1));
}

struct AdvanceRow {
    const char* name;
    const char* plot;
    bool hpgl2;
    double advance;
};

class Advance : public testing::TestWithParam<AdvanceRow> {};

TEST_P(Advance, IsTheFonts) {
    EXPECT_NEAR(advanceOf(GetParam().plot, GetParam().hpgl2), GetParam().advance, 0.01);
}

// clang-format off
constexpr AdvanceRow ADVANCES[] = {
    {"PenPlotter",        "LBI^C",                                         false, 112.2},
    {"Later",             "LBI^C",                                         true,  112.8},
    {"Pitch",             "SD3,10;LBI^C",                                  true,  101.6},
    {"PitchOfSelected",   "AD3,10;SA;LBI^C",                               true,  101.6},
    {"PitchOfTheOther",   "AD3,10;LBI^C",                                  true,  112.8},
    {"SizeOverrules",     "SI1,1.5;SD3,10;LBI^C",                          true,  600},
    {"SizeIsGivenBack",  "SI1,1.5;SD3,10;SI;LBI^C",                       true,  101.6},
    {"SansA",             "SD1,14,2,1,4,72,5,0,6,0,7,4148;LBA^C",          true,  667 * 1.016},
    {"SansAccented",      "SD1,14,2,1,4,72,5,0,6,0,7,4148;LB\xC3\x84^C", true,  667 * 1.016},
    {"SansSmallI",        "SD1,14,2,1,4,72,5,0,6,0,7,16602;LBi^C",         true,  222 * 1.016},
    {"SerifA",            "SD1,14,2,1,4,72,5,0,6,0,7,4101;LBA^C",          true,  722 * 1.016},
    {"TextFixed",         "SD2,0,3,10,7,4148;LBi^C",                       true,  101.6},
    {"Typewriter",        "SD3,12,7,4099;LBi^C",                           true,  1016.0 / 12},
    {"StickInProportion", "SI1,1.5;SD2,1;LBH^C",                           true,  600},
    {"StickSmallI",       "SI1,1.5;SD2,1;LBi^C",                           true,  8 * 600.0 / 22},
    {"ArcSet",            "SI1,1.5;CS10;LBi^C",                            false, 8 * 600.0 / 22},
    {"FixedSet",          "SI1,1.5;CS10;CS0;LBi^C",                        false, 600},
    {"DefaultsAgain",     "SD3,10;SD;LBI^C",                               true,  112.8},
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(Labels, Advance, testing::ValuesIn(ADVANCES), [](const auto& row) { return row.param.name; });

TEST(Labels, ItalicLeansAndHeavyIsDrawnTwice) {
    EXPECT_EQ(draw("SD5,1;LBI^C", true).text, "1320,1600 1200,1000");
    EXPECT_EQ(draw("SD6,3;LBI^C", true).text, "1200,1600 1200,1000 | 1220,1600 1220,1000");
    EXPECT_EQ(draw("SD6,9999;LBI^C", true).text, "1200,1600 1200,1000");
}

// ---- a printer's frame ----

TEST(Labels, PrintersHaveControlCodesOfTheirOwn) {
    Plotted plotted;
    plotted.machine.setFrame({.corner = {}, .size = plotter::Point{20000, 20000}});
    plotted.machine.state.characters.size = {plotter::CharacterSize::Kind::Absolute, 400, 600};
    plotter::Instruction instruction;
    instruction.text = "\t\vI";
    label(plotted.machine, instruction);
    EXPECT_EQ(plotted.text(), "3200,600 3200,0");
}

// ---- what is not known ----

struct UnknownRow {
    const char* name;
    const char* plot;
    const char* reported;
    const char* drawn;
};

class Unknown : public testing::TestWithParam<UnknownRow> {};

TEST_P(Unknown, IsReported) {
    const Drawn drawn = draw(GetParam().plot);
    EXPECT_EQ(passedOver(drawn.report), GetParam().reported);
    EXPECT_EQ(drawn.text, GetParam().drawn);
}

// clang-format off
constexpr UnknownRow UNKNOWN[] = {
    {"Nothing",        "LBI^C",              "",                       "1200,1600 1200,1000"},
    {"UpperControl",   "LB\x8FI^C",         "LB character 0x8f",      "1200,1600 1200,1000"},
    {"CodeOfNothing",  "LB\xFF^C",          "LB character 0xff",
                       "1028.571,1000 1028.571,1600 1371.429,1600 1371.429,1000 1028.571,1000"},
    {"Chinese",        "LB\xE6\xBC\xA2^C", "LB character U+6F22",
                       "1028.571,1000 1028.571,1600 1371.429,1600 1371.429,1000 1028.571,1000"},
    {"UserCharacter",  "CS99;LBa^C",         "LB character 0x61",      ""},
    {"Delete",         "LB\x7FI^C",         "",                       "1200,1600 1200,1000"},
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(Labels, Unknown, testing::ValuesIn(UNKNOWN), [](const auto& row) { return row.param.name; });

// ---- what nobody's file holds ----

TEST(Labels, EnormousLettersAreLeftOutAndThePenStaysInReach) {
    for (const char* plot : {"SI1e30,1e30;", "SR1e300,1e300;", "SI1e9,-1e-9;SL1e30;", "ES1e30,1e30;SI1e9,1e9;",
                             "DI1e300,1e-300;SI1e8,1e8;", "SD4,1e300,3,1e-300;SS;SI;", "DV1;LO5;SI1e30,1e30;"}) {
        const Drawn drawn = draw(std::string(plot) + "LBII^M^JII^I^H^K^CCP1e30,1e30;UC99,9,9;PD1,1;", true);
        EXPECT_EQ(drawn.text.find("inf"), std::string::npos) << plot;
        EXPECT_EQ(drawn.text.find("nan"), std::string::npos) << plot;
    }
}

TEST(Labels, BufferIsNotPrintedForEver) {
    std::string plot = "BL" + std::string(4000, ' ') + "^C";
    for (int i = 0; i < 60; ++i)
        plot += "PB;IN;BL" + std::string(4000, ' ') + "^C";
    const Drawn drawn = draw(plot);
    ASSERT_EQ(drawn.report.bounds().size(), 1U);
    EXPECT_EQ(drawn.report.bounds()[0].what, "PB characters");
    EXPECT_EQ(drawn.report.bounds()[0].count, 60 - plotter::REPLAYED_CHARACTERS / 4000);
}

class CountingOutput final : public plotter::LabelOutput {
  public:
    void stroke(std::span<const plotter::Point> points) override { points_ += points.size(); }
    void unknown(char32_t /*character*/, bool /*isCode*/) override {}
    bool mayDraw(std::size_t points) override { return budget_.spend(static_cast<double>(points)); }
    std::size_t points() const { return points_; }

  private:
    std::size_t points_ = 0;
    plotter::Budget budget_ = plotter::Budget(100);
};

TEST(Labels, DownloadedCharactersAskBeforeTheyAreDrawn) {
    const std::map<uint8_t, std::vector<plotter::Line>> characters = {{'A', {plotter::Line(7), plotter::Line(3)}}};
    plotter::Lettering lettering;
    lettering.faces[0].symbols = {.hpgl = true, .number = 99};
    lettering.userCharacters = &characters;
    plotter::LabelPen pen;
    CountingOutput output;
    layLabel(lettering, std::string(1000, 'A'), pen, output);
    EXPECT_EQ(output.points(), 100U);
}

TEST(Labels, DownloadedCharactersThatAreTooManyAreReported) {
    Plotted plotted;
    plotted.machine.state.characters.userPoints.spend(plotter::USER_POINTS - 1);
    EXPECT_FALSE(plotter::MachineLabelOutput(plotted.machine).mayDraw(2));
    EXPECT_EQ(plotted.bounds(), "points of downloaded characters");
    EXPECT_TRUE(plotter::MachineLabelOutput(plotted.machine).mayDraw(1));
}

}  // namespace
