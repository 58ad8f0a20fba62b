#include "rows.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string_view>
#include <vector>

namespace {

constexpr int REPETITIONS = 9;
constexpr double LEAST_SECONDS = 0.05;  // of one repetition
constexpr double PER_MILLISECOND = 1e6;

constexpr char OURS[] = "ours";
constexpr char YARDSTICK[] = "yardstick";

// Keeps the processor times of both, nanoseconds by repetition, and prints nothing.
class Times : public benchmark::BenchmarkReporter {
  public:
    std::vector<double> ours, yardstick;

    bool ReportContext(const Context& /*context*/) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration) keep(run);
        }
    }

  private:
    void keep(const Run& run) {
        std::vector<double>& times = run.run_name.function_name == OURS ? ours : yardstick;
        const auto index = static_cast<size_t>(std::max<int64_t>(run.repetition_index, 0));
        times.resize(std::max(times.size(), index + 1));
        times[index] = run.GetAdjustedCPUTime();
    }
};

double median(std::vector<double> values) {
    if (values.empty()) return 0.0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double medianRatio(const Times& times) {
    std::vector<double> ratios;
    for (size_t i = 0; i < std::min(times.ours.size(), times.yardstick.size()); ++i) {
        ratios.push_back(times.ours[i] / times.yardstick[i]);
    }
    return median(ratios);
}

// Both in turn, in an order that the library shuffles.
Times measure(Contest& contest, bool withYardstick) {
    benchmark::ClearRegisteredBenchmarks();
    benchmark::RegisterBenchmark(OURS, [&contest](benchmark::State& state) {
        for ([[maybe_unused]] auto turn : state) {
            contest.ours();
            state.PauseTiming();
            contest.tidy();
            state.ResumeTiming();
        }
    });
    if (withYardstick) {
        benchmark::RegisterBenchmark(YARDSTICK, [&contest](benchmark::State& state) {
            for ([[maybe_unused]] auto turn : state) {
                contest.yardstick();
            }
        });
    }
    Times times;
    benchmark::RunSpecifiedBenchmarks(&times, ".*");
    return times;
}

void initialise(char* program) {
    std::string words[] = {program, "--benchmark_enable_random_interleaving=true",
                           "--benchmark_repetitions=" + std::to_string(REPETITIONS),
                           "--benchmark_min_time=" + std::to_string(LEAST_SECONDS)};
    std::vector<char*> values;
    for (std::string& word : words) {
        values.push_back(word.data());
    }
    auto count = static_cast<int>(values.size());
    benchmark::Initialize(&count, values.data());
}

bool printProblem(const Row& row, const std::string& problem) {
    std::printf(R"({"row": "%s", "problem": "%s", "ok": false})"
                "\n",
                row.name, problem.c_str());
    return false;
}

bool printTimes(const Row& row, const Times& times) {
    const bool alone = row.yardstick == nullptr;
    const double ours = median(times.ours) / PER_MILLISECOND;
    const double measured = alone ? ours : medianRatio(times);
    const bool ok = measured <= row.bound;
    std::printf(R"({"row": "%s", "unit": "ms", "ours": %.6g, )", row.name, ours);
    if (!alone) {
        std::printf(R"("yardstick": %.6g, "of": "%s", "ratio": %.4g, )", median(times.yardstick) / PER_MILLISECOND,
                    row.yardstick, measured);
    }
    std::printf(R"("bound": %.4g, "ok": %s})"
                "\n",
                row.bound, ok ? "true" : "false");
    return ok;
}

// Answers whether the results are right and the bound is kept.
bool run(const Row& row) {
    const std::unique_ptr<Contest> contest = row.make();
    const std::string problem = contest->check();
    const bool ok =
        problem.empty() ? printTimes(row, measure(*contest, row.yardstick != nullptr)) : printProblem(row, problem);
    std::fflush(stdout);
    return ok;
}

bool isWanted(const Row& row, int argc, char** argv) {
    const std::string_view name = row.name;
    return argc < 2 ||
           std::any_of(argv + 1, argv + argc, [name](const char* word) { return name.find(word) != name.npos; });
}

}  // namespace

int runRows(int argc, char** argv, std::span<const Row> rows) {
    initialise(argv[0]);
    bool ok = true;
    for (const Row& row : rows) {
        if (isWanted(row, argc, argv)) ok = run(row) && ok;
    }
    return ok ? 0 : 1;
}

std::string compare(const char* name, int64_t expected, int64_t found) {
    return compareAbout(name, expected, found, 0.0);
}

std::string compareAbout(const char* name, int64_t expected, int64_t found, double part) {
    const auto wide = static_cast<double>(expected);
    if (std::abs(static_cast<double>(found) - wide) <= std::abs(wide) * part) return {};
    return std::string(name) + ": " + std::to_string(expected) + " expected, " + std::to_string(found) + " found";
}
