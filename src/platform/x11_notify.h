// Windows of other processes, by their number in the X server that DISPLAY names, and what its window manager says.
//
// Each call makes a connection of its own: it is needed before there is an application and where the application is
// not on X11, and only a few times in a process's life. None waits longer than two seconds for the server.
#pragma once

#include <cstdint>
#include <optional>

namespace x11 {

// True when the server answers.
bool isReachable();

bool isWindow(uint64_t window);

// Sends a ClientMessage of type KEL_MESSAGE, format 32: message, first, second, 0, 0. False when it was not sent.
bool postMessage(uint64_t window, uint32_t message, uint32_t first, uint32_t second);

// What the window manager puts around an ordinary window, in the server's pixels.
struct WindowFrame {
    int left, right, top, bottom;
};

// Asked before a window is shown; nothing when there is no window manager or it does not say.
std::optional<WindowFrame> windowFrame();

}  // namespace x11
