// hpgldump: what the viewer makes of a file. Runs the whole viewer, from its entry to its end, on a toolkit that writes
// everything down, and prints compact code, picture and output calls as text.

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hpgldump_options.h"
#include "hpgldump_sections.h"
#include "platform/winmain.h"
#include "plotter/plotter.h"
#include "recorder/recorder.h"
#include "shell/main_window.h"
#include "shell/menus.h"
#include "shell/shell_state.h"
#include "system/shown_text.h"
#include "system/standard_streams.h"

namespace {

enum ExitStatus : int { EXIT_DUMPED = 0, EXIT_UNREADABLE = 1, EXIT_USAGE = 2 };

bool readFile(const std::string& name, std::string* bytes) {
    FILE* file = std::fopen(name.c_str(), "rb");
    if (file == nullptr) return false;
    char buffer[65536];
    for (size_t n = 0; (n = std::fread(buffer, 1, sizeof buffer, file)) > 0;) {
        bytes->append(buffer, n);
    }
    const bool whole = std::ferror(file) == 0;
    std::fclose(file);
    return whole;
}

// One transmission: the first piece begins it, an empty one ends it.
void sendPicture(std::string_view bytes, size_t chunk) {
    uint32_t kind = WD_CHUNK_BEGIN;
    do {
        const std::string_view piece = bytes.substr(0, chunk);
        recorder::sendChunk(piece, kind);
        bytes.remove_prefix(piece.size());
        kind = WD_CHUNK_FURTHER;
    } while (!bytes.empty());
    recorder::sendChunk({}, WD_CHUNK_END);
}

void rotate(int32_t times) {
    for (int32_t i = 0; i < times; ++i) {
        recorder::deliver(TheShell.object, W_MSG_ACTION, W_ACTION_MENU, HPGL_MENU_ROTATE);
    }
}

void mouse(int32_t x, int32_t y, uint32_t button) {
    recorder::script.mouseX = x;
    recorder::script.mouseY = y;
    recorder::deliver(TheShell.object, W_MSG_MOUSE, button);
}

void zoom(const std::vector<DumpZoom>& zooms) {
    for (const DumpZoom& drag : zooms) {
        mouse(drag.x1, drag.y1, W_MOUSE_PRESS);
        mouse(drag.x2, drag.y2, W_MOUSE_RELEASE);
    }
}

void dumpCalls() {
    dumpScaling(stdout);
    recorder::recording = true;
    recorder::drawingSink = [](std::string_view line) { std::fwrite(line.data(), 1, line.size(), stdout); };
    recorder::deliver(TheShell.display.Window, W_MSG_PAINT);
    recorder::drawingSink = nullptr;
    recorder::recording = false;
}

void dump(const DumpOptions& options) {
    rotate(options.rotations);
    zoom(options.zooms);
    if (options.hex) dumpHex(stdout);
    if (options.picture) dumpPicture(stdout);
    if (options.calls) dumpCalls();
    if (options.records) dumpRecords(stdout);
}

int runViewer(const DumpOptions& options, const std::string& bytes) {
    recorder::reset();
    recorder::recording = false;
    recorder::script.width = options.width;
    recorder::script.height = options.height;
    // Between the two the loop delivers the size message of the window's first show.
    recorder::script.turns.emplace_back([&] { sendPicture(bytes, static_cast<size_t>(options.chunk)); });
    recorder::script.turns.emplace_back([&] { dump(options); });
    std::string commandLine;
    return WinMain(nullptr, nullptr, commandLine.data(), 0);
}

// Puts a page of a file in the place of its bytes, unless they are plain and it is the only one. Answers how many pages
// there are.
std::size_t plot(std::string* bytes, int32_t page) {
    if (plotter::isPlain(*bytes)) return 1;
    const auto goOn = [](std::size_t /*bytesDone*/) { return true; };
    const plotter::Survey survey = plotter::survey(*bytes, goOn);
    std::string plain;
    const auto append = [&](std::string_view piece) {
        plain += piece;
        return true;
    };
    plotter::write(*bytes, survey, static_cast<std::size_t>(page) - 1, append, goOn);
    *bytes = std::move(plain);
    return survey.pages.size();
}

}  // namespace

int main(int argc, char** argv) {
    kelsystem::holdStandardStreams();
    DumpOptions options;
    const std::string problem = parseDumpOptions(std::vector<std::string>(argv + 1, argv + argc), options);
    if (!problem.empty()) {
        std::fprintf(stderr, "hpgldump: %s\n%s", kelsystem::shownText(problem).c_str(), DUMP_USAGE);
        return EXIT_USAGE;
    }
    std::string bytes;
    if (!readFile(*options.file, &bytes)) {
        std::fprintf(stderr, "hpgldump: cannot read %s\n", kelsystem::shownText(*options.file).c_str());
        return EXIT_UNREADABLE;
    }
    const std::size_t pages = options.plotted ? plot(&bytes, options.page) : 1;
    if (static_cast<std::size_t>(options.page) > pages) {
        std::fprintf(stderr, "hpgldump: %s has no page %d, the last is %zu\n",
                     kelsystem::shownText(*options.file).c_str(), options.page, pages);
        return EXIT_UNREADABLE;
    }
    runViewer(options, bytes);
    return EXIT_DUMPED;
}
