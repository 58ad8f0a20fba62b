#include "plotter/job_control.h"

#include <algorithm>
#include <array>

#include "plotter/ascii.h"

namespace plotter {

namespace {

constexpr std::string_view MARK = "@PJL";
constexpr std::string_view BLANKS = " \t\r\n\f\v=\"";

// The next word of a line; '=' and quotes separate as blanks do.
std::string_view takeWord(std::string_view& line) {
    line.remove_prefix(std::min(line.find_first_not_of(BLANKS), line.size()));
    const std::size_t length = std::min(line.find_first_of(BLANKS), line.size());
    const std::string_view word = line.substr(0, length);
    line.remove_prefix(length);
    return word;
}

JobLanguage languageNamed(std::string_view name) {
    constexpr std::array PLOTTERS = {"HPGL2", "HPGL", "HP-GL/2", "HP-GL", "HPGL/2", "HPGL2RTL", "RTL"};
    const bool isPlotter = std::ranges::any_of(PLOTTERS, [&](std::string_view known) { return sameWord(name, known); });
    return isPlotter ? JobLanguage::Plotter : JobLanguage::Printer;
}

void readSetting(std::string_view line, Job& job) {
    const std::string_view name = takeWord(line);
    const std::string_view value = takeWord(line);
    if (sameWord(name, "PAPER")) {
        job.paper = value;
    } else if (sameWord(name, "ORIENTATION")) {
        job.landscape = sameWord(value, "LANDSCAPE");
    }
}

// False when the line hands over to another language.
bool readLine(std::string_view line, Job& job) {
    const std::string_view command = takeWord(line);
    if (sameWord(command, "SET") || sameWord(command, "DEFAULT")) {
        readSetting(line, job);
    } else if (sameWord(command, "RESET") || sameWord(command, "EOJ")) {
        job = {};
    } else if (sameWord(command, "ENTER") && sameWord(takeWord(line), "LANGUAGE")) {
        job.language = languageNamed(takeWord(line));
        return false;
    }
    return true;
}

}  // namespace

bool startsJobLine(std::string_view bytes, std::size_t offset) {
    return sameWord(bytes.substr(skipPadding(bytes, offset), MARK.size()), MARK);
}

std::size_t readJobLines(std::string_view bytes, std::size_t offset, Job& job) {
    bool goesOn = true;
    while (goesOn && startsJobLine(bytes, offset)) {
        const std::size_t first = skipPadding(bytes, offset) + MARK.size();
        // A job that is cut short may run into an escape without a line end.
        const std::size_t end = std::min(bytes.find_first_of("\n\x1b", first), bytes.size());
        goesOn = readLine(bytes.substr(first, end - first), job);
        offset = end < bytes.size() && bytes[end] == '\n' ? end + 1 : end;
    }
    return offset;
}

}  // namespace plotter
