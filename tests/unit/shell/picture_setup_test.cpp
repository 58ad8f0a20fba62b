// The set-up of a picture: pens, colour table and output device.
#include "shell/picture_setup.h"

#include <algorithm>

#include "failing_allocator.h"
#include "picture_text.h"
#include "recorder/recorder.h"
#include "rows.h"
#include "shell/shell_state.h"

namespace {

using recorder::calls;

void setUp(const char* text) {
    parseText(text);
    calls.clear();
    HPGLsetupPicture(TheShell.parser, &TheShell.display, 1);
}

// The calls of one kind.
std::string callOf(const std::string& operation) {
    const size_t at = calls.find(operation + ' ');
    return at == std::string::npos ? "" : calls.substr(at, calls.find('\n', at) - at);
}

std::string usedPens() {
    std::string pens;
    for (int32_t i = 0; i < HPGL_PENS; ++i) {
        if (TheShell.parser->PStatus[i].used == 0) continue;
        if (!pens.empty()) pens += ' ';
        pens += std::to_string(i);
    }
    return pens;
}

struct PenRow : NamedRow {
    const char* text;
    const char* used;
    bool warns;
};

// clang-format off
constexpr PenRow PEN_ROWS[] = {
    {"None",             "IN;",              "0 1",       false},
    {"Selected",         "SP3;SP5;SP3;",     "0 1 3 5",   false},
    {"WithoutParameter", "SP;",              "0 1",       false},
    {"MinusOneIsZero",   "SP-1;",            "0 1",       false},
    {"Sixteen1BitsToo",  "SP65535;",         "0 1",       false},
    {"Last",             "SP254;",           "0 1 254",   false},
    {"FirstAbove",       "SP255;",           "0 1",       true},
    {"SecondAbove",      "SP256;",           "0 1 2",     true},
    {"WrapsTwice",       "SP511;",           "0 1 3",     true},
    {"Largest",          "SP32767;",         "0 1",       true},
    {"Below",            "SP-2;",            "0 1",       true},
    {"FarBelow",         "SP-32768;",        "0 1",       true},
    {"Coloured",         "PC7,1,2,3;",       "0 1 7",     false},
    {"ColouredAbove",    "PC255,1,2,3;",     "0 1",       true},
    {"ColouredFarAbove", "PC32767,1,2,3;",   "0 1",       true},
    {"ColouredMinusOne", "PC-1,1,2,3;",      "0 1",       true},
    {"ColouredBelow",    "PC-2,1,2,3;",      "0 1",       true},
};
// clang-format on

class Pens : public testing::TestWithParam<PenRow> {};

TEST_P(Pens, AreMarked) {
    const FreshViewer viewer;
    setUp(GetParam().text);
    EXPECT_EQ(usedPens(), GetParam().used);
}

TEST_P(Pens, OutOfRangeWarnOnce) {
    const FreshViewer viewer;
    parseText(GetParam().text);
    const std::string text = traceOf(1, [] { HPGLsetupPicture(TheShell.parser, &TheShell.display, 1); });
    EXPECT_EQ(text.starts_with("WARNING-HPGLsetupPicture"), GetParam().warns) << text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), GetParam().warns ? 1 : 0) << text;
}

INSTANTIATE_TEST_SUITE_P(Rows, Pens, testing::ValuesIn(PEN_ROWS), byRowName);

// ---- colours --------------------------------------------------------------------------------------------------------

class Colours : public testing::Test {
  protected:
    ~Colours() override { failing_allocator::reset(); }

    // A pen table without the two pens that are always there.
    static void setUpWithoutFirstPens(const char* text) {
        parseText(text);
        TheShell.parser->PStatus[0].used = TheShell.parser->PStatus[1].used = 0;
        calls.clear();
        HPGLsetupPicture(TheShell.parser, &TheShell.display, 1);
    }
    FreshViewer viewer;
};

TEST_F(Colours, BeginWithBackgroundAndFirstPen) {
    setUp("PD1,1;");
    EXPECT_EQ(callOf("WCLRcreate"), "WCLRcreate 1 3 255 255 255 0 0 0 0 255 0");
    EXPECT_EQ(TheShell.display.ColourCount, 2);
    EXPECT_EQ(TheShell.display.RubberColour, 2);
    EXPECT_EQ(TheShell.display.ColourTable, recorder::handleOf("WCLRcreate"));
    EXPECT_EQ(TheShell.parser->PStatus[0].paletteIndex, 0);
    EXPECT_EQ(TheShell.parser->PStatus[1].paletteIndex, 1);
}

TEST_F(Colours, FollowInPenOrder) {
    setUp("PC9,10,20,30;SP6;SP2;");
    EXPECT_EQ(callOf("WCLRcreate"), "WCLRcreate 1 6 255 255 255 0 0 0 0 0 255 255 0 0 10 20 30 0 255 0");
    EXPECT_EQ(TheShell.parser->PStatus[2].paletteIndex, 2);
    EXPECT_EQ(TheShell.parser->PStatus[6].paletteIndex, 3);
    EXPECT_EQ(TheShell.parser->PStatus[9].paletteIndex, 4);
    EXPECT_EQ(TheShell.display.RubberColour, 5);
}

TEST_F(Colours, LoneOneGetsBlackBesideIt) {
    setUpWithoutFirstPens("PC3,10,20,30;SP3;");
    EXPECT_EQ(callOf("WCLRcreate"), "WCLRcreate 1 3 10 20 30 0 0 0 0 255 0");
    EXPECT_EQ(TheShell.display.ColourCount, 2);
    EXPECT_EQ(TheShell.parser->PStatus[3].paletteIndex, 0);
    EXPECT_EQ(TheShell.parser->PStatus[254].paletteIndex, 1);
}

TEST_F(Colours, NoneLeaveTheClosingOne) {
    setUpWithoutFirstPens("PD1,1;");
    EXPECT_EQ(callOf("WCLRcreate"), "WCLRcreate 1 1 0 255 0");
    EXPECT_EQ(TheShell.display.ColourCount, 0);
    EXPECT_EQ(TheShell.display.RubberColour, 0);
}

TEST_F(Colours, EndAfterSixtyFour) {
    std::string text;
    for (int pen = 2; pen < 100; ++pen) {
        text.append("SP").append(std::to_string(pen)).append(";");
    }
    setUp(text.c_str());
    EXPECT_TRUE(callOf("WCLRcreate").starts_with("WCLRcreate 1 65 255 255 255 ")) << callOf("WCLRcreate");
    EXPECT_TRUE(callOf("WCLRcreate").ends_with(" 0 255 0"));
    EXPECT_EQ(TheShell.display.ColourCount, 64);
    EXPECT_EQ(TheShell.display.RubberColour, 64);
    EXPECT_EQ(TheShell.parser->PStatus[63].paletteIndex, 63);
    EXPECT_EQ(TheShell.parser->PStatus[64].paletteIndex, 0);
}

TEST_F(Colours, KeepTheirLowByte) {
    setUp("PC3,300,-1,65535;");
    EXPECT_EQ(TheShell.parser->PStatus[3].red, 300);
    EXPECT_EQ(TheShell.parser->PStatus[3].green, -1);
    EXPECT_EQ(TheShell.parser->PStatus[3].blue, -1);
    EXPECT_EQ(callOf("WCLRcreate"), "WCLRcreate 1 4 255 255 255 0 0 0 44 255 255 0 255 0");
}

TEST_F(Colours, LackMemory) {
    parseText("PD1,1;");
    calls.clear();
    failing_allocator::failSize(1024);
    EXPECT_EQ(HPGLsetupPicture(TheShell.parser, &TheShell.display, 1), 1);
    EXPECT_EQ(callOf("WCLRcreate"), "");
    EXPECT_EQ(calls, "OUTstdcreate 7 5 64 0 0\nOUTsetbackground 0\nWsetfocus 7\n");
}

// ---- device ---------------------------------------------------------------------------------------------------------

TEST_F(Colours, FirstPictureMakesTheDevice) {
    setUp("PD1,1;");
    const std::string table = std::to_string(TheShell.display.ColourTable);
    EXPECT_EQ(calls,
              "WCLRcreate 1 3 255 255 255 0 0 0 0 255 0\n"
              "OUTstdcreate 7 5 64 0 " +
                  table + "\nOUTsetbackground 0\nWsetfocus 7\n");
    EXPECT_TRUE(TheShell.display.DeviceExists);
}

TEST_F(Colours, LaterPicturesResetTheDevice) {
    setUp("PD1,1;");
    HPGLreleaseColours(&TheShell.display);
    setUp("PD2,2;");
    EXPECT_EQ(calls,
              "WCLRcreate 1 3 255 255 255 0 0 0 0 255 0\n"
              "OUTreset\nOUTsetbackground 0\nWupdate 7 1\n");
}

}  // namespace
