// hpgldump's command line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

struct DumpZoom {
    int32_t x1, y1, x2, y2;  // device coordinates of press and release
};

struct DumpOptions {
    int32_t chunk = 256;  // bytes
    int32_t width = 500;  // what OUTquerysize reports, pixels
    int32_t height = 500;
    int32_t rotations = 0;
    std::vector<DumpZoom> zooms;
    bool plotted = false;  // the plotter stands in front of the viewer,
    int32_t page = 1;      // and this page of the file is shown
    bool records = false, hex = false, picture = false, calls = false;
    std::optional<std::string> file;
};

// Usage of the program, for wrong options.
extern const char DUMP_USAGE[];

// Answers what is wrong with the words, or nothing.
std::string parseDumpOptions(const std::vector<std::string>& words, DumpOptions& options);
