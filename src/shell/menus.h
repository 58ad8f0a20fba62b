// The action bar: five pull-downs and what they offer.
#pragma once

#include <cstdint>

#include "toolkit/w.h"

// Ids that the action message of a menu item carries.
enum HPGLMenuItem : uint32_t {
    HPGL_MENU_GRAPHIC = 0,
    HPGL_MENU_EDIT = 1,
    HPGL_MENU_GOTO = 2,
    HPGL_MENU_SETTINGS = 3,
    HPGL_MENU_HELP = 4,
    HPGL_MENU_PRINT = 5,
    HPGL_MENU_SAVE = 6,
    HPGL_MENU_EXIT = 7,
    HPGL_MENU_CANCEL = 8,
    HPGL_MENU_COMPLETE_PICTURE = 9,
    HPGL_MENU_LAST_ZOOM = 10,
    HPGL_MENU_ROTATE = 11,
    HPGL_MENU_BACK = 12,
    HPGL_MENU_HELP_TOPIC = 13,  // the four items that are not offered
    HPGL_MENU_PRODUCT_INFORMATION = 14,
};

// Makes the bar in the shell, with its texts. Its actions go to `object`. Answers its handle, 0 on failure.
WHandle HPGLcreateActionBar(WHandle shell, WHandle object);

// Brings the bar up to date after new data.
void HPGLrefreshActionBar(WHandle bar, WHandle shell, WHandle object);
