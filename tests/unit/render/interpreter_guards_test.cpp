// The interpreter and hostile compact code: cut records, other counts, odd angles, endless loops.
#include <algorithm>

#include "hpgl/command_table.h"
#include "picture_text.h"
#include "recorder/recorder.h"
#include "render/interpreter.h"
#include "rows.h"
#include "shell/shell_state.h"

namespace {

std::string bytes(std::initializer_list<int> values) {
    std::string result;
    for (const int value : values) {
        result += static_cast<char>(value);
    }
    return result;
}

const std::string& line() {
    static const std::string code = codeOf("PU7,7;PD8,8;");
    return code;
}
constexpr char LINE[] = "OUTline 7 7 8 8\n";

int bytesOf(char letter) {
    if (letter == 'C') return 1;
    return letter == 'I' ? 2 : 4;
}

// A record with one parameter for each letter of the signature (five characters of a label).
std::string wholeRecord(int id) {
    const std::string signature = id == 44 ? "CCCCC" : HPGLCommandTable[id].signature;
    std::string record = bytes({id, static_cast<int>(signature.size())});
    for (const char letter : signature) {
        record.append(static_cast<size_t>(bytesOf(letter)), '\1');
    }
    return record;
}

TEST(CutRecord, IsNotActedOnAndTheNextBlockIsDrawn) {
    const FreshViewer viewer;
    const std::string& next = line();
    for (int id = 2; id < HPGL_COMMANDS; ++id) {
        const std::string record = wholeRecord(id);
        setBlocks({record.substr(0, record.size() - 1), next});
        std::string calls;
        EXPECT_EQ(traceOf(1, [&] { calls = plainPass(); }), "") << HPGLCommandTable[id].name;
        EXPECT_EQ(calls, LINE) << HPGLCommandTable[id].name;
    }
}

TEST(CutRecord, OfAFormOfItsOwn) {
    const FreshViewer viewer;
    const std::string& next = line();
    for (const char* text :
         {"PD1,1,2;", "PD1;", "CI5;", "EW1,0,90;", "AA0,1,90;", "SC1,0,0,1;", "SC1,0,0,1,0;", "SI1,1;", "SR1,1;",
          "SD3,10;", "AD3,10,4,36;", "PW1;", "PW1,3;", "PM0;", "FP1;", "SP3;", "BZ1,1,1,1,1,1,2;", "LBx\003"}) {
        const std::string whole = codeOf(text);
        setBlocks({whole.substr(0, whole.size() - 1), next});
        EXPECT_EQ(plainPass(), LINE) << text;
    }
}

TEST(CutRecord, CountOfMoreThanTheBlockHolds) {
    const FreshViewer viewer;
    const std::string& next = line();
    for (const int id : {20, 16, 44, 6, 34}) {
        setBlocks({bytes({id, 255}) + std::string(100, '\1'), next});
        EXPECT_EQ(plainPass(), LINE) << id;
    }
}

TEST(CutRecord, ShortScNeedsSixteenBytes) {
    const FreshViewer viewer;
    const std::string reversed = bytes({12, 2, 0, 0, 0x80, 0x3f, 0, 0, 0, 0});
    const std::string& move = line();
    setBlocks({reversed + std::string(7, '\0'), move});
    EXPECT_EQ(plainPass(), LINE);
    setBlocks({reversed + std::string(8, '\0'), move});
    EXPECT_EQ(plainPass(), "OUTline -7 7 -8 8\n");
}

struct FormRow {
    const char* name;
    std::string code;
    std::string calls;
};

// Read in their fixed form whatever the count; what lies behind is the line.
std::vector<FormRow> formRows() {
    const std::string point = bytes({5, 0, 0, 0, 6, 0, 0, 0});
    const std::string three = bytes({3, 0, 0, 0});
    const std::string zeros(8, '\0');
    const std::string one = bytes({0, 0, 0x80, 0x3f});
    return {
        {"EaWithout", bytes({25, 0}) + point, "OUTboxr0 0 0 6 7\n"},
        {"ErWithThree", bytes({27, 3}) + point, "OUTboxr0 0 0 5 6\n"},
        {"RaWithOne", bytes({31, 1}) + point, "OUTboxr1 0 0 6 7\n"},
        {"RrWithFive", bytes({32, 5}) + point, "OUTboxr1 0 0 5 6\n"},
        {"EwWithTwo", bytes({28, 2}) + three + zeros, "OUTgeomline 0 3 0 0 3 0 0 0\n"},
        {"WgWithFive", bytes({33, 5}) + three + zeros, "OUTwinsolidpolygons 1 4 0 0 3 0 0 0 0 0\n"},
        {"AaWithout", bytes({13, 0}) + three + zeros, "OUTgeomline 0 3 0 0 "},
        {"SpWithThree", bytes({61, 3, 3, 0}), "OUTlinecolour 3\nOUTfillcolour 3\n"},
        {"SiWithOne", bytes({49, 1}) + one + one, ""},
        {"SrWithThree", bytes({51, 3}) + one + one, ""},
        {"SdWithOne", bytes({48, 1, 3, 0}) + one, ""},
        {"SdWithThree", bytes({48, 3, 3, 0}) + one + bytes({4, 0}) + one, ""},
    };
}

TEST(FixedForm, IsReadWhateverTheCount) {
    const FreshViewer viewer;
    const std::string& next = line();
    for (const FormRow& row : formRows()) {
        setBlocks({row.code + next});
        const std::string calls = plainPass();
        EXPECT_TRUE(calls.starts_with(row.calls)) << row.name << ": " << calls;
        EXPECT_TRUE(calls.ends_with(LINE)) << row.name << ": " << calls;
    }
}

TEST(FixedForm, PseudoCommandsStepOverNothing) {
    const FreshViewer viewer;
    const std::string& next = line();
    for (const int id : {0, 1, 2, 4, 5, 9, 11, 66}) {
        setBlocks({bytes({id, 9}) + next});
        EXPECT_EQ(plainPass(), LINE) << id;
    }
}

TEST(FixedForm, CodesAbove92AreOneByte) {
    const FreshViewer viewer;
    const std::string& next = line();
    for (const int code : {93, 128, 255}) {
        setBlocks({bytes({code, code, code}) + next});
        std::string calls;
        EXPECT_EQ(traceOf(3, [&] { calls = plainPass(); }), "HPGLdrawLine: Thinline: 7 7 8 8\n");
        EXPECT_EQ(calls, LINE) << code;
    }
}

// ---- angles and steps -----------------------------------------------------------------------------------------------

struct AngleRow : NamedRow {
    const char* text;
    const char* same;  // draws what this text draws
    bool warns;
};

// clang-format off
constexpr AngleRow ANGLE_ROWS[] = {
    {"CircleChordZero",     "CI100,0;",                "CI100;",               true},
    {"CircleChordNegative", "CI100,-5;",               "CI100;",               true},
    {"CircleChordNan",      "CI100,nan;",              "CI100;",               true},
    {"CircleChordInf",      "CI100,inf;",              "CI100;",               true},
    {"WedgeChordZero",      "EW100,0,90,0;",           "EW100,0,90;",          true},
    {"WedgeChordNegative",  "WG100,0,-90,-3;",         "WG100,0,-90;",         true},
    {"WedgeChordNan",       "WG100,0,90,nan;",         "WG100,0,90;",          true},
    {"WedgeChordInf",       "EW100,0,90,-inf;",        "EW100,0,90;",          true},
    {"ArcChordZero",        "PU9,9;AA0,0,90,0;",       "PU9,9;AA0,0,90;",      true},
    {"ArcChordNegative",    "PU9,9;AR5,0,90,-1;",      "PU9,9;AR5,0,90;",      true},
    {"ArcChordInf",         "PU9,9;AR5,0,90,1e39;",    "PU9,9;AR5,0,90;",      true},
    {"WedgeStartNan",       "EW100,nan,90;",           "EW100,0,90;",          false},
    {"WedgeStartInf",       "EW100,inf,90;",           "EW100,0,90;",          false},
    {"WedgeSweepInf",       "EW100,30,-inf;",          "EW100,30,0;",          false},
    {"WedgeNegativeNan",    "EW-100,nan,90;",          "EW-100,0,90;",         false},
    {"ArcSweepNan",         "PU9,9;AA0,0,nan;PD5,5;",  "PU9,9;AA0,0,0;PD5,5;", false},
    {"ArcSweepInf",         "PU9,9;AA0,0,1e39;",       "PU9,9;AA0,0,0;",       false},
};
// clang-format on

class OddAngles : public testing::TestWithParam<AngleRow> {};

TEST_P(OddAngles, AreReplaced) {
    const FreshViewer viewer;
    const std::string expected = plainCalls(GetParam().same);
    parseText(GetParam().text);
    std::string calls;
    const std::string trace = traceOf(1, [&] { calls = plainPass(); });
    EXPECT_EQ(calls, expected);
    EXPECT_EQ(trace.starts_with("WARNING-HPGLinterpretCompactCode"), GetParam().warns) << trace;
    EXPECT_EQ(std::count(trace.begin(), trace.end(), '\n'), GetParam().warns ? 1 : 0) << trace;
}

INSTANTIATE_TEST_SUITE_P(Rows, OddAngles, testing::ValuesIn(ANGLE_ROWS), byRowName);

TEST(Steps, OneThatChangesNothingEndsTheLoop) {
    const FreshViewer viewer;
    EXPECT_EQ(plainCalls("EW1000,1e17,1e17,1;"), "OUTgeomline 0 3 0 0 -328 -944 0 0\n");
}

// The end of the arc is computed however many steps there were on the way.
TEST(Steps, CutShortStillReachTheEnd) {
    const FreshViewer viewer;
    const std::string calls = plainCalls("PU1000,0;AA0,0,180,.00001;PD0,0;");
    EXPECT_TRUE(calls.starts_with("OUTgeomline 0 2000 1000 0 ")) << calls.substr(0, 60);
    EXPECT_TRUE(calls.ends_with("\nOUTline -999 0 0 0\n")) << calls.substr(calls.size() - 60);
}

std::string lastCall(const std::string& calls) {
    return calls.substr(calls.rfind('\n', calls.size() - 2) + 1);
}

// Each wedge would take 1.2 million steps, and is cut at a million.
TEST(Steps, AreLimitedAPass) {
    const FreshViewer viewer;
    const std::string hostile = "EW1,0,360,.0003;";
    const std::string fine = "OUTgeomline 0 5 100 0 -49 86 -50 -86 99 0 100 0\n";
    EXPECT_EQ(lastCall(plainCalls(times(49, hostile) + "CI100,120;")), fine);

    parseText(times(50, hostile) + "CI100,120;EW1000,0,36000,1;");
    const std::string calls = plainPass();
    EXPECT_NE(calls.find("\nOUTgeomline 0 74 100 0 "), std::string::npos);
    EXPECT_TRUE(lastCall(calls).starts_with("OUTgeomline 0 1002 0 0 1000 0 996 87 ")) << lastCall(calls).substr(0, 60);
}

}  // namespace
