// From the process entry to its end: command line, toolkit check, set-up, teardown, fatal errors.
#include <array>
#include <cstdio>

#include "entry.h"
#include "rows.h"
#include "texts.h"
#include "toolkit_start.h"
#include "trace_slots.h"
#include "viewer_run.h"
#include "wi.h"

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

class Life : public ViewerRun {};

constexpr char ORDER[] =
    "GetVersionExA\n"
    "GetModuleHandleA\nLoadLibraryA\nGetProcAddress\nWqueryversion\nFreeLibrary\n"
    "WIinitialise\nWIgetvar\nWtrace\nWregexitproc\nWIstdinit_cfg\n"
    "Wloadtxt\n"
    "Wregisterclass\nWcreateobject\nSHLcreate\n"
    "CONTstdcreate\nCONTdrawbackground\nWcreatechild\n"
    "WDstdopen\n"
    "WIgetvar\nWIgetvar\nGetMessageA\nWtrace\n"
    "WDstdclose\n"
    "OUTdestroy\nWdestroychild\nCONTdestroy\nSHLdestroy\nWdestroyobject\n"
    "Wterminate\n";

TEST_F(Life, FollowsItsOrder) {
    EXPECT_EQ(run({}), 0);
    EXPECT_EQ(namesAmong(ORDER), ORDER);
}

TEST_F(Life, GivesThePictureBackLast) {
    run({[] { send("PD1,1;"); }});
    const std::string names = namesAmong("Wdestroyobject\nWCLRdestroy\nWterminate\n");
    EXPECT_EQ(names, "Wdestroyobject\nWCLRdestroy\nWterminate\n");
    EXPECT_EQ(TheParser, nullptr);
    EXPECT_EQ(TheZoom, nullptr);
}

TEST_F(Life, PassesItsConstants) {
    run({}, "-I=12 x");
    for (const char* call :
         {"WIinitialise 3 1 \"-I=12\" \"x\"\n", "WIstdinit_cfg 1 \"HPGL\" 3 128 \"LANG\" \"LOGF\" \"INST\"\n",
          "Wloadtxt 1 \"HPGL\" 26 2000 \"HTIT1\" \"ABTX01\" ", " 0 1\nSHLcreate 1 \"KEL HPGL Display\" 0 3728\n",
          " 0 0 0 0\nCONTdrawbackground ", "WDstdopen 1 8 1\n", "Wtrace 1 \"hInst 0, hPrev 0\\n\"\n",
          "Wtrace 1 \">>> leaving main loop: W.quit = 0\\n\"\n"}) {
        EXPECT_NE(recorder::calls.find(call), std::string::npos) << call;
    }
}

TEST_F(Life, SetsTheLimitsFirst) {
    script.platformId = 1;
    run({[] {
        EXPECT_EQ(CoordMax, 32767);
        EXPECT_EQ(CoordMin, -32768);
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

// ---- fatal errors ---------------------------------------------------------------------------------------------------

struct FatalRow : NamedRow {
    const char* failing;      // operation
    std::size_t failingSize;  // or allocation
    const char* text;
};

// clang-format off
constexpr FatalRow FATAL_ROWS[] = {
    {"NoToolkit",      "WIinitialise", 0,    "Gbtmp: unable to initialize W"},
    {"NoTextBuffer",   "",             2000, "Kein Speicher fuer Textbuffer vorhanden\n"},
    {"NoLanguage",     "Wloadtxt",     0,    "Unable to open language file"},
    {"NoReceiveBuffer", "",            256,  "Kein Speicher fuer wdbuff vorhanden\n"},
    {"NoChannel",      "WDstdopen",    0,    "Kann Verbindung zum Tolk nicht initialisieren\n:"},
    {"NoScratch",      "",             512,  "Kann Verbindung zum Tolk nicht initialisieren\n:"},
};
// clang-format on

class Fatal : public ViewerRun, public testing::WithParamInterface<FatalRow> {};

TEST_P(Fatal, EndsTheProcess) {
    script.failing = {GetParam().failing};
    script.atExit = [] { std::fputs(recorder::messageBoxes.back().c_str(), stderr); };
    failing_allocator::failSize(GetParam().failingSize);
    EXPECT_EXIT(run({}), testing::ExitedWithCode(1), "^Wfatalerror: " + std::string(GetParam().text) + "$");
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

TEST(Texts, HaveDefaults) {
    const FreshViewer viewer;
    std::array<char, HPGL_TEXT_BUFFER_SIZE> buffer{};
    HPGLloadTexts(1, buffer.data());
    for (size_t i = 0; i < std::size(DEFAULTS); ++i) {
        EXPECT_STREQ(TheTexts.title[i], DEFAULTS[i]);
    }
    EXPECT_STREQ(TheTexts.actionBar[0], "~Graphic");
    EXPECT_STREQ(TheTexts.helpLine[0], "F1=Help");
    EXPECT_STREQ(TheTexts.loadPanel[0], "Information");
    EXPECT_EQ(recorder::calls,
              "Wloadtxt 1 \"HPGL\" 26 2000 \"HTIT1\" \"ABTX01\" \"ABTX02\" \"ABTX03\" \"ABTX04\" \"ABTX05\" \"ABTX06\" "
              "\"ABTX07\" \"ABTX08\" \"ABTX15\" \"ABTX16\" \"ABTX17\" \"ABTX18\" \"ABTX24\" \"ABTX19\" \"ABTX20\" "
              "\"ABTX21\" \"ABTX22\" \"ABTX23\" \"HLTX01\" \"HLTX02\" \"HLTX03\" \"HLTX04\" \"HLTX05\" \"LOAD01\" "
              "\"LOAD02\"\n");
}

TEST(Texts, AreReplacedOneByOne) {
    const FreshViewer viewer;
    std::array<char, HPGL_TEXT_BUFFER_SIZE> buffer{};
    script.texts["ABTX17"] = "Ganzes ~Bild";
    HPGLloadTexts(1, buffer.data());
    EXPECT_STREQ(TheTexts.actionBar[10], "Ganzes ~Bild");
    EXPECT_STREQ(TheTexts.actionBar[9], "~Back");
    EXPECT_STREQ(TheTexts.actionBar[11], "~Last Zoom");
}

}  // namespace
