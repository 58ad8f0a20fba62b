// The rows of the plotter: what opening a person's file costs before the viewer gets it.
#include <benchmark/benchmark.h>

#include <algorithm>

#include "plots.h"
#include "plotter/plotter.h"
#include "rows.h"

namespace {

constexpr int64_t MEGABYTE = 1'000'000;

bool goOn(std::size_t /*bytesDone*/) {
    return true;
}

// Both passes; answers the bytes of text.
int64_t plot(std::string_view file) {
    const plotter::Survey survey = plotter::survey(file, goOn);
    int64_t bytes = 0;
    const auto sink = [&bytes](std::string_view piece) {
        bytes += static_cast<int64_t>(piece.size());
        return true;
    };
    plotter::write(file, survey, 0, sink, goOn);
    return bytes;
}

class Recognising : public Contest {
  public:
    std::string check() override { return compare("plain", 1, plotter::isPlain(plot_.text) ? 1 : 0); }
    void ours() override { benchmark::DoNotOptimize(plotter::isPlain(plot_.text)); }
    void yardstick() override { benchmark::DoNotOptimize(sumNumbers(plot_.text)); }

  private:
    Plot plot_ = [] {
        Plot moves = penMoves(10 * MEGABYTE);
        moves.text.insert(0, "IN;SP1;");
        return moves;
    }();
};

class Plotting : public Contest {
  public:
    std::string check() override {
        int64_t commas = 0;
        const plotter::Survey survey = plotter::survey(plot_.text, goOn);
        const auto sink = [&commas](std::string_view piece) {
            commas += std::ranges::count(piece, ',');
            return true;
        };
        plotter::write(plot_.text, survey, 0, sink, goOn);
        // Two numbers a pair: a comma within and, but for the last of a command, one behind.
        return compareAbout("commas", plot_.items * 2, commas, 0.05);
    }
    void ours() override { benchmark::DoNotOptimize(plot(plot_.text)); }
    void yardstick() override { benchmark::DoNotOptimize(sumNumbers(plot_.text)); }

  private:
    Plot plot_ = scaledPenMoves(10 * MEGABYTE);
};

// A megabyte of something that a few bytes multiply.
enum class Hostile { Circles, CirclesOutside, Hatches, Fills, WindingFills, Labels };

std::string megabyteOf(std::string text, std::string_view unit) {
    while (text.size() + unit.size() <= std::size_t{1} << 20) {
        text += unit;
    }
    return text;
}

std::string polygon() {
    std::string text = "IN;SP1;PU0,0;PM0;PD";
    uint32_t state = 1;
    for (int i = 0; i < 2000; ++i) {
        state = state * 1664525 + 1013904223;
        text += std::to_string(state >> 16 & 0x1FFF) + "," + std::to_string(state >> 3 & 0x1FFF) + ",";
    }
    return text + "0,0;PM2;";
}

std::string hostile(Hostile kind) {
    switch (kind) {
        case Hostile::Circles:
            return megabyteOf("IN;SP1;", "CI9");
        case Hostile::CirclesOutside:
            return megabyteOf("IN;SP1;IW0,0,100,100;", "CI9e8;");
        case Hostile::Hatches:
            return megabyteOf("IN;SP1;FT3,1;", "RR9999,9999;");
        case Hostile::Fills:
            return megabyteOf(polygon(), "FP");
        case Hostile::WindingFills:
            return megabyteOf(polygon(), "FP1;");
        case Hostile::Labels:
            break;
    }
    return megabyteOf("IN;SP1;LB", "@");
}

template <Hostile kind>
class Worst : public Contest {
  public:
    std::string check() override {
        const int64_t bytes = plot(text_);
        constexpr int64_t most = 200 * MEGABYTE;
        return bytes <= most ? std::string() : compare("bytes of text", most, bytes);
    }
    void ours() override { benchmark::DoNotOptimize(plot(text_)); }

  private:
    std::string text_ = hostile(kind);
};

// clang-format off
constexpr Row ROWS[] = {
    {"plotter: 10 MB of plain pen moves are plain",     "finding and summing the same numbers", 0.5, make<Recognising>},
    {"plotter: both passes over 14 MB of scaled moves", "finding and summing the same numbers", 6.0, make<Plotting>},
    {"plotter: worst input of 1 MB, circles",           nullptr, 3000.0, make<Worst<Hostile::Circles>>},
    {"plotter: worst input of 1 MB, circles outside",   nullptr, 3000.0, make<Worst<Hostile::CirclesOutside>>},
    {"plotter: worst input of 1 MB, hatches",           nullptr, 3000.0, make<Worst<Hostile::Hatches>>},
    {"plotter: worst input of 1 MB, fills",             nullptr, 3000.0, make<Worst<Hostile::Fills>>},
    {"plotter: worst input of 1 MB, fills by winding",  nullptr, 3000.0, make<Worst<Hostile::WindingFills>>},
    {"plotter: worst input of 1 MB, a label",           nullptr, 3000.0, make<Worst<Hostile::Labels>>},
};
// clang-format on

}  // namespace

int main(int argc, char** argv) {
    return runRows(argc, argv, ROWS);
}
