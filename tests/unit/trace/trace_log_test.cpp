// The trace log: levels, slots, the file and its headers, lines.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>

#include "picture_text.h"
#include "recorder/recorder.h"
#include "rows.h"
#include "scratch_folder.h"
#include "trace/trace.h"
#include "trace/trace_slots.h"

namespace {

using recorder::calls;
using recorder::script;

// What stands behind a beginning becomes TIME when it has a shape: 'a' is any letter, '0' a digit or a blank.
std::string masked(std::string text, std::string_view beginning, std::string_view shape) {
    const size_t at = text.find(beginning) + beginning.size();
    const auto fits = [](char c, char form) {
        if (form == 'a') return std::isalpha(c) != 0;
        return form == '0' ? std::isdigit(c) != 0 || c == ' ' : c == form;
    };
    const bool found = at >= beginning.size() && at + shape.size() <= text.size();
    return found && std::equal(shape.begin(), shape.end(), text.begin() + static_cast<std::ptrdiff_t>(at),
                               [&](char form, char c) { return fits(c, form); })
               ? text.replace(at, shape.size(), "TIME")
               : text;
}

class TraceLog : public testing::Test {
  protected:
    void SetUp() override {
        for (const char* name : {"DPTRACE", "DGTRACE", "KELGTRACE", "KELGTRACE_WINHT"})
            script.environment[name] = "";
        script.inventProfile = true;
        script.quiet = true;
    }
    void TearDown() override {
        for (const TRCSlot& slot : TRCGlobal.slots)
            if (slot.file > 0) _lclose(slot.file);
    }
    // Opens with a file level, and forgets how.
    static TRCHandle openAt(const char* level, const char* name = "t.log") {
        script.environment["DGTRACE"] = level;
        const TRCHandle handle = TRCOpen(name, 0);
        calls.clear();
        return handle;
    }
    static std::string opened(const char* name = "t.log") {
        const std::string text = masked(ScratchFolder::read(name), "Build: ", "aaa 00 0000, 00:00:00");
        return masked(masked(text, "opened on ", "aaa aaa 00 00:00:00 0000"), "closed on ", "aaa aaa 00 00:00:00 0000");
    }
    const FreshViewer viewer;
    const ScratchFolder folder;
};

constexpr char OPENING[] =
    "--------------------- KEL Graphics under MS Windows -----------------------\r\n"
    "---\r\n"
    "--- Build: TIME\r\n"
    "--- trace file 't.log'\r\n"
    "--- opened on TIME\r\n"
    "--- 32 Bit Windows Version 10.0 (Build 19045) under Windows NT (2)\r\n"
    "--- Processor Type 21D8\r\n"
    "---\r\n"
    "--- Intl: Ctry 'ENU' 'United States' (1)\r\n"
    "---       Date 'M/d/yyyy', Cur '$', Th ',' Dec '.'\r\n"
    "---\r\n"
    "---------------------------------------------------------------------------\r\n"
    "\n\r\n";

constexpr char CLOSING[] =
    "\n\r\n"
    "---------------------------------------------------------------------------\r\n"
    "---\r\n"
    "--- closed on TIME\r\n"
    "---\r\n"
    "--------------------- KEL Graphics under MS Windows -----------------------\r\n";

// ---- levels ---------------------------------------------------------------------------------------------------------

struct LevelRow : NamedRow {
    const char* dptrace;
    const char* dgtrace;
    const char* kelgtrace;
    uint8_t defaults;
    int32_t file;
    int32_t window;
};

// clang-format off
constexpr LevelRow LEVELS[] = {
    {"NothingSet",        "",   "",  "",  0x00, 0,  0},
    {"Older",             "3",  "",  "",  0x00, 3,  0},
    {"Newer",             "",   "2", "",  0x00, 2,  0},
    {"NewerWins",         "3",  "1", "",  0x00, 1,  0},
    {"NewerWinsUpward",   "1",  "3", "",  0x00, 3,  0},
    {"NewerWinsAsZero",   "3",  "0", "",  0x00, 0,  0},
    {"Window",            "",   "",  "2", 0x00, 0,  2},
    {"Both",              "",   "1", "3", 0x00, 1,  3},
    {"DefaultFile",       "",   "",  "",  0x03, 3,  0},
    {"DefaultWindow",     "",   "",  "",  0x20, 0,  2},
    {"DefaultsGiveWay",   "",   "1", "3", 0x12, 1,  3},
    {"DefaultForOne",     "",   "1", "",  0x52, 1,  5},
    {"LargestDefaults",   "",   "",  "",  0xFF, 15, 15},
    {"LeadingDigits",     "2x", "",  "",  0x00, 2,  0},
    {"NoNumber",          "on", "",  "",  0x00, 0,  0},
    {"LongestThatFits",   "",   "0000000000000000000000000000003",  "", 0x00, 3, 0},
    {"TooLongForBuffer",  "",   "00000000000000000000000000000003", "", 0x00, 0, 0},
};
// clang-format on

class TraceLevels : public TraceLog, public testing::WithParamInterface<LevelRow> {};

TEST_P(TraceLevels, ComeFromTheEnvironment) {
    const LevelRow& row = GetParam();
    script.environment["DPTRACE"] = row.dptrace;
    script.environment["DGTRACE"] = row.dgtrace;
    script.environment["KELGTRACE"] = row.kelgtrace;
    EXPECT_EQ(TRCOpen("t.log", row.defaults), 1u);
    EXPECT_EQ(TRCGlobal.fileLevel, row.file);
    EXPECT_EQ(TRCGlobal.windowLevel, row.window);
    EXPECT_EQ(std::filesystem::exists("t.log"), row.file > 0);
}
INSTANTIATE_TEST_SUITE_P(Rows, TraceLevels, testing::ValuesIn(LEVELS), byRowName);

TEST_F(TraceLog, TakesThirtyOneCharactersOfALevel) {
    script.environment["DGTRACE"] = std::string(30, '0') + '2';
    script.environment["KELGTRACE"] = std::string(31, '0') + '2';
    TRCOpen("t.log", 0);
    EXPECT_EQ(TRCGlobal.fileLevel, 2);
    EXPECT_EQ(TRCGlobal.windowLevel, 0);
}

TEST_F(TraceLog, ReadsLevelsOnce) {
    openAt("1");
    script.environment["DGTRACE"] = "3";
    script.environment["KELGTRACE"] = "3";
    TRCOpen("u.log", 0);
    EXPECT_EQ(TRCGlobal.fileLevel, 1);
    EXPECT_EQ(TRCGlobal.windowLevel, 0);
}

TEST_F(TraceLog, DoesNothingWithoutLevels) {
    const TRCHandle handle = TRCOpen("t.log", 0);
    EXPECT_EQ(handle, 1u);
    EXPECT_EQ(TRCTraceError(handle, "error\n"), 0);
    TRCWriteRaw(handle, "raw\n", false);
    TRCClose(handle);
    EXPECT_TRUE(std::filesystem::is_empty("."));
    EXPECT_EQ(calls.find("OpenFile"), std::string::npos);
    EXPECT_EQ(calls.find("CreateWindowExA"), std::string::npos);
}

struct LineLevelRow : NamedRow {
    const char* threshold;
    int32_t level;
    bool written;
};

// clang-format off
constexpr LineLevelRow LINE_LEVELS[] = {
    {"ErrorAtOne",   "1", TRC_ERROR,  true},  {"InfoAtOne",   "1", TRC_INFO,   false},
    {"DetailAtOne",  "1", TRC_DETAIL, false}, {"ErrorAtTwo",  "2", TRC_ERROR,  true},
    {"InfoAtTwo",    "2", TRC_INFO,   true},  {"DetailAtTwo", "2", TRC_DETAIL, false},
    {"ErrorAtThree", "3", TRC_ERROR,  true},  {"InfoAtThree", "3", TRC_INFO,   true},
    {"DetailAtThree","3", TRC_DETAIL, true},  {"FourAtThree", "3", 4,          false},
};
// clang-format on

class TraceLineLevel : public TraceLog, public testing::WithParamInterface<LineLevelRow> {};

TEST_P(TraceLineLevel, DecidesWhetherALineIsWritten) {
    const TRCHandle handle = openAt(GetParam().threshold);
    EXPECT_EQ(TRCAdmits(handle, GetParam().level), GetParam().written);
    EXPECT_EQ(TRCTrace(handle, GetParam().level, "line %d\n", 7), GetParam().written ? 7 : 0);
    EXPECT_EQ(ScratchFolder::read("t.log").ends_with("line 7\r\n"), GetParam().written);
}

TEST_P(TraceLineLevel, DecidesWhetherArgumentsAreComputed) {
    const TRCHandle handle = openAt(GetParam().threshold);
    int computed = 0;
    TRCTrace(handle, GetParam().level, "line %d\n", ++computed);
    EXPECT_EQ(computed, GetParam().written ? 1 : 0);
}
INSTANTIATE_TEST_SUITE_P(Rows, TraceLineLevel, testing::ValuesIn(LINE_LEVELS), byRowName);

TEST_F(TraceLog, HasAWordForLevelsOneAndTwo) {
    const TRCHandle one = openAt("1");
    EXPECT_EQ(TRCTraceError(one, "error %c\n", 'a'), 8);
    EXPECT_EQ(TRCTraceInfo(one, "info\n"), 0);
    EXPECT_EQ(ScratchFolder::read("t.log"), "error a\r\n");
    TRCGlobal.fileLevel = TRCHighestLevel = 2;
    EXPECT_EQ(TRCTraceInfo(one, "info\n"), 5);
    EXPECT_EQ(ScratchFolder::read("t.log"), "error a\r\ninfo\r\n");
}

// ---- slots ----------------------------------------------------------------------------------------------------------

TEST_F(TraceLog, HasEightSlots) {
    for (TRCHandle handle = 1; handle <= 8; ++handle)
        EXPECT_EQ(TRCOpen("t.log", 0), handle);
    EXPECT_EQ(TRCGlobal.occupied, 255);
    EXPECT_EQ(TRCOpen("t.log", 0), 0u);
    TRCClose(6);
    TRCClose(3);
    EXPECT_EQ(TRCOpen("t.log", 0), 3u);
    EXPECT_EQ(TRCOpen("t.log", 0), 6u);
    EXPECT_EQ(TRCOpen("t.log", 0), 0u);
}

TEST_F(TraceLog, KeepsTheViewersHandle) {
    TRCOpen("t.log", 0);
    EXPECT_EQ(TRCOpenViewer("v.log"), 2u);
    EXPECT_EQ(HPGLTraceHandle, 2u);
    EXPECT_STREQ(TRCGlobal.slots[1].fileName, "v.log");
}

TEST_F(TraceLog, IgnoresHandlesOfNoSlot) {
    openAt("3");
    for (const TRCHandle handle : {0u, 2u, 8u, 9u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(handle);
        EXPECT_EQ(TRCTraceError(handle, "error\n"), 0);
        TRCWriteRaw(handle, "raw\n", true);
        TRCSetWindowValue(handle, 0, 5);
        TRCClose(handle);
    }
    EXPECT_EQ(calls, "");
}

TEST_F(TraceLog, KeepsSeventyNineCharactersOfTheName) {
    const std::string name(100, 'n');
    TRCOpen(name.c_str(), 0);
    EXPECT_STREQ(TRCGlobal.slots[0].fileName, std::string(79, 'n').c_str());
}

TEST_F(TraceLog, SetsSevenWindowValues) {
    TRCOpen("t.log", 0);
    const TRCSlot before = TRCGlobal.slots[0];
    for (uint32_t index = 0; index < 7; ++index)
        TRCSetWindowValue(1, index, 100 + static_cast<int32_t>(index));
    for (const uint32_t index : {7u, 8u, 0xFFFFFFFFu})
        TRCSetWindowValue(1, index, 99);
    for (int32_t index = 0; index < 7; ++index)
        EXPECT_EQ(TRCGlobal.slots[0].values[index], 100 + index);
    EXPECT_STREQ(TRCGlobal.slots[0].fileName, before.fileName);
    EXPECT_EQ(TRCGlobal.slots[0].file, before.file);
}

TEST_F(TraceLog, GivesTheWindowASizeOnceThereIsAFile) {
    TRCOpen("t.log", 0);
    TRCGlobal.fileLevel = 1;
    TRCOpen("u.log", 0);
    EXPECT_EQ(TRCGlobal.slots[0].values[TRC_WIDTH], 0);
    EXPECT_EQ(TRCGlobal.slots[0].values[TRC_HEIGHT], 0);
    EXPECT_EQ(TRCGlobal.slots[1].values[TRC_X], 0);
    EXPECT_EQ(TRCGlobal.slots[1].values[TRC_Y], 0);
    EXPECT_EQ(TRCGlobal.slots[1].values[TRC_WIDTH], 500);
    EXPECT_EQ(TRCGlobal.slots[1].values[TRC_HEIGHT], 250);
}

// ---- the file and its headers ---------------------------------------------------------------------------------------

TEST_F(TraceLog, BeginsAndEndsWithAHeader) {
    const TRCHandle handle = openAt("2");
    EXPECT_EQ(opened(), OPENING);
    TRCClose(handle);
    TRCGlobal.slots[0].file = 0;
    EXPECT_EQ(opened(), std::string(OPENING) + CLOSING);
    EXPECT_NE(calls.find("_lclose"), std::string::npos);
    EXPECT_EQ(TRCTraceError(handle, "closed\n"), 0);
}

TEST_F(TraceLog, HasNoHeadersAtLevelOne) {
    TRCClose(openAt("1"));
    TRCGlobal.slots[0].file = 0;
    EXPECT_TRUE(std::filesystem::exists("t.log"));
    EXPECT_EQ(ScratchFolder::read("t.log"), "");
    EXPECT_NE(calls.find("_lclose"), std::string::npos);
}

TEST_F(TraceLog, NamesThePlatform) {
    constexpr const char* NAMES[] = {"3.x (0)", "95 (1)", "NT (2)", "??? (3)", "??? (4294967295)"};
    constexpr DWORD IDS[] = {0, 1, 2, 3, 0xFFFFFFFF};
    for (size_t i = 0; i < std::size(IDS); ++i) {
        SCOPED_TRACE(NAMES[i]);
        TRCForgetEverything();
        script.platformId = IDS[i];
        _lclose(TRCGlobal.slots[openAt("2") - 1].file);
        EXPECT_NE(ScratchFolder::read("t.log").find(std::string("under Windows ") + NAMES[i] + "\r\n"),
                  std::string::npos);
        TRCGlobal.slots[0].file = 0;
    }
}

TEST_F(TraceLog, EmptiesAnOldLog) {
    TRCTraceError(openAt("1"), "%s", std::string(500, 'x').c_str());
    _lclose(TRCGlobal.slots[0].file);
    TRCForgetEverything();
    openAt("2");
    EXPECT_EQ(opened(), OPENING);
}

TEST_F(TraceLog, LeavesWhatIsNoLog) {
    ScratchFolder::write("t.log", "a letter");
    std::filesystem::create_symlink("t.log", "t.001");
    std::filesystem::create_symlink("nowhere", "t.002");
    mkfifo("t.003", 0600);
    openAt("2");
    EXPECT_STREQ(TRCGlobal.slots[0].fileName, "t.004");
    EXPECT_EQ(ScratchFolder::read("t.log"), "a letter");
    EXPECT_FALSE(std::filesystem::exists("nowhere"));
}

TEST_F(TraceLog, OpensForTestingThenTruncating) {
    script.environment["DGTRACE"] = "1";
    ScratchFolder::write("old.log", "");
    for (const char* name : {"old.log", "new.log"}) {
        calls.clear();
        TRCOpen(name, 0);
        std::string opens;
        for (size_t at = calls.find("OpenFile"); at != std::string::npos; at = calls.find("OpenFile", at + 1))
            opens += calls.substr(at + 18, calls.find('\n', at) - at - 18);
        EXPECT_EQ(opens, std::string(name) == "old.log" ? " 16384 17 4097" : " 16384 4097 4097") << calls;
    }
}

TEST_F(TraceLog, TakesAnotherNameWhenTheFileIsHeld) {
    const int holder = open("t.log", O_RDWR | O_CREAT, 0600);
    flock(holder, LOCK_EX);
    openAt("2");
    EXPECT_STREQ(TRCGlobal.slots[0].fileName, "t.001");
    EXPECT_NE(ScratchFolder::read("t.001").find("--- trace file 't.001'\r\n"), std::string::npos);
    EXPECT_EQ(ScratchFolder::read("t.log"), "");
    close(holder);
}

struct AttemptRow : NamedRow {
    const char* file;
    int failing;  // names in a row
    const char* taken;
};

// clang-format off
constexpr AttemptRow ATTEMPTS[] = {
    {"First",         "x.log",   0, "x.log"},
    {"Second",        "x.log",   1, "x.001"},
    {"Third",         "x.log",   2, "x.002"},
    {"Ninth",         "x.log",   8, "x.008"},
    {"WithoutDot",    "x",       1, "x.001"},
    {"FirstOfDots",   "x.y.log", 1, "x.001"},
};
// clang-format on

class TraceAttempts : public TraceLog, public testing::WithParamInterface<AttemptRow> {};

TEST_P(TraceAttempts, CountBehindTheName) {
    const AttemptRow& row = GetParam();
    if (row.failing > 0) script.failing.insert(std::string("OpenFile ") + row.file);
    for (int i = 1; i < row.failing; ++i)
        script.failing.insert("OpenFile x.00" + std::to_string(i));
    openAt("2", row.file);
    EXPECT_STREQ(TRCGlobal.slots[0].fileName, row.taken);
    EXPECT_NE(ScratchFolder::read(row.taken).find(std::string("--- trace file '") + row.taken + "'\r\n"),
              std::string::npos);
}
INSTANTIATE_TEST_SUITE_P(Rows, TraceAttempts, testing::ValuesIn(ATTEMPTS), byRowName);

TEST_F(TraceLog, GivesUpAfterNineNames) {
    script.failing = {"OpenFile"};
    script.environment["DGTRACE"] = "3";
    const TRCHandle handle = TRCOpen("x.log", 0);
    EXPECT_EQ(handle, 1u);
    EXPECT_NE(calls.find("OpenFile \"x.log\" "), std::string::npos);
    EXPECT_NE(calls.find("OpenFile \"x.008\" "), std::string::npos);
    EXPECT_EQ(calls.find("x.009"), std::string::npos);
    EXPECT_NE(calls.find("OutputDebugStringA \"x.008\"\n"), std::string::npos) << calls;
    EXPECT_EQ(TRCGlobal.slots[0].values[TRC_WIDTH], 500);
    EXPECT_EQ(TRCTraceError(handle, "lost\n"), 5);
    TRCClose(handle);
    EXPECT_EQ(calls.find("_lwrite"), std::string::npos);
    EXPECT_EQ(calls.find("_lclose"), std::string::npos);
    EXPECT_TRUE(std::filesystem::is_empty("."));
}

TEST_F(TraceLog, SurvivesAFullDisk) {
    const TRCHandle handle = openAt("1");
    script.failing = {"_lwrite"};
    EXPECT_EQ(TRCTraceError(handle, "lost\n"), 5);
    script.failing.clear();
    EXPECT_EQ(TRCTraceError(handle, "kept\n"), 5);
    EXPECT_EQ(ScratchFolder::read("t.log"), "kept\r\n");
}

// ---- lines ----------------------------------------------------------------------------------------------------------

struct LineRow : NamedRow {
    const char* line;
    const char* file;
};

// clang-format off
constexpr LineRow LINES[] = {
    {"LineFeed",        "abc\n",   "abc\r\n"},
    {"NoLineFeed",      "abc",     "abc"},
    {"OnlyLineFeed",    "\n",      "\r\n"},
    {"OnlyTheLast",     "a\nb\n",  "a\nb\r\n"},
    {"TwoAtTheEnd",     "a\n\n",   "a\n\r\n"},
    {"InTheMiddle",     "a\nb",    "a\nb"},
    {"CarriageReturn",  "a\r\n",   "a\r\r\n"},
    {"Empty",           "",        ""},
};
// clang-format on

class TraceLine : public TraceLog, public testing::WithParamInterface<LineRow> {};

TEST_P(TraceLine, EndsInTheFileAsInWindows) {
    const TRCHandle handle = openAt("1");
    EXPECT_EQ(TRCTrace(handle, 1, "%s", GetParam().line), static_cast<int32_t>(strlen(GetParam().line)));
    EXPECT_EQ(ScratchFolder::read("t.log"), GetParam().file);
    TRCWriteRaw(handle, GetParam().line, false);
    EXPECT_EQ(ScratchFolder::read("t.log"), std::string(GetParam().file) + GetParam().file);
    EXPECT_EQ(calls.find("_lwrite") == std::string::npos, *GetParam().line == '\0');
}
INSTANTIATE_TEST_SUITE_P(Rows, TraceLine, testing::ValuesIn(LINES), byRowName);

TEST_F(TraceLog, TakesFiveHundredAndTwelveCharacters) {
    const TRCHandle handle = openAt("1");
    const std::string line(512, 'x');
    EXPECT_EQ(TRCTraceError(handle, "%s", line.c_str()), 512);
    EXPECT_EQ(TRCTraceError(handle, "%s\n", line.substr(1).c_str()), 512);
    EXPECT_EQ(ScratchFolder::read("t.log"), line + line.substr(1) + "\r\n");
    EXPECT_TRUE(recorder::messageBoxes.empty());
}

TEST_F(TraceLog, ReportsAnOverlongLineAndWritesAnEmptyOne) {
    const TRCHandle handle = openAt("1");
    for (const size_t length : {size_t{513}, size_t{10000}}) {
        calls.clear();
        recorder::messageBoxes.clear();
        TRCTraceError(handle, "%s", std::string(length, 'x').c_str());
        const std::string text = "Illegal Trace: An application produced illegal trace information of " +
                                 std::to_string(length) +
                                 " bytes length (max allowed are 512 bytes).\nThe program should be aborted.";
        ASSERT_EQ(recorder::messageBoxes.size(), 1u);
        EXPECT_EQ(recorder::messageBoxes[0], "KEL Graphics Fatal Error: " + text);
        EXPECT_LT(calls.find("MessageBoxA"), calls.find("_lwrite"));
        EXPECT_NE(calls.find("\"KEL Graphics Fatal Error\" 16\n"), std::string::npos) << calls;
    }
    EXPECT_EQ(ScratchFolder::read("t.log"), "\r\n\r\n");
}

TEST_F(TraceLog, ReportsALineThatCannotBeFormatted) {
    const TRCHandle handle = openAt("1");
    constexpr wchar_t NO_CHARACTER[] = {0x110000, 0};
    TRCTraceError(handle, "%ls", NO_CHARACTER);
    EXPECT_EQ(recorder::messageBoxes.size(), 1u);
    EXPECT_EQ(ScratchFolder::read("t.log"), "\r\n");
}

TEST_F(TraceLog, ReportsNothingThatIsNotWritten) {
    const TRCHandle handle = openAt("1");
    EXPECT_EQ(TRCTraceInfo(handle, "%s", std::string(600, 'x').c_str()), 0);
    EXPECT_EQ(TRCTraceError(0, "%s", std::string(600, 'x').c_str()), 0);
    EXPECT_TRUE(recorder::messageBoxes.empty());
}

// ---- raw lines ------------------------------------------------------------------------------------------------------

struct RawRow : NamedRow {
    const char* file;
    const char* window;
    bool force;
    bool inFile;
    bool inWindow;
};

// clang-format off
constexpr RawRow RAW[] = {
    {"Off",            "0", "0", false, false, false},
    {"OffForced",      "0", "0", true,  false, true},
    {"File",           "1", "0", false, true,  false},
    {"FileForced",     "1", "0", true,  true,  true},
    {"Window",         "0", "1", false, false, true},
    {"Both",           "1", "1", false, true,  true},
};
// clang-format on

class TraceRaw : public TraceLog, public testing::WithParamInterface<RawRow> {};

TEST_P(TraceRaw, HasNoLevel) {
    script.environment["KELGTRACE"] = GetParam().window;
    script.environment["KELGTRACE_WINHT"] = "100";
    const TRCHandle handle = openAt(GetParam().file);
    TRCWriteRaw(handle, "raw\n", GetParam().force);
    EXPECT_EQ(ScratchFolder::read("t.log"), GetParam().inFile ? "raw\r\n" : "");
    EXPECT_EQ(calls.find("\"raw\" 3\n") != std::string::npos, GetParam().inWindow) << calls;
}
INSTANTIATE_TEST_SUITE_P(Rows, TraceRaw, testing::ValuesIn(RAW), byRowName);

}  // namespace
