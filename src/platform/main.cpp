// The process entry: hands the argument vector to the toolkit as it is, and to the viewer as one command line.
#include <string>
#include <string_view>

#include "platform/arguments.h"
#include "platform/winmain.h"
#include "system/standard_streams.h"

namespace {

constexpr int SHOW_NORMAL = 1;

// The viewer's splitter toggles at each double quote and knows no way to write one, so those of the word are left out.
void appendQuoted(std::string& line, std::string_view word) {
    line += '"';
    for (const char c : word) {
        if (c != '"') line += c;
    }
    line += '"';
}

void appendWord(std::string& line, std::string_view word) {
    if (word.empty() || word.find_first_of(" \"") != std::string_view::npos) {
        appendQuoted(line, word);
    } else {
        line += word;
    }
}

std::string joinArguments(int count, char** values) {
    std::string line;
    for (int i = 1; i < count; i++) {
        if (i > 1) line += ' ';
        appendWord(line, values[i]);
    }
    return line;
}

// Any value but null will do: the viewer only stores and traces it.
HINSTANCE processInstance() {
    static char token;
    return reinterpret_cast<HINSTANCE>(&token);
}

}  // namespace

int main(int argc, char** argv) {
    kelsystem::holdStandardStreams();
    setPlatformArguments(argc, argv);
    std::string line = joinArguments(argc, argv);
    return WinMain(processInstance(), nullptr, line.data(), SHOW_NORMAL);
}
