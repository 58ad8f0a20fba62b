#include "hpgldump_options.h"

#include <charconv>

const char DUMP_USAGE[] =
    "usage: hpgldump [--plotted [--page N]] [--chunk N] [--size WxH] [--rotate K] [--zoom X1,Y1,X2,Y2]...\n"
    "                [--records] [--hex] [--picture] [--calls] FILE\n";

namespace {

// `numbers` whole 32-bit numbers of at least `least`, the separator between two.
bool parseNumbers(const std::string& text, char separator, int32_t least, std::vector<int32_t*> numbers) {
    const char* at = text.data();
    const char* end = at + text.size();
    for (size_t i = 0; i < numbers.size(); ++i) {
        if (i > 0 && (at == end || *at++ != separator)) return false;
        const auto [next, error] = std::from_chars(at, end, *numbers[i]);
        if (error != std::errc() || *numbers[i] < least) return false;
        at = next;
    }
    return at == end;
}

bool parseZoom(const std::string& text, std::vector<DumpZoom>& zooms) {
    DumpZoom zoom = {};
    if (!parseNumbers(text, ',', INT32_MIN, {&zoom.x1, &zoom.y1, &zoom.x2, &zoom.y2})) return false;
    zooms.push_back(zoom);
    return true;
}

struct Flag {
    const char* word;
    bool DumpOptions::*wanted;
};
constexpr Flag FLAGS[] = {
    {"--plotted", &DumpOptions::plotted}, {"--records", &DumpOptions::records}, {"--hex", &DumpOptions::hex},
    {"--picture", &DumpOptions::picture}, {"--calls", &DumpOptions::calls},
};

// True when the word is one of them.
bool setFlag(const std::string& word, DumpOptions& options) {
    for (const Flag& flag : FLAGS) {
        if (word != flag.word) continue;
        options.*flag.wanted = true;
        return true;
    }
    return false;
}

bool takesValue(const std::string& word) {
    return word == "--page" || word == "--chunk" || word == "--size" || word == "--rotate" || word == "--zoom";
}

bool parseValue(const std::string& word, const std::string& value, DumpOptions& options) {
    if (word == "--page") return parseNumbers(value, ' ', 1, {&options.page});
    if (word == "--chunk") return parseNumbers(value, ' ', 1, {&options.chunk});
    if (word == "--size") return parseNumbers(value, 'x', 0, {&options.width, &options.height});
    if (word == "--rotate") return parseNumbers(value, ' ', 0, {&options.rotations});
    return parseZoom(value, options.zooms);
}

// Takes the word at i, and the value behind it where it has one. Answers the problem, or nothing.
std::string takeWord(const std::vector<std::string>& words, size_t& i, DumpOptions& options) {
    const std::string& word = words[i];
    if (setFlag(word, options)) return {};
    if (takesValue(word)) {
        if (++i == words.size()) return "a value is missing behind " + word;
        return parseValue(word, words[i], options) ? "" : "wrong value behind " + word + ": " + words[i];
    }
    if (!word.empty() && word[0] == '-') return "unknown option " + word;
    if (options.file) return "more than one file: " + word;
    options.file = word;
    return {};
}

void chooseDefaultSections(DumpOptions& options) {
    if (options.records || options.hex || options.picture || options.calls) return;
    options.hex = options.picture = options.calls = true;
}

}  // namespace

std::string parseDumpOptions(const std::vector<std::string>& words, DumpOptions& options) {
    for (size_t i = 0; i < words.size(); ++i) {
        std::string problem = takeWord(words, i, options);
        if (!problem.empty()) return problem;
    }
    if (options.page != 1 && !options.plotted) return "--page goes with --plotted";
    chooseDefaultSections(options);
    return options.file ? "" : "no file";
}
