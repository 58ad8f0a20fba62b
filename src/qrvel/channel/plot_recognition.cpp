#include "qrvel/channel/plot_recognition.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace qrvel {

namespace {

constexpr std::size_t LETTERS = 26;
constexpr std::size_t NAMES = LETTERS * LETTERS;

// Of a name that begins with two capitals.
constexpr std::size_t placeOf(std::string_view name) {
    return static_cast<std::size_t>(name[0] - 'A') * LETTERS + static_cast<std::size_t>(name[1] - 'A');
}

// Whether a name is hardly ever there by chance with a pair of numbers behind it.
constexpr auto SURE = [] {
    std::array<bool, NAMES> names = {};
#define HPGL_COMMAND(name, signature, setup, drawing, action, sure) \
    if (sure) names[placeOf(#name)] = true;
#include "hpgl/commands.inl"
    return names;
}();

constexpr std::string_view PSEUDO_COMMANDS = "HPGL_";
constexpr int SHORTEST_POLYLINE = 2;      // a value for each coordinate
constexpr std::size_t LONGEST_LOOK = 64;  // bytes of a polyline

bool isCapital(char c) {
    return c >= 'A' && c <= 'Z';
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Whatever the parser takes for nothing, but for NUL: a program has numbers between its zeros.
bool isBetweenNumbers(char c) {
    return c == ' ' || c == ',' || c == ';' || c == '+' || (c > 0 && c < ' ');
}

template <class Skipped>
std::string_view without(std::string_view text, Skipped isSkipped) {
    text.remove_prefix(static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isSkipped) - text.begin()));
    return text;
}

// Takes a number off, and what stands in front of it.
bool takeNumber(std::string_view& text) {
    text = without(text, isBetweenNumbers);
    if (text.starts_with('-')) text.remove_prefix(1);
    const std::string_view behind = without(text, [](char c) { return isDigit(c) || c == '.'; });
    const bool found = behind.size() < text.size();
    text = behind;
    return found;
}

bool hasPair(std::string_view text) {
    return takeNumber(text) && !text.empty() && (isBetweenNumbers(text.front()) || text.front() == '-') &&
           takeNumber(text);
}

bool hasNumber(std::string_view text) {
    return takeNumber(text);
}

// As far as one looks: line ends between the values do no harm, and the end of the data is an end too.
bool isPolyline(std::string_view text) {
    const std::string_view look = text.substr(0, LONGEST_LOOK);
    const std::string_view body = look.substr(0, look.find_first_of("; "));
    const auto values =
        std::count_if(body.begin(), body.end(), [](char c) { return static_cast<unsigned char>(c) > ' '; });
    return values >= SHORTEST_POLYLINE && !look.substr(body.size()).starts_with(' ');
}

// Printers like zeros in front of a plot and behind it.
std::string_view withoutPadding(std::string_view bytes) {
    bytes = without(bytes, [](char c) { return c == '\0'; });
    return bytes.substr(0, bytes.find_last_not_of('\0') + 1);
}

bool holdsText(std::string_view bytes) {
    return withoutPadding(bytes).find('\0') == std::string_view::npos;
}

bool drawsForSure(std::string_view command) {
    return SURE[placeOf(command)] && hasPair(command.substr(2));
}

// These are there by chance in a program or a photograph.
bool drawsPerhaps(std::string_view command) {
    return (command.starts_with("CI") && hasNumber(command.substr(2))) ||
           (command.starts_with("PE") && isPolyline(command.substr(2))) || command.starts_with(PSEUDO_COMMANDS);
}

}  // namespace

bool holdsDrawing(std::string_view bytes) {
    const bool isText = holdsText(bytes);
    for (std::size_t at = 0; at + 2 < bytes.size(); ++at) {
        if (!isCapital(bytes[at]) || !isCapital(bytes[at + 1])) continue;
        const std::string_view command = bytes.substr(at);
        if (drawsForSure(command) || (isText && drawsPerhaps(command))) return true;
    }
    return false;
}

bool isBinary(std::string_view bytes) {
    constexpr char ESCAPE = '\x1B';
    const std::string_view begin = without(bytes, [](char c) { return c != ESCAPE && c >= '\0' && c <= ' '; });
    return !begin.starts_with(ESCAPE) && !holdsText(bytes);
}

}  // namespace qrvel
