#include "qrvel/base/options.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string_view>
#include <utility>

#include "host/protocol.h"
#include "platform/arguments.h"
#include "qrvel/base/output_names.h"
#include "qrvel/base/print_choice.h"
#include "system/shown_text.h"

namespace qrvel {

namespace {

using Words = std::span<const char* const>;

[[noreturn]] void refuse(const char* reason, std::string_view word) {
    std::fprintf(stderr, "kelhpgl: %s: %s\nTry 'kelhpgl --help'.\n", reason, kelsystem::shownText(word).c_str());
    std::exit(2);
}

void setPicture(Options& options, const char* value) {
    if (formatOf(value) != PageFormat::Png) refuse("no name that ends with .png", value);
    options.picture = value;
}

void setSize(Options& options, const char* value) {
    constexpr int MOST = 16384;  // pixels a side; a picture of 1 GiB
    int width = 0;
    int height = 0;
    char rest = 0;
    if (std::sscanf(value, "%5dx%5d%c", &width, &height, &rest) != 2 || width < 1 || height < 1 || width > MOST ||
        height > MOST) {
        refuse("no size", value);
    }
    options.pictureWidth = width;
    options.pictureHeight = height;
    options.sizeGiven = true;
}

[[noreturn]] void printHelp(Options& options, const char* value);

[[noreturn]] void printVersion(Options& /*options*/, const char* /*value*/) {
    std::puts("KEL HPGL Display " KEL_VERSION);
    std::exit(0);
}

void setFrames(Options& options, const char* /*value*/) {
    options.frames = true;
}

void setWatch(Options& options, const char* /*value*/) {
    options.watch = true;
}

void setChannelName(Options& options, const char* value) {
    if (kelhost::channelPath(value).empty()) refuse("no channel name", value);
    options.channelName = value;
}

void setChannelDescriptor(Options& options, const char* value) {
    char* end = nullptr;
    const long number = std::strtol(value, &end, 10);
    if (end == value || *end != '\0' || number < 0 || number > INT_MAX ||
        fcntl(static_cast<int>(number), F_GETFD) < 0) {
        refuse("no open descriptor", value);
    }
    options.channelDescriptor = static_cast<int>(number);
}

void setPrintTo(Options& options, const char* value) {
    if (formatOf(value) == PageFormat::None) refuse("no name that ends with .pdf, .svg or .png", value);
    options.printTo = value;
}

void setAsIs(Options& options, const char* /*value*/) {
    options.asIs = true;
}

// A number that is too large for any file is one of a page that is not there.
void setPageNumber(Options& options, const char* value) {
    const unsigned long long number = std::strtoull(value, nullptr, 10);
    if (number == 0) refuse("pages are counted from 1", value);
    options.page = static_cast<int>(std::min<unsigned long long>(number, INT_MAX));
}

void setPaper(Options& options, const char* value) {
    const auto [paper, problem] = choosePaper(value);
    if (problem != nullptr) refuse(problem, value);
    options.paper = paper;
    options.paperGiven = true;
}

// No paper is a bare number.
void setPage(Options& options, const char* value) {
    const std::string_view word = value;
    const bool isNumber = !word.empty() && word.find_first_not_of("0123456789") == std::string_view::npos;
    (isNumber ? setPageNumber : setPaper)(options, value);
}

void setLandscape(Options& options, const char* /*value*/) {
    options.landscape = true;
}

void setDpi(Options& options, const char* value) {
    int dpi = 0;
    char rest = 0;
    if (std::sscanf(value, "%5d%c", &dpi, &rest) != 1 || dpi < LEAST_DPI || dpi > MOST_DPI) {
        refuse("no resolution from 10 to 2400", value);
    }
    options.dpi = dpi;
}

struct Option {
    const char* name;
    const char* value;  // what follows it, for the help; null for nothing
    const char* help;
    void (*take)(Options& options, const char* value);
};

// clang-format off
constexpr Option OPTIONS[] = {
    {"--watch",   nullptr,   "read the files again when they change",              setWatch},
    {"--as-is",   nullptr,   "draw the files' bytes as a host's, without a plotter in between", setAsIs},
    {"--page",    "N",       "the page of each FILE to begin with, or the only one to print",      setPage},
    {"--channel", "NAME",    "let hosts send pictures to that name",                setChannelName},
    {"--channel-fd", "N",    "a host is at the other end of that descriptor",       setChannelDescriptor},
    {"--frames",  nullptr,   "a host is at standard input and output",              setFrames},
    {"--picture", "FILE",    "write the picture as PNG and end, without a window", setPicture},
    {"--size",    "WxH",     "the size of that picture, or of a .png page, in pixels (500x500)",       setSize},
    {"--print-to", "FILE",   "write each FILE as .pdf, .svg or .png and end, without a window; %n is its name, %p the page", setPrintTo},
    {"--page",    "SIZE",    "the paper: A0 to A6, Letter, Legal, Tabloid, WxHmm, fit (A4)",        setPage},
    {"--landscape", nullptr, "the paper lies on its longer side",                   setLandscape},
    {"--dpi",     "N",       "dots an inch of a .png (300)",                        setDpi},
    {"--help",    nullptr,   "this text; -h too",                                          printHelp},
    {"--version", nullptr,   "name and version",                                   printVersion},
};
// clang-format on

void printHelp(Options& /*options*/, const char* /*value*/) {
    std::puts(
        "Usage: kelhpgl [OPTION]... [FILE]...\n"
        "Shows plotter drawings written in HP-GL or HP-GL/2.\n\n"
        "  FILE                 a drawing; several are shown one after another\n"
        "  -                    the drawing on standard input (also taken from there when no FILE is given)");
    for (const Option& option : OPTIONS) {
        std::printf("  %-12s %-6s %s\n", option.name, option.value != nullptr ? option.value : "", option.help);
    }
    std::puts(
        "  -I=NUMBER            id with which a host is notified when the viewer ends badly\n"
        "  -P=NUMBER            the host's window");
    std::exit(0);
}

// -I=N and -P=N, in either case. A value that is no number counts as 0, as the viewer takes it.
bool takeNotification(Options& options, std::string_view word) {
    if (word.size() < 4 || word[2] != '=') return false;
    const char* value = word.data() + 3;
    switch (word[1]) {
        case 'I':
        case 'i':
            options.notifyId = static_cast<uint32_t>(std::strtol(value, nullptr, 10));
            return true;
        case 'P':
        case 'p':
            options.notifyWindow = static_cast<uintptr_t>(std::strtol(value, nullptr, 10));
            return true;
        default:
            return false;
    }
}

const Option* findOption(std::string_view word) {
    if (word == "-h") return findOption("--help");
    for (const Option& option : OPTIONS) {
        if (word == option.name) return &option;
    }
    return nullptr;
}

// Takes the option at the front and answers what is left behind it.
Words takeOption(Options& options, Words words) {
    const std::string_view word = words.front();
    const Option* option = findOption(word);
    if (option == nullptr) {
        // One letter may be meant for somebody else: what the viewer does not know it passes over.
        if (!takeNotification(options, word) && word.starts_with("--")) refuse("unknown option", word);
        return words.subspan(1);
    }
    if (option->value == nullptr) {
        option->take(options, nullptr);
        return words.subspan(1);
    }
    if (words.size() < 2) refuse("a value is missing behind", word);
    option->take(options, words[1]);
    return words.subspan(2);
}

// A terminal has no data, nor has /dev/null.
bool standardInputHasData() {
    struct stat about = {};
    return fstat(STDIN_FILENO, &about) == 0 &&
           (S_ISFIFO(about.st_mode) || S_ISREG(about.st_mode) || S_ISSOCK(about.st_mode));
}

// Of a PNG, so large that it has the pixels that were asked for.
void setPaperOfSize(Options& options) {
    if (options.paperGiven) refuse("there is a paper already", "--size");
    if (formatOf(options.printTo) != PageFormat::Png) refuse("only a PNG has pixels", "--size");
    const double pixel = MILLIMETRES_AN_INCH / options.dpi;
    const auto [paper, problem] = paperOf(options.pictureWidth * pixel, options.pictureHeight * pixel);
    if (problem != nullptr) refuse(problem, "--size");
    options.paper = paper;
}

// Only files can be printed, and each has one place to go to.
void checkConversion(Options& options) {
    if (std::exchange(options.pipedIn, false)) options.sources += STANDARD_INPUT;
    const bool others = options.frames || options.channelDescriptor >= 0 || !options.channelName.isEmpty() ||
                        options.watch || !options.picture.isEmpty();
    if (others) refuse("goes with files alone", "--print-to");
    if (options.sources.isEmpty()) refuse("no file to print", "--print-to");
    if (options.sizeGiven) setPaperOfSize(options);
    if (options.sources.size() > 1 && !namesEach(options.printTo)) {
        refuse("several files need a %n in the name", options.printTo.constData());
    }
}

}  // namespace

Options readOptions() {
    Options options;
    const PlatformArguments arguments = platformArguments();
    Words words(arguments.values, static_cast<std::size_t>(arguments.count));
    if (!words.empty()) words = words.subspan(1);
    bool optionsEnded = false;
    while (!words.empty()) {
        const std::string_view word = words.front();
        if (!optionsEnded && word.size() > 1 && word.front() == '-' && word != "--") {
            words = takeOption(options, words);
            continue;
        }
        if (word == "--" && !optionsEnded) {
            optionsEnded = true;
        } else {
            // A file called "-" behind "--" is given a path, so that it is not taken for standard input.
            options.sources += optionsEnded && word == "-" ? "./-" : QByteArray(word.data(), qsizetype(word.size()));
        }
        words = words.subspan(1);
    }
    const auto claims =
        options.sources.count("-") + (options.frames ? 1 : 0) + (options.channelDescriptor == 0 ? 1 : 0);
    if (claims > 1) refuse("standard input is asked for more than once", "");
    const bool hasSource = !options.sources.isEmpty() || options.frames || options.channelDescriptor >= 0 ||
                           !options.channelName.isEmpty();
    options.pipedIn = !hasSource && standardInputHasData();
    if (!options.printTo.isEmpty()) checkConversion(options);
    return options;
}

}  // namespace qrvel
