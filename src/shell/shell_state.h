// What the shell holds for the whole run: one of each of the toolkit's objects, and the flags of the host's data.
#pragma once

#include <windows.h>

#include <cstdint>

#include "w.h"

inline constexpr int32_t HPGL_LOG_NAME_SIZE = 64;

struct HPGLShell {
    HINSTANCE instance;
    HINSTANCE previous;
    WHandle app;
    WHandle windowClass;
    WHandle object;  // the main object; its window is the container
    WHandle shell;
    WHandle container;
    WHandle actionBar;
    WHandle helpLine;
    WHandle helpName;  // under which the help is registered
    WHandle help;
    WHandle info;  // the product information; kept when the panel has gone
    WHandle printSetup;
    WHandle channel;                    // the host's data channel; 0: not open
    char echoName[HPGL_LOG_NAME_SIZE];  // of the file that the host's data is echoed into; empty: none
};

extern HPGLShell TheShell;

// False until the first transmission has been processed: the main window paints and follows the mouse only then.
extern bool InitialDataLoaded;
