// What the user can have done by a key, a menu or the mouse alike.
#pragma once

#include <QString>
#include <cstdint>

namespace qrvel {

enum Command : uint32_t {
    // Items of the viewer's action bar, by their actions.
    PRINT = 5,
    EXIT = 7,
    COMPLETE_PICTURE = 9,
    LAST_ZOOM = 10,
    ROTATE = 11,

    // What the toolkit does by itself.
    PAGE_BEFORE = 0x10000,
    PAGE_AFTER,
    FILE_BEFORE,
    FILE_AFTER,
    OPEN_FILE,
    READ_AGAIN,
    GO_FORWARD,
    FULL_SCREEN,
    MENU_BAR,
    COPY_PICTURE,
};

void carryOut(uint32_t command);

// As it stands in a menu, '&' before its letter.
QString commandText(uint32_t command);

}  // namespace qrvel
