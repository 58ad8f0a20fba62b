// The message loop: what becomes of each message.
#include "main_loop.h"

#include <gtest/gtest.h>

#include "picture_text.h"
#include "recorder.h"
#include "rows.h"
#include "wi.h"

namespace {

using recorder::calls;
using recorder::script;

WState* state() {
    return static_cast<WState*>(WIgetvar(1, 0));
}

constexpr UINT NO_MESSAGE = 0;

struct LoopRow : NamedRow {
    UINT message;
    bool mdi;           // a main window and an MDI client are there
    bool taken;         // by an accelerator
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
    {"KeyDown",              256, false, false, false, false, TRANSLATE(256) HOT_KEY(256) TOOL_TIP(256) DISPATCH(256)},
    {"KeyUp",                257, false, false, false, false, DISPATCH(257)},
    {"Character",            258, false, false, false, false, HOT_KEY(258) DISPATCH(258)},
    {"DeadCharacter",        259, false, false, false, false, DISPATCH(259)},
    {"SystemKeyDown",        260, false, false, false, false, TRANSLATE(260) TOOL_TIP(260) DISPATCH(260)},
    {"SystemKeyUp",          261, false, false, false, false, DISPATCH(261)},
    {"SystemCharacter",      262, false, false, false, false, HOT_KEY(262) DISPATCH(262)},
    {"KeyDownMdi",           256, true,  false, false, false, SYSTEM(256) ACCELERATOR(256) TRANSLATE(256) HOT_KEY(256) TOOL_TIP(256) DISPATCH(256)},
    {"SystemKeyDownMdi",     260, true,  false, false, false, SYSTEM(260) ACCELERATOR(260) TRANSLATE(260) TOOL_TIP(260) DISPATCH(260)},
    {"AcceleratorGoesOn",    256, true,  true,  false, false, SYSTEM(256) ACCELERATOR(256) HOT_KEY(256) TOOL_TIP(256) DISPATCH(256)},
    {"CharacterMdi",         258, true,  true,  false, false, HOT_KEY(258) DISPATCH(258)},
    {"HotKeyDown",           256, false, false, true,  false, TRANSLATE(256) HOT_KEY(256) TOOL_TIP(256)},
    {"HotCharacter",         258, false, false, true,  false, HOT_KEY(258)},
    {"HotSystemCharacter",   262, false, false, true,  false, HOT_KEY(262)},
    {"SystemKeyIsNoHotKey",  260, false, false, true,  false, TRANSLATE(260) TOOL_TIP(260) DISPATCH(260)},
    {"BlockedFirst",         256, true,  true,  true,  true,  DISPATCH(0)},
    {"BlockedCharacter",     258, false, false, true,  true,  DISPATCH(0)},
    {"BlockedLast",          265, false, false, false, true,  DISPATCH(0)},
    {"BlockedBehindKeys",    266, false, false, false, true,  DISPATCH(266)},
    {"BlockedBeforeKeys",    255, false, false, false, true,  DISPATCH(255)},
    {"BlockedMouse",         512, false, false, false, true,  TOOL_TIP(512) DISPATCH(512)},
    {"FirstMouse",           512, false, false, false, false, TOOL_TIP(512) DISPATCH(512)},
    {"LastMouse",            526, false, false, false, false, TOOL_TIP(526) DISPATCH(526)},
    {"BehindMouse",          527, false, false, false, false, DISPATCH(527)},
    {"BeforeMouse",          511, false, false, false, false, DISPATCH(511)},
    {"Other",                 15, true,  false, false, false, DISPATCH(15)},
    {"Null",          NO_MESSAGE, true,  true,  true,  false, DISPATCH(0)},
};
// clang-format on

class Loop : public testing::TestWithParam<LoopRow> {
  protected:
    // The calls of one message.
    static std::string callsOfOne() {
        const LoopRow& row = GetParam();
        script.messages = {{reinterpret_cast<HWND>(77), row.message, 65, 1, 0, {0, 0}}};
        script.mdiClient = row.mdi;
        if (row.taken) script.accelerators = {row.message};
        if (row.hotKey) script.hotKeys = {row.message};
        state()->inputBlocked = row.blocked ? 1 : 0;
        calls.clear();
        HPGLrunMainLoop(1);
        const std::string get = "GetMessageA 0 0 0\n";
        const size_t first = calls.find(get) + get.size();
        return calls.substr(first, calls.find(get, first) - first);
    }
    FreshViewer viewer;
};

TEST_P(Loop, HandlesOneMessage) {
    EXPECT_EQ(callsOfOne(), GetParam().calls);
}

TEST_P(Loop, SendsWhatIsPending) {
    state()->messagesPending = 1;
    EXPECT_EQ(callsOfOne(), std::string(GetParam().calls) + "WIsendmsgs 1\n");
}

INSTANTIATE_TEST_SUITE_P(Rows, Loop, testing::ValuesIn(LOOP_ROWS), byRowName);

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

TEST(LoopEnd, QuitFlagBeforeItsFirstTurn) {
    const FreshViewer viewer;
    state()->quit = 1;
    calls.clear();
    HPGLrunMainLoop(1);
    EXPECT_EQ(calls, "WIgetvar 1 0\nWIgetvar 1 1\nWtrace 1 \">>> leaving main loop: W.quit = 1\\n\"\n");
}

}  // namespace
