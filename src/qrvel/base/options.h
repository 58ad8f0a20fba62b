// The toolkit's own options, out of the process's true argument vector.
#pragma once

#include <QByteArrayList>
#include <QString>
#include <cstdint>

#include "qrvel/base/paper.h"

namespace qrvel {

inline constexpr char STANDARD_INPUT[] = "-";

struct Options {
    QByteArrayList sources;      // file names as their bytes, STANDARD_INPUT among them, in the order given
    bool pipedIn = false;        // no source is named, but there is a pipe or a file on standard input
    bool frames = false;         // standard input carries frames, answers go to standard output
    QByteArray channelName;      // under which hosts find the viewer; empty: they do not
    int channelDescriptor = -1;  // a connection to a host that was handed over
    bool watch = false;          // files are read again when they change
    bool asIs = false;           // files do not go through the plotter
    int page = 0;                // of each file the one that is shown or printed, from 1; 0: none was named
    QByteArray picture;          // --picture: the PNG to write instead of showing a window; empty for none
    int32_t pictureWidth = 500;  // pixels, as large as the window's first size
    int32_t pictureHeight = 500;
    bool sizeGiven = false;
    QByteArray printTo;  // --print-to: the file, or a pattern for the names of several; empty for none
    Paper paper;         // of such files
    bool paperGiven = false;
    bool landscape = false;
    int dpi = 300;
    uint32_t notifyId = 0;       // -I=
    uintptr_t notifyWindow = 0;  // -P=
};

// Reads the options. --help and --version print and end the process with 0, wrong options with 2 and a line.
Options readOptions();

}  // namespace qrvel
