// The order of set-up and teardown, what is missing in them, and fatal errors.
#include "shell/lifetime.h"

#include "rows.h"
#include "trace/trace_slots.h"
#include "viewer_run.h"

namespace {

using recorder::script;

// Handles are given out in the order of creation: application 1, class 2, object 3, container 4, shell 5, the action
// bar's place 6, action bar 7, the help line's place 8, help line 9, help's name 10, help 11, drawing child 12, data
// channel 13, print set-up 14.
constexpr char SET_UP[] =
    "GetVersionExA\n"
    "GetModuleHandleA \"QRVEL\"\n"
    "LoadLibraryA \"QRVEL\"\n"
    "GetProcAddress 4096 \"Wqueryversion\"\n"
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

// ---- what could not be made ----------------------------------------------------------------------------------------

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

// ---- fatal errors --------------------------------------------------------------------------------------------------

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

}  // namespace
