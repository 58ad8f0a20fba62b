// A picture parsed, set up, fitted into a window and painted, as it is and turned. Steering bytes: the window's size,
// whether a trace is on.
#include <optional>

#include "fuzz_target.h"
#include "shell/menus.h"
#include "shown_picture.h"
#include "trace_into_nothing.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzInput input(data, size);
    const int32_t width = input.pixels(500);
    const int32_t height = input.pixels(500);
    ShownPicture picture(input.text(), width, height);
    std::optional<TraceIntoNothing> trace;
    if (input.byte(0) % 2 == 1) trace.emplace();
    picture.paint();
    picture.menu(HPGL_MENU_ROTATE);
    picture.paint();
    return 0;
}
