// hpglplain: a plot file as plain text: what a plotter would have drawn, in the few commands that the viewer draws
// exactly.
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "plotter/plotter.h"
#include "system/shown_text.h"
#include "system/standard_streams.h"
#include "system/whole_file.h"

namespace {

constexpr char USAGE[] =
    "usage: hpglplain [--page N] [--report] [-o OUT] [FILE]\n"
    "  --page N   that page instead of the first\n"
    "  --report   says on standard error what there is, and what was not drawn\n"
    "  -o OUT     writes into that file instead of standard output\n"
    "Without a file it reads standard input. What is plain already comes out as it is.\n";

struct Options {
    std::size_t page = 1;
    bool report = false;
    const char* output = nullptr;
    const char* file = nullptr;
};

int wrongUsage() {
    fputs(USAGE, stderr);
    return 2;
}

bool readPage(const char* text, std::size_t& page) {
    const char* end = text + strlen(text);
    const auto [last, error] = std::from_chars(text, end, page);
    return error == std::errc() && last == end && page >= 1;
}

std::optional<Options> readOptions(int count, char** words) {
    Options options;
    for (int i = 1; i < count; ++i) {
        const std::string_view word = words[i];
        const bool hasNext = i + 1 < count;
        if (word == "--help" || word == "-h") {
            fputs(USAGE, stdout);
            exit(0);
        }
        if (word == "--report") {
            options.report = true;
        } else if (word == "--page" && hasNext) {
            if (!readPage(words[++i], options.page)) return std::nullopt;
        } else if (word == "-o" && hasNext) {
            options.output = words[++i];
        } else if ((word.size() > 1 && word.front() == '-') || options.file != nullptr) {
            return std::nullopt;
        } else {
            options.file = words[i];
        }
    }
    return options;
}

int fail(const std::string& what, const char* reason) {
    fprintf(stderr, "hpglplain: %s: %s\n", kelsystem::shownText(what).c_str(), kelsystem::shownText(reason).c_str());
    return 1;
}

bool readAll(FILE* file, std::string& bytes) {
    char piece[65536];
    while (const std::size_t count = fread(piece, 1, sizeof piece, file)) {
        bytes.append(piece, count);
    }
    return ferror(file) == 0;
}

bool readFile(const Options& options, std::string& bytes) {
    const bool standardInput = options.file == nullptr || std::string_view(options.file) == "-";
    FILE* file = standardInput ? stdin : fopen(options.file, "rb");
    if (file == nullptr) return false;
    const bool whole = readAll(file, bytes);
    if (!standardInput) fclose(file);
    return whole;
}

const char* nameOf(plotter::Ending ending) {
    switch (ending) {
        case plotter::Ending::InPolygon:
            return "inside a polygon";
        case plotter::Ending::InLabel:
            return "inside a label";
        case plotter::Ending::InEncodedLine:
            return "inside an encoded line";
        case plotter::Ending::InBinary:
            return "inside binary data";
        case plotter::Ending::Whole:
            break;
    }
    return "whole";
}

void printReport(const plotter::Survey& survey) {
    std::size_t number = 0;
    for (const plotter::PageSurvey& page : survey.pages) {
        fprintf(stderr, "page %zu: ", ++number);
        if (!page.draws) {
            fputs("empty\n", stderr);
            continue;
        }
        const plotter::Box& e = page.extents;
        fprintf(stderr, "%.1f x %.1f mm, from %.1f,%.1f to %.1f,%.1f plotter units, %g output units each\n",
                e.width() * plotter::MILLIMETRES_PER_UNIT, e.height() * plotter::MILLIMETRES_PER_UNIT, e.low.x, e.low.y,
                e.high.x, e.high.y, page.factor);
    }
    for (const plotter::Report::Entry& entry : survey.report.passedOver()) {
        fprintf(stderr, "not drawn: %s, %zu times, first at byte %zu\n", kelsystem::shownText(entry.what).c_str(),
                entry.count, entry.offset);
    }
    for (const plotter::Report::Entry& entry : survey.report.bounds()) {
        fprintf(stderr, "bound met: %s, %zu times, first at byte %zu\n", kelsystem::shownText(entry.what).c_str(),
                entry.count, entry.offset);
    }
    if (survey.report.penOneDrew()) fputs("no pen is selected: drawn with pen 1\n", stderr);
    if (survey.report.ending() != plotter::Ending::Whole) {
        fprintf(stderr, "the file ends %s\n", nameOf(survey.report.ending()));
    }
}

// Into the file, whole or not at all, or to standard output.
class Output {
  public:
    explicit Output(const char* file) : file_(file) {}

    bool take(std::string_view piece) {
        if (file_ == nullptr) return fwrite(piece.data(), 1, piece.size(), stdout) == piece.size();
        kept_.append(piece);
        return true;
    }
    // What went wrong, or nothing.
    std::string end() {
        if (file_ != nullptr) return kelsystem::writeWhole(file_, kept_);
        return fflush(stdout) == 0 ? std::string() : strerror(errno);
    }

  private:
    const char* file_;
    std::string kept_;
};

}  // namespace

int main(int count, char** words) {
    kelsystem::holdStandardStreams();
    const std::optional<Options> options = readOptions(count, words);
    if (!options) return wrongUsage();
    const std::string name = options->file == nullptr ? "standard input" : options->file;

    std::string bytes;
    if (!readFile(*options, bytes)) return fail(name, strerror(errno));
    Output output(options->output);
    const auto watch = [](std::size_t) { return true; };
    const auto sink = [&](std::string_view piece) { return output.take(piece); };

    const bool plain = plotter::isPlain(bytes);
    if (plain && options->report) fputs("plain already\n", stderr);
    if (!plain) {
        const std::string_view kind = plotter::foreignKind(bytes);
        if (!kind.empty()) return fail(name, ("no plot, but " + std::string(kind)).c_str());
        const plotter::Survey survey = plotter::survey(bytes, watch);
        if (options->report) printReport(survey);
        if (options->page > survey.pages.size()) return fail(name, "there is no such page");
        if (!plotter::write(bytes, survey, options->page - 1, sink, watch)) return fail("output", strerror(errno));
    } else if (options->page != 1) {
        return fail(name, "there is no such page");
    } else if (!sink(bytes)) {
        return fail("output", strerror(errno));
    }
    const std::string wrong = output.end();
    return wrong.empty() ? 0 : fail(options->output == nullptr ? "output" : options->output, wrong.c_str());
}
