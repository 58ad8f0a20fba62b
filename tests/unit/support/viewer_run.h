// The whole viewer, from its entry to its end, with what the host and the user do in between.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "failing_allocator.h"
#include "picture_text.h"
#include "platform/winmain.h"
#include "recorder/recorder.h"
#include "scratch_folder.h"
#include "shell/shell_state.h"

using Turn = std::function<void()>;

class ViewerRun : public testing::Test {
  protected:
    ViewerRun() {
        TheShell = {};
        recorder::script.quiet = true;
    }

    // One run; each turn is a turn of the main loop. Answers the process's exit status.
    static int run(const std::vector<Turn>& turns, std::string commandLine = "") {
        recorder::script.turns.assign(turns.begin(), turns.end());
        return WinMain(nullptr, nullptr, commandLine.data(), 0);
    }

    // A transmission of one chunk and its end.
    static void send(std::string_view text) {
        recorder::sendChunk(text, WD_CHUNK_BEGIN);
        recorder::sendChunk({}, WD_CHUNK_END);
    }
    static void action(uint32_t kind, uint32_t item) { recorder::deliver(TheShell.object, W_MSG_ACTION, kind, item); }
    static void mouse(uint32_t button, int32_t x, int32_t y) {
        recorder::script.mouseX = x;
        recorder::script.mouseY = y;
        recorder::deliver(TheShell.object, W_MSG_MOUSE, button);
    }
    static void zoom() {
        mouse(0, 96, 96);
        mouse(1, 396, 296);
    }

    // The calls that `turn` makes.
    static std::string callsOf(const Turn& turn) {
        recorder::calls.clear();
        turn();
        return recorder::calls;
    }
    // The names of the calls so far, as far as they are among those named; one a line.
    static std::string namesAmong(const std::string& names) {
        std::istringstream wanted(names), lines(recorder::calls);
        std::set<std::string> among;
        std::string result;
        for (std::string name; std::getline(wanted, name);) {
            among.insert(name);
        }
        for (std::string line; std::getline(lines, line);) {
            const std::string name = line.substr(0, line.find(' '));
            if (among.contains(name)) result.append(name).append("\n");
        }
        return result;
    }

    // The lines of some calls but for those of the operations named.
    static std::string without(const std::set<std::string>& names, const std::string& calls) {
        std::istringstream lines(calls);
        std::string result;
        for (std::string line; std::getline(lines, line);) {
            if (!names.contains(line.substr(0, line.find(' ')))) result.append(line).append("\n");
        }
        return result;
    }

    FreshViewer viewer;
    ScratchFolder folder;
    failing_allocator::Guard guard;
};

// The same with a picture shown: a square of 0 to 4960 in 496 usable pixels, ten units a pixel.
class PictureRun : public ViewerRun {
  protected:
    static void withPicture(const Turn& turn) {
        run({[] { send("PD;PA0,0,4960,4960;"); }, turn});
    }
    // The rectangle shown.
    static std::string view() {
        ZoomRect rect = {};
        HPGLgetZoomRect(TheShell.zoom, &rect.MinX, &rect.MinY, &rect.MaxX, &rect.MaxY);
        return std::to_string(rect.MinX) + ' ' + std::to_string(rect.MinY) + ' ' + std::to_string(rect.MaxX) + ' ' +
               std::to_string(rect.MaxY);
    }
    static void paint(WHandle object) { recorder::deliver(object, W_MSG_PAINT); }
    static std::string paintCalls() {
        return withoutFonts(callsOf([] { paint(TheShell.display.Window); }));
    }
    // Every pass looks for fonts, with a new handle each time.
    static std::string withoutFonts(const std::string& calls) {
        return without({"GetDC", "EnumFontFamiliesA", "ReleaseDC"}, calls);
    }
    // What clearing the drawing child calls.
    static std::string background() {
        return "OUTquerysize\nOUTreset\nOUTfillcolour 0\nOUTboxr2 0 0 500 500\nWupdate " +
               std::to_string(TheShell.display.Window) + " 1\n";
    }
};
