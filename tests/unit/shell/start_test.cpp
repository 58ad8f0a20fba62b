// From the process entry to its end: command line, toolkit check, set-up, teardown, fatal errors.
#include <array>
#include <cstdio>

#include "rows.h"
#include "shell/entry.h"
#include "shell/texts.h"
#include "shell/toolkit_start.h"
#include "toolkit/wi.h"
#include "trace/trace_slots.h"
#include "viewer_run.h"

namespace {

using recorder::script;

// ---- command line ---------------------------------------------------------------------------------------------------

struct SplitRow : NamedRow {
    const char* line;
    std::vector<std::string> elements;  // behind the module's name
};

// clang-format off
const SplitRow SPLIT_ROWS[] = {
    {"OneWord",          "a.plt",               {"a.plt"}},
    {"TwoWords",         "a b",                 {"a", "b"}},
    {"QuotedPair",       "a \"b c\"",           {"a", "b c"}},
    {"QuotedFirst",      "\"a b\" c",           {"a b", "c"}},
    {"TwoBlanks",        "a  b",                {"a", "", "b"}},
    {"Nothing",          "",                    {""}},
    {"QuoteInsideWord",  "x\"b c\"",            {"b c"}},
    {"BehindTheQuote",   "\"b c\"x y",          {"b c", "y"}},
    {"EmptyQuotes",      "\"\" b",              {"", "b"}},
    {"TabIsNoBlank",     "a\tb",                {"a\tb"}},
    {"Options",          "-I=12 -p=345",        {"-I=12", "-p=345"}},
};
// clang-format on

class CommandLine : public testing::TestWithParam<SplitRow> {};

TEST_P(CommandLine, IsSplit) {
    const FreshViewer viewer;
    HPGLArguments arguments = HPGLsplitCommandLine(GetParam().line);
    ASSERT_EQ(static_cast<size_t>(arguments.count), GetParam().elements.size() + 1);
    EXPECT_NE(std::string(arguments.values[0]).find("unit_shell"), std::string::npos);
    for (size_t i = 0; i < GetParam().elements.size(); ++i) {
        EXPECT_EQ(arguments.values[i + 1], GetParam().elements[i]);
    }
    HPGLfreeArguments(&arguments);
}

INSTANTIATE_TEST_SUITE_P(Rows, CommandLine, testing::ValuesIn(SPLIT_ROWS), byRowName);

// An unclosed quote swallows the end that would have been counted.
TEST(CommandLineEnd, UnclosedQuoteIsHarmless) {
    const FreshViewer viewer;
    HPGLArguments arguments = HPGLsplitCommandLine("a \"b c");
    ASSERT_EQ(arguments.count, 2);
    EXPECT_STREQ(arguments.values[1], "a");
    HPGLfreeArguments(&arguments);
}

TEST(CommandLineEnd, LackOfMemoryEndsTheProcess) {
    const FreshViewer viewer;
    const auto splitFailing = [](int allocation) {
        failing_allocator::failAfter(allocation);
        HPGLsplitCommandLine("a b");
    };
    EXPECT_EXIT(splitFailing(1), testing::ExitedWithCode(255), "^$");
}

struct OptionRow {
    const char* name;
    const char* first;
    const char* second;
    int32_t id;
    int64_t window;
};

// clang-format off
constexpr OptionRow OPTION_ROWS[] = {
    {"Both",        "-I=12",  "-P=345",           12, 345},
    {"LowerCase",   "-i=12",  "-p=345",           12, 345},
    {"NoValue",     "-I=",    "-P=",               0, 0},
    {"Large",       "-I=-1",  "-P=123456789012",  -1, 123456789012},
    {"NoDigits",    "-I=x",   "-P=7x",             0, 7},
    {"OtherLetter", "-X=12",  "+P=345",            0, 0},
    {"NoEquals",    "-I:12",  "-PP=345",           0, 0},
    {"LastWins",    "-P=1",   "-P=2",              0, 2},
};
// clang-format on

TEST(Notification, IsReadFromTheArguments) {
    for (const OptionRow& row : OPTION_ROWS) {
        std::string program = "-I=99", first = row.first, second = row.second;
        const std::array<char*, 3> values = {program.data(), first.data(), second.data()};
        const HPGLNotification notification = HPGLreadNotification(3, values.data());
        EXPECT_EQ(notification.id, row.id) << row.name;
        EXPECT_EQ(notification.window, row.window) << row.name;
    }
}

// ---- the toolkit's version ------------------------------------------------------------------------------------------

struct VersionRow : NamedRow {
    bool loaded, entry;
    int32_t result;
    uint64_t version;
    uintptr_t handle;
    const char* message;  // its beginning
    const char* calls;
};

#define FIND "GetModuleHandleA \"QRVEL\"\n"
#define LOAD FIND "LoadLibraryA \"QRVEL\"\n"
#define LOOK_UP LOAD "GetProcAddress 4096 \"Wqueryversion\"\n"

// clang-format off
constexpr VersionRow VERSION_ROWS[] = {
    {"Right",        true,  true,  0, 0x00401000,  4096, "",                           LOOK_UP "Wqueryversion 0\nFreeLibrary 4096\n"},
    {"HighBits",     true,  true,  0, 0x700401000,  4096, "",                           LOOK_UP "Wqueryversion 0\nFreeLibrary 4096\n"},
    {"NotThere",     false, true,  1, 0x00401000,  4096, "Unable to find W Lib",       FIND},
    {"NotLoaded",    true,  true,  2, 0x00401000,     0, "Unable to load W Lib",       LOAD},
    {"ErrorHandle",  true,  true,  2, 0x00401000,    31, "Unable to load W Lib",       LOAD "FreeLibrary 31\n"},
    {"NoEntry",      true,  false, 3, 0x00401000,  4096, "Unable to get W Lib Version", LOOK_UP "FreeLibrary 4096\n"},
    {"Older",        true,  true,  4, 0x00400fff,  4096, "\nWrong Version of W Lib\n\n  - W:\t00400FFF (libQRVEL.so)\n  - App:\t00401000 (", nullptr},
    {"Newer",        true,  true,  4, 0x00401001,  4096, "\nWrong Version of W Lib\n\n  - W:\t00401001 (libQRVEL.so)\n  - App:\t00401000 (", nullptr},
};
// clang-format on

class Version : public testing::TestWithParam<VersionRow> {
  protected:
    Version() {
        script.moduleLoaded = GetParam().loaded;
        script.moduleHandle = GetParam().handle;
        script.versionEntry = GetParam().entry;
        script.version = GetParam().version;
    }
    FreshViewer viewer;
};

TEST_P(Version, IsChecked) {
    std::array<char, 256> message{};
    EXPECT_EQ(HPGLcheckToolkitVersion(message.data(), message.size()), GetParam().result);
    EXPECT_TRUE(std::string(message.data()).starts_with(GetParam().message)) << message.data();
    if (GetParam().calls != nullptr) {
        EXPECT_EQ(recorder::calls, GetParam().calls);
    }
    if (GetParam().result != 0 && GetParam().result != 4) {
        EXPECT_STREQ(message.data(), GetParam().message);
    }
}

TEST_P(Version, WrongOneEndsTheProcess) {
    if (GetParam().result == 0) return;
    script.quiet = true;
    script.windows = {reinterpret_cast<HWND>(345)};
    script.atExit = [] {
        const size_t end = recorder::calls.rfind("MessageBoxA ");
        std::fputs(recorder::calls.substr(end).c_str(), stderr);
    };
    std::string line = "-i=12 -p=345";
    EXPECT_EXIT(WinMain(nullptr, nullptr, line.data(), 0), testing::ExitedWithCode(111),
                "^MessageBoxA 0 \".*\" \"KEL Graphics Fatal Error\" 16\n"
                "IsWindow 345\nPostMessageA 345 1537 12 0\nExitProcess 111\n$");
}

INSTANTIATE_TEST_SUITE_P(Rows, Version, testing::ValuesIn(VERSION_ROWS), byRowName);

TEST(VersionMessage, IsWholeOrCut) {
    const FreshViewer viewer;
    std::array<char, 512> whole{};
    std::array<char, 40> cut{};
    script.version = 1;
    HPGLcheckToolkitVersion(whole.data(), whole.size());
    EXPECT_TRUE(std::string(whole.data())
                    .ends_with(")\n\nDelete older version(s) of KEL frontend software and reinstall the latest one."));
    HPGLcheckToolkitVersion(cut.data(), cut.size());
    EXPECT_EQ(std::string(cut.data()), std::string(whole.data()).substr(0, 39));
}

TEST(VersionMessage, NobodyToTell) {
    const FreshViewer viewer;
    script.quiet = true;
    script.version = 1;
    script.atExit = [] { std::fputs(recorder::calls.substr(recorder::calls.rfind("IsWindow")).c_str(), stderr); };
    std::string line = "-p=345";
    EXPECT_EXIT(WinMain(nullptr, nullptr, line.data(), 0), testing::ExitedWithCode(111),
                "^IsWindow 345\nExitProcess 111\n$");
}

// ---- set-up and teardown --------------------------------------------------------------------------------------------

// Handles are given out in the order of creation: application 1, class 2, object 3, container 4, shell 5, the action
// bar's place 6, action bar 7, the help line's place 8, help line 9, help's name 10, help 11, drawing child 12, data
// channel 13, print set-up 14.
constexpr char SET_UP[] =
    "GetVersionExA\n" LOOK_UP
    "Wqueryversion 0\nFreeLibrary 4096\n"
    "WIinitialise 3 1 \"-I=12\" \"x\"\n"
    "WIgetvar 1 1\n"
    "Wtrace 1 \"hInst 0, hPrev 0\\n\"\n"
    "Wregexitproc 1\n"
    "WIstdinit_cfg 1 \"HPGL\" 3 128 \"LANG\" \"LOGF\" \"INST\"\n"
    "Wloadtxt 1 \"HPGL\" 26 2000 \"HTIT1\" \"ABTX01\" \"ABTX02\" \"ABTX03\" \"ABTX04\" \"ABTX05\" \"ABTX06\" "
    "\"ABTX07\" \"ABTX08\" \"ABTX15\" \"ABTX16\" \"ABTX17\" \"ABTX18\" \"ABTX24\" \"ABTX19\" \"ABTX20\" "
    "\"ABTX21\" \"ABTX22\" \"ABTX23\" \"HLTX01\" \"HLTX02\" \"HLTX03\" \"HLTX04\" \"HLTX05\" \"LOAD01\" "
    "\"LOAD02\"\n"
    "Wregisterclass 1\n"
    "Wcreateobject 1 2 0 1\n"
    "SHLcreate 1 \"KEL HPGL Display\" 0 3728\n"
    "SHLquerywid 5 7\n"
    "ACTBARcreate 6 3 18 0 1 0 0 1 M 0 2 0 1 1 M 0 3 0 2 1 M 0 4 0 3 1 M 0 5 0 4 1 L 1 0 0 5 1 M 1 0 0 6 0 M "
    "1 0 0 7 1 M 2 0 0 8 1 M 3 0 0 12 1 M 4 0 0 9 1 M 4 0 0 10 1 M 4 0 0 11 1 M 5 0 0 13 0 L 5 0 0 13 0 L "
    "5 0 0 13 0 L 5 0 0 13 0 L 5 0 0 14 1 L\n"
    "ACTBARsetmp1 7 4 3 2 0\n"
    "ACTBARset 7 3 \"~Graphic\" \"~Edit\" \"~Goto\" \"~Settings\" \"~Help\" \"~Print\" \"~Save\" \"~Exit\" "
    "\"C~ancel\" \"~Back\" \"~Complete picture\" \"~Last Zoom\" \"~Rotate 180 degrees\" \"~Help\" \"~Info...\" "
    "\"~Function keys...\" \"~Glossary\" \"~Product Information...\"\n"
    "ACTBARreset 7\n"
    "SHLquerywid 5 4\n"
    "HELPLcreate 5 8 0 1\n"
    "HELPLinit 9 0 5 \"F1=Help\" \"F3=Back\" \"F11=Save\" \"F12=Quit\" \"F15=Exit\" 2 1 2 15 2 11 2 3 2 12 "
    "\"1\" \"1\" \"1\" \"2\" \"0\" \"3\" \"1\" \"4\" \"1\" \"5\"\n"
    "HELPLset_buttons 9 0\n"
    "HELPLmake_hlpl 9 3 0\n"
    "ACTappend 9 0 \"M\" \"1\" \"2\"\n"
    "ACTappend 9 0 \"M\" \"2\" \"3\"\n"
    "ACTappend 9 0 \"M\" \"3\" \"0\"\n"
    "ACTappend 9 0 \"M\" \"4\" \"4\"\n"
    "ACTappend 9 0 \"M\" \"5\" \"1\"\n"
    "CONTstdcreate 4 2 0 0 0 0\n"
    "CONTdrawbackground 4 1\n"
    "WHLPregistername \"HPGL\"\n"
    "HLPcreate 5 \"Bitmap-Hilfe\" 0\n"
    "Wcreatechild 1 4\n"
    "WDstdopen 1 8 1\n"
    "PSSETUPcreate 4 5 5 0 0 2\n"
    "WIgetvar 1 0\nWIgetvar 1 1\nGetMessageA 0 0 0\n";
constexpr char TEARDOWN[] =
    "Wtrace 1 \">>> leaving main loop: W.quit = 0\\n\"\n"
    "WDstdclose 13\n"
    "PSSETUPdestroy 14\n"
    "OUTdestroy 12\n"
    "Wdestroychild 12\n"
    "HLPdestroy 11\n"
    "CONTdestroy 4\n"
    "HELPLdestroy 9\n"
    "ACTBARdestroy 7\n"
    "SHLdestroy 5\n"
    "Wdestroyobject 3\n"
    "Wterminate 1\n";

class Life : public ViewerRun {
  protected:
    // The calls from the set-up on, without those of the trace log.
    static std::string callsOfLife() {
        return without({"OpenFile", "_lclose", "GetEnvironmentVariableA"},
                       recorder::calls.substr(recorder::calls.find("GetVersionExA")));
    }
};

TEST_F(Life, FollowsItsOrder) {
    EXPECT_EQ(run({}, "-I=12 x"), 0);
    EXPECT_EQ(callsOfLife(), std::string(SET_UP) + TEARDOWN);
}

// Both names are made, in this order, before the log is opened, and it is open before the texts are loaded.
TEST_F(Life, OpensItsLogsBeforeItLoadsTheTexts) {
    script.configuration = {{"LOGF", "echo.txt"}, {"INST", "inst"}, {"LANG", "german"}};
    script.environment["DGTRACE"] = "1";
    run({[] { EXPECT_STREQ(TheShell.echoName, "echo__00.log"); }});
    const auto at = [](const char* call) { return recorder::calls.find(call); };
    EXPECT_LT(at("WIstdinit_cfg "), at("OpenFile \"echo__00.log\" "));
    EXPECT_LT(at("OpenFile \"echo__00.log\" "), at("OpenFile \"inst__00.log\" "));
    EXPECT_LT(at("OpenFile \"inst__00.log\" "), at("\"HPGL-Viewer started"));
    EXPECT_LT(at("\"HPGL-Viewer started"), at("Wloadtxt "));
    EXPECT_LT(at("Wloadtxt "), at("Wregisterclass "));
}

TEST_F(Life, TellsTheToolkitItsInstances) {
    std::string line;
    script.turns.emplace_back([] {
        const auto* variables = static_cast<const WVariables*>(WIgetvar(1, 1));
        EXPECT_EQ(variables->instance, reinterpret_cast<void*>(0xabc));
        EXPECT_EQ(variables->previous, reinterpret_cast<void*>(0x12));
    });
    WinMain(reinterpret_cast<HINSTANCE>(0xabc), reinterpret_cast<HINSTANCE>(0x12), line.data(), 0);
    EXPECT_NE(recorder::calls.find("Wtrace 1 \"hInst ABC, hPrev 12\\n\"\nWregexitproc 1\n"), std::string::npos);
}

TEST_F(Life, GivesThePictureBackLast) {
    run({[] { send("PD1,1;"); }});
    const std::string names = namesAmong("Wdestroyobject\nWCLRdestroy\nWterminate\n");
    EXPECT_EQ(names, "Wdestroyobject\nWCLRdestroy\nWterminate\n");
    EXPECT_EQ(TheShell.parser, nullptr);
    EXPECT_EQ(TheShell.zoom, nullptr);
}

TEST_F(Life, SetsTheLimitsFirst) {
    script.platformId = 1;
    run({[] {
        EXPECT_EQ(TheShell.display.CoordMax, 32767);
        EXPECT_EQ(TheShell.display.CoordMin, -32768);
    }});
    EXPECT_TRUE(namesAmong("GetVersionExA\nGetModuleHandleA\n").starts_with("GetVersionExA\nGetModuleHandleA\n"));
}

TEST_F(Life, OpensTheTrace) {
    script.environment["DGTRACE"] = "1";
    run({});
    EXPECT_EQ(folder.read("dev_hp00.log"), "HPGL-Viewer started\r\n");
    script.configuration["INST"] = "ab.cd";
    TRCForgetEverything();
    script.environment["DGTRACE"] = "1";
    run({});
    EXPECT_EQ(folder.read("ab____00.log"), "HPGL-Viewer started\r\n");
}

TEST_F(Life, WithoutSettingsWritesNoFile) {
    run({[] { send("PD1,1;"); }});
    EXPECT_TRUE(std::filesystem::is_empty("."));
}

// ---- what could not be made -----------------------------------------------------------------------------------------

struct MissingRow : NamedRow {
    std::set<std::string> failing;
    const char* destroyed;
    bool draws;  // the picture that comes all the same
};

#define FROM_HELP "HLPdestroy\nCONTdestroy\nHELPLdestroy\nACTBARdestroy\nSHLdestroy\nWdestroyobject\n"
#define FROM_SETUP "PSSETUPdestroy\nOUTdestroy\nWdestroychild\n" FROM_HELP

// clang-format off
const MissingRow MISSING_ROWS[] = {
    {"Nothing",        {},                    "WDstdclose\n" FROM_SETUP, true},
    {"Class",          {"Wregisterclass"},    "WDstdclose\n" FROM_SETUP, false},
    {"Container",      {"CONTstdcreate"},     "WDstdclose\n" FROM_SETUP, true},
    {"BarPlaces",      {"SHLquerywid"},       "WDstdclose\n" FROM_SETUP, true},
    {"HelpName",       {"WHLPregistername"},  "WDstdclose\n" FROM_SETUP, true},
    {"Configuration",  {"WIstdinit_cfg"},     "WDstdclose\n" FROM_SETUP, true},
    {"Texts",          {"Wloadtxt"},          "WDstdclose\n" FROM_SETUP, true},
    {"Variables",      {"WIgetvar"},          "WDstdclose\n" FROM_SETUP, false},
    {"Channel",        {"WDstdopen"},         FROM_SETUP, false},
    {"PrintSetup",     {"PSSETUPcreate"},     "WDstdclose\nOUTdestroy\nWdestroychild\n" FROM_HELP, true},
    {"DrawingChild",   {"Wcreatechild"},      "WDstdclose\nPSSETUPdestroy\n" FROM_HELP, true},
    {"Help",           {"HLPcreate"},         "WDstdclose\nPSSETUPdestroy\nOUTdestroy\nWdestroychild\nCONTdestroy\nHELPLdestroy\nACTBARdestroy\nSHLdestroy\nWdestroyobject\n", true},
    {"HelpLine",       {"HELPLcreate"},       "WDstdclose\nPSSETUPdestroy\nOUTdestroy\nWdestroychild\nHLPdestroy\nCONTdestroy\nACTBARdestroy\nSHLdestroy\nWdestroyobject\n", true},
    {"ActionBar",      {"ACTBARcreate"},      "WDstdclose\nPSSETUPdestroy\nOUTdestroy\nWdestroychild\nHLPdestroy\nCONTdestroy\nHELPLdestroy\nSHLdestroy\nWdestroyobject\n", true},
    {"Shell",          {"SHLcreate"},         "WDstdclose\nPSSETUPdestroy\nOUTdestroy\nWdestroychild\nHLPdestroy\nHELPLdestroy\nACTBARdestroy\nWdestroyobject\n", true},
    {"MainObject",     {"Wcreateobject"},     "WDstdclose\nPSSETUPdestroy\nOUTdestroy\nWdestroychild\nHLPdestroy\nCONTdestroy\nHELPLdestroy\nACTBARdestroy\nSHLdestroy\n", true},
    {"Everything",     {"Wregisterclass", "Wcreateobject", "SHLcreate", "SHLquerywid", "ACTBARcreate", "HELPLcreate", "WHLPregistername", "HLPcreate", "Wcreatechild", "WDstdopen", "PSSETUPcreate"}, "", false},
};
// clang-format on

class Missing : public Life, public testing::WithParamInterface<MissingRow> {
  protected:
    // A toolkit whose Wfatalerror comes back, so that the program has to go on.
    Missing() {
        script.failing = GetParam().failing;
        script.failing.insert("Wfatalerror");
    }
    static void useEverything() {
        for (const uint32_t kind : {0U, 1U, 4U, 5U}) {
            for (uint32_t item = 0; item < 16; ++item) {
                action(kind, item);
            }
        }
        zoom();
    }
};

TEST_P(Missing, IsNotDestroyed) {
    EXPECT_EQ(run({}), 0);
    EXPECT_EQ(namesAmong("WDstdclose\n" FROM_SETUP), GetParam().destroyed);
    EXPECT_TRUE(recorder::calls.ends_with("\nWterminate 1\n"));
    EXPECT_EQ(namesAmong("PSSETUPcreate\n"), "PSSETUPcreate\n");
}

TEST_P(Missing, HarmsNothing) {
    std::string shown;
    const auto draw = [&] {
        send("PD;PA0,0,4960,4960;");
        shown = callsOf([] { recorder::deliver(TheShell.display.Window, W_MSG_PAINT); });
    };
    EXPECT_EQ(run({draw, useEverything}), 0);
    EXPECT_EQ(shown.find("OUTline ") != std::string::npos, GetParam().draws) << shown;
    EXPECT_TRUE(recorder::calls.ends_with("\nWterminate 1\n"));
}

TEST_P(Missing, HarmsNothingBeforeTheFirstPicture) {
    EXPECT_EQ(run({useEverything}), 0);
    EXPECT_EQ(recorder::calls.find("OUTline "), std::string::npos);
    EXPECT_TRUE(recorder::calls.ends_with("\nWterminate 1\n"));
}

INSTANTIATE_TEST_SUITE_P(Rows, Missing, testing::ValuesIn(MISSING_ROWS), byRowName);

// ---- fatal errors ---------------------------------------------------------------------------------------------------

struct FatalRow : NamedRow {
    const char* failing;      // operation
    std::size_t failingSize;  // or allocation
    const char* before;       // the last call before the end
    const char* text;
};

// clang-format off
constexpr FatalRow FATAL_ROWS[] = {
    {"NoToolkit",       "WIinitialise", 0,    "WIstdinit_cfg",           "Gbtmp: unable to initialize W"},
    {"NoTextBuffer",    "",             2000, "GetEnvironmentVariableA", "Kein Speicher fuer Textbuffer vorhanden\n"},
    {"NoLanguage",      "Wloadtxt",     0,    "Wloadtxt",                "Unable to open language file"},
    {"NoReceiveBuffer", "",             256,  "Wcreatechild",            "Kein Speicher fuer wdbuff vorhanden\n"},
    {"NoChannel",       "WDstdopen",    0,    "WDstdopen",               "Kann Verbindung zum Tolk nicht initialisieren\n:"},
    {"NoScratch",       "",             512,  "WDstdopen",               "Kann Verbindung zum Tolk nicht initialisieren\n:"},
};
// clang-format on

class Fatal : public ViewerRun, public testing::WithParamInterface<FatalRow> {
  protected:
    // Where the calls stand at the end of the process: the name of the last before it, and the text.
    static std::string end() {
        const std::string calls = recorder::calls.substr(0, recorder::calls.find("\nWfatalerror "));
        const std::string last = calls.substr(calls.rfind('\n') + 1);
        return last.substr(0, last.find(' ')) + ", then " + recorder::messageBoxes.back();
    }
};

TEST_P(Fatal, EndsTheProcess) {
    script.failing = {GetParam().failing};
    script.atExit = [] { std::fputs(end().c_str(), stderr); };
    failing_allocator::failSize(GetParam().failingSize);
    EXPECT_EXIT(run({}), testing::ExitedWithCode(1),
                "^" + std::string(GetParam().before) + ", then Wfatalerror: " + GetParam().text + "$");
}

INSTANTIATE_TEST_SUITE_P(Rows, Fatal, testing::ValuesIn(FATAL_ROWS), byRowName);

// ---- the exit procedure ---------------------------------------------------------------------------------------------

class ExitProcedure : public ViewerRun {
  protected:
    static void callWith(int32_t status, bool windowExists) {
        script.mdiClient = true;
        if (windowExists) script.windows = {reinterpret_cast<HWND>(345)};
        script.atExit = [] { std::fputs(recorder::calls.c_str(), stderr); };
        run({[&] {
                recorder::calls.clear();
                cbexit(1, status);
                std::fputs("came back", stderr);
                std::exit(0);
            }},
            "-i=12 -p=345");
    }
};

TEST_F(ExitProcedure, WithoutStatusDoesNothing) {
    EXPECT_EXIT(callWith(0, true), testing::ExitedWithCode(0), "^came back$");
}

TEST_F(ExitProcedure, TellsTheWindow) {
    EXPECT_EXIT(callWith(5, true), testing::ExitedWithCode(5),
                "IsWindow 345\nPostMessageA 345 1537 12 8192\nExitProcess 5\n$");
}

TEST_F(ExitProcedure, TellsNobodyWhoIsGone) {
    EXPECT_EXIT(callWith(5, false), testing::ExitedWithCode(5), "IsWindow 345\nExitProcess 5\n$");
}

// ---- texts ----------------------------------------------------------------------------------------------------------

constexpr const char* DEFAULTS[] = {"KEL HPGL Display",
                                    "~Graphic",
                                    "~Edit",
                                    "~Goto",
                                    "~Settings",
                                    "~Help",
                                    "~Print",
                                    "~Save",
                                    "~Exit",
                                    "C~ancel",
                                    "~Back",
                                    "~Complete picture",
                                    "~Last Zoom",
                                    "~Rotate 180 degrees",
                                    "~Help",
                                    "~Info...",
                                    "~Function keys...",
                                    "~Glossary",
                                    "~Product Information...",
                                    "F1=Help",
                                    "F3=Back",
                                    "F11=Save",
                                    "F12=Quit",
                                    "F15=Exit",
                                    "Information",
                                    "Load data from TOLK/4 program"};

constexpr const char* KEYS[] = {"HTIT1",  "ABTX01", "ABTX02", "ABTX03", "ABTX04", "ABTX05", "ABTX06",
                                "ABTX07", "ABTX08", "ABTX15", "ABTX16", "ABTX17", "ABTX18", "ABTX24",
                                "ABTX19", "ABTX20", "ABTX21", "ABTX22", "ABTX23", "HLTX01", "HLTX02",
                                "HLTX03", "HLTX04", "HLTX05", "LOAD01", "LOAD02"};
static_assert(std::size(KEYS) == std::size(DEFAULTS));

class Texts : public testing::Test {
  protected:
    // By position: title, action bar, help line, load panel.
    std::vector<std::string> load() {
        HPGLloadTexts(1, buffer_.data(), &loaded);
        std::vector<std::string> texts(loaded.title, loaded.title + HPGL_TITLE_TEXTS);
        texts.insert(texts.end(), loaded.actionBar, loaded.actionBar + HPGL_ACTION_BAR_TEXTS);
        texts.insert(texts.end(), loaded.helpLine, loaded.helpLine + HPGL_HELP_LINE_TEXTS);
        texts.insert(texts.end(), loaded.loadPanel, loaded.loadPanel + HPGL_LOAD_PANEL_TEXTS);
        return texts;
    }
    static std::vector<std::string> defaults() { return {std::begin(DEFAULTS), std::end(DEFAULTS)}; }

    HPGLTexts loaded;

  private:
    FreshViewer viewer_;
    std::array<char, HPGL_TEXT_BUFFER_SIZE> buffer_{};
};

TEST_F(Texts, HaveDefaults) {
    EXPECT_EQ(load(), defaults());
    EXPECT_EQ(loaded.actionBar - loaded.title, 1);
    EXPECT_EQ(loaded.helpLine - loaded.actionBar, 18);
    EXPECT_EQ(loaded.loadPanel - loaded.helpLine, 5);
}

TEST_F(Texts, AreReplacedOneByOne) {
    for (size_t i = 0; i < std::size(KEYS); ++i) {
        script.texts = {{KEYS[i], "ein Text"}};
        std::vector<std::string> expected = defaults();
        expected[i] = "ein Text";
        EXPECT_EQ(load(), expected) << KEYS[i];
    }
}

TEST_F(Texts, AreReplacedAltogether) {
    for (const char* key : KEYS) {
        script.texts[key] = std::string("ein Text: ") + key;
    }
    const std::vector<std::string> texts = load();
    ASSERT_EQ(texts.size(), std::size(KEYS));
    for (size_t i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(texts[i], std::string("ein Text: ") + KEYS[i]);
    }
}

TEST_F(Texts, AreDefaultsWhereTheBufferIsFull) {
    script.texts = {{"HTIT1", std::string(1990, 't')}, {"ABTX01", "~Grafik, lang"}, {"LOAD01", "kurz"}};
    std::vector<std::string> expected = defaults();
    expected[0] = std::string(1990, 't');
    expected[24] = "kurz";
    EXPECT_EQ(load(), expected);
}

// Of a toolkit whose Wfatalerror comes back.
TEST_F(Texts, AreDefaultsWithoutALanguageFile) {
    script.quiet = true;
    script.failing = {"Wloadtxt", "Wfatalerror"};
    EXPECT_EQ(load(), defaults());
    EXPECT_EQ(recorder::messageBoxes, std::vector<std::string>{"Wfatalerror: Unable to open language file"});
}

TEST_F(Texts, AreNotLoadedWithoutABuffer) {
    script.quiet = true;
    script.failing = {"Wfatalerror"};
    HPGLloadTexts(1, nullptr, &loaded);
    EXPECT_EQ(recorder::calls, "Wfatalerror 1 \"Kein Speicher fuer Textbuffer vorhanden\\n\"\n");
    EXPECT_STREQ(loaded.title[25], "Load data from TOLK/4 program");
}

}  // namespace
