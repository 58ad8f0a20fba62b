#include "shell/function_keys.h"

#include "shell/shell_state.h"
#include "toolkit/helpl.h"
#include "toolkit/shl.h"

namespace {

constexpr uint32_t FUNCTION_KEY = 2;
constexpr int32_t BUTTONS = HPGL_HELP_LINE_TEXTS;

// Three lists that belong together position by position. The texts are another list, in the order of the keys' numbers.
constexpr HELPLKey KEYS[BUTTONS] = {
    {FUNCTION_KEY, 1}, {FUNCTION_KEY, 15}, {FUNCTION_KEY, 11}, {FUNCTION_KEY, 3}, {FUNCTION_KEY, 12}};
constexpr HELPLButton LINE[BUTTONS] = {{"1", "1"}, {"1", "2"}, {"0", "3"}, {"1", "4"}, {"1", "5"}};
constexpr const char* ARGUMENTS[BUTTONS] = {"2", "3", "0", "4", "1"};  // of the actions: what HPGLuserAction reads

}  // namespace

WHandle HPGLcreateHelpLine(WHandle shell, WHandle object) {
    const WHandle helpLine = HELPLcreate(shell, SHLquerywid(shell, SHL_HELP_LINE), 0, 1);
    HELPLinit(helpLine, 0, TheShell.texts.helpLine, KEYS, LINE, BUTTONS);
    HELPLset_buttons(helpLine, 0);
    HELPLmake_hlpl(helpLine, object, 0);
    for (int32_t i = 0; i < BUTTONS; ++i) {
        ACTappend(helpLine, 0, "M", LINE[i].number, ARGUMENTS[i]);
    }
    return helpLine;
}
