#include "hpgldump_options.h"

#include <charconv>

const char DUMP_USAGE[] =
    "usage: hpgldump [--chunk N] [--size WxH] [--rotate K] [--zoom X1,Y1,X2,Y2]...\n"
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

bool parseZoom(const std::string& text, std::vector<DumpZoom>* zooms) {
    DumpZoom zoom = {};
    if (!parseNumbers(text, ',', INT32_MIN, {&zoom.x1, &zoom.y1, &zoom.x2, &zoom.y2})) return false;
    zooms->push_back(zoom);
    return true;
}

bool* sectionOf(const std::string& word, DumpOptions* options) {
    if (word == "--records") return &options->records;
    if (word == "--hex") return &options->hex;
    if (word == "--picture") return &options->picture;
    return word == "--calls" ? &options->calls : nullptr;
}

bool takesValue(const std::string& word) {
    return word == "--chunk" || word == "--size" || word == "--rotate" || word == "--zoom";
}

bool parseValue(const std::string& word, const std::string& value, DumpOptions* options) {
    if (word == "--chunk") return parseNumbers(value, ' ', 1, {&options->chunk});
    if (word == "--size") return parseNumbers(value, 'x', 0, {&options->width, &options->height});
    if (word == "--rotate") return parseNumbers(value, ' ', 0, {&options->rotations});
    return parseZoom(value, &options->zooms);
}

void chooseDefaultSections(DumpOptions* options) {
    if (options->records || options->hex || options->picture || options->calls) return;
    options->hex = options->picture = options->calls = true;
}

}  // namespace

bool parseDumpOptions(const std::vector<std::string>& words, DumpOptions* options, std::string* problem) {
    bool haveFile = false;
    for (size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (bool* section = sectionOf(word, options)) {
            *section = true;
        } else if (takesValue(word)) {
            if (i + 1 == words.size()) return *problem = "a value is missing behind " + word, false;
            const std::string& value = words[++i];
            if (!parseValue(word, value, options)) return *problem = "wrong value behind " + word + ": " + value, false;
        } else if (!word.empty() && word[0] == '-') {
            return *problem = "unknown option " + word, false;
        } else if (haveFile) {
            return *problem = "more than one file: " + word, false;
        } else {
            options->file = word;
            haveFile = true;
        }
    }
    chooseDefaultSections(options);
    if (!haveFile) *problem = "no file";
    return haveFile;
}
