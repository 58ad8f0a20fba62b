// The table of figures: each row is something that we do, measured in turn with a yardstick in the same process, so
// that a machine that is slow for a while is slow for both. What is printed for a row is one JSON object on a line.
#pragma once

#include <memory>
#include <span>
#include <string>

// The two that run against each other. Made before and destroyed after its row, so that rows do not share memory.
class Contest {
  public:
    Contest() = default;
    Contest(const Contest&) = delete;
    Contest& operator=(const Contest&) = delete;
    virtual ~Contest() = default;

    // Runs both once before any time counts: what is wrong with the results; empty when nothing is.
    virtual std::string check() = 0;
    virtual void ours() = 0;
    virtual void yardstick() {}
    // Behind each run of ours, outside its time.
    virtual void tidy() {}
};

struct Row {
    const char* name;
    const char* yardstick;  // in words; null: the bound is one of our time alone, in milliseconds
    double bound;           // of ours divided by the yardstick
    std::unique_ptr<Contest> (*make)();
};

template <class Kind, auto... arguments>
std::unique_ptr<Contest> make() {
    return std::make_unique<Kind>(arguments...);
}

// Measures the rows, or those whose names contain the words on the command line. Answers the process's exit status: 1
// when a result was wrong or a bound was missed.
int runRows(int argc, char** argv, std::span<const Row> rows);

// "NAME: EXPECTED expected, FOUND found", or nothing when they are the same.
std::string compare(const char* name, int64_t expected, int64_t found);
// The same for two that may differ by `part` of the expected.
std::string compareAbout(const char* name, int64_t expected, int64_t found, double part);
