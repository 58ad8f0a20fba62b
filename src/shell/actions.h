// The user's commands.
#pragma once

#include <cstdint>

enum HPGLMenuItem : uint32_t {
    HPGL_MENU_EXIT = 7,
    HPGL_MENU_CANCEL = 8,
    HPGL_MENU_COMPLETE_PICTURE = 9,
    HPGL_MENU_LAST_ZOOM = 10,
    HPGL_MENU_ROTATE = 11,
    HPGL_MENU_BACK = 12,
};

// Carries a menu item out; kind is the action message's first parameter. Without a picture zoom and rotation do
// nothing.
void HPGLmenuAction(uint32_t kind, uint32_t item);
