// The lines of a printer's job language in front of a plot: @PJL SET PAPER=A4
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace plotter {

enum class JobLanguage { Unsaid, Plotter, Printer };

struct Job {
    JobLanguage language = JobLanguage::Unsaid;  // of the data that follow the lines
    std::string_view paper;                      // its name, as the file writes it; empty: unsaid
    std::optional<bool> landscape;
};

// Whether a line of the job language begins there, white space in front of it aside.
bool startsJobLine(std::string_view bytes, std::size_t offset);

// Reads lines of the job language as long as they follow one another, and what they say into `job`. Behind them; the
// offset itself when there is none. ENTER LANGUAGE is the last.
std::size_t readJobLines(std::string_view bytes, std::size_t offset, Job& job);

}  // namespace plotter
