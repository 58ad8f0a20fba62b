#include "qrvel/channel/plot_recognition.h"

#include <chrono>
#include <string>
#include <string_view>

#include "rows.h"

namespace qrvel {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

struct Row : NamedRow {
    std::string_view bytes;
    bool isPlot;
};

// clang-format off
constexpr Row ROWS[] = {
    {"Lines",             "IN;SP1;PU0,0;PD400,-400;",               true},
    {"OneLine",           "PD1,1",                                  true},
    {"Blanks",            "PA 100 200;",                            true},
    {"SignsSeparate",     "PR-5-6",                                 true},
    {"Fractions",         "PA.5,1.25;",                             true},
    {"LineEnds",          "PD\r\n1,\r\n2",                          true},
    {"Rectangle",         "EA100,100;",                             true},
    {"Curve",             "BZ1,2,3,4,5,6",                          true},
    {"Circle",            "CI500;",                                 true},
    {"Polyline",          "PE<=\277\300;",                          true},
    {"PolylineOfPlainValues", "PE\277\300;",                      true},
    {"PolylineInLines",   "PE<=\277\r\n\300\n;",                    true},
    {"FileName",          ":HPGL_FILE:other.plt",                   true},
    {"BehindEscapes",     "\033%0B\033*c0T\033%0BPU1,1",            true},
    {"BehindNuls",        "\0\0\0\033%-12345X\0\0IN;PD10,10;"sv,    true},
    {"InTheMiddle",       "a text that says PD400,400",             true},
    {"Semicolons",        "PD100;200;",                             true},
    {"PlusSeparates",     "PD10+20",                                true},
    {"ControlsBetween",   "PD1\014,2",                              true},
    {"SemicolonInFront",  "CI;100",                                 true},
    {"PolylineToTheEnd",  "PD;PE<=\277\300",                        true},
    {"ZerosAround",       "\0\0IN;CI100;\0\0"sv,                   true},
    {"Nothing",           "",                                       false},
    {"OneByte",           "P",                                      false},
    {"Text",              "The quick brown fox. COPY OF PARTS",     false},
    {"PenUpAlone",        "IN;SP1;PU;PA;PD;",                       false},
    {"OneNumber",         "PA100;",                                 false},
    {"LabelAlone",        "LBtext\003",                             false},
    {"SmallLetters",      "pd100,100",                              false},
    {"EmptyPolyline",     "PE;",                                    false},
    {"PolylineOfOneValue","PE\277;",                               false},
    {"WordWithPe",        "COPE with that;",                        false},
    {"CircleOfAProgram",  "\177ELF\0CI5"sv,                         false},
    {"PolylineOfAProgram","\177ELF\0PEabc;"sv,                      false},
    {"NumbersFarApart",   "PA\0\0\0001\0\0\0002"sv,                 false},
};
// clang-format on

class Plots : public testing::TestWithParam<Row> {};

TEST_P(Plots, AreRecognised) {
    EXPECT_EQ(holdsDrawing(GetParam().bytes), GetParam().isPlot);
}

constexpr const char* COMMANDS[] = {
#define HPGL_COMMAND(name, signature, setup, drawing, action, sure) #name,
#include "hpgl/commands.inl"
};

TEST(Recognition, KnowsTheCommandsThatDrawForSure) {
    std::string sure;
    for (const std::string name : COMMANDS) {
        if (holdsDrawing("a program\0"s + name + "1,2")) sure += name + " ";
    }
    EXPECT_EQ(sure, "AA AR BR BZ PA PD PR PU EA ER EW RA RR WG ");
}

TEST(Recognition, TellsTextAndEscapesFromOtherFiles) {
    EXPECT_FALSE(isBinary("IN;PU0,0;"sv));
    EXPECT_FALSE(isBinary("\033E\0\0"sv));
    EXPECT_TRUE(isBinary("\177ELF\0\0x"sv));
}

// Neither is looked at again and again.
TEST(Recognition, TakesTimeByTheByte) {
    std::string polylines;
    std::string circles;
    while (polylines.size() < 4'000'000) {
        polylines += "PE";
        circles += "CI5";
    }
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(holdsDrawing(polylines + " "));
    EXPECT_FALSE(holdsDrawing(circles + '\0' + "x"));
    EXPECT_FALSE(holdsDrawing("PA" + std::string(4'000'000, ' ')));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

INSTANTIATE_TEST_SUITE_P(Rows, Plots, testing::ValuesIn(ROWS), byRowName);

}  // namespace
}  // namespace qrvel
