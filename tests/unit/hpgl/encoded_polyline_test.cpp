// Encoded polylines: values, items, and values that a chunk's end cuts.
#include <string>

#include "hpgl/parser_internal.h"
#include "picture_text.h"
#include "rows.h"
#include "shell/shell_state.h"

namespace {

using namespace std::string_view_literals;

// ---- one value ------------------------------------------------------------------------------------------------------

struct ValueRow : NamedRow {
    std::string_view text;
    bool sevenBit;
    int32_t used;  // bytes
    bool complete;
    int32_t value;
};

// clang-format off
constexpr ValueRow VALUES[] = {
    // eight bits: continuation digits are the byte less 63, the terminal one the byte less 191
    {"Zero",              "\277"sv,            false, 1, true,  0},
    {"One",               "\301"sv,            false, 1, true,  1},
    {"MinusOne",          "\302"sv,            false, 1, true,  -1},
    {"MinusZero",         "\300"sv,            false, 1, true,  0},
    {"Largest1",          "\375"sv,            false, 1, true,  31},
    {"TwoDigits",         "G\302"sv,           false, 2, true,  100},
    {"TwoDigitsNegative", "H\302"sv,           false, 2, true,  -100},
    {"LastContinuation",  "\276\277"sv,        false, 2, true,  -63},
    {"FirstTerminal",     "\277\277"sv,        false, 1, true,  0},
    {"FiveDigits",        "~~~~\376"sv,        false, 5, true,  -536870911},
    {"MoreBehind",        "\301\301"sv,        false, 1, true,  1},
    {"FiveIsADigit",      "5\301"sv,           false, 2, true,  59},       // -10 + 2 * 64
    {"Control",           "\n\301"sv,          false, 2, true,  -37},      // -53 + 2 * 64
    {"ControlWraps",      "\n\277"sv,          false, 2, true,  -2147483621},
    {"Nothing",           ""sv,                false, 0, false, 0},
    {"Cut",               "GG"sv,              false, 2, false, 0},
    {"OverTheLimit",      "?????\301"sv,       false, 5, false, 0},
    // seven bits: less 63, and less 95
    {"SevenZero",         "_"sv,               true,  1, true,  0},
    {"SevenOne",          "a"sv,               true,  1, true,  1},
    {"SevenMinusOne",     "b"sv,               true,  1, true,  -1},
    {"SevenTwoDigits",    "Ge"sv,              true,  2, true,  100},
    {"SevenNegative",     "He"sv,              true,  2, true,  -100},
    {"SevenLastContinued","^_"sv,              true,  2, true,  -15},
    {"SevenSixDigits",    "^^^^^~"sv,          true,  6, true,  -536870911},
    {"SevenFive",         "5"sv,               true,  1, true,  -14},      // deliberately 29
    {"SevenFiveBehind",   "?5"sv,              true,  2, true,  464},      // 29 * 32
    {"SevenHighByte",     "\301"sv,            true,  1, true,  49},       // 98
    {"SevenCut",          "GGG"sv,             true,  3, false, 0},
    {"SevenOverTheLimit", "??????a"sv,         true,  6, false, 0},
};
// clang-format on

class EncodedValue : public testing::TestWithParam<ValueRow> {
  protected:
    const FreshViewer viewer;
    IStatus status = {};
};

TEST_P(EncodedValue, IsDecoded) {
    const ValueRow& row = GetParam();
    int32_t value = 0;
    EXPECT_EQ(
        HPGLdecodeEncodedValue(&status, row.text.data(), static_cast<int64_t>(row.text.size()), &value, row.sevenBit),
        row.used);
    EXPECT_EQ(!status.polyline.incomplete, row.complete);
    if (row.complete) {
        EXPECT_EQ(value, row.value);
    }
}

TEST_P(EncodedValue, IsTheSameWhereverItIsCut) {
    const ValueRow& row = GetParam();
    if (!row.complete) return;
    for (int64_t cut = 0; cut < row.used; ++cut) {
        SCOPED_TRACE(cut);
        int32_t value = 0;
        EXPECT_EQ(HPGLdecodeEncodedValue(&status, row.text.data(), cut, &value, row.sevenBit), cut);
        EXPECT_TRUE(status.polyline.incomplete);
        EXPECT_EQ(HPGLdecodeEncodedValue(&status, row.text.data() + cut, row.used - cut, &value, row.sevenBit),
                  row.used - cut);
        EXPECT_FALSE(status.polyline.incomplete);
        EXPECT_EQ(value, row.value);
    }
}
INSTANTIATE_TEST_SUITE_P(Rows, EncodedValue, testing::ValuesIn(VALUES), byRowName);

// ---- polylines: the records, however the text is cut ----------------------------------------------------------------

struct PolylineRow : NamedRow {
    std::string_view text;
    const char* records;
};

// clang-format off
constexpr PolylineRow POLYLINES[] = {
    {"Empty",             "PE;"sv,                        "PA 0\n"},
    {"Relative",          "PE\301\302;"sv,                "PR 2 1 -1\nPA 0\n"},
    {"Two",               "PE\301\301\303\304;"sv,        "PR 2 1 1\nPR 2 2 -2\nPA 0\n"},
    {"Absolute",          "PE=\301\302;"sv,               "PA 2 1 -1\nPA 0\n"},
    {"AbsoluteForOne",    "PE=\301\302\301\302;"sv,       "PA 2 1 -1\nPR 2 1 -1\nPA 0\n"},
    {"PenUp",             "PE<\301\302;"sv,               "PU 0\nPR 2 1 -1\nPD 0\nPA 0\n"},
    {"PenUpForOne",       "PE<\301\302\301\302;"sv,       "PU 0\nPR 2 1 -1\nPD 0\nPR 2 1 -1\nPA 0\n"},
    {"PenUpAbsolute",     "PE<=\301\302\301\302;"sv,      "PU 0\nPA 2 1 -1\nPD 0\nPR 2 1 -1\nPA 0\n"},
    {"AbsolutePenUp",     "PE=<\301\302;"sv,              "PU 0\nPA 2 1 -1\nPD 0\nPA 0\n"},
    {"FlagsTwice",        "PE<<==\301\302;"sv,            "PU 0\nPA 2 1 -1\nPD 0\nPA 0\n"},
    {"SevenBit",          "PE7Ge_a_;"sv,                  "PR 2 100 0\nPR 2 1 0\nPA 0\n"},
    {"SevenBitLater",     "PE\301\3017a_;"sv,             "PR 2 1 1\nPR 2 1 0\nPA 0\n"},
    {"SevenBitFive",      "PE755?5_;"sv,                  "PR 2 -14 -14\nPR 2 464 0\nPA 0\n"},
    {"SevenBitOnlyInside","PE7a_;PE\301\301;"sv,          "PR 2 1 0\nPA 0\nPR 2 1 1\nPA 0\n"},
    {"AbsoluteOnlyInside","PE=;PE\301\301;"sv,             "PA 0\nPR 2 1 1\nPA 0\n"},
    {"PenUpOnlyInside",   "PE<;PE\301\301;"sv,             "PA 0\nPR 2 1 1\nPA 0\n"},
    {"Fraction",          "PE>\303\301\301;"sv,           "PR 2 1 1\nPA 0\n"},
    {"FractionBetween",   "PE=>\303<\301\301;"sv,         "PU 0\nPA 2 1 1\nPD 0\nPA 0\n"},
    {"ControlIsADigit",   "PE\n\301\301;"sv,              "PR 2 -37 1\nPA 0\n"},
    {"BlankIsADigit",     "PE \301\301;"sv,               "PR 2 -48 1\nPA 0\n"},
    {"NamesAreDigits",    "PEPU\301PD\301;"sv,            "PR 2 -4808 -4264\nPA 0\n"},
    {"SignsInsideValues", "PE?;\301<\301;"sv,             "PR 2 3968 -62\nPA 0\n"},
    {"RestoresAbsolute",  "PA;PE\301\301;"sv,             "PA 0\nPR 2 1 1\nPA 0\n"},
    {"RestoresRelative",  "PR;PE=\301\301;"sv,            "PR 0\nPA 2 1 1\nPR 0\n"},
    {"RelativeUntilPA",   "PR;PA;PE;"sv,                  "PR 0\nPA 0\nPA 0\n"},
    {"NumbersBehindLost", "PE\301\301;1,2;PU3;"sv,        "PR 2 1 1\nPA 0\nPU 1 3\n"},
    {"ClosesParameter",   "PA1,2PE\301\301;PU"sv,         "PA 2 1 2\nPR 2 1 1\nPA 0\nPU 0\n"},
    {"OverTheLimit",      "PE?????\301\301;"sv,           "PR 2 1073741824 1\nPA 0\n"},
    {"FarOverTheLimit",   "PE??????????\301\301;"sv,      "PR 2 0 1\nPA 0\n"},
    {"OverTheLimitInY",   "PE<\301?????\301;"sv,          "PU 0\nPR 2 1 1073741824\nPD 0\nPA 0\n"},
    {"SevenOverTheLimit", "PE7??????aa;"sv,               "PR 2 1073741824 1\nPA 0\n"},
    {"NotEnded",          "PE\301\301"sv,                 "PR 2 1 1\n"},
};
constexpr PolylineRow PENS[] = {
    {"Pen",               "PE:\303;"sv,                   "SP 1 2\nPA 0\n"},
    {"PenAndPair",        "PE:\303\301\301;"sv,           "SP 1 2\nPR 2 1 1\nPA 0\n"},
    {"PenOfTwoDigits",    "PE:G\302;"sv,                  "SP 1 100\nPA 0\n"},
    {"PenNegative",       "PE:\302;"sv,                   "SP 1 -1\nPA 0\n"},
    {"PenCutTo16Bits",    "PE:??\317;"sv,                 "SP 1 -32768\nPA 0\n"},
    {"PenKeepsFlags",     "PE<=:\303\301\301;"sv,         "SP 1 2\nPU 0\nPA 2 1 1\nPD 0\nPA 0\n"},
};
// clang-format on

class Polyline : public testing::TestWithParam<PolylineRow> {
  protected:
    const FreshViewer viewer;
};

TEST_P(Polyline, BecomesRecords) {
    EXPECT_EQ(shortRecords(GetParam().text), GetParam().records);
}
INSTANTIATE_TEST_SUITE_P(Rows, Polyline, testing::ValuesIn(POLYLINES), byRowName);
INSTANTIATE_TEST_SUITE_P(Pens, Polyline, testing::ValuesIn(PENS), byRowName);

class PolylineCut : public Polyline {};

TEST_P(PolylineCut, IsTheSameWhereverItIsCut) {
    const std::string_view text = GetParam().text;
    parseText(text);
    const std::string whole = hexText();
    for (size_t cut = 0; cut <= text.size(); ++cut) {
        SCOPED_TRACE(cut);
        EXPECT_EQ(parseChunks({text.substr(0, cut), text.substr(cut)}), 1);
        EXPECT_EQ(hexText(), whole);
    }
    std::vector<std::string_view> bytes;
    for (size_t i = 0; i < text.size(); ++i)
        bytes.push_back(text.substr(i, 1));
    EXPECT_EQ(parseChunks(bytes), 1);
    EXPECT_EQ(hexText(), whole);
}
INSTANTIATE_TEST_SUITE_P(Rows, PolylineCut, testing::ValuesIn(POLYLINES), byRowName);

// ---- pen numbers that are cut take 32 bits --------------------------------------------------------------------------

struct CutPenRow : NamedRow {
    std::vector<std::string_view> chunks;
    const char* hex;
};

// clang-format off
const CutPenRow CUT_PENS[] = {
    {"Whole",           {"PE:G\302;"sv},                         "3d016400" "1300"},
    {"BehindTheColon",  {"PE:"sv, "G\302;"sv},                   "3d0164000000" "1300"},
    {"InsideTheNumber", {"PE:G"sv, "\302;"sv},                   "3d0164000000" "1300"},
    {"OverTheLimit",    {"PE:?????\301;"sv},                     "3d0100000040" "1300"},
    {"FlagsWait",       {"PE<=:G"sv, "\302\301\301;"sv},         "3d0164000000" "1700" "13020100000001000000" "1400" "1300"},
    {"ThreeChunks",     {"PE:"sv, "G"sv, "\302;"sv},             "3d0164000000" "1300"},
};
// clang-format on

class CutPen : public testing::TestWithParam<CutPenRow> {
  protected:
    const FreshViewer viewer;
};

TEST_P(CutPen, IsStoredWide) {
    EXPECT_EQ(parseChunks(GetParam().chunks), 1);
    const std::string text = hexText();
    EXPECT_EQ(text.substr(text.find("hex ") + 4), std::string(GetParam().hex) + "\n");
}
INSTANTIATE_TEST_SUITE_P(Rows, CutPen, testing::ValuesIn(CUT_PENS), byRowName);

// ---- fraction bits --------------------------------------------------------------------------------------------------

TEST_P(PolylineCut, LeavesNothingOwed) {
    parseText(GetParam().text);
    EXPECT_FALSE(TheShell.parser->status->polyline.incomplete);
}

TEST(PolylineFraction, IsKeptHoweverItIsCut) {
    const FreshViewer viewer;
    const std::vector<std::vector<std::string_view>> cuts = {
        {"PE>G\302\301\301"}, {"PE>", "G\302\301\301"}, {"PE>G", "\302\301\301"}};
    for (const auto& chunks : cuts) {
        SCOPED_TRACE(chunks.front());
        EXPECT_EQ(parseChunks(chunks), 1);
        EXPECT_EQ(TheShell.parser->status->polyline.fractionBits, 100);
        EXPECT_EQ(recordsText(), "rec 0 0 22 PR 2 1 1\n");
    }
}

TEST(PolylineFraction, IsForgottenAtTheNextPolyline) {
    const FreshViewer viewer;
    parseText("PE>\303;PE");
    EXPECT_EQ(TheShell.parser->status->polyline.fractionBits, 0);
}

}  // namespace
