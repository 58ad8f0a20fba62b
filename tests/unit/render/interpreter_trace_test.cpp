// The interpreter's words in the trace, with their levels.
#include <algorithm>

#include "failing_allocator.h"
#include "hpgl/command_table.h"
#include "picture_text.h"
#include "recorder/recorder.h"
#include "render/interpreter.h"
#include "rows.h"
#include "shell/shell_state.h"

namespace {

#define CANT_HANDLE(name) "WARNING-HPGLinterpretCompactCode:  Cant handle " name ", ignore command\n"
#define CANT(what) "WARNING-HPGLinterpretCompactCode: Cant " what "\n"

struct TraceRow : NamedRow {
    const char* text;
    const char* trace;
};

// clang-format off
constexpr TraceRow TRACE_ROWS[] = {
    {"Rotation",        "RO90;",              "Can not handle RO command, will not rotated drawing\n"},
    {"Longs",           "IP0,0,10,-20;",      CANT_HANDLE("IP") " 0  0  10  -20 \n"},
    {"Reals",           "IR.5,-1;",           CANT_HANDLE("IR") " 0.500000  -1.000000 \n"},
    {"Shorts",          "DV1,-2;",            CANT_HANDLE("DV") " 1  -2 \n"},
    {"Character",       "SM*;",               CANT_HANDLE("SM") "*\n"},
    {"Mixed",           "DT#,1;",             CANT_HANDLE("DT") "# 1 \n"},
    {"Cycling",         "LT2,.5,1,3;",        CANT_HANDLE("LT") " 2  0.500000  1  3 \n"},
    {"NoParameters",    "LT;",                CANT_HANDLE("LT") "\n"},
    {"NoSignature",     "CS33;",              CANT_HANDLE("CS") "\n"},
    {"NextWithoutBegin", "PM1;",              CANT("go to next SubPolygon")},
    {"CloseWithoutBegin", "PM2;",             CANT("close Polygonbuffer")},
    {"CloseTwice",      "PM0;PM2;PM2;",       CANT("close Polygonbuffer")},
    {"Ignored",         "DF;IN;PG;RP;BP;NP8;PC3,1,2,3;AD;SD;SI;SR;SA;SS;EP;FP1;", ""},
    {"TwoWarnings",     "RT1;CR;",            CANT_HANDLE("RT") " 1 \n" CANT_HANDLE("CR") "\n"},
};
// clang-format on

class InterpreterTrace : public testing::TestWithParam<TraceRow> {};

TEST_P(InterpreterTrace, WarnsAtLevelOne) {
    const FreshViewer viewer;
    parseText(GetParam().text);
    EXPECT_EQ(traceOf(1, [] { plainPass(); }), GetParam().trace);
    EXPECT_EQ(traceOf(0, [] { plainPass(); }), "");
}

INSTANTIATE_TEST_SUITE_P(Rows, InterpreterTrace, testing::ValuesIn(TRACE_ROWS), byRowName);

constexpr int NOT_HANDLED[] = {3,  6,  7,  8,  15, 21, 24, 35, 36, 37, 38, 39, 40, 41, 42, 43, 45, 47,
                               50, 53, 54, 55, 56, 57, 59, 60, 62, 63, 64, 65, 67, 70, 71, 72, 73, 74,
                               75, 76, 77, 78, 79, 80, 81, 82, 83, 84, 85, 86, 87, 88, 89, 90, 91, 92};

TEST(InterpreterTrace, NamesWhatIsNotHandled) {
    const FreshViewer viewer;
    for (int id = 0; id < HPGL_COMMANDS; ++id) {
        const bool handled = std::ranges::find(NOT_HANDLED, id) == std::end(NOT_HANDLED);
        std::string expected = id == 10 ? "Can not handle RO command, will not rotated drawing\n" : "";
        if (!handled) expected.append(CANT_HANDLE("")).insert(expected.find(','), HPGLCommandTable[id].name) += '\n';
        setBlocks({std::string(1, static_cast<char>(id)) + std::string(30, '\0')});
        EXPECT_EQ(traceOf(1, [] { plainPass(); }), expected) << id;
    }
}

TEST(InterpreterTrace, ListsCharactersOfPe) {
    const FreshViewer viewer;
    setBlocks({"\025\004abcd"});
    EXPECT_EQ(traceOf(1, [] { plainPass(); }), CANT_HANDLE("PE") "abcd\n");
}

TEST(InterpreterTrace, OfAPlainPictureIsItsLines) {
    const FreshViewer viewer;
    parseText("IN;SP1;PU10,10;PD20,20;CI5;ER3,3;LBA\003");
    EXPECT_EQ(traceOf(3, [] { plainPass(); }), "HPGLdrawLine: Thinline: 10 10 20 20\n");
    EXPECT_EQ(traceOf(2, [] { plainPass(); }), "");
}

TEST(InterpreterTrace, OutOfRangePensWarnOnceEach) {
    const FreshViewer viewer;
    for (const char* text : {"SP255;", "SP-2;", "SP32767;", "PW1,255;", "PW1,-1;", "PW1,-2;", "PW1,32767;"}) {
        parseText(text);
        const std::string trace = traceOf(1, [] { plainPass(); });
        EXPECT_TRUE(trace.starts_with("WARNING-HPGLinterpretCompactCode")) << text << ": " << trace;
        EXPECT_EQ(std::count(trace.begin(), trace.end(), '\n'), 1) << trace;
    }
    for (const char* text : {"SP254;", "SP-1;", "SP0;", "SP;", "PW1,254;", "PW1,0;"}) {
        parseText(text);
        EXPECT_EQ(traceOf(1, [] { plainPass(); }), "") << text;
    }
}

TEST(InterpreterTrace, SubPolygonsRunOut) {
    const FreshViewer viewer;
    std::string text = "PM0;";
    for (int i = 0; i < 256; ++i) {
        text += "PM1;";
    }
    parseText(text);
    EXPECT_EQ(traceOf(1, [] { plainPass(); }), CANT("go to next SubPolygon"));
}

size_t linesOf(const std::string& text, const std::string& line) {
    size_t count = 0;
    for (size_t at = text.find(line); at != std::string::npos; at = text.find(line, at + line.size())) {
        ++count;
    }
    return count * line.size() == text.size() ? count : 0;
}

// Begin and 1999 of the 3599 points fit; the others and the closing one are refused, a line each.
TEST(InterpreterTrace, FullLocalBufferRefusesTheRest) {
    const FreshViewer viewer;
    parseText("CI1000,.1;");
    std::string calls;
    const std::string trace = traceOf(1, [&] { calls = plainPass(); });
    EXPECT_EQ(linesOf(trace, "WARINIG-HPGLPBufAddPoint: actual Polygon is full\n"), 1601u);
    EXPECT_TRUE(calls.starts_with("OUTgeomline 0 2000 1000 0 ")) << calls.substr(0, 60);
    EXPECT_EQ(plainPass(), calls);
}

TEST(InterpreterTrace, FullMainBufferRefusesTheRun) {
    const FreshViewer viewer;
    parseText("PM0;CI1000,.18;CI1000,90;PM2;EP;");
    std::string calls;
    EXPECT_EQ(traceOf(1, [&] { calls = plainPass(); }),
              "WARINIG-HPGLPBufAddPoint: actual Polygon is full\n"
              "WARNING-HPGLPBufAddPoints: actual Polygon is full\n");
    EXPECT_TRUE(calls.starts_with("OUTgeomline 0 8 0 0 1000 0 ")) << calls.substr(0, 60);
}

// ---- lack of memory -------------------------------------------------------------------------------------------------

constexpr char NO_RECORD[] = "HPGLPBufcreate: no memory to allocate PBuf\n";
constexpr char NO_MAIN[] =
    "WARNING-HPGLinterpretCompactCode: creating of PolygonBuffer failed, ignore all related actions\n";
constexpr char NO_LOCAL[] =
    "WARNING-HPGLinterpretCompactCode: creating of local PolygonBuffer failed, ignore all related actions\n";
constexpr int LOCAL_RECORD = 258;  // behind the main buffer's record, array and 256 rooms

struct Outcome {
    std::string trace;
    std::string calls;
    int32_t result = -1;
};

Outcome passFailing(const char* text, int allocation) {
    Outcome outcome;
    parseText(text);
    plainPass();  // sets the plain mapping up
    recorder::drawingSink = [&](std::string_view line) { outcome.calls += line; };
    outcome.trace = traceOf(1, [&] {
        failing_allocator::failAfter(allocation);
        outcome.result = HPGLinterpretCompactCode(TheShell.parser, &TheShell.display, 1);
        failing_allocator::reset();
    });
    recorder::drawingSink = nullptr;
    return outcome;
}

#define FIRST_COLOUR "OUTlinecolour 1\nOUTfillcolour 1\n"

TEST(LackOfMemory, WithoutMainBufferPolygonsAreLeftOut) {
    const FreshViewer viewer;
    const Outcome outcome = passFailing("PM0;PD5,5;PM1;PM2;EP;FP;CI1,400;PD7,7;", 0);
    EXPECT_EQ(outcome.trace, std::string(NO_RECORD) + NO_MAIN + CANT("init Polygonbuffer") +
                                 CANT("go to next SubPolygon") + CANT("close Polygonbuffer"));
    EXPECT_EQ(outcome.calls, FIRST_COLOUR "OUTgeomline 0 1 6 5\nOUTline 5 5 7 7\n");
    EXPECT_EQ(outcome.result, 1);
}

TEST(LackOfMemory, WithoutArrayPolygonsAreLeftOut) {
    const FreshViewer viewer;
    const Outcome outcome = passFailing("PM0;PD5,5;PM2;EP;PD7,7;", 1);
    EXPECT_EQ(outcome.trace, std::string("createPolygonBuffer: not enough memory to allocate Polygons\n") +
                                 CANT("init Polygonbuffer") + CANT("close Polygonbuffer"));
    EXPECT_EQ(outcome.calls, FIRST_COLOUR "OUTline 5 5 7 7\n");
}

TEST(LackOfMemory, ACutMainBufferStillServes) {
    const FreshViewer viewer;
    const Outcome outcome = passFailing("PM0;PD5,5;PM1;PM2;EP;", 3);
    EXPECT_EQ(outcome.trace, std::string("createPolygonBuffer: not enough memory to allocate Points\n") +
                                 CANT("go to next SubPolygon"));
    EXPECT_EQ(outcome.calls, FIRST_COLOUR "OUTgeomline 0 3 0 0 5 5 0 0\n");
}

TEST(LackOfMemory, WithoutLocalBufferCurvesAreLeftOut) {
    const FreshViewer viewer;
    const Outcome outcome = passFailing("CI100;PU5,5;AA0,0,90;EW10,0,90;WG10,0,90;PD7,7;", LOCAL_RECORD);
    EXPECT_EQ(outcome.trace, std::string(NO_RECORD) + NO_LOCAL);
    EXPECT_EQ(outcome.calls, FIRST_COLOUR "OUTline 5 5 7 7\n");
    EXPECT_EQ(outcome.result, 1);
}

TEST(LackOfMemory, WithoutLocalBufferABezierEndsThePass) {
    const FreshViewer viewer;
    for (const char* text : {"PD5,5;BZ1,2,3,4,5,6;PD7,7;", "PD5,5;BR;PD7,7;"}) {
        const Outcome outcome = passFailing(text, LOCAL_RECORD);
        EXPECT_EQ(outcome.trace, std::string(NO_RECORD) + NO_LOCAL);
        EXPECT_EQ(outcome.calls, FIRST_COLOUR "OUTline 0 0 5 5\n");
        EXPECT_EQ(outcome.result, 0);
    }
}

TEST(LackOfMemory, WithoutDeviceArraysPolygonsAreNotDrawn) {
    const FreshViewer viewer;
    const Outcome outcome = passFailing("PM0;PD5,5;PM2;EP;FP;CI5;PD7,7;", LOCAL_RECORD + 3);
    EXPECT_EQ(outcome.trace, "");
    EXPECT_EQ(outcome.calls, FIRST_COLOUR "OUTline 0 0 7 7\n");
    EXPECT_EQ(outcome.result, 1);
}

}  // namespace
