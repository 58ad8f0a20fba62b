// The whole viewer, from its entry to its end, with what the host and the user do in between.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "display.h"
#include "failing_allocator.h"
#include "picture_text.h"
#include "recorder.h"
#include "scratch_folder.h"
#include "shell_state.h"
#include "winmain.h"

using Turn = std::function<void()>;

class ViewerRun : public testing::Test {
  protected:
    ViewerRun() {
        TheShell = {};
        InitialDataLoaded = false;
        TheDisplay = {};
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
    static void action(uint32_t kind, uint32_t item) {
        recorder::deliver(TheDisplay.MainObject, W_MSG_ACTION, kind, item);
    }
    static void mouse(uint32_t button, int32_t x, int32_t y) {
        recorder::script.mouseX = x;
        recorder::script.mouseY = y;
        recorder::deliver(TheDisplay.MainObject, W_MSG_MOUSE, button);
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

    FreshViewer viewer;
    ScratchFolder folder;
    failing_allocator::Guard guard;
};
