// HP-GL text to records: names, parameters, labels, comments, pseudo-commands.
#include <cmath>
#include <cstring>
#include <string>

#include "hpgl/parser_internal.h"
#include "picture_text.h"
#include "rows.h"
#include "shell/shell_state.h"

namespace {

using namespace std::string_view_literals;

struct ParseRow : NamedRow {
    std::string_view text;
    const char* records;
};

class Parse : public testing::TestWithParam<ParseRow> {
  protected:
    const FreshViewer viewer;
};

TEST_P(Parse, WritesRecords) {
    EXPECT_EQ(shortRecords(GetParam().text), GetParam().records);
}

// clang-format off

// ---- names ----------------------------------------------------------------------------------------------------------

constexpr ParseRow NAMES[] = {
    {"Nothing",                ""sv,                       ""},
    {"NoSeparator",            "PA10,20PD;"sv,             "PA 2 10 20\nPD 0\n"},
    {"NameBehindName",         "INPUPA"sv,                 "IN 0\nPU 0\nPA 0\n"},
    {"Lower",                  "pa10,20;"sv,               ""},
    {"LowerBehindCommand",     "PUpd10;"sv,                "PU 1 0\n"},
    {"UnknownPair",            "PA10ZZ20;"sv,              "PA 1 10\n"},
    {"UnknownPairInFront",     "ZZ10PA20;"sv,              "PA 1 20\n"},
    {"UnknownAsParameter",     "PA10;ZZ;20;"sv,            "PA 3 10 0 20\n"},
    {"SecondLetterIsNoFirst",  "SPA10;"sv,                 "SP 1 0\n"},
    {"ControlInsideName",      "P\r\n\001A10;"sv,          "PA 1 10\n"},
    {"HighByteInsideName",     "P\200\377A10;"sv,          "PA 1 10\n"},
    {"NulInsideName",          "P\0A10;"sv,                "PA 1 10\n"},
    {"BlankInsideName",        "PUP A10;"sv,               "PU 2 0 0\n"},
    {"DeleteInsideName",       "PUP\177A10;"sv,            "PU 1 0\n"},
    {"SemicolonDoesNotClose",  "PA1,2;3,4;PD"sv,           "PA 4 1 2 3 4\nPD 0\n"},
    {"NumbersInFront",         "1,2;PA3,4;"sv,             "PA 2 3 4\n"},
    {"EveryOrdinaryName",      "DFINPGRPEPSASSBPCSASFSVSPTCTDLECFRMGMTOHOIOPOSPSQLSTVRCRDCDPOD"sv,
                               "DF 0\nIN 0\nPG 0\nRP 0\nEP 0\nSA 0\nSS 0\nBP 0\nCS 0\nAS 0\nFS 0\nVS 0\nPT 0\nCT 0\n"
                               "DL 0\nEC 0\nFR 0\nMG 0\nMT 0\nOH 0\nOI 0\nOP 0\nOS 0\nPS 0\nQL 0\nST 0\nVR 0\nCR 0\n"
                               "DC 0\nDP 0\nOD 0\n"},
};
INSTANTIATE_TEST_SUITE_P(Names, Parse, testing::ValuesIn(NAMES), byRowName);

// ---- parameters -----------------------------------------------------------------------------------------------------

constexpr ParseRow PARAMETERS[] = {
    {"Comma",                  "PA10,20;"sv,               "PA 2 10 20\n"},
    {"Blank",                  "PA10 20 "sv,               "PA 2 10 20\n"},
    {"Semicolon",              "PA10;20;"sv,               "PA 2 10 20\n"},
    {"ManySeparators",         "PA ,;10 , ;20,,;"sv,       "PA 2 10 20\n"},
    {"LineEndIsNone",          "PA1\r\n0,2\t0;"sv,         "PA 2 10 20\n"},
    {"Minus",                  "PA10-20;"sv,               "PA 2 10 -20\n"},
    {"Plus",                   "PA10+20;"sv,               "PA 2 10 20\n"},
    {"LeadingMinus",           "PA-10,-20;"sv,             "PA 2 -10 -20\n"},
    {"LeadingPlus",            "PA+10,+20;"sv,             "PA 2 10 20\n"},
    {"TwoMinus",               "PA--5;"sv,                 "PA 2 0 -5\n"},
    {"MinusPlus",              "PA-+5;"sv,                 "PA 2 0 5\n"},
    {"PlusMinus",              "PA+-5;"sv,                 "PA 2 0 -5\n"},
    {"MinusAlone",             "PA-;1"sv,                  "PA 1 0\n"},
    {"MinusBeforeName",        "PA1-PD"sv,                 "PA 2 1 0\nPD 0\n"},
    {"PlusBeforeName",         "PA1+PD"sv,                 "PA 1 1\nPD 0\n"},
    {"SignsInCharacters",      "SM+;"sv,                   "SM 1 2b\n"},
    {"SignsOfEmptySignature",  "PG1-2+3;"sv,               "PG 3\n"},
    {"EmptySignatureCounts",   "IN;PG1;"sv,                "IN 0\nPG 1\n"},
    {"EmptySignatureBeforeName","PG1,2PU"sv,               "PG 2\nPU 0\n"},
    {"Fraction",               "PA10.7,-10.7;"sv,          "PA 2 10 -10\n"},
    {"ExponentOfInteger",      "PA1e3;"sv,                 "PA 1 1\n"},
    {"Letters",                "PAabc,1x;"sv,              "PA 2 0 1\n"},
    {"Hexadecimal",            "PA0x10;SI0x10,1;"sv,       "PA 1 0\nSI 2 16 1\n"},
    {"NineAndTenDigits",       "PA999999999,1000000000-999999999;"sv, "PA 3 999999999 1000000000 -999999999\n"},
    {"NineDigitsCut",          "SP999999999;SP-999999999;"sv, "SP 1 -13825\nSP 1 13825\n"},
    {"NineDigitsReal",         "SI123456789,-7;"sv,        "SI 2 123456792 -7\n"},
    {"MinusZero",              "PA-0;SI-0,0;"sv,           "PA 1 0\nSI 2 -0 0\n"},
    {"Real",                   "SI.5,-1.25;"sv,            "SI 2 0.5 -1.25\n"},
    {"RealExponent",           "SI1e2,25e-1;"sv,           "SI 3 100 25 -1\n"},
    {"RealExponentUpper",      "SI1E2,1E+1;"sv,            "SI 3 100 1 1\n"},
    {"RealNarrowed",           "SI.1,16777217;"sv,         "SI 2 0.100000001 16777216\n"},
    {"RealOverflow",           "SI1e39,-1e39;"sv,          "SI 2 inf -inf\n"},
    {"RealUnderflow",          "SI1e50,1;"sv,              "SI 2 inf 1\n"},
    {"RealComma",              "SI1,5;"sv,                 "SI 2 1 5\n"},
    {"NotANumber",             "SInan,inf;"sv,             "SI 2 nan inf\n"},
    {"NotANumberUpper",        "SINAN,1;"sv,               "SI 2 nan 1\n"},
    {"NegativeNotANumber",     "SI-nan,-inf;"sv,           "SI 2 -nan -inf\n"},
    {"UpperInfinityIsAName",   "SIINF;"sv,                 "SI 0\nIN 1\n"},
    {"ShortInteger",           "SP70000;SP-32769;SP65535;"sv, "SP 1 4464\nSP 1 32767\nSP 1 -1\n"},
    {"ShortIntegerOfLong",     "SP4294967297;"sv,          "SP 1 1\n"},
    {"LongCutTo32Bits",        "PA4294967297,9999999999;"sv, "PA 2 1 1410065407\n"},
    {"LongAtTheEdge",          "PA2147483647,2147483648;"sv, "PA 2 2147483647 -2147483648\n"},
    {"LongNegativeEdge",       "PA-2147483648,-2147483649;"sv, "PA 2 -2147483648 2147483647\n"},
    {"MixedSignature",         "FT3,.5,45;"sv,             "FT 3 3 0.5 45\n"},
    {"SignatureRepeats",       "FT1,2.5,3,4,5,6;"sv,       "FT 6 1 2.5 3 4 5 6\n"},
    {"SignatureRepeatsWhole",  "CF1,70000,2,70001;"sv,     "CF 4 1 70000 2 70001\n"},
    {"SignatureContinues",     "CF1;2;PU"sv,               "CF 2 1 2\nPU 0\n"},
};
INSTANTIATE_TEST_SUITE_P(Parameters, Parse, testing::ValuesIn(PARAMETERS), byRowName);

// ---- sixteen characters ---------------------------------------------------------------------------------------------

constexpr ParseRow LENGTHS[] = {
    {"Fifteen",                "PA123456789012345;"sv,       "PA 1 -2045911175\n"},
    {"Sixteen",                "PA1234567890123456;"sv,      "PA 1 1015724736\n"},
    {"Seventeen",              "PA12345678901234567;"sv,     "PA 1 1015724736\n"},
    {"Twenty",                 "PA12345678901234567890,1;"sv,"PA 2 1015724736 1\n"},
    {"LeadingZeros",           "PA00000000000000012345;"sv,  "PA 1 1\n"},
    {"SignCounts",             "PA-1234567890123456;"sv,     "PA 1 2045911175\n"},
    {"FifteenBeforeName",      "PA123456789012345PD;"sv,     "PA 1 -2045911175\nPD 0\n"},
    {"SixteenBeforeName",      "PA1234567890123456PD;"sv,    "PA 1 -2045911175\nPD 0\n"},
    {"TwentyBeforeName",       "PA12345678901234567890PD;"sv,"PA 1 -2045911175\nPD 0\n"},
    {"TwentyBeforeSign",       "PA12345678901234567890-5;"sv,"PA 2 1015724736 -5\n"},
    {"DigitsOfAReal",          "SI0.00000000000012345,1;"sv, "SI 2 1.19999998e-13 1\n"},
};
INSTANTIATE_TEST_SUITE_P(Lengths, Parse, testing::ValuesIn(LENGTHS), byRowName);

// ---- labels and terminators -----------------------------------------------------------------------------------------

constexpr ParseRow LABELS[] = {
    {"Label",                  "LBABC\003"sv,              "LB 3 414243\n"},
    {"EmptyLabel",             "LB\003PU"sv,               "LB 0\nPU 0\n"},
    {"NamesInside",            "LBPA1,2;HPGL\003PU"sv,     "LB 10 5041312c323b4850474c\nPU 0\n"},
    {"NotTerminated",          "LBABC"sv,                  "LB 3 414243\n"},
    {"CarriageReturnEnds",     "LBAB\rPA1,2;"sv,           "LB 2 4142\nPA 2 1 2\n"},
    {"LineFeedEnds",           "LBAB\nPA1,2;"sv,           "LB 2 4142\nPA 2 1 2\n"},
    {"NulEnds",                "LBAB\0PU"sv,               "LB 2 4142\nPU 0\n"},
    {"HighByteEnds",           "LBAB\200PU"sv,             "LB 2 4142\nPU 0\n"},
    {"LastByteEnds",           "LBAB\377PU"sv,             "LB 2 4142\nPU 0\n"},
    {"DeleteIsStored",         "LB\177 ~\003"sv,           "LB 3 7f207e\n"},
    {"NumbersBehindAreLost",   "LBA\003" "1,2;PU3;"sv,     "LB 1 41\nPU 1 3\n"},
    {"TerminatorSet",          "DT#;LBX#PU"sv,             "DT 1 23\nLB 1 58\nPU 0\n"},
    {"TerminatorWithoutEnd",   "DT#LBX#PU"sv,              "DT 1 23\nLB 1 58\nPU 0\n"},
    {"ControlEndsAllTheSame",  "DT#;LBX\003PU"sv,          "DT 1 23\nLB 1 58\nPU 0\n"},
    {"FirstOfManyCharacters",  "DT#*;LBX*Y#"sv,            "DT 1 23\n"},
    {"TerminatorWithMode",     "DT#,1;LBX#"sv,             "DT 2 23 1\nLB 1 58\n"},
    {"OnlyTheFirstParameter",  "DT#,1,*;LBX*#"sv,          "DT 3 23 1 2a\nLB 2 582a\n"},
    {"TerminatorWithoutParameter","DT#;DT;LBX#"sv,         "DT 1 23\nDT 0\nLB 1 58\n"},
    {"ControlIsNoTerminator",  "DT#;DT\004;LBX#"sv,        "DT 1 23\nDT 0\nLB 1 58\n"},
    {"TerminatorIsALetter",    "DTA;LBXAPU"sv,             "DT 1 41\nLB 1 58\nPU 0\n"},
    {"TerminatorBeginsAName",  "DTP;LBXPA1;"sv,            "DT 1 50\nLB 1 58\nPA 1 1\n"},
    {"TerminatorBlankIsNone",  "DT ;LBX Y\003"sv,          "DT 0\nLB 3 582059\n"},
};
INSTANTIATE_TEST_SUITE_P(Labels, Parse, testing::ValuesIn(LABELS), byRowName);

// ---- comments -------------------------------------------------------------------------------------------------------

constexpr ParseRow COMMENTS[] = {
    {"Comment",                "CO\"PA1,2;\"PU"sv,         "PU 0\n"},
    {"TextBeforeQuote",        "CO PA1,2; \"x\"PU"sv,      "PU 0\n"},
    {"ControlsInside",         "CO\"\r\n\003\200\0\"PU"sv, "PU 0\n"},
    {"EmptyComment",           "CO\"\"PU"sv,               "PU 0\n"},
    {"SecondComment",          "CO\"a\"CO\"PA1,2;\"PU"sv, "PU 0\n"},
    {"NoQuotes",               "CO;PA1,2;PU"sv,            ""},
    {"OneQuote",               "CO\"PA1,2;PU"sv,           ""},
    {"NumbersBehindAreLost",   "CO\"x\"1,2;PU"sv,          "PU 0\n"},
    {"QuoteCountBeginsAnew",   "CO\"x\"CO\"y\"PU"sv,       "PU 0\n"},
    {"ClosesParameterInFront", "PA1,2CO\"x\"3;PU"sv,       "PA 2 1 2\nPU 0\n"},
    {"CountsNothingInFront",   "PA1,2;CO\"x\"3,4"sv,       "PA 2 1 2\n"},
};
INSTANTIATE_TEST_SUITE_P(Comments, Parse, testing::ValuesIn(COMMENTS), byRowName);
// clang-format on

// ---- many parameters ------------------------------------------------------------------------------------------------

std::string repeated(std::string_view text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

std::string warningOf(int count) {
    return "WARNING-setNoOfParameters: NoOfParameters was " + std::to_string(count) +
           " but maximum I can handle is 255\n";
}

class ParseMany : public testing::Test {
  protected:
    // Level-1 lines of parsing.
    static std::string trace(const std::string& text) {
        return traceOf(1, [&] { parseText(text); });
    }
    const FreshViewer viewer;
};

TEST_F(ParseMany, StoresTwoHundredAndFiftyFiveOfALabel) {
    const std::string text = "LB" + std::string(300, 'A') + "\003";
    EXPECT_EQ(trace(text), warningOf(300));
    EXPECT_EQ(shortRecords(text), "LB 255 " + repeated("41", 255) + "\n");
    EXPECT_EQ(trace(text + "PU"), warningOf(300));
    EXPECT_EQ(shortRecords(text + "PU"), "LB 255 " + repeated("41", 255) + "\nPU 0\n");
    EXPECT_EQ(trace("LB" + std::string(255, 'A') + "\003"), "");
}

TEST_F(ParseMany, StoresTwoHundredAndFiftyFiveParameters) {
    const std::string stored = "PA 255" + repeated(" 7", 255) + "\n";
    EXPECT_EQ(shortRecords("PA" + repeated("7,", 255)), stored);
    EXPECT_EQ(shortRecords("PA" + repeated("7,", 300) + "PU"), stored + "PU 0\n");
    EXPECT_EQ(shortRecords("PA" + repeated("7,", 255) + "8PU"), stored + "PU 0\n");
    EXPECT_EQ(trace("PA" + repeated("7,", 255) + "PU"), "");
    EXPECT_EQ(trace("PA" + repeated("7,", 256) + "PU"), warningOf(256));
    EXPECT_EQ(trace("PA" + repeated("7,", 300)), warningOf(300));
}

TEST_F(ParseMany, CountsParametersThatAreNotStored) {
    EXPECT_EQ(shortRecords("PG" + repeated("7,", 300) + "PU"), "PG 255\nPU 0\n");
    EXPECT_EQ(trace("PG" + repeated("7,", 300)), warningOf(300));
}

TEST_F(ParseMany, KeepsSixteenCharactersOfACharacterParameter) {
    parseText("SMabcdefghijklmnopqrstuvw;");
    EXPECT_EQ(hexText(),
              "block 0 18\nhex 3c01"
              "6162636465666768696a6b6c6d6e6f70\n");
    parseText("SMabcdefghijklmnopqrstuvwPU");
    EXPECT_EQ(hexText(),
              "block 0 19\nhex 3c01"
              "6162636465666768696a6b6c6d6e6f"
              "1700\n");
}

TEST_F(ParseMany, SkipsCommandsOfALabelBehindItsTerminator) {
    parseText("DT#*;LBX*Y#");  // the first of two characters is the terminator
    EXPECT_EQ(hexText(),
              "block 0 9\nhex 2701232a"
              "2c03582a59\n");
}

// ---- bytes of a record ----------------------------------------------------------------------------------------------

TEST_F(ParseMany, PacksLittleEndian) {
    parseText("PA1,-2;SP258;SI1.5,-2;LBAb\003FT1,2;");
    EXPECT_EQ(hexText(),
              "block 0 36\nhex "
              "1302"
              "01000000"
              "feffffff"
              "3d01"
              "0201"
              "3102"
              "0000c03f"
              "000000c0"
              "2c02"
              "4162"
              "3702"
              "0100"
              "00000040"
              "\n");
}

// ---- pseudo-commands ------------------------------------------------------------------------------------------------

struct PseudoRow : NamedRow {
    std::string_view text;
    const char* file;  // null: none
    int result;
    int info;
    const char* records;
};

// clang-format off
constexpr PseudoRow PSEUDO[] = {
    {"Data",                "HPGL_DATA;PA1,2;"sv,              nullptr, 1, 0, "PA 2 1 2\n"},
    {"DataNoSeparator",     "HPGL_DATAPA1,2;"sv,               nullptr, 1, 0, "PA 2 1 2\n"},
    {"DataParameters",      "HPGL_DATA5,6;PA1,2;"sv,           nullptr, 1, 0, "PA 2 1 2\n"},
    {"DataOtherLetters",    "HPGL_DATAX;PU"sv,                 nullptr, 1, 0, "PU 0\n"},
    {"Info",                "HPGL_INFO;"sv,                    nullptr, 1, 1, ""},
    {"InfoTwice",           "HPGL_INFOHPGL_INFOPU"sv,          nullptr, 1, 1, "PU 0\n"},
    {"InfoClosesRecord",    "PA10HPGL_INFO;20,30;PU"sv,        nullptr, 1, 1, "PA 1 10\nPU 0\n"},
    {"File",                "HPGL_FILEa.hpg\n"sv,              "a.hpg", 1, 0, ""},
    {"FileColon",           "HPGL_FILE:a.hpg\n"sv,             "a.hpg", 1, 0, ""},
    {"FileTwoColons",       "HPGL_FILE::a\n"sv,                ":a",    1, 0, ""},
    {"FileToTheEnd",        "HPGL_FILE:a.hpg"sv,               "a.hpg", 1, 0, ""},
    {"FileToTheEndNoColon", "HPGL_FILEa.hpg"sv,                "a.hpg", 1, 0, ""},
    {"FileSeparators",      "HPGL_FILE: a;b,c PU.hpg\rPU"sv,   " a;b,c PU.hpg", 1, 0, "PU 0\n"},
    {"FileBlank",           "HPGL_FILE a\n"sv,                 " a",    1, 0, ""},
    {"FileEndsAtNul",       "HPGL_FILE:a\0b;PU"sv,             "a",     1, 0, "PU 0\n"},
    {"FileEndsAbove127",    "HPGL_FILE:a\200b;PU"sv,           "a",     1, 0, "PU 0\n"},
    {"FileDelete",          "HPGL_FILE:a\177b\n"sv,            "a\177b",1, 0, ""},
    {"FileBehindLineEnd",   "HPGL_FILE\r\n:a\n"sv,             "a",     1, 0, ""},
    {"FileOnlyColon",       "HPGL_FILE:\nPU"sv,                "",      1, 0, "PU 0\n"},
    {"FileOnlyColonAtEnd",  "HPGL_FILE:"sv,                    "",      1, 0, ""},
    {"FileNothing",         "HPGL_FILE"sv,                     nullptr, 1, 0, ""},
    {"FileNumbersBehind",   "HPGL_FILE:a\n1,2;PU3;"sv,         "a",     1, 0, "PU 1 3\n"},
    {"FileTwice",           "HPGL_FILE:a\nHPGL_FILE:bc\n"sv,   "bc",    1, 0, ""},
    {"FileClosesRecord",    "PA1,2HPGL_FILE:a\nPU"sv,          "a",     1, 0, "PA 2 1 2\nPU 0\n"},
    {"NameCut",             "PU;HPGL_"sv,                      nullptr, 1, 0, "PU 0\n"},
    {"OnlyHP",              "PU;HP"sv,                         nullptr, 1, 0, "PU 0\n"},
    {"Lower",               "hpgl_info;PU"sv,                  nullptr, 1, 0, "PU 0\n"},
    {"Misspelt",            "PU;HPGL_INFX;PD"sv,               nullptr, 0, 0, "PU 0\n"},
    {"OtherLetters",        "PU;HPXX;PD"sv,                    nullptr, 0, 0, "PU 0\n"},
    {"LowerEnd",            "PU;HPGL_info;PD"sv,               nullptr, 0, 0, "PU 0\n"},
    {"ControlBetween",      "PU;H\nPGL_INFO;PD"sv,             nullptr, 0, 0, "PU 0\n"},
    {"ControlInside",       "PU;HPGL_IN\rFO;PD"sv,             nullptr, 0, 0, "PU 0\n"},
    {"NulInside",           "PU;HPGL_IN\0FO;PD"sv,             nullptr, 0, 0, "PU 0\n"},
    {"HighByteInside",      "PU;HPGL_IN\200FO;PD"sv,           nullptr, 0, 0, "PU 0\n"},
    {"InsideALabel",        "LBHPXX\003PU"sv,                  nullptr, 1, 0, "LB 4 48505858\nPU 0\n"},
    {"InsideAComment",      "CO\"HPXX\"PU"sv,                  nullptr, 1, 0, "PU 0\n"},
    {"BehindALetter",       "DTH;LBXHPGL_INFO;"sv,             nullptr, 1, 1, "DT 1 48\nLB 1 58\n"},
};
// clang-format on

class ParsePseudo : public testing::TestWithParam<PseudoRow> {
  protected:
    const FreshViewer viewer;
};

void expectPicture(const PseudoRow& row) {
    const HPGLGlobal& global = *TheShell.parser->global;
    EXPECT_STREQ(global.fileName, row.file);
    EXPECT_EQ(global.infoRequested, row.info);
}

TEST_P(ParsePseudo, IsRead) {
    const PseudoRow& row = GetParam();
    int result = -1;
    EXPECT_EQ(traceOf(1, [&] { result = parseText(row.text); }),
              row.result == 1 ? "" : "HPGLparseCode: error parsing TOLK command\n");
    EXPECT_EQ(result, row.result);
    expectPicture(row);
    EXPECT_EQ(shortRecords(row.text), row.records);
}

// A name is joined wherever it is cut; what follows it is looked at in the chunk that completes it. The exceptions are
// the file's name and what is lost behind a name that fails.
TEST_P(ParsePseudo, IsReadWhereverItsNameIsCut) {
    const PseudoRow& row = GetParam();
    const size_t name = row.text.find('H');
    if (name == std::string_view::npos || row.result == 0) return;
    for (size_t cut = name; cut <= std::min(name + 9, row.text.size()); ++cut) {
        SCOPED_TRACE(cut);
        EXPECT_EQ(parseChunks({row.text.substr(0, cut), row.text.substr(cut)}), 1);
        expectPicture(row);
    }
}
INSTANTIATE_TEST_SUITE_P(Rows, ParsePseudo, testing::ValuesIn(PSEUDO), byRowName);

// ---- interfaces that the loop stands on -----------------------------------------------------------------------------

struct ConvertRow : NamedRow {
    char letter;
    const char* text;
    const char* hex;
    const char* trace;
};

// clang-format off
constexpr ConvertRow CONVERSIONS[] = {
    {"Characters", 'C', "ab",    "6162",     " ab"},
    {"Short",      'I', "-2.9",  "feff",     " -2"},
    {"Long",       'L', "-2.9",  "feffffff", " -2"},
    {"Real",       'R', "-2.5",  "000020c0", " -2.500000"},
    {"Blank",      'L', "x",     "00000000", " 0"},
    {"NoLetter",   '\0',"5",     "",         ""},
    {"OtherLetter",'Q', "5",     "",         ""},
};
// clang-format on

class ConvertParameter : public testing::TestWithParam<ConvertRow> {
  protected:
    const FreshViewer viewer;
};

TEST_P(ConvertParameter, AppendsByLetter) {
    const ConvertRow& row = GetParam();
    TheShell.parser = HPGLinitParser();
    IStatus* status = TheShell.parser->status;
    CBlock* block = GetNewCBlock(TheShell.parser->blocks);
    memcpy(status->numberBuffer, row.text, strlen(row.text));
    status->bufferPointer = status->numberBuffer + strlen(row.text);
    status->signatureLetter = &row.letter;
    EXPECT_EQ(traceOf(3, [&] { EXPECT_EQ(HPGLconvertParameter(status, TheShell.parser->blocks, &block), 1); }),
              row.trace);
    const std::string hex = row.hex;
    EXPECT_EQ(hexText(), "block 0 " + std::to_string(hex.size() / 2) + "\nhex" + (hex.empty() ? "" : " " + hex) + "\n");
}
INSTANTIATE_TEST_SUITE_P(Rows, ConvertParameter, testing::ValuesIn(CONVERSIONS), byRowName);

// ---- the dump at level 3 --------------------------------------------------------------------------------------------

struct DumpRow : NamedRow {
    std::string_view text;
    const char* dump;
};

// clang-format off
constexpr DumpRow DUMPS[] = {
    {"Plot",      "IN;SP1;PU10,-20;PD30.5 40SI.5,1.25;LBAb\003PU;"sv,
                  "IN(=5) P:  PNo: 0\n"
                  "SP(=61) P:  1 PNo: 1\n"
                  "PU(=23) P:  10 -20 PNo: 2\n"
                  "PD(=20) P:  30 40 PNo: 2\n"
                  "SI(=49) P:  0.500000 1.250000 PNo: 2\n"
                  "LB(=44) P: Ab PNo: 2\n"
                  "PU(=23) P: "},
    {"First",     "PA1"sv,                  "PA(=19) P: "},
    {"Characters","DT#;SM*PU"sv,            "DT(=39) P:  # PNo: 1\nSM(=60) P:  * PNo: 1\nPU(=23) P: "},
    {"Unstored",  "PG1,2PU"sv,              "PG(=9) P:  PNo: 2\nPU(=23) P: "},
    {"Comment",   "PU;CO\"x\"PD"sv,         "PU(=23) P:  PNo: 0\nPD(=20) P: "},
    {"Encoded",   "PU;PE\301\301;PD"sv,     "PU(=23) P:  PNo: 0\nPD(=20) P: "},
    {"Pseudo",    "HPGL_INFO;PU"sv,         "PU(=23) P: "},
};
// clang-format on

class ParseDump : public testing::TestWithParam<DumpRow> {
  protected:
    const FreshViewer viewer;
};

TEST_P(ParseDump, ListsCommands) {
    const std::string_view text = GetParam().text;
    const auto parse = [&] { HPGLparseCode(TheShell.parser, text.data(), static_cast<int64_t>(text.size())); };
    TheShell.parser = HPGLinitParser();
    EXPECT_EQ(traceOf(3, parse), GetParam().dump);
    HPGLflushCompactCode(TheShell.parser);
    EXPECT_EQ(traceOf(2, parse), "");
}
INSTANTIATE_TEST_SUITE_P(Rows, ParseDump, testing::ValuesIn(DUMPS), byRowName);

TEST_F(ParseMany, DumpsWhatIsNotStored) {
    TheShell.parser = HPGLinitParser();
    const std::string text = "LB" + std::string(300, 'A') + "\003PU";
    EXPECT_EQ(traceOf(3, [&] { HPGLparseCode(TheShell.parser, text.data(), static_cast<int64_t>(text.size())); }),
              "LB(=44) P: " + std::string(300, 'A') + warningOf(300) + " PNo: 300\nPU(=23) P: ");
}

}  // namespace
