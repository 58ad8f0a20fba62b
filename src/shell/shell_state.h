// All that the viewer holds for the whole run, in one record: the toolkit's objects, the picture and how it is shown,
// the host's data on their way in, the texts.
#pragma once

#include <cstdint>
#include <cstdio>

#include "geometry/zoom.h"
#include "hpgl/parser.h"
#include "platform/windows.h"
#include "render/display.h"
#include "shell/texts.h"

inline constexpr int32_t HPGL_LOG_NAME_SIZE = 64;

// What the data channel keeps between chunks.
struct HPGLIntake {
    bool open = false;
    char* scratch = nullptr;  // a reserve of the channel's that nothing reads
    char* scratchPosition = nullptr;
    bool transmissionBegun = false;  // set by the first begin chunk ever, never cleared
    bool colonPrefix = false;        // the begin chunk began with a colon: so may the others
    FILE* echo = nullptr;            // null: not open
    bool echoFailed = false;         // and that has been said
    FILE* pictureFile = nullptr;     // the file that the data named last
};

struct HPGLShell {
    HINSTANCE instance = nullptr;
    HINSTANCE previous = nullptr;

    // The toolkit's objects, one of each.
    WHandle app = 0;
    WHandle windowClass = 0;
    WHandle object = 0;  // the main object; its window is the container
    WHandle shell = 0;
    WHandle container = 0;
    WHandle actionBar = 0;
    WHandle helpLine = 0;
    WHandle helpName = 0;  // under which the help is registered
    WHandle help = 0;
    WHandle info = 0;  // the product information; kept when the panel has gone
    WHandle printSetup = 0;
    WHandle channel = 0;  // the host's data channel; 0: not open

    HPGLTexts texts;

    // The host's data.
    HPGLIntake intake;
    char echoName[HPGL_LOG_NAME_SIZE] = "";  // of the file that they are echoed into; empty: none
    bool InitialDataLoaded = false;  // after the first transmission: the main window paints and follows the mouse

    // The picture shown and its zoom stack, owned; null when there is none.
    ParseInt* parser = nullptr;
    ZoomData* zoom = nullptr;
    HPGLDisplay display;
    int32_t RotationSign = 1;  // -1 while the picture is turned by 180 degrees, which takes effect through SC alone
};

extern HPGLShell TheShell;
