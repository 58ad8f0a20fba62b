// A user's doings with a picture shown. Steering bytes: what is done, one byte each, and the positions and sizes of it.
#include "geometry/zoom.h"

#include "fuzz_target.h"
#include "shell/menus.h"
#include "shell/shell_state.h"
#include "shown_picture.h"

namespace {

constexpr int32_t MOST_PASSES = 8;  // paints and turns: all else takes no time

enum Doing : uint8_t { PRESS, RELEASE, DRAG, RESIZE, COMPLETE_PICTURE, LAST_ZOOM, TURN, PAINT, DOINGS };

void act(ShownPicture& picture, FuzzInput& input, int32_t& passesLeft) {
    const uint8_t doing = input.byte(0) % DOINGS;
    if (doing >= TURN && passesLeft-- <= 0) return;
    if (doing == TURN) return picture.menu(HPGL_MENU_ROTATE);
    if (doing == PAINT) return picture.paint();
    if (doing == COMPLETE_PICTURE) return picture.menu(HPGL_MENU_COMPLETE_PICTURE);
    if (doing == LAST_ZOOM) return picture.menu(HPGL_MENU_LAST_ZOOM);
    const int32_t x = input.pixels(0);
    const int32_t y = input.pixels(0);
    if (doing == RESIZE) return picture.resize(x, y);
    picture.mouse(doing, x, y);
}

void checkStack() {
    void* data = nullptr;
    require(HPGLgotoFirst(TheShell.zoom->ZoomStack), "the stack is never empty");
    while (HPGLgetNextListData(TheShell.zoom->ZoomStack, &data, nullptr, nullptr)) {
        const auto* view = static_cast<const ZoomRect*>(data);
        require(view->MinX < view->MaxX && view->MinY < view->MaxY, "a zoom's view has an extent");
    }
    ZoomRect top = {};
    HPGLgetZoomRect(TheShell.zoom, &top.MinX, &top.MinY, &top.MaxX, &top.MaxY);
    require(TheShell.display.MaxX == top.MaxX && TheShell.display.MaxY == top.MaxY, "the top is the view");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzInput input(data, size);
    ShownPicture picture(input.text(), 500, 500);
    for (int32_t passesLeft = MOST_PASSES; input.steered();) {
        act(picture, input, passesLeft);
        checkStack();
    }
    return 0;
}
