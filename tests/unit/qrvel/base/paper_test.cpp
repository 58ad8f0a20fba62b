// Sheets of paper, by name and by size, and what of them is drawn on.
#include "qrvel/base/paper.h"

#include "rows.h"

namespace qrvel {
namespace {

constexpr char UNKNOWN[] = "no paper (A0 to A6, Letter, Legal, Tabloid, WxHmm, fit)";
constexpr char BEYOND[] = "no paper from 10 to 5080 mm";

// ---- names ----------------------------------------------------------------------------------------------------------

struct WordsRow : NamedRow {
    const char* words;
    double width;  // millimetres
    double height;
    bool fit;
};

// clang-format off
constexpr WordsRow WORDS_ROWS[] = {
    {"A0",                 "A0",                841.0, 1189.0, false},
    {"A1",                 "A1",                594.0,  841.0, false},
    {"A2",                 "A2",                420.0,  594.0, false},
    {"A3",                 "A3",                297.0,  420.0, false},
    {"A4",                 "A4",                210.0,  297.0, false},
    {"A5",                 "A5",                148.0,  210.0, false},
    {"A6",                 "A6",                105.0,  148.0, false},
    {"Letter",             "Letter",            215.9,  279.4, false},
    {"Legal",              "Legal",             215.9,  355.6, false},
    {"Tabloid",            "Tabloid",           279.4,  431.8, false},
    {"SmallLetters",       "a4",                210.0,  297.0, false},
    {"Capitals",           "LETTER",            215.9,  279.4, false},
    {"Fit",                "fit",               297.0,  297.0, true},
    {"FitInCapitals",      "FIT",               297.0,  297.0, true},
    {"Size",               "100x50mm",          100.0,   50.0, false},
    {"SizeInCapitals",     "100X50MM",          100.0,   50.0, false},
    {"Fractions",          "100.25x.5e2mm",     100.25,  50.0, false},
    {"Least",              "10x10mm",            10.0,   10.0, false},
    {"Most",               "5080x5080mm",      5080.0, 5080.0, false},
    {"LeadingZeros",       "0100x00050mm",      100.0,   50.0, false},
};
// clang-format on

class Words : public testing::TestWithParam<WordsRow> {};

TEST_P(Words, NameAPaper) {
    const PaperChoice choice = choosePaper(GetParam().words);
    EXPECT_STREQ(choice.problem, nullptr);
    EXPECT_DOUBLE_EQ(choice.paper.width, GetParam().width);
    EXPECT_DOUBLE_EQ(choice.paper.height, GetParam().height);
    EXPECT_EQ(choice.paper.fit, GetParam().fit);
}

INSTANTIATE_TEST_SUITE_P(Rows, Words, testing::ValuesIn(WORDS_ROWS), byRowName);

struct WrongRow : NamedRow {
    const char* words;
    const char* problem;
};

// clang-format off
constexpr WrongRow WRONG_ROWS[] = {
    {"Nothing",            "",                  UNKNOWN},
    {"UnknownName",        "A7",                UNKNOWN},
    {"PartOfAName",        "A",                 UNKNOWN},
    {"MoreThanAName",      "A4x",               UNKNOWN},
    {"BlankBefore",        " A4",               UNKNOWN},
    {"BlankBehind",        "A4 ",               UNKNOWN},
    {"Fits",               "fits",              UNKNOWN},
    {"NoUnit",             "100x50",            UNKNOWN},
    {"HalfAUnit",          "100x50m",           UNKNOWN},
    {"OtherUnit",          "10x5in",            UNKNOWN},
    {"MoreBehindTheUnit",  "100x50mm2",         UNKNOWN},
    {"OneSide",            "100mm",             UNKNOWN},
    {"NoHeight",           "100xmm",            UNKNOWN},
    {"NoWidth",            "x50mm",             UNKNOWN},
    {"ThreeSides",         "100x50x20mm",       UNKNOWN},
    {"UnitTwice",          "100mmx50mm",        UNKNOWN},
    {"Blanks",             "100 x 50mm",        UNKNOWN},
    {"DecimalComma",       "100,5x50mm",        UNKNOWN},
    {"PlusSign",           "+100x50mm",         UNKNOWN},
    {"Hexadecimal",        "0x50x50mm",         UNKNOWN},
    {"NoNumberThatLarge",  "1e5000x50mm",       UNKNOWN},
    {"Zero",               "0x0mm",             BEYOND},
    {"Negative",           "-100x50mm",         BEYOND},
    {"TooNarrow",          "9.99x50mm",         BEYOND},
    {"TooLow",             "50x9mm",            BEYOND},
    {"TooWide",            "5081x50mm",         BEYOND},
    {"TooHigh",            "50x5080.1mm",       BEYOND},
    {"AKilometre",         "1000000x100mm",     BEYOND},
    {"NoNumber",           "nanx50mm",          BEYOND},
    {"Endless",            "50xinfmm",          BEYOND},
};
// clang-format on

class WrongWords : public testing::TestWithParam<WrongRow> {};

TEST_P(WrongWords, AreNoPaper) {
    EXPECT_STREQ(choosePaper(GetParam().words).problem, GetParam().problem);
}

INSTANTIATE_TEST_SUITE_P(Rows, WrongWords, testing::ValuesIn(WRONG_ROWS), byRowName);

TEST(NamedPapers, AreUprightAndChosenByTheirNames) {
    EXPECT_EQ(namedPapers().size(), 10U);
    for (const auto& [name, paper] : namedPapers()) {
        EXPECT_LT(paper.width, paper.height) << name;
        EXPECT_EQ(choosePaper(name).paper.height, paper.height) << name;
    }
}

// ---- sheets ---------------------------------------------------------------------------------------------------------

struct SheetRow : NamedRow {
    const char* words;
    bool landscape;
    double width, height, margin;  // millimetres
    double unit;
    int areaWidth, areaHeight;  // units
};

constexpr int MOST = 16384;  // units a side

// clang-format off
constexpr SheetRow SHEET_ROWS[] = {
    {"A4",               "A4",          false, 210.0,  297.0, 10.0,            0.025,  7600, 11080},
    {"A4Landscape",      "A4",          true,  297.0,  210.0, 10.0,            0.025, 11080,  7600},
    {"A3",               "A3",          false, 297.0,  420.0, 10.0,            0.025, 11080, 16000},
    {"A2IsCoarser",      "A2",          false, 420.0,  594.0, 10.0,     574.0 / MOST, 11417,  MOST},
    {"A1IsCoarser",      "A1",          false, 594.0,  841.0, 10.0,     821.0 / MOST, 11454,  MOST},
    {"A1Landscape",      "A1",          true,  841.0,  594.0, 10.0,     821.0 / MOST,  MOST, 11454},
    {"Letter",           "Letter",      false, 215.9,  279.4, 10.0,            0.025,  7836, 10376},
    {"FinestPossible",   "429.6x30mm",  false, 429.6,   30.0,  3.0,     423.6 / MOST,  MOST,   928},
    {"JustFine",         "415.6x30mm",  false, 415.6,   30.0,  3.0,            0.025, 16384,   960},
    {"WideStaysWide",    "100x50mm",    true,  100.0,   50.0,  5.0,            0.025,  3600,  1600},
    {"WideIsNotTurned",  "100x50mm",    false, 100.0,   50.0,  5.0,            0.025,  3600,  1600},
    {"NarrowIsTurned",   "50x100mm",    true,  100.0,   50.0,  5.0,            0.025,  3600,  1600},
    {"Square",           "50x50mm",     true,   50.0,   50.0,  5.0,            0.025,  1600,  1600},
    {"Least",            "10x10mm",     false,  10.0,   10.0,  1.0,            0.025,   320,   320},
    {"LongStrip",        "10x5080mm",   false,  10.0, 5080.0,  1.0,    5078.0 / MOST,    25,  MOST},
    {"Most",             "5080x5080mm", false, 5080.0, 5080.0, 10.0,   5060.0 / MOST,  MOST,  MOST},
    {"Fit",              "fit",         true,  297.0,  297.0, 10.0,            0.025, 11080, 11080},
};
// clang-format on

class Sheets : public testing::TestWithParam<SheetRow> {};

TEST_P(Sheets, AreLaidOut) {
    const Paper paper = choosePaper(GetParam().words).paper;
    const SheetLayout sheet = layOut(paper, GetParam().landscape);
    EXPECT_DOUBLE_EQ(sheet.width, GetParam().width);
    EXPECT_DOUBLE_EQ(sheet.height, GetParam().height);
    EXPECT_DOUBLE_EQ(sheet.margin, GetParam().margin);
    EXPECT_DOUBLE_EQ(sheet.unit, GetParam().unit);
    EXPECT_EQ(sheet.areaWidth, GetParam().areaWidth);
    EXPECT_EQ(sheet.areaHeight, GetParam().areaHeight);
    EXPECT_EQ(sheet.fit, paper.fit);
}

INSTANTIATE_TEST_SUITE_P(Rows, Sheets, testing::ValuesIn(SHEET_ROWS), byRowName);

}  // namespace
}  // namespace qrvel
