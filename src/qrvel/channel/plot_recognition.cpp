#include "plot_recognition.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

namespace qrvel {

namespace {

constexpr std::array<std::string_view, 14> COMMANDS_WITH_PAIRS = {"PA", "PD", "PU", "PR", "EA", "ER", "RA",
                                                                  "RR", "AA", "AR", "EW", "WG", "BR", "BZ"};
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

bool isAnyOf(std::string_view name, std::span<const std::string_view> names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// Printers like zeros in front of a plot and behind it.
std::string_view withoutPadding(std::string_view bytes) {
    bytes = without(bytes, [](char c) { return c == '\0'; });
    return bytes.substr(0, bytes.find_last_not_of('\0') + 1);
}

bool holdsText(std::string_view bytes) {
    return withoutPadding(bytes).find('\0') == std::string_view::npos;
}

// These are hardly ever there by chance.
bool drawsForSure(std::string_view command) {
    return isAnyOf(command.substr(0, 2), COMMANDS_WITH_PAIRS) && hasPair(command.substr(2));
}

// These are, in a program or a photograph.
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
