// The rows without a window: parser, passes and trace, on the recorder with its recording switched off.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "picture.h"
#include "plots.h"
#include "recorder/recorder.h"
#include "render/interpreter.h"
#include "rows.h"
#include "shell/drawing_window.h"
#include "shell/picture_setup.h"
#include "shell/shell_state.h"
#include "trace/trace.h"

namespace {

constexpr int64_t MEGABYTE = 1'000'000;

void forgetRecorder() {
    recorder::reset();
    recorder::recording = false;
}

// ---- parsing --------------------------------------------------------------------------------------------------------

int64_t sumCoordinates(const Picture& picture) {
    int64_t sum = 0;
    picture.forEachRecord([&sum](const CompactCodeRecord& record) {
        const uint8_t* at = record.params;
        for (int32_t i = 0; i < record.count; ++i, at += 4) {
            sum += HPGLreadL(at);
        }
    });
    return sum;
}

template <size_t chunk>
class Parsing : public Contest {
  public:
    std::string check() override {
        ours();
        yardstick();
        std::string problem = compare("pairs", plot_.items, picture_.pairsOf(CMD_PU) + picture_.pairsOf(CMD_PD));
        if (problem.empty()) problem = compare("sum of the numbers", sum_, sumCoordinates(picture_));
        tidy();
        return problem;
    }
    void ours() override { picture_.parse(plot_.text, chunk); }
    void yardstick() override { benchmark::DoNotOptimize(sum_ = sumNumbers(plot_.text)); }
    void tidy() override { picture_.clear(); }

  private:
    Plot plot_ = penMoves(10 * MEGABYTE);
    Picture picture_;
    int64_t sum_ = 0;
};

// ---- set-up pass ----------------------------------------------------------------------------------------------------

struct Bounds {
    int32_t minX = HPGL_EMPTY_MIN, minY = HPGL_EMPTY_MIN, maxX = HPGL_EMPTY_MAX, maxY = HPGL_EMPTY_MAX;
};

// Of all coordinates of a block that holds nothing but pen moves.
void widen(Bounds& bounds, const CBlock& block) {
    Bounds b = bounds;
    const uint8_t* at = block.Data;
    const uint8_t* end = at + block.Occupied;
    while (at < end) {
        const uint8_t* behind = at + 2 + std::ptrdiff_t{at[1]} * 4;
        for (at += 2; at < behind; at += 8) {
            int32_t pair[2];
            std::memcpy(pair, at, sizeof pair);
            b.minX = std::min(b.minX, pair[0]);
            b.maxX = std::max(b.maxX, pair[0]);
            b.minY = std::min(b.minY, pair[1]);
            b.maxY = std::max(b.maxY, pair[1]);
        }
    }
    bounds = b;
}

class SetupPass : public Contest {
  public:
    std::string check() override {
        ours();
        yardstick();
        const HPGLGlobal* global = picture_.get()->global;
        std::string problem = compare("left", bounds_.minX, global->MinX);
        if (problem.empty()) problem = compare("bottom", bounds_.minY, global->MinY);
        if (problem.empty()) problem = compare("right", bounds_.maxX, global->MaxX);
        if (problem.empty()) problem = compare("top", bounds_.maxY, global->MaxY);
        return problem;
    }
    void ours() override { HPGLsetupPicture(picture_.get(), &TheShell.display, 1); }
    void yardstick() override {
        bounds_ = {};
        picture_.forEachBlock([this](const CBlock& block) { widen(bounds_, block); });
        benchmark::DoNotOptimize(bounds_);
    }

  private:
    Picture picture_{penMoves(10 * MEGABYTE).text};
    Bounds bounds_;
};

// ---- what a pass costs at least -------------------------------------------------------------------------------------

class FixedCost : public Contest {
  public:
    FixedCost() {
        for (int i = 0; i < FAMILIES; ++i) {
            recorder::script.families.push_back({.fullName = "Family " + std::to_string(i)});
        }
        recorder::script.fontsAccepted = FACES;
    }
    ~FixedCost() override { forgetRecorder(); }
    FixedCost(const FixedCost&) = delete;
    FixedCost& operator=(const FixedCost&) = delete;

    std::string check() override {
        return compare("whole pass", 1, HPGLinterpretCompactCode(picture_.get(), &TheShell.display, 1));
    }
    void ours() override { HPGLinterpretCompactCode(picture_.get(), &TheShell.display, 1); }

  private:
    static constexpr int FAMILIES = 300;
    static constexpr int FACES = 19;  // of the one family that the toolkit takes
    Picture picture_{"IN;"};
};

// ---- the trace ------------------------------------------------------------------------------------------------------

constexpr int TRACE_CALLS = 1'000'000;

// The test that a call comes down to: a threshold that the compiler does not know.
int32_t threshold = 0;

class TraceOff : public Contest {
  public:
    TraceOff() { TRCOpenViewer("bench.log"); }
    ~TraceOff() override { TRCClose(HPGLTraceHandle); }
    TraceOff(const TraceOff&) = delete;
    TraceOff& operator=(const TraceOff&) = delete;

    std::string check() override {
        const int32_t length = TRCTrace(HPGLTraceHandle, TRC_DETAIL, "%d %d\n", 1, 2);
        return HPGLTraceHandle == 0 ? "the trace is not open" : compare("characters written", 0, length);
    }
    void ours() override {
        for (int i = 0; i < TRACE_CALLS; ++i) {
            TRCTrace(HPGLTraceHandle, TRC_DETAIL, "HPGLdrawLine: %s: %d %d %d %d\n", "Thinline", i, i, i, i);
            benchmark::ClobberMemory();
        }
    }
    void yardstick() override {
        int written = 0;
        for (int i = 0; i < TRACE_CALLS; ++i) {
            if (threshold >= TRC_DETAIL) benchmark::DoNotOptimize(++written);
            benchmark::ClobberMemory();
        }
    }
};

// ---- a large plot against a small one -------------------------------------------------------------------------------

// All that the viewer does between the first byte and the picture, but for the pixels.
int64_t show(std::string_view text) {
    Picture picture(text);
    HPGLsetupPicture(picture.get(), &TheShell.display, 1);
    const HPGLGlobal* global = picture.get()->global;
    HPGLqueryDeviceSize(&TheShell.display, &TheShell.display.DSizeX, &TheShell.display.DSizeY);
    HPGLsetScaling(&TheShell.display, global->MinX, global->MinY, global->MaxX, global->MaxY);
    HPGLinterpretCompactCode(picture.get(), &TheShell.display, 1);
    return picture.compactBytes();
}

class LargePlot : public Contest {
  public:
    std::string check() override {
        const Picture picture(large_.text);
        return compare("pairs", large_.items, picture.pairsOf(CMD_PU) + picture.pairsOf(CMD_PD));
    }
    void ours() override { benchmark::DoNotOptimize(show(large_.text)); }
    void yardstick() override {
        for (int i = 0; i < TIMES; ++i) {
            benchmark::DoNotOptimize(show(small_.text));
        }
    }

  private:
    static constexpr int TIMES = 100;
    Plot large_ = penMoves(TIMES * MEGABYTE);
    Plot small_ = penMoves(MEGABYTE);
};

// clang-format off
constexpr Row ROWS[] = {
    {"parse 10 MB of pen moves, 256 bytes a call",  "finding and summing the same numbers", 3.0, make<Parsing<256>>},
    {"parse 10 MB of pen moves, 8192 bytes a call", "finding and summing the same numbers", 3.0, make<Parsing<8192>>},
    {"set-up pass over 10 MB of pen moves",         "bare minimum/maximum loop",            3.0, make<SetupPass>},
    {"empty pass, 300 families (recorder)",         nullptr,                                1.0, make<FixedCost>},
    {"a million trace calls whose level is off",    "an inline test",                       2.0, make<TraceOff>},
    {"a plot of 100 MB, but for its pixels",        "one of 1 MB a hundred times",          1.2, make<LargePlot>},
};
// clang-format on

}  // namespace

int main(int argc, char** argv) {
    forgetRecorder();
    return runRows(argc, argv, ROWS);
}
