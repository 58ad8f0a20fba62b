// The user's commands: menu items, the help line's actions, help and product information.
#include "shell/actions.h"

#include "rows.h"
#include "toolkit/helpl.h"
#include "viewer_run.h"

namespace {

using recorder::script;

// Handles as the recorder gives them out at set-up: application 1, object 3, container 4, shell 5, help line 9, help's
// name 10, help 11, drawing child 12, print set-up 14; 15 and 16 are the next ones.
#define BACKGROUND "OUTquerysize\nOUTreset\nOUTfillcolour 0\nOUTboxr2 0 0 500 500\nWupdate 12 1\n"
#define REFIT_OF(object) "Wquerywinsize " #object "\nWsetwinpos 12 0 0 500 500\nOUTquerysize\n"
#define NEW_COLOURS "WCLRcreate 1 3 255 255 255 0 0 0 0 255 0\nOUTreset\nOUTsetbackground 0\nWupdate 12 1\n"

class Actions : public PictureRun {
  protected:
    // The calls, and behind them what is traced at level 1.
    static std::string tracedCallsOf(const Turn& turn) {
        std::string calls;
        const std::string trace = traceOf(1, [&] { calls = without({"_lwrite"}, callsOf(turn)); });
        return calls + trace;
    }
    // Of the toolkit's objects only the drawing child is left.
    static void forgetHandles() {
        HPGLShell& s = TheShell;
        s.app = s.windowClass = s.object = s.shell = s.container = s.actionBar = 0;
        s.helpLine = s.helpName = s.help = s.info = s.printSetup = s.channel = 0;
    }
};

// ---- the menu -------------------------------------------------------------------------------------------------------

struct MenuRow : NamedRow {
    uint32_t item;
    const char* calls;
    const char* callsWithoutHandles;
};

// clang-format off
constexpr MenuRow MENU_ROWS[] = {
    {"Graphic",             0, "", ""},
    {"Edit",                1, "", ""},
    {"Goto",                2, "", ""},
    {"Settings",            3, "", ""},
    {"Help",                4, "", ""},
    {"Print",               5, "PSSETUPshow 14\n", "PSSETUPshow 0\n"},
    {"Save",                6, "", ""},
    {"Exit",                7, "Wquit 1\n", "Wquit 0\n"},
    {"Cancel",              8, "Wquit 1\n", "Wquit 0\n"},
    {"CompletePicture",     9, BACKGROUND, BACKGROUND},
    {"LastZoom",           10, BACKGROUND, BACKGROUND},
    {"Rotate",             11, NEW_COLOURS REFIT_OF(3) BACKGROUND, NEW_COLOURS REFIT_OF(0) BACKGROUND},
    {"Back",               12, "Wquit 1\n", "Wquit 0\n"},
    {"HelpTopic",          13, "", ""},
    {"ProductInformation", 14, "INFOcreate 4 5 1 0 5 0\n", "INFOcreate 0 0 1 0 5 0\n"},
    {"Item15",             15, "", ""},
    {"Item16",             16, "", ""},
    {"Item17",             17, "", ""},
    {"Item18",             18, "", ""},
    {"Item19",             19, "", ""},
    {"Item20",             20, "", ""},
    {"Largest",    0xffffffff, "", ""},
};
// clang-format on

class Menu : public Actions, public testing::WithParamInterface<MenuRow> {};

TEST_P(Menu, CarriesItsItemsOut) {
    const MenuRow& row = GetParam();
    for (const uint32_t kind : {2U, 3U, 4U}) {
        recorder::reset();
        TheShell = {};
        withPicture([&] { EXPECT_EQ(callsOf([&] { action(kind, row.item); }), row.calls) << kind; });
    }
}

// A menu's number means nothing in the actions of another kind.
TEST_P(Menu, IsNothingInOtherKinds) {
    withPicture([] {
        for (const uint32_t kind : {6U, 7U, 99U, 0xffffffffU}) {
            EXPECT_EQ(callsOf([=] { action(kind, GetParam().item); }), "") << kind;
        }
    });
}

TEST_P(Menu, NeedsNoHandles) {
    withPicture([] {
        forgetHandles();
        EXPECT_EQ(callsOf([] { action(4, GetParam().item); }), GetParam().callsWithoutHandles);
    });
}

INSTANTIATE_TEST_SUITE_P(Rows, Menu, testing::ValuesIn(MENU_ROWS), byRowName);

TEST_F(Actions, TurningTwiceGivesThePictureBackWithoutItsZooms) {
    run({[] { send("SC0,1,0,1;PD;PA0,0,4960,2480;"); },
         [] {
             const std::string upright = paintCalls();
             zoom();
             action(4, 11);
             const std::string turned = paintCalls();
             EXPECT_NE(turned, upright);
             zoom();
             action(4, 11);
             EXPECT_EQ(paintCalls(), upright);
             action(4, 10);
             EXPECT_EQ(view(), "0 0 4960 2480");
         }});
}

TEST_F(Actions, TurningWithoutMemoryLeavesNoZooms) {
    withPicture([] {
        failing_allocator::failSize(sizeof(ZoomData));
        action(4, 11);
        EXPECT_EQ(TheShell.zoom, nullptr);
        EXPECT_EQ(callsOf([] { action(4, 10); }), "");
        EXPECT_EQ(callsOf(zoom), "");
        EXPECT_TRUE(paintCalls().ends_with("OUTendpaint\n"));
        failing_allocator::reset();
        send("PD;PA0,0,100,100;");
        EXPECT_EQ(view(), "0 0 100 100");
    });
}

// ---- without a picture ----------------------------------------------------------------------------------------------

struct Action {
    uint32_t kind;
    uint32_t item;
};

// Zooms back, rotation and print.
constexpr Action ON_PICTURES[] = {{4, 9}, {3, 10}, {2, 11}, {5, 11}};

std::string noPicture(const Action& each) {
    const char* procedure = each.kind == 5 ? "HPGLprintSetupAction" : "HPGLmenuAction";
    return std::string("WARNING-") + procedure + ": there is no picture, ignore action\n";
}

TEST_F(Actions, OnPicturesOnlyTraceWithoutOne) {
    run({[] {
        for (const Action& each : ON_PICTURES) {
            EXPECT_EQ(tracedCallsOf([&] { action(each.kind, each.item); }), noPicture(each)) << each.item;
        }
        EXPECT_EQ(TheShell.RotationSign, 1);
    }});
}

// The picture before has gone, the next one is not whole.
TEST_F(Actions, OnPicturesWaitWhileDataArrives) {
    withPicture([] {
        recorder::sendChunk("SC0,1,0,1;PD;PA0,0,10", WD_CHUNK_BEGIN);
        for (const Action& each : ON_PICTURES) {
            EXPECT_EQ(tracedCallsOf([&] { action(each.kind, each.item); }), noPicture(each)) << each.item;
        }
        EXPECT_EQ(callsOf(zoom), "");
        EXPECT_EQ(callsOf([] { action(4, 7); }), "Wquit 1\n");
        EXPECT_EQ(callsOf([] { action(4, 5); }), "PSSETUPshow 14\n");
        recorder::sendChunk("0,100;", WD_CHUNK_END);
        EXPECT_EQ(view(), "0 0 100 100");
        EXPECT_EQ(callsOf([] { action(4, 10); }), BACKGROUND);
    });
}

// ---- the help line --------------------------------------------------------------------------------------------------

#define QUIT "Wquit 1\n"
#define HELP "WHLPhelprequest 11 10 4\n"

struct KeyRow {
    uint32_t button;
    const char* calls;
};

TEST_F(Actions, OfTheHelpLinesButtons) {
    constexpr KeyRow KEYS[] = {{1, HELP}, {2, QUIT}, {3, ""}, {4, QUIT}, {5, QUIT}, {0, ""}, {6, ""}};
    run({[&] {
        for (const KeyRow& row : KEYS) {
            const std::string asked = "ACThandleaction 9 " + std::to_string(row.button) + "\n";
            EXPECT_EQ(callsOf([&] { action(0, row.button); }), asked + row.calls) << row.button;
        }
    }});
}

struct UserRow : NamedRow {
    const char* letter;
    const char* argument;
    const char* effect;
};

#define UNKNOWN(letter, argument) "Unbekannte userdefinierte operation: " letter "   Action:  " argument "\n"

// clang-format off
constexpr UserRow USER_ROWS[] = {
    {"M0",            "M", "0",     ""},
    {"M1",            "M", "1",     QUIT},
    {"M2",            "M", "2",     HELP},
    {"M3",            "M", "3",     QUIT},
    {"M4",            "M", "4",     QUIT},
    {"M5",            "M", "5",     ""},
    {"M6",            "M", "6",     ""},
    {"MLarge",        "M", "11",    ""},
    {"MNegative",     "M", "-1",    ""},
    {"MNegativeHelp", "M", "-2",    ""},
    {"MEmpty",        "M", "",      ""},
    {"MNoNumber",     "M", "quit",  ""},
    {"MLeadingZero",  "M", "02",    HELP},
    {"LowerM1",       "m", "1",     QUIT},
    {"LowerM2",       "m", "2",     HELP},
    {"LowerM3",       "m", "3",     QUIT},
    {"LowerM4",       "m", "4",     QUIT},
    {"LowerM5",       "m", "5",     ""},
    {"Q",             "Q", "",      QUIT},
    {"QIgnoresIts",   "Q", "2",     QUIT},
    {"LowerQ",        "q", "0",     QUIT},
    {"S",             "S", "1",     ""},
    {"LowerS",        "s", "2",     ""},
    {"X",             "X", "1",     UNKNOWN("X", "1")},
    {"LowerX",        "x", "2",     UNKNOWN("x", "2")},
    {"L",             "L", "abc",   UNKNOWN("L", "abc")},
    {"N",             "N", "",      UNKNOWN("N", "")},
    {"P",             "P", "4",     UNKNOWN("P", "4")},
    {"R",             "R", "-1",    UNKNOWN("R", "-1")},
    {"Digit",         "2", "2",     UNKNOWN("2", "2")},
    {"Blank",         " ", "2",     UNKNOWN(" ", "2")},
    {"Percent",       "%", "%s",    UNKNOWN("%", "%s")},
};
// clang-format on

class UserDefined : public Actions, public testing::WithParamInterface<UserRow> {};

TEST_P(UserDefined, IsCarriedOut) {
    const UserRow& row = GetParam();
    run({[&] {
        ACTappend(TheShell.helpLine, 0, row.letter, "9", row.argument);
        const std::string handled = std::string("ACThandleaction 9 9\n") + row.effect;
        EXPECT_EQ(tracedCallsOf([] { action(0, 9); }), handled);
        EXPECT_EQ(tracedCallsOf([] { action(1, 9); }), "INFOdestroy 0\n" + handled);
    }});
}

INSTANTIATE_TEST_SUITE_P(Rows, UserDefined, testing::ValuesIn(USER_ROWS), byRowName);

TEST_F(Actions, ThatTheToolkitDoesNotKnow) {
    script.failing = {"ACThandleaction"};
    run({[] { EXPECT_EQ(tracedCallsOf([] { action(0, 2); }), "ACThandleaction 9 2\n" UNKNOWN(" ", "")); }});
}

// ---- help -----------------------------------------------------------------------------------------------------------

TEST_F(Actions, AskForHelpThatThereIsNot) {
    script.failing = {"HLPcreate"};
    run({[] {
        EXPECT_EQ(callsOf([] { action(0, 1); }), "ACThandleaction 9 1\nWerrorbox 1 \"No Help available\" 4\n");
        EXPECT_EQ(recorder::messageBoxes, std::vector<std::string>{"Werrorbox: No Help available"});
    }});
}

// ---- product information --------------------------------------------------------------------------------------------

TEST_F(Actions, ShowAndCloseTheProductInformation) {
    constexpr char CREATE[] = "INFOcreate 4 5 1 0 5 0\n";
    run({[&] {
        EXPECT_EQ(callsOf([] { action(4, 14); }), CREATE);
        EXPECT_EQ(callsOf([] { action(1, 0); }), "INFOdestroy 15\nACThandleaction 9 0\n");
        EXPECT_EQ(callsOf([] { action(4, 14); }), CREATE);
        EXPECT_EQ(callsOf([] { action(1, 3); }), "INFOdestroy 16\nACThandleaction 9 3\n");
        EXPECT_EQ(callsOf([] { action(1, 5); }), "INFOdestroy 16\nACThandleaction 9 5\nWquit 1\n");
    }});
}

}  // namespace
