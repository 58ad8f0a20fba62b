#include "shown_picture.h"

#include "fuzz_target.h"
#include "recorder/recorder.h"
#include "shell/main_window.h"
#include "shell/picture_setup.h"
#include "shell/shell_state.h"

namespace {

void checkLine(std::string_view line) {
    require(line.starts_with("OUT"), "an output call is named");
    require(line.find('\n') == line.size() - 1, "an output call is one line");
}

}  // namespace

ShownPicture::ShownPicture(std::string_view text, int32_t width, int32_t height) {
    recorder::recording = false;
    recorder::drawingSink = checkLine;
    parseText(text);
    HPGLsetupPicture(TheShell.parser, &TheShell.display, TheShell.RotationSign);
    const HPGLGlobal& global = *TheShell.parser->global;
    TheShell.zoom = HPGLinitZoom(global.MinX, global.MinY, global.MaxX, global.MaxY);
    TheShell.InitialDataLoaded = true;
    resize(width, height);
}

void ShownPicture::paint() {
    recorder::recording = true;
    MAINmsgproc(TheShell.display.Window, W_MSG_PAINT, 0, 0);
    recorder::recording = false;
    recorder::calls.clear();
}

void ShownPicture::resize(int32_t width, int32_t height) {
    recorder::script.width = width;
    recorder::script.height = height;
    MAINmsgproc(TheShell.object, W_MSG_SIZE, 0, 0);
}

void ShownPicture::mouse(uint32_t button, int32_t x, int32_t y) {
    recorder::script.mouseX = x;
    recorder::script.mouseY = y;
    MAINmsgproc(TheShell.object, W_MSG_MOUSE, button, 0);
}

void ShownPicture::menu(uint32_t item) {
    MAINmsgproc(TheShell.object, W_MSG_ACTION, W_ACTION_MENU, item);
}
