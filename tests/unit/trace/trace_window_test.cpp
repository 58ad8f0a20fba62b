// The trace's window: when it appears, where, and what is drawn in it. The recorded screen is 1000 pixels high, a frame
// 4 wide, a caption 20 high and a character 16 high.
#include "trace/trace_window.h"

#include <sstream>

#include "picture_text.h"
#include "recorder/recorder.h"
#include "rows.h"
#include "scratch_folder.h"

namespace {

using recorder::calls;
using recorder::script;

// The lines of `calls` that begin with a name.
std::string callsOf(const std::string& name) {
    std::istringstream lines(calls);
    std::string found;
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with(name + " ")) found += line + "\n";
    return found;
}

HWND windowOf(TRCHandle handle) {
    return TRCGlobal.slots[handle - 1].window;
}

class TraceWindow : public testing::Test {
  protected:
    void SetUp() override {
        for (const char* name : {"DPTRACE", "DGTRACE", "KELGTRACE_WINX", "KELGTRACE_WINY"})
            script.environment[name] = "";
        for (const char* name : {"KELGTRACE_WINWD", "KELGTRACE_WINHT"})
            script.environment[name] = "";
        script.environment["KELGTRACE"] = "3";
        script.inventProfile = true;
    }
    void TearDown() override {
        for (const TRCSlot& slot : TRCGlobal.slots)
            if (slot.file > 0) _lclose(slot.file);
    }
    const FreshViewer viewer;
    const ScratchFolder folder;
};

// ---- whether and where ----------------------------------------------------------------------------------------------

struct GeometryRow : NamedRow {
    const char* file;  // level
    const char* height;
    const char* width;
    const char* x;
    const char* y;
    const char* created;  // x y width height of the outside; empty: no window
};

// clang-format off
constexpr GeometryRow GEOMETRIES[] = {
    //                        file  WINHT  WINWD  WINX  WINY
    {"FileAlone",             "1",  "",    "",    "",   "",    "0 722 508 278"},
    {"NoFile",                "",   "",    "",    "",   "",    ""},
    {"NoFileWithWidth",       "",   "",    "300", "",   "",    ""},
    {"NoFileWithHeight",      "",   "100", "",    "",   "",    "0 872 808 128"},
    {"NoFileWithBoth",        "",   "100", "300", "",   "",    "0 872 308 128"},
    {"HeightZero",            "1",  "0",   "",    "",   "",    ""},
    {"WidthZero",             "1",  "",    "0",   "",   "",    "0 722 808 278"},
    {"Everything",            "1",  "100", "300", "20", "30",  "20 842 308 128"},
    {"YZeroOnTheBottom",      "1",  "100", "",    "",   "0",   "0 872 508 128"},
    {"Negative",              "1",  "100", "",    "-5", "-30", "-5 902 508 128"},
    {"Largest",               "1",  "2147483647", "2147483647", "2147483647", "2147483647",
                              "2147483647 974 -2147483641 -2147483621"},
    {"Smallest",              "1",  "-2147483648", "-2147483648", "-2147483648", "-2147483648",
                              "-2147483648 972 -2147483640 -2147483620"},
};
// clang-format on

class TraceWindowGeometry : public TraceWindow, public testing::WithParamInterface<GeometryRow> {};

TEST_P(TraceWindowGeometry, ComesFromFileAndEnvironment) {
    const GeometryRow& row = GetParam();
    script.environment["DGTRACE"] = row.file;
    script.environment["KELGTRACE_WINHT"] = row.height;
    script.environment["KELGTRACE_WINWD"] = row.width;
    script.environment["KELGTRACE_WINX"] = row.x;
    script.environment["KELGTRACE_WINY"] = row.y;
    const TRCHandle handle = TRCOpen("t.log", 0);
    TRCTraceError(handle, "line\n");
    // Overlapped with caption, system menu, sizing border, minimise and maximise boxes.
    const std::string expected = std::string(R"(CreateWindowExA 0 "KELG_DEBUG" "t.log" )") +
                                 std::to_string(0x00C00000 | 0x00080000 | 0x00040000 | 0x00020000 | 0x00010000) + " " +
                                 row.created + " 0 0 ";
    const std::string created = callsOf("CreateWindowExA");
    EXPECT_EQ(created.substr(0, created.rfind(' ') + 1), *row.created != '\0' ? expected : "");
    EXPECT_EQ(windowOf(handle) != nullptr, *row.created != '\0');
    EXPECT_EQ(callsOf("TextOutA").empty(), *row.created == '\0');
}
INSTANTIATE_TEST_SUITE_P(Rows, TraceWindowGeometry, testing::ValuesIn(GEOMETRIES), byRowName);

TEST_F(TraceWindow, ReadsItsPlaceAtTheFirstLine) {
    script.environment["KELGTRACE"] = "1";
    script.environment["KELGTRACE_WINHT"] = "100";
    const TRCHandle handle = TRCOpen("t.log", 0);
    EXPECT_EQ(callsOf("CreateWindowExA"), "");
    TRCSetWindowValue(handle, TRC_X, 33);
    TRCSetWindowValue(handle, TRC_HEIGHT, 50);  // the environment's is taken
    TRCTraceInfo(handle, "of no interest\n");
    EXPECT_EQ(callsOf("CreateWindowExA"), "");
    TRCTraceError(handle, "one\n");
    script.environment["KELGTRACE_WINHT"] = "200";
    TRCTraceError(handle, "two\n");
    EXPECT_EQ(callsOf("CreateWindowExA").find("33 872 808 128"), callsOf("CreateWindowExA").find("33 "));
    EXPECT_EQ(callsOf("CreateWindowExA").find("CreateWindowExA", 1), std::string::npos);
    EXPECT_EQ(TRCGlobal.slots[handle - 1].values[TRC_HEIGHT], 100);
}

TEST_F(TraceWindow, ShowsTheHeaderFromLevelTwo) {
    script.environment["DGTRACE"] = "1";
    script.environment["KELGTRACE"] = "2";
    TRCOpen("t.log", 0);
    EXPECT_NE(callsOf("TextOutA").find("\"--- trace file 't.log'\" 22\n"), std::string::npos) << callsOf("TextOutA");
    EXPECT_EQ(ScratchFolder::read("t.log"), "");
}

TEST_F(TraceWindow, ShowsLinesOfItsLevels) {
    script.environment["KELGTRACE"] = "2";
    script.environment["KELGTRACE_WINHT"] = "100";
    const TRCHandle handle = TRCOpen("t.log", 0);
    EXPECT_EQ(TRCTrace(handle, 1, "one\n"), 4);
    EXPECT_EQ(TRCTrace(handle, 2, "two"), 3);
    EXPECT_EQ(TRCTrace(handle, 3, "three\n"), 0);
    const std::string shown = callsOf("TextOutA");
    EXPECT_NE(shown.find(" 0 84 \"one\" 3\n"), std::string::npos) << shown;
    EXPECT_NE(shown.find(" 0 84 \"two\" 3\n"), std::string::npos) << shown;
    EXPECT_EQ(shown.find("three"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists("t.log"));
}

// ---- making and drawing ---------------------------------------------------------------------------------------------

TEST_F(TraceWindow, RegistersItsClassOnce) {
    script.environment["KELGTRACE_WINHT"] = "100";
    for (const char* name : {"a", "b"}) {
        const TRCHandle handle = TRCOpen(name, 0);
        TRCTraceError(handle, "line\n");
    }
    // Horizontal and vertical redraw, no class bytes, two window bytes; handles of instance, icon, cursor, brush.
    const std::string registered = callsOf("RegisterClassA");
    EXPECT_EQ(registered.find("RegisterClassA 3 0 2 "), 0u) << registered;
    EXPECT_TRUE(registered.ends_with(R"( "KELG_DEBUG" "KELG_DEBUG")"
                                     "\n"))
        << registered;
    EXPECT_EQ(registered.find("RegisterClassA", 1), std::string::npos);
    EXPECT_EQ(callsOf("LoadCursorA"), "LoadCursorA 0 32512\n");
    EXPECT_NE(callsOf("GetStockObject").find("GetStockObject 0\n"), std::string::npos);
    EXPECT_NE(windowOf(1), windowOf(2));
}

TEST_F(TraceWindow, KnowsItsTraceAndDoesNotTakeTheFocus) {
    script.environment["KELGTRACE_WINHT"] = "100";
    TRCOpen("a", 0);
    const TRCHandle handle = TRCOpen("b", 0);
    TRCTraceError(handle, "line\n");
    const std::string window = std::to_string(reinterpret_cast<uintptr_t>(windowOf(2)));
    EXPECT_EQ(callsOf("SetWindowWord"), "SetWindowWord " + window + " 0 2\n");
    EXPECT_EQ(callsOf("ShowWindow"), "ShowWindow " + window + " 4\n");
    EXPECT_EQ(TRCGlobal.slots[1].lineHeight, 16);
    EXPECT_NE(callsOf("GetStockObject").find("GetStockObject 10\n"), std::string::npos);
}

// Without the numbers of the contexts and objects.
TEST_F(TraceWindow, ScrollsClearsAndDraws) {
    script.environment["KELGTRACE_WINHT"] = "100";
    script.environment["KELGTRACE_WINWD"] = "300";
    const TRCHandle handle = TRCOpen("t.log", 0);
    TRCTraceError(handle, "first\n");
    calls.clear();
    TRCTraceError(handle, "second\n");
    const std::string window = std::to_string(reinterpret_cast<uintptr_t>(windowOf(handle)));
    const std::string context = std::to_string(recorder::handleOf("GetDC"));
    const auto stock = [](uintptr_t index) { return std::to_string(0x3000 + index); };
    const std::string select = "SelectObject " + context + " ";
    EXPECT_EQ(callsOf("GetDC") + callsOf("BitBlt") + callsOf("Rectangle") + callsOf("TextOutA") + callsOf("ReleaseDC"),
              "GetDC " + window + "\n" + "BitBlt " + context + " 0 0 300 84 " + context + " 0 16 " +
                  std::to_string(0x00CC0020) + "\n" + "Rectangle " + context + " 0 84 300 100\n" + "TextOutA " +
                  context + " 0 84 \"second\" 6\n" + "ReleaseDC " + window + " " + context + "\n");
    // In this order: white pen, rectangle, black pen, text.
    const size_t white = calls.find(select + stock(6)), rectangle = calls.find("Rectangle");
    const size_t black = calls.find(select + stock(7)), text = calls.find("TextOutA");
    EXPECT_LT(calls.find("BitBlt"), rectangle);
    EXPECT_LT(white, rectangle);
    EXPECT_LT(rectangle, black);
    EXPECT_LT(black, text);
    EXPECT_NE(calls.find(select + stock(10)), std::string::npos);
}

struct WindowLineRow : NamedRow {
    const char* fileLevel;
    const char* shown;
};

// clang-format off
constexpr WindowLineRow LINES[] = {
    {"AsInTheFile",   "3", R"("a\nb\r" 4|"\n\r" 2|"c" 1|"\r" 1|)"},
    {"WithoutAFile",  "",  R"("a\nb" 3|"\n" 1|"c" 1|"" 0|)"},
};
// clang-format on

class TraceWindowLine : public TraceWindow, public testing::WithParamInterface<WindowLineRow> {};

TEST_P(TraceWindowLine, LeavesOnlyATrailingLineFeedOut) {
    script.environment["KELGTRACE_WINHT"] = "100";
    script.environment["DGTRACE"] = GetParam().fileLevel;
    const TRCHandle handle = TRCOpen("t.log", 0);
    calls.clear();
    TRCTraceError(handle, "a\nb\n");
    TRCTraceError(handle, "\n\n");
    TRCTraceError(handle, "c");
    TRCTraceError(handle, "\n");
    const std::string context = "TextOutA " + std::to_string(recorder::handleOf("GetDC"));
    std::istringstream lines(callsOf("TextOutA"));
    std::string shown;
    for (std::string line; std::getline(lines, line);)
        shown += line.substr(line.find('"')) + "|";
    EXPECT_EQ(shown, GetParam().shown);
}
INSTANTIATE_TEST_SUITE_P(Rows, TraceWindowLine, testing::ValuesIn(LINES), byRowName);

TEST_F(TraceWindow, DoesWithoutAWindow) {
    script.failing = {"CreateWindowExA"};
    script.environment["KELGTRACE_WINHT"] = "100";
    const TRCHandle handle = TRCOpen("t.log", 0);
    EXPECT_EQ(TRCTraceError(handle, "line\n"), 5);
    EXPECT_EQ(windowOf(handle), nullptr);
    script.failing.clear();
    TRCTraceError(handle, "line\n");  // tried once only
    EXPECT_EQ(windowOf(handle), nullptr);
    EXPECT_EQ(callsOf("SetWindowWord") + callsOf("ShowWindow") + callsOf("TextOutA"), "");
}

// ---- closing --------------------------------------------------------------------------------------------------------

TEST_F(TraceWindow, EndsTheViewerWhenItIsClosed) {
    script.environment["KELGTRACE_WINHT"] = "100";
    const TRCHandle handle = TRCOpen("t.log", 0);
    TRCTraceError(handle, "line\n");
    calls.clear();
    EXPECT_EQ(TRCWindowProcedure(windowOf(handle), WM_DESTROY, 0, 0), 0);
    EXPECT_EQ(calls, "PostQuitMessage 0\n");
}

TEST_F(TraceWindow, DrawsNothingOnceItIsClosed) {
    script.environment["KELGTRACE_WINHT"] = "100";
    const TRCHandle handle = TRCOpen("t.log", 0);
    TRCTraceError(handle, "line\n");
    TRCWindowProcedure(windowOf(handle), WM_DESTROY, 0, 0);
    calls.clear();
    EXPECT_EQ(TRCTraceError(handle, "line\n"), 5);
    EXPECT_EQ(calls, "");
}

TEST_F(TraceWindow, LeavesEverythingElseToTheSystem) {
    for (const UINT message : {WM_NULL, WM_KEYDOWN, WM_QUIT}) {
        calls.clear();
        TRCWindowProcedure(nullptr, message, 5, 6);
        EXPECT_EQ(calls, "DefWindowProcA 0 " + std::to_string(message) + " 5 6\n");
    }
}

}  // namespace
