#include "shell/intake.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

#include "geometry/zoom.h"
#include "platform/log_file.h"
#include "platform/regular_file.h"
#include "shell/drawing_window.h"
#include "shell/menus.h"
#include "shell/picture_setup.h"
#include "shell/shell_state.h"
#include "toolkit/helpl.h"
#include "toolkit/shl.h"
#include "trace/trace.h"

namespace {

constexpr size_t SCRATCH_SIZE = 512;
constexpr size_t FILE_PIECE = 8192;  // bytes of a file that are parsed at a time

// ---- one picture after the other ------------------------------------------------------------------------------------

void beginPicture() {
    HPGLreleaseColours(&TheShell.display);
    HPGLdestroyParser(TheShell.parser);
    TheShell.parser = HPGLinitParser();
    HPGLdestroyZoom(TheShell.zoom);
    TheShell.zoom = nullptr;
}

// One file an end chunk: a name that stands in the file waits for the next one, so that a file that names itself ends.
void takeNamedFile(HPGLGlobal* global) {
    if (global->fileName == nullptr) return;
    HPGLflushCompactCode(TheShell.parser);
    char* name = std::exchange(global->fileName, nullptr);  // the file may bring another, which frees this one
    readFromFile(TheShell.parser, name);
    if (global->fileName == nullptr) {
        global->fileName = name;
    } else {
        free(name);
    }
}

void finishPicture() {
    if (TheShell.parser == nullptr) return;
    HPGLGlobal* global = TheShell.parser->global;
    takeNamedFile(global);
    HPGLsetupPicture(TheShell.parser, &TheShell.display, TheShell.RotationSign);
    if (TheShell.zoom != nullptr) HPGLdestroyZoom(TheShell.zoom);  // of a transmission without a begin chunk
    TheShell.zoom = HPGLinitZoom(global->MinX, global->MinY, global->MaxX, global->MaxY);
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "HPGL-WDCeodata: %d %d %d %d\n", global->MinX, global->MinY, global->MaxX,
             global->MaxY);
}

void refreshBars() {
    HPGLrefreshActionBar(TheShell.actionBar, TheShell.shell, TheShell.object);
    HELPLmake_hlpl(TheShell.helpLine, TheShell.object, 0);
}

void showPicture() {
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "HPGL-WDCeodata: vor SHLsetpos\n");
    if (!TheShell.InitialDataLoaded) {
        SHLsetpos(TheShell.shell, 50, 50, 500, 500, SHL_SHOW);
    } else {
        KWMsize();
    }
    TheShell.InitialDataLoaded = true;
}

// ---- chunks ---------------------------------------------------------------------------------------------------------

struct Chunk {
    const char* data;
    uint64_t length;
};

bool beginsWithColon(const Chunk& chunk) {
    return chunk.length > 0 && chunk.data[0] == ':';
}

void stripColon(Chunk* chunk) {
    if (!TheShell.intake.colonPrefix || !beginsWithColon(*chunk)) return;
    ++chunk->data;
    --chunk->length;
}

void closeEcho() {
    if (TheShell.intake.echo != nullptr) fclose(TheShell.intake.echo);
    TheShell.intake.echo = nullptr;
}

void openEcho() {
    closeEcho();
    if (TheShell.echoName[0] == '\0') return;
    TheShell.intake.echo = openLogFile(TheShell.echoName);
    if (TheShell.intake.echo != nullptr || TheShell.intake.echoFailed) return;
    TheShell.intake.echoFailed = true;
    OutputDebugStringA("HPGL: the echo file cannot be written: ");
    OutputDebugStringA(TheShell.echoName);
    OutputDebugStringA("\n");
}

void echo(const Chunk& chunk) {
    if (TheShell.intake.echo == nullptr) return;
    for (uint64_t i = 0; i < chunk.length; ++i) {
        fprintf(TheShell.intake.echo, "%c", static_cast<signed char>(chunk.data[i]));
    }
    fflush(TheShell.intake.echo);
}

void parse(const Chunk& chunk) {
    if (TheShell.parser != nullptr) HPGLparseCode(TheShell.parser, chunk.data, static_cast<int64_t>(chunk.length));
}

void takeFurther(Chunk chunk) {
    stripColon(&chunk);
    echo(chunk);
    parse(chunk);
}

void takeBegin(const Chunk& chunk) {
    beginPicture();
    TheShell.intake.transmissionBegun = true;
    TheShell.intake.colonPrefix = beginsWithColon(chunk);
    openEcho();
    takeFurther(chunk);
}

void takeEnd(Chunk chunk) {
    // Deliberate: once a begin chunk has been seen, a sender that leaves it out adds to the picture before.
    if (!TheShell.intake.transmissionBegun) beginPicture();
    stripColon(&chunk);
    echo(chunk);
    refreshBars();
    parse(chunk);
    finishPicture();
    closeEcho();
    showPicture();
    TheShell.intake.colonPrefix = false;
}

// ---- files ----------------------------------------------------------------------------------------------------------

void keepOpen(FILE* file) {
    if (TheShell.intake.pictureFile != nullptr) fclose(TheShell.intake.pictureFile);
    TheShell.intake.pictureFile = file;
}

void traceShortRead(FILE* file) {
    if (feof(file) != 0) {
        TRCTraceInfo(HPGLTraceHandle, "HPGL readFromFile: end of file reached\n");
    } else {
        TRCTraceError(HPGLTraceHandle, "HPGL readFromFile: problems reading HPGLfile into buffer\n");
    }
}

void parseFile(ParseInt* parserContext, FILE* file, char* buffer) {
    do {
        const size_t bytes = fread(buffer, 1, FILE_PIECE, file);
        if (bytes < FILE_PIECE) traceShortRead(file);
        HPGLparseCode(parserContext, buffer, static_cast<int64_t>(bytes));
    } while (feof(file) == 0 && ferror(file) == 0);
}

}  // namespace

bool initTolk(WHandle app, char* wdbuff, uint32_t kind, WDCallback callback, uint32_t flag) {
    if (TheShell.intake.open) {
        TheShell.intake.scratchPosition = TheShell.intake.scratch;
        return true;
    }
    TheShell.channel = WDstdopen(app, wdbuff, kind, callback, flag);
    if (TheShell.channel == 0) return false;
    free(TheShell.intake.scratch);
    TheShell.intake.scratch = static_cast<char*>(malloc(SCRATCH_SIZE));
    if (TheShell.intake.scratch == nullptr) {
        TRCTraceError(HPGLTraceHandle, "initTolk: malloc: nicht genuegend Speicher\n");
        TRCTraceError(HPGLTraceHandle, "BytesToAllocate:  %ul\n", static_cast<unsigned>(SCRATCH_SIZE));
        return false;
    }
    TheShell.intake.open = false;  // deliberate: a second call opens the channel again
    TheShell.intake.scratchPosition = TheShell.intake.scratch;
    return true;
}

void closeTolk() {
    if (TheShell.channel != 0) WDstdclose(TheShell.channel);
    TheShell.channel = 0;
    free(TheShell.intake.scratch);
    closeEcho();
    keepOpen(nullptr);
    TheShell.intake = {};
}

void CallbackData(const char* data, uint64_t length, uint32_t kind) {
    switch (kind) {
        case WD_CHUNK_BEGIN:
            takeBegin({data, length});
            break;
        case WD_CHUNK_FURTHER:
            takeFurther({data, length});
            break;
        case WD_CHUNK_END:
            takeEnd({data, length});
            break;
        default:
            break;
    }
}

int32_t readFromFile(ParseInt* parserContext, const char* fileName) {
    FILE* file = openRegularFile(fileName);
    if (file == nullptr) {
        TRCTraceError(HPGLTraceHandle, "HPGL readFromFile: problems open %s\n", fileName);
        return 0;
    }
    keepOpen(file);
    auto* buffer = static_cast<char*>(malloc(FILE_PIECE + 1));
    if (buffer == nullptr) {
        TRCTraceError(HPGLTraceHandle, "HPGL readFromFile: problems allocating %d bytes for HPGLBuffer\n",
                      static_cast<int>(FILE_PIECE));
        return 0;
    }
    parseFile(parserContext, file, buffer);
    free(buffer);
    return 1;
}
