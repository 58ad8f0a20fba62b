// The message loop: what becomes of each message.
#include "shell/main_loop.h"

#include <gtest/gtest.h>

#include "picture_text.h"
#include "recorder/recorder.h"
#include "rows.h"
#include "toolkit/wi.h"

namespace {

using recorder::calls;
using recorder::script;

WState* state() {
    return static_cast<WState*>(WIgetvar(1, 0));
}

constexpr UINT NO_MESSAGE = 0;

// Which windows the variables record names, and which accelerators take the message.
enum Windows : uint8_t { NONE = 0, MAIN = 1, MDI = 2, BOTH = MAIN | MDI };
enum Taker : uint8_t { NOBODY, SYSTEM_KEYS, MAIN_KEYS };

struct LoopRow : NamedRow {
    UINT message;
    Windows windows;
    Taker taker;
    bool hotKey;        // Wwntranshotkey consumes it
    bool blocked;       // keyboard input
    const char* calls;  // between two GetMessageA; the message's window is 77
};

#define TRANSLATE(id) "TranslateMessage 77 " #id " 65 1\n"
#define SYSTEM(id) "TranslateMDISysAccel 8193 77 " #id " 65 1\n"
#define ACCELERATOR(id) "WIwnquerymdiaccel\nTranslateAcceleratorA 8192 8194 77 " #id " 65 1\n"
#define HOT_KEY(id) "Wwntranshotkey 77 " #id " 65 1 " #id "\n"
#define TOOL_TIP(id) "WTTIwnmousemsg 77 " #id "\n"
#define DISPATCH(id) "DispatchMessageA 77 " #id " 65 1\n"

// clang-format off
constexpr LoopRow LOOP_ROWS[] = {
    {"KeyDown",                         256, NONE, NOBODY,      false, false, TRANSLATE(256) HOT_KEY(256) TOOL_TIP(256) DISPATCH(256)},
    {"KeyUp",                           257, NONE, NOBODY,      false, false, DISPATCH(257)},
    {"Character",                       258, NONE, NOBODY,      false, false, HOT_KEY(258) DISPATCH(258)},
    {"DeadCharacter",                   259, NONE, NOBODY,      false, false, DISPATCH(259)},
    {"SystemKeyDown",                   260, NONE, NOBODY,      false, false, TRANSLATE(260) TOOL_TIP(260) DISPATCH(260)},
    {"SystemKeyUp",                     261, NONE, NOBODY,      false, false, DISPATCH(261)},
    {"SystemCharacter",                 262, NONE, NOBODY,      false, false, HOT_KEY(262) DISPATCH(262)},
    {"KeyDownMdi",                      256, BOTH, NOBODY,      false, false, SYSTEM(256) ACCELERATOR(256) TRANSLATE(256) HOT_KEY(256) TOOL_TIP(256) DISPATCH(256)},
    {"SystemKeyDownMdi",                260, BOTH, NOBODY,      false, false, SYSTEM(260) ACCELERATOR(260) TRANSLATE(260) TOOL_TIP(260) DISPATCH(260)},
    {"AcceleratorGoesOn",               256, BOTH, MAIN_KEYS,   false, false, SYSTEM(256) ACCELERATOR(256) HOT_KEY(256) TOOL_TIP(256) DISPATCH(256)},
    {"KeyDownMainOnly",                 256, MAIN, MAIN_KEYS,   false, false, TRANSLATE(256) HOT_KEY(256) TOOL_TIP(256) DISPATCH(256)},
    {"KeyDownMdiOnly",                  256, MDI,  MAIN_KEYS,   false, false, SYSTEM(256) TRANSLATE(256) HOT_KEY(256) TOOL_TIP(256) DISPATCH(256)},
    {"SystemKeyDownMdiOnly",            260, MDI,  NOBODY,      false, false, SYSTEM(260) TRANSLATE(260) TOOL_TIP(260) DISPATCH(260)},
    {"KeyUpMdi",                        257, BOTH, MAIN_KEYS,   false, false, DISPATCH(257)},
    {"SystemAccelerator",               256, BOTH, SYSTEM_KEYS, false, false, SYSTEM(256) HOT_KEY(256) TOOL_TIP(256) DISPATCH(256)},
    {"SystemAcceleratorMdiOnly",        260, MDI,  SYSTEM_KEYS, false, false, SYSTEM(260) TOOL_TIP(260) DISPATCH(260)},
    {"SystemKeyAccelerator",            260, BOTH, MAIN_KEYS,   false, false, SYSTEM(260) ACCELERATOR(260) TOOL_TIP(260) DISPATCH(260)},
    {"AcceleratorAndHotKey",            256, BOTH, MAIN_KEYS,   true,  false, SYSTEM(256) ACCELERATOR(256) HOT_KEY(256) TOOL_TIP(256)},
    {"CharacterMdi",                    258, BOTH, MAIN_KEYS,   false, false, HOT_KEY(258) DISPATCH(258)},
    {"HotKeyDown",                      256, NONE, NOBODY,      true,  false, TRANSLATE(256) HOT_KEY(256) TOOL_TIP(256)},
    {"HotCharacter",                    258, NONE, NOBODY,      true,  false, HOT_KEY(258)},
    {"HotSystemCharacter",              262, NONE, NOBODY,      true,  false, HOT_KEY(262)},
    {"SystemKeyIsNoHotKey",             260, NONE, NOBODY,      true,  false, TRANSLATE(260) TOOL_TIP(260) DISPATCH(260)},
    {"KeyUpIsNoHotKey",                 257, NONE, NOBODY,      true,  false, DISPATCH(257)},
    {"DeadIsNoHotKey",                  259, NONE, NOBODY,      true,  false, DISPATCH(259)},
    {"MouseIsNoHotKey",                 513, NONE, NOBODY,      true,  false, TOOL_TIP(513) DISPATCH(513)},
    {"BlockedFirst",                    256, BOTH, MAIN_KEYS,   true,  true,  DISPATCH(0)},
    {"BlockedCharacter",                258, NONE, NOBODY,      true,  true,  DISPATCH(0)},
    {"BlockedLast",                     265, NONE, NOBODY,      false, true,  DISPATCH(0)},
    {"BlockedBehindKeys",               266, NONE, NOBODY,      false, true,  DISPATCH(266)},
    {"BlockedBeforeKeys",               255, NONE, NOBODY,      false, true,  DISPATCH(255)},
    {"BlockedNull",              NO_MESSAGE, NONE, NOBODY,      true,  true,  DISPATCH(0)},
    {"BlockedMouse",                    512, NONE, NOBODY,      false, true,  TOOL_TIP(512) DISPATCH(512)},
    {"FirstMouse",                      512, NONE, NOBODY,      false, false, TOOL_TIP(512) DISPATCH(512)},
    {"LastMouse",                       526, NONE, NOBODY,      false, false, TOOL_TIP(526) DISPATCH(526)},
    {"BehindMouse",                     527, NONE, NOBODY,      false, false, DISPATCH(527)},
    {"BeforeMouse",                     511, NONE, NOBODY,      false, false, DISPATCH(511)},
    {"Other",                            15, BOTH, NOBODY,      false, false, DISPATCH(15)},
    {"Null",                     NO_MESSAGE, BOTH, MAIN_KEYS,   true,  false, DISPATCH(0)},
};
// clang-format on

// The calls of one message.
std::string callsOfMessage(UINT id) {
    const std::string get = "GetMessageA 0 0 0\n";
    script.messages = {{reinterpret_cast<HWND>(77), id, 65, 1, 0, {0, 0}}};
    calls.clear();
    HPGLrunMainLoop(1);
    const size_t first = calls.find(get) + get.size();
    return calls.substr(first, calls.find(get, first) - first);
}

class Loop : public testing::TestWithParam<LoopRow> {
  protected:
    // The calls of the row's message.
    static std::string callsOfOne() {
        const LoopRow& row = GetParam();
        nameWindows(row.windows);
        if (row.taker == SYSTEM_KEYS) script.systemAccelerators = {row.message};
        if (row.taker == MAIN_KEYS) script.accelerators = {row.message};
        if (row.hotKey) script.hotKeys = {row.message};
        state()->inputBlocked = row.blocked ? 1 : 0;
        return callsOfMessage(row.message);
    }
    FreshViewer viewer;

  private:
    static void nameWindows(Windows windows) {
        auto* variables = static_cast<WVariables*>(WIgetvar(1, 1));
        if ((windows & MAIN) != 0) variables->mainWindow = reinterpret_cast<void*>(8192);
        if ((windows & MDI) != 0) variables->mdiClient = reinterpret_cast<void*>(8193);
    }
};

TEST_P(Loop, HandlesOneMessage) {
    EXPECT_EQ(callsOfOne(), GetParam().calls);
}

TEST_P(Loop, SendsWhatIsPending) {
    state()->messagesPending = 1;
    EXPECT_EQ(callsOfOne(), std::string(GetParam().calls) + "WIsendmsgs 1\n");
}

INSTANTIATE_TEST_SUITE_P(Rows, Loop, testing::ValuesIn(LOOP_ROWS), byRowName);

TEST(LoopInput, IsBlockedForTheKeyboardAlone) {
    const FreshViewer viewer;
    state()->inputBlocked = 1;
    for (UINT id = 250; id <= 270; ++id) {
        const bool keyboard = id >= 256 && id <= 265;
        const std::string dispatched = "DispatchMessageA 77 " + std::to_string(keyboard ? 0 : id) + " 65 1\n";
        EXPECT_EQ(callsOfMessage(id), dispatched);
    }
}

TEST(LoopInput, ToolTipsFollowTheMouseAndTheKeys) {
    const FreshViewer viewer;
    for (UINT id = 1; id <= 600; ++id) {
        const bool followed = (id >= 512 && id <= 526) || id == 256 || id == 260;
        const std::string toolTip = "WTTIwnmousemsg 77 " + std::to_string(id) + "\n";
        EXPECT_EQ(callsOfMessage(id).find(toolTip) != std::string::npos, followed) << id;
    }
}

TEST(LoopInput, IsBlockedFromTheNextMessageOn) {
    const FreshViewer viewer;
    script.turns.emplace_back([] {
        state()->inputBlocked = 1;
        script.messages = {{reinterpret_cast<HWND>(77), 256, 65, 1, 0, {0, 0}}};
    });
    HPGLrunMainLoop(1);
    EXPECT_EQ(calls.find("TranslateMessage"), std::string::npos);
    EXPECT_NE(calls.find("DispatchMessageA 77 0 65 1\n"), std::string::npos);
}

TEST(LoopEnd, ReadsTheRecordsOnceAndSaysGoodbye) {
    const FreshViewer viewer;
    HPGLrunMainLoop(1);
    EXPECT_EQ(calls,
              "WIgetvar 1 0\nWIgetvar 1 1\nGetMessageA 0 0 0\n"
              "Wtrace 1 \">>> leaving main loop: W.quit = 0\\n\"\n");
}

TEST(LoopEnd, QuitFlagEndsItAtTheNextTurn) {
    const FreshViewer viewer;
    script.turns.emplace_back([] { Wquit(1); });
    script.turns.emplace_back([] { ADD_FAILURE(); });
    HPGLrunMainLoop(1);
    EXPECT_TRUE(
        calls.ends_with("Wquit 1\nDispatchMessageA 0 0 0 0\nWtrace 1 \">>> leaving main loop: W.quit = 1\\n\"\n"))
        << calls;
}

TEST(LoopEnd, LastMessageIsNoMessage) {
    const FreshViewer viewer;
    state()->messagesPending = 1;
    script.messages = {{nullptr, WM_QUIT, 0, 0, 0, {0, 0}}};
    script.turns.emplace_back([] { ADD_FAILURE(); });
    calls.clear();
    HPGLrunMainLoop(1);
    EXPECT_TRUE(calls.ends_with("GetMessageA 0 0 0\nWtrace 1 \">>> leaving main loop: W.quit = 0\\n\"\n")) << calls;
}

TEST(LoopEnd, WithoutRecordsThereIsNoLoop) {
    const FreshViewer viewer;
    script.failing = {"WIgetvar"};
    script.turns.emplace_back([] { ADD_FAILURE(); });
    HPGLrunMainLoop(1);
    EXPECT_EQ(calls, "WIgetvar 1 0\nWIgetvar 1 1\n");
}

TEST(LoopEnd, QuitFlagBeforeItsFirstTurn) {
    const FreshViewer viewer;
    state()->quit = 1;
    calls.clear();
    HPGLrunMainLoop(1);
    EXPECT_EQ(calls, "WIgetvar 1 0\nWIgetvar 1 1\nWtrace 1 \">>> leaving main loop: W.quit = 1\\n\"\n");
}

}  // namespace
