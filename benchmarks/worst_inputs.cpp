// worst_inputs: inputs of 1 MB that are as expensive as we can think of, each read, set up and painted once through the
// recorder in a process of its own. Prints processor time and peak memory as a Markdown table; with --rows only the
// worst of both, as ./bench wants them. Ends with 1 when a bound is missed.
// usage: worst_inputs [--rows] [WORD ...]    (only the inputs whose names contain one of the words)
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "picture.h"
#include "recorder/recorder.h"
#include "render/interpreter.h"
#include "shell/drawing_window.h"
#include "shell/picture_setup.h"
#include "shell/shell_state.h"
#include "trace/trace.h"

namespace {

constexpr size_t INPUT_SIZE = 1'000'000;
constexpr double MOST_SECONDS = 3.0;
constexpr double MOST_MEGABYTES = 256.0;
constexpr rlim_t PATIENCE = 10;  // seconds, after which an input's process is ended

struct Input {
    const char* name;
    std::string_view head;  // once
    std::string_view ring;  // RINGS times, behind it
    std::string_view unit;  // again and again, to the end
};

// The sub-polygons of a polygon that is as large as it can be, but for the one that the head begins.
constexpr int RINGS = 255;
constexpr std::string_view LARGE_RING = "PM1CI9,.19";
constexpr std::string_view TINY_RING = "PM1PR1,1";
constexpr std::string_view EMPTY_RING = "PM1";

// clang-format off
constexpr Input INPUTS[] = {
    {"circles, default chord",                "",                     "",         "CI9"},
    {"circles of 360 steps",                  "",                     "",         "CI9,1"},
    {"circles of 1800 steps",                 "",                     "",         "CI9,.2"},
    {"circles of a million steps",            "",                     "",         "CI9,.00036"},
    {"circles, smallest chord",               "",                     "",         "CI9,.00000000000001"},
    {"circles, chord nan",                    "",                     "",         "CI9,nan;"},
    {"circles, chord inf",                    "",                     "",         "CI9,inf;"},
    {"circles, chord negative",               "",                     "",         "CI9,-1;"},
    {"circles, largest radius",               "",                     "",         "CI2147483647,1;"},
    {"arcs, default chord, endless sweep",    "",                     "",         "AR0,1,1e9"},
    {"arcs, chord 1, sweep 2000",             "",                     "",         "AR0,1,2e3,1"},
    {"arcs, chord 2, sweep 5000",             "",                     "",         "AR0,1,5e3,2"},
    {"arcs, chord 1e9",                       "",                     "",         "AR0,1,1e38,1e9"},
    {"arcs, chord 1e30",                      "",                     "",         "AR0,1,1e38,1e30"},
    {"arcs, largest radius, endless sweep",   "",                     "",         "AR2147483647,1,1e9"},
    {"arcs, smallest chord",                  "",                     "",         "AR0,1,9,.00000000000001"},
    {"arcs of 900000 steps",                  "",                     "",         "AA0,1,9,.00001"},
    {"arcs, sweep nan",                       "",                     "",         "AA0,1,nan;"},
    {"arcs, sweep inf",                       "",                     "",         "AA0,1,inf;"},
    {"arcs, sweep 1e38",                      "",                     "",         "AA0,1,1e38;"},
    {"edged wedges, chord 1, sweep 2000",     "",                     "",         "EW9,0,2e3,1"},
    {"edged wedges, chord 2, sweep 5000",     "",                     "",         "EW9,0,5e3,2"},
    {"edged wedges, endless sweep",           "",                     "",         "EW9,0,1e9"},
    {"edged wedges, far start, endless sweep","",                     "",         "EW9,9e9,1e9"},
    {"edged wedges, farthest start",          "",                     "",         "EW9,9e15,1e38"},
    {"edged wedges, chord 20000, sweep 4e7",  "",                     "",         "EW9,0,4e7,2e4"},
    {"filled wedges, chord 2, sweep 5000",    "",                     "",         "WG9,0,5e3,2"},
    {"filled wedges, endless sweep",          "",                     "",         "WG9,0,1e9"},
    {"wedges, start 1e38",                    "",                     "",         "WG9,1e38,1e9"},
    {"wedges, start and sweep nan",           "",                     "",         "WG9,nan,nan,nan;"},
    {"wedges in polygon mode",                "PM0;",                 "",         "WG9,0,5e3,2"},
    {"circles in polygon mode",               "PM0;",                 "",         "CI9,.2"},
    {"circles, each a sub-polygon",           "PM0;",                 "",         "CI9,.2PM1"},
    {"polygon after polygon",                 "",                     "",         "PM0CI9,.2PM2FP"},
    {"polygon after polygon, drawn twice",    "",                     "",         "PM0CI9,.2PM2FPEP"},
    {"large polygon, filled",                 "PM0CI9,.19",           LARGE_RING, "FP"},
    {"large polygon, edged",                  "PM0CI9,.19",           LARGE_RING, "EP"},
    {"large polygon, edged and filled",       "PM0CI9,.19",           LARGE_RING, "FPEP"},
    {"256 empty sub-polygons, filled",        "PM0",                  EMPTY_RING, "FP"},
    {"256 empty sub-polygons, edged",         "PM0",                  EMPTY_RING, "EP"},
    {"256 sub-polygons of a point, filled",   "PM0",                  TINY_RING,  "FP"},
    {"256 sub-polygons of a point, edged",    "PM0",                  TINY_RING,  "EP"},
    {"polygon mode begun again",              "",                     "",         "PM0"},
    {"polygon mode begun and ended",          "",                     "",         "PM0PM2"},
    {"sub-polygon after sub-polygon",         "PM0;",                 "",         "PM1"},
    {"rectangles in polygon mode",            "PM0;",                 "",         "RR9,9"},
    {"points in a full polygon",              "PM0PE",                "",         "\xc1\xc3"},
    {"Bezier curves",                         "",                     "",         "BR1,2,3,4,5,6"},
    {"Bezier curve without an end",           "BZ",                   "",         "1,"},
    {"Bezier curves in polygon mode",         "PM0;",                 "",         "BR1,2,3,4,5,6"},
    {"Bezier curves, largest numbers",        "",                     "",         "BZ2147483647,-2147483648,2147483647,1,-1,1"},
    {"polyline without an end",               "PD",                   "",         "1,"},
    {"pen moves, largest numbers",            "PD;",                  "",         "PA2147483647,-2147483648PR2147483647,1"},
    {"shortest pen moves",                    "PD",                   "",         "PD1,1"},
    {"wide lines",                            "PW9;PD;",              "",         "PR1,1"},
    {"encoded pairs",                         "PU0,0PD9999,9999;PE",  "",         "\xc1\xc3"},
    {"encoded pairs, seven bits",             "PU0,0PD9999,9999;PE7", "",         "ac"},
    {"encoded pairs, each absolute",          "PE",                   "",         "=\xc1\xc1"},
    {"encoded pairs, each with the pen up",   "PE",                   "",         "<\xc1\xc1"},
    {"encoded pairs with every flag",         "PE",                   "",         "<=>\xc1:\xc1\xc1\xc1"},
    {"encoded pens",                          "PE",                   "",         ":\xc1"},
    {"encoded fraction bits",                 "PE",                   "",         ">\xd9"},
    {"encoded flags only",                    "PE",                   "",         "<="},
    {"encoded value without an end",          "PE",                   "",         "?"},
    {"encoded polylines without values",      "",                     "",         "PE"},
    {"encoded polylines of a pair",           "",                     "",         "PE=\xc1\xc1;"},
    {"labels of a character",                 "",                     "",         "LBa\x03"},
    {"labels of no character",                "",                     "",         "LB\x03"},
    {"labels that no font fits",              "SI.0001,.0001",         "",         "LBa\x03"},
    {"labels of the largest size",            "SI1e30,1e30;",         "",         "LBa\x03"},
    {"label without an end",                  "LB",                   "",         "a"},
    {"labels, each of another size",          "",                     "",         "SI1,2LBa\x03SI3,4LBa\x03"},
    {"labels, each with a terminator",        "",                     "",         "DTxLBax"},
    {"labels, sizes relative to the picture", "PD9,9,0,0;",           "",         "SR1e30,nanLBa\x03"},
    {"fonts",                                 "",                     "",         "SD1,nan,2,inf,3,0,4,1e38,5,-1e38;"},
    {"fonts, 254 parameters",                 "AD",                   "",         "3,0,"},
    {"font selections",                       "",                     "",         "SASS"},
    {"pens",                                  "",                     "",         "SP"},
    {"pens, out of range",                    "",                     "",         "SP32767SP-32768"},
    {"pen colours",                           "",                     "",         "PC1,2,3,4"},
    {"pen colours, out of range",             "",                     "",         "PC-1,99999,nan,1e9;"},
    {"pen widths",                            "",                     "",         "PW1e38,1PW-1e38,2PWnan;"},
    {"scales",                                "",                     "",         "SC1,0,1,0"},
    {"scales by the largest factor",          "",                     "",         "SC0,1e38,0,-1e38,2PD9,9"},
    {"scales, wrong count",                   "",                     "",         "SC1,2,3"},
    {"input points",                          "",                     "",         "IP0,0,1,1IW"},
    {"rotations",                             "",                     "",         "RO"},
    {"commands passed over",                  "",                     "",         "DISLCPFTLT"},
    {"commands without parameters",           "",                     "",         "PU"},
    {"rectangles",                            "",                     "",         "RA9,9EA9,9"},
    {"rectangles, largest numbers",           "",                     "",         "RA2147483647,-2147483648ER-2147483648,1"},
    {"comment without quotes",                "CO",                   "",         "a"},
    {"comment without its second quote",      "CO\"",                 "",         "a"},
    {"comments",                              "",                     "",         "CO\"\""},
    {"comment commands only",                 "",                     "",         "CO"},
    {"capital letters that are no command",   "",                     "",         "ZQXJ"},
    {"capital letters, all the same",         "",                     "",         "A"},
    {"control characters",                    "",                     "",         "\x01"},
    {"NUL characters",                        "",                     "",         {"\0", 1}},
    {"bytes above 127",                       "",                     "",         "\xff"},
    {"blanks",                                "PD",                   "",         " "},
    {"separators",                            "PD",                   "",         ","},
    {"number of a million digits",            "PD",                   "",         "9"},
    {"numbers of 16 digits",                  "PD",                   "",         "9999999999999999,"},
    {"numbers in scientific notation",        "SC",                   "",         "1e308,-1e-308,"},
    {"numbers in hexadecimal",                "SC",                   "",         "0x1p999,0x1p-999,"},
    {"pseudo-commands",                       "",                     "",         "HPGL_DATA"},
    {"pseudo-commands, cut short",            "",                     "",         "HPGL_\n"},
    {"pseudo-commands, begun",                "",                     "",         "HPGL_DAT"},
    {"information requests",                  "",                     "",         "HPGL_INFO"},
    {"file names",                            "",                     "",         "HPGL_FILE:a\n"},
    {"file name without an end",              "HPGL_FILE:",           "",         "a"},
};
// clang-format on

struct Cost {
    const Input* input;
    double seconds;
    double megabytes;
    bool finished;

    bool inTime() const { return finished && seconds <= MOST_SECONDS; }
    bool inMemory() const { return megabytes <= MOST_MEGABYTES; }
};

std::string textOf(const Input& input) {
    std::string text(input.head);
    for (int i = 0; i < RINGS; ++i) {
        text += input.ring;
    }
    while (text.size() + input.unit.size() <= INPUT_SIZE) {
        text += input.unit;
    }
    return text;
}

// What the viewer does with a file, on the recorder; the calls go nowhere, as hpgldump's go straight to its output.
void showOnce(const std::string& text) {
    recorder::script.width = 1600;
    recorder::script.height = 1000;
    HPGLsetCoordLimits(&TheShell.display);
    TRCOpenViewer("worst_inputs.log");
    recorder::recording = false;
    const Picture picture(text);
    HPGLsetupPicture(picture.get(), &TheShell.display, 1);
    const HPGLGlobal* global = picture.get()->global;
    HPGLqueryDeviceSize(&TheShell.display, &TheShell.display.DSizeX, &TheShell.display.DSizeY);
    HPGLsetScaling(&TheShell.display, global->MinX, global->MinY, global->MaxX, global->MaxY);
    recorder::recording = true;
    size_t bytes = 0;
    recorder::drawingSink = [&bytes](std::string_view line) { bytes += line.size(); };
    HPGLinterpretCompactCode(picture.get(), &TheShell.display, 1);
}

[[noreturn]] void runChild(const Input& input) {
    const rlimit patience = {PATIENCE, PATIENCE};
    setrlimit(RLIMIT_CPU, &patience);
    showOnce(textOf(input));
    _exit(0);
}

double secondsOf(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

Cost measure(const Input& input) {
    const pid_t child = fork();
    if (child == 0) runChild(input);
    int status = 0;
    rusage usage = {};
    wait4(child, &status, 0, &usage);
    return {&input, secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime), static_cast<double>(usage.ru_maxrss) / 1e3,
            WIFEXITED(status) && WEXITSTATUS(status) == 0};
}

void printLine(const Cost& cost) {
    const char* verdict = cost.inTime() && cost.inMemory() ? "" : "OVER";
    std::printf("| %-38s | %s%.3f | %.1f | %s |\n", cost.input->name, cost.finished ? "" : "more than ", cost.seconds,
                cost.megabytes, verdict);
    std::fflush(stdout);
}

void printRow(const char* what, const Cost& worst, const char* unit, double value, double bound, bool ok) {
    std::printf(R"({"row": "worst input of 1 MB, %s: %s", "unit": "%s", "ours": %.4g, "bound": %.4g, "ok": %s})"
                "\n",
                what, worst.input->name, unit, value, bound, ok ? "true" : "false");
}

void printRows(const std::vector<Cost>& costs) {
    const Cost& slowest = *std::ranges::max_element(costs, {}, &Cost::seconds);
    const Cost& largest = *std::ranges::max_element(costs, {}, &Cost::megabytes);
    printRow("time", slowest, "s", slowest.seconds, MOST_SECONDS, slowest.inTime());
    printRow("memory", largest, "MB", largest.megabytes, MOST_MEGABYTES, largest.inMemory());
}

bool isWanted(const Input& input, const std::vector<std::string_view>& words) {
    const std::string_view name = input.name;
    return words.empty() ||
           std::ranges::any_of(words, [name](std::string_view word) { return name.find(word) != name.npos; });
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string_view> words(argv + 1, argv + argc);
    const bool asRows = !words.empty() && words.front() == "--rows";
    if (asRows) words.erase(words.begin());
    if (!asRows) std::puts("| input of 1 MB | seconds | MB | |\n|---|---:|---:|---|");
    std::vector<Cost> costs;
    for (const Input& input : INPUTS) {
        if (!isWanted(input, words)) continue;
        costs.push_back(measure(input));
        if (!asRows) printLine(costs.back());
    }
    if (asRows && !costs.empty()) printRows(costs);
    return std::ranges::all_of(costs, [](const Cost& cost) { return cost.inTime() && cost.inMemory(); }) ? 0 : 1;
}
