// Making sure that the toolkit in memory is the one the viewer was built for, and initialising it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "toolkit/w.h"

enum HPGLVersionResult : int32_t {
    HPGL_VERSION_OK = 0,
    HPGL_TOOLKIT_NOT_FOUND = 1,
    HPGL_TOOLKIT_NOT_LOADED = 2,
    HPGL_NO_VERSION_ENTRY = 3,
    HPGL_WRONG_VERSION = 4,
};

inline constexpr uint32_t HPGL_NOTIFY_MESSAGE = 1537;  // to the window that is told of a bad end
inline constexpr uint32_t HPGL_WRONG_TOOLKIT_EXIT = 111;

// What the viewer itself takes from its command line: "-I=" and "-P=", either case, and at least one more character.
struct HPGLNotification {
    int32_t id;      // of the notification
    int64_t window;  // the window to notify
};
HPGLNotification HPGLreadNotification(int32_t count, char* const* values);

// HPGL_VERSION_OK, or what is wrong, said in `message`, which holds `size` characters with the terminator.
int32_t HPGLcheckToolkitVersion(char* message, size_t size);

// Checks the version, which may end the process, and initialises the toolkit. Its application handle, 0 on failure.
WHandle HPGLinitToolkit(int32_t count, char** values);

// Called by the toolkit when it ends the application: with a status other than 0, tells the notification window and
// ends the process with it.
void cbexit(WHandle app, int32_t status);
