#include "shell/menus.h"

#include "shell/shell_state.h"
#include "toolkit/actbar.h"
#include "toolkit/shl.h"

namespace {

// In the order of the texts, which the toolkit fills in.
// clang-format off
ACTBARRow rows[] = {
    // text   pull-down  position  reserved  action                       enabled  class
    {nullptr, 0,         1,        0,        HPGL_MENU_GRAPHIC,             1,       'M'},
    {nullptr, 0,         2,        0,        HPGL_MENU_EDIT,                1,       'M'},
    {nullptr, 0,         3,        0,        HPGL_MENU_GOTO,                1,       'M'},
    {nullptr, 0,         4,        0,        HPGL_MENU_SETTINGS,            1,       'M'},
    {nullptr, 0,         5,        0,        HPGL_MENU_HELP,                1,       'L'},
    {nullptr, 1,         0,        0,        HPGL_MENU_PRINT,               1,       'M'},
    {nullptr, 1,         0,        0,        HPGL_MENU_SAVE,                0,       'M'},
    {nullptr, 1,         0,        0,        HPGL_MENU_EXIT,                1,       'M'},
    {nullptr, 2,         0,        0,        HPGL_MENU_CANCEL,              1,       'M'},
    {nullptr, 3,         0,        0,        HPGL_MENU_BACK,                1,       'M'},
    {nullptr, 4,         0,        0,        HPGL_MENU_COMPLETE_PICTURE,    1,       'M'},
    {nullptr, 4,         0,        0,        HPGL_MENU_LAST_ZOOM,           1,       'M'},
    {nullptr, 4,         0,        0,        HPGL_MENU_ROTATE,              1,       'M'},
    {nullptr, 5,         0,        0,        HPGL_MENU_HELP_TOPIC,          0,       'L'},
    {nullptr, 5,         0,        0,        HPGL_MENU_HELP_TOPIC,          0,       'L'},
    {nullptr, 5,         0,        0,        HPGL_MENU_HELP_TOPIC,          0,       'L'},
    {nullptr, 5,         0,        0,        HPGL_MENU_HELP_TOPIC,          0,       'L'},
    {nullptr, 5,         0,        0,        HPGL_MENU_PRODUCT_INFORMATION, 1,       'L'},
};
// clang-format on

constexpr int32_t ROWS = sizeof rows / sizeof rows[0];
static_assert(ROWS == HPGL_ACTION_BAR_TEXTS);

}  // namespace

WHandle HPGLcreateActionBar(WHandle shell, WHandle object) {
    const WHandle bar = ACTBARcreate(SHLquerywid(shell, SHL_ACTION_BAR), object, rows, ROWS);
    ACTBARsetmp1(bar, W_ACTION_MENU, W_ACTION_MENU_HELP, W_ACTION_MENU_SPARE, 0);
    ACTBARset(bar, object, TheShell.texts.actionBar);
    ACTBARreset(bar);
    return bar;
}

void HPGLrefreshActionBar(WHandle bar, WHandle shell, WHandle object) {
    if (ACTBARchanges(bar, shell, object, TheShell.texts.actionBar) != 0) {
        ACTBARset(bar, object, TheShell.texts.actionBar);
        SHLupdatesizes(shell);
    }
    ACTBARsetflag(bar, 1, 4, 4);
}
