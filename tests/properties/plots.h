// What the properties are tried on: the plots kept here, and chance that can be repeated.
#pragma once

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "scratch_folder.h"

struct Plot {
    std::filesystem::path folder;  // where a file that it names is
    std::string name;              // folder and file
    std::string text;
};

// Every plot below a folder, in the order of their names.
inline std::vector<Plot> plotsBelow(const std::filesystem::path& folder) {
    std::vector<Plot> plots;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.path().extension() != ".plt") continue;
        const std::string name = relative(entry.path(), folder).string();
        plots.push_back({entry.path().parent_path(), name, ScratchFolder::read(entry.path().string())});
    }
    std::ranges::sort(plots, {}, &Plot::name);
    return plots;
}

inline std::vector<Plot> goldenPlots() {
    return plotsBelow(GOLDEN_FOLDER);
}

inline std::vector<Plot> everyPlot() {
    std::vector<Plot> plots = goldenPlots();
    std::ranges::copy(plotsBelow(EXAMPLES_FOLDER), std::back_inserter(plots));
    return plots;
}

// The same on every machine for a seed, which a test names in its failures.
class Chance {
  public:
    explicit Chance(unsigned seed) : engine_(seed) {}

    // A whole number from `least` to `most`.
    int number(int least, int most) {
        const auto values = static_cast<unsigned>(most - least + 1);
        return least + static_cast<int>(engine_() % values);
    }
    bool oneIn(int times) { return number(1, times) == 1; }
    template <class Choices>
    const auto& oneOf(const Choices& choices) {
        return choices[static_cast<std::size_t>(number(0, static_cast<int>(std::size(choices)) - 1))];
    }

  private:
    std::mt19937 engine_;
};

// The first line that differs, or nothing; a whole picture in a failure is more than anyone reads.
inline std::string difference(const std::string& before, const std::string& after) {
    if (before == after) return "";
    std::istringstream expected(before), actual(after);
    for (int line = 1; expected && actual; ++line) {
        std::string wanted, got;
        std::getline(expected, wanted);
        std::getline(actual, got);
        if (wanted == got) continue;
        return "line " + std::to_string(line) + " was:\n" + wanted.substr(0, 500) + "\nand is:\n" + got.substr(0, 500);
    }
    return "";
}
