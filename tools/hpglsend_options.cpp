#include "hpglsend_options.h"

#include <charconv>

#include "host/protocol.h"

const char SEND_USAGE[] =
    "usage: hpglsend [--channel NAME] [--viewer PROGRAM] [--wait SECONDS] [--no-start] [--as-is] [--receive FILE] "
    "[FILE...]\n";

const char SEND_HELP[] =
    "Sends HP-GL files to the viewer, one after another, and says what became of each.\n"
    "\n"
    "  FILE               a drawing, as a plotter would draw it, its pages one after another;\n"
    "                     - or none: the one on standard input, sent as it is while it comes\n"
    "  --as-is            sends the bytes of every FILE as they are\n"
    "  --channel NAME     the viewer that was started with this name (default)\n"
    "  --viewer PROGRAM   what is started when no viewer listens there (kelhpgl)\n"
    "  --wait SECONDS     how long it is waited for, 0 to 86400 (10)\n"
    "  --no-start         starts none\n"
    "  --receive FILE     waits, when all are shown, until the user prints to the program\n"
    "                     that sent the drawing, and writes the page there\n"
    "  --help             this text\n"
    "\n"
    "Exit code: 0 all are shown (and the page is written), 1 a file cannot be read or is\n"
    "refused, 2 wrong options, 3 there is no viewer, or it has ended, 4 the page cannot be\n"
    "written, or is too large.\n";

namespace {

constexpr int MOST_SECONDS = 86400;  // a day

bool setChannel(SendOptions& options, const std::string& value) {
    options.channel = value;
    return !kelhost::channelPath(value).empty();
}

bool setViewer(SendOptions& options, const std::string& value) {
    options.viewer = value;
    return !value.empty();
}

// A minus sign alone would be standard output, which takes the messages.
bool setReceive(SendOptions& options, const std::string& value) {
    options.receive = value;
    return !value.empty() && value != "-";
}

bool setWait(SendOptions& options, const std::string& value) {
    int seconds = 0;
    const char* end = value.data() + value.size();
    const auto [next, error] = std::from_chars(value.data(), end, seconds);
    options.wait = std::chrono::seconds(seconds);
    return error == std::errc() && next == end && seconds >= 0 && seconds <= MOST_SECONDS;
}

bool setNoStart(SendOptions& options, const std::string& /*value*/) {
    options.start = false;
    return true;
}

bool setAsIs(SendOptions& options, const std::string& /*value*/) {
    options.asIs = true;
    return true;
}

bool setHelp(SendOptions& options, const std::string& /*value*/) {
    options.help = true;
    return true;
}

struct Option {
    const char* word;
    bool takesValue;
    bool (*set)(SendOptions& options, const std::string& value);  // false for a wrong value
};

// clang-format off
constexpr Option OPTIONS[] = {
    {"--channel",  true,  setChannel},
    {"--viewer",   true,  setViewer},
    {"--wait",     true,  setWait},
    {"--no-start", false, setNoStart},
    {"--as-is",    false, setAsIs},
    {"--receive",  true,  setReceive},
    {"--help",     false, setHelp},
    {"-h",         false, setHelp},
};
// clang-format on

const Option* findOption(const std::string& word) {
    for (const Option& option : OPTIONS) {
        if (word == option.word) return &option;
    }
    return nullptr;
}

// Takes the option at i, and the value behind it where it has one. Answers the problem, or nothing.
std::string takeOption(const std::vector<std::string>& words, std::size_t& i, SendOptions& options) {
    const std::string& word = words[i];
    const Option* option = findOption(word);
    if (option == nullptr) return "unknown option " + word;
    if (option->takesValue && ++i == words.size()) return "a value is missing behind " + word;
    return option->set(options, words[i]) ? "" : "wrong value behind " + word + ": " + words[i];
}

}  // namespace

std::string parseSendOptions(const std::vector<std::string>& words, SendOptions& options) {
    bool optionsEnded = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (optionsEnded || word.size() < 2 || word.front() != '-') {
            // A file that is called "-" is not standard input.
            options.files.push_back(optionsEnded && word == "-" ? "./-" : word);
        } else if (word == "--") {
            optionsEnded = true;
        } else if (std::string problem = takeOption(words, i, options); !problem.empty()) {
            return problem;
        }
    }
    if (options.files.empty()) options.files.emplace_back("-");
    return {};
}
