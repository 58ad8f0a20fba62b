// A plotter in software: the bytes of a plot file in, and out of it, for every page, what the pens would have drawn, in
// the plain dialect that the viewer draws exactly.
//
// Life of one file: isPlain says whether the viewer draws it as it is. If not, survey runs the plotter once and
// measures: pages, extents, colours. A PageWriter runs it again and writes the pages. Any thread may call; nothing is
// shared.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "plotter/plane.h"
#include "plotter/report.h"

namespace plotter {

inline constexpr double MILLIMETRES_PER_UNIT = 0.025;  // of HP-GL/2's plotter unit

// Hears how many bytes of the file are done; false: stop.
using Watch = std::function<bool(std::size_t bytesDone)>;
// Takes the next piece of the plain text; false: stop.
using Sink = std::function<bool(std::string_view piece)>;

// Whether the viewer draws these bytes as a plotter would, or they are in the hosts' dialect: leave them alone.
bool isPlain(std::string_view file);

// The name of what a file is when it is not for plotters ("PostScript", "PNG image"), empty when it may be.
std::string_view foreignKind(std::string_view file);

struct PageSurvey {
    bool draws = false;  // something is on it
    Box extents;         // of that, plotter units on the paper
    double factor = 1;   // output units a plotter unit: a power of two
    // Millimetres an output unit, for true size.
    double unit() const { return MILLIMETRES_PER_UNIT / factor; }
};

// What is kept from the first pass for the second.
struct Findings;

struct Survey {
    bool whole = false;             // false: the watch said stop, and the rest is of no use
    std::vector<PageSurvey> pages;  // one at least
    Report report;
    std::shared_ptr<const Findings> findings;
};

Survey survey(std::string_view file, const Watch& watch);

// Writes pages as plain text. In their order they cost one run over the file, all together; for one that is behind
// already the run begins anew.
class PageWriter {
  public:
    // The file is the one that was surveyed; both outlive the writer.
    PageWriter(std::string_view file, const Survey& survey);
    ~PageWriter();
    PageWriter(const PageWriter&) = delete;
    PageWriter& operator=(const PageWriter&) = delete;

    // That page, counted from 0. False when watch or sink said stop, or there is no such page.
    bool write(std::size_t page, const Sink& sink, const Watch& watch);

  private:
    class Run;

    std::string_view file_;
    const Survey& survey_;
    std::unique_ptr<Run> run_;
};

// One page alone.
bool write(std::string_view file, const Survey& survey, std::size_t page, const Sink& sink, const Watch& watch);

// One line for a person, empty when there is nothing to say: what was not drawn, that the drawing is empty or that the
// file ends early; English.
std::string summary(const Survey& survey);

}  // namespace plotter
