#include "qrvel/base/paper.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace qrvel {

namespace {

// clang-format off
constexpr NamedPaper PAPERS[] = {
    {"A0",      {.width = 841.0, .height = 1189.0}},
    {"A1",      {.width = 594.0, .height = 841.0}},
    {"A2",      {.width = 420.0, .height = 594.0}},
    {"A3",      {.width = 297.0, .height = 420.0}},
    {"A4",      {.width = 210.0, .height = 297.0}},
    {"A5",      {.width = 148.0, .height = 210.0}},
    {"A6",      {.width = 105.0, .height = 148.0}},
    {"Letter",  {.width = 215.9, .height = 279.4}},
    {"Legal",   {.width = 215.9, .height = 355.6}},
    {"Tabloid", {.width = 279.4, .height = 431.8}},
};
// clang-format on

// What "fit" cuts from: a drawing of any shape gets as long as an A4 sheet.
constexpr Paper UNCUT = {.width = 297.0, .height = 297.0, .fit = true};

constexpr double LEAST_SIDE = 10.0;   // millimetres
constexpr double MOST_SIDE = 5080.0;  // the largest page that every reader of PDF takes

constexpr double MARGIN = 10.0;      // millimetres; all printers reach that far
constexpr double MOST_MARGIN = 0.1;  // of the shorter side
constexpr double BLEED = 2.0;        // millimetres, or half of the margin
constexpr double UNIT = 0.025;       // millimetres: a plotter's unit
constexpr int MOST_UNITS = 16384;    // a side; the viewer's products of coordinates have 32 bits

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char one, char other) { return lower(one) == lower(other); });
}

// Takes a number off the front; false when there is none.
bool takeNumber(std::string_view& words, double& number) {
    const auto [next, error] = std::from_chars(words.data(), words.data() + words.size(), number);
    if (error != std::errc()) return false;
    words.remove_prefix(static_cast<std::size_t>(next - words.data()));
    return true;
}

bool takeSize(std::string_view words, Paper& paper) {
    if (!takeNumber(words, paper.width) || words.empty() || (words.front() != 'x' && words.front() != 'X'))
        return false;
    words.remove_prefix(1);
    return takeNumber(words, paper.height) && equalsIgnoringCase(words, "mm");
}

bool isSide(double length) {
    return length >= LEAST_SIDE && length <= MOST_SIDE;
}

}  // namespace

std::span<const NamedPaper> namedPapers() {
    return PAPERS;
}

PaperChoice choosePaper(std::string_view words) {
    if (equalsIgnoringCase(words, "fit")) return {.paper = UNCUT, .problem = nullptr};
    for (const auto& [name, paper] : PAPERS) {
        if (equalsIgnoringCase(words, name)) return {.paper = paper, .problem = nullptr};
    }
    Paper paper;
    if (!takeSize(words, paper))
        return {.paper = {}, .problem = "no paper (A0 to A6, Letter, Legal, Tabloid, WxHmm, fit)"};
    return paperOf(paper.width, paper.height);
}

PaperChoice paperOf(double width, double height) {
    if (!isSide(width) || !isSide(height)) return {.paper = {}, .problem = "no paper from 10 to 5080 mm"};
    return {.paper = {.width = width, .height = height}, .problem = nullptr};
}

SheetLayout layOut(const Paper& paper, bool landscape) {
    SheetLayout sheet = {.width = paper.width,
                         .height = paper.height,
                         .margin = 0.0,
                         .bleed = 0.0,
                         .unit = 0.0,
                         .areaWidth = 0,
                         .areaHeight = 0,
                         .fit = paper.fit};
    if (landscape && sheet.width < sheet.height) std::swap(sheet.width, sheet.height);
    sheet.margin = std::min(MARGIN, MOST_MARGIN * std::min(sheet.width, sheet.height));
    sheet.bleed = std::min(BLEED, sheet.margin / 2.0);
    const double width = sheet.width - 2.0 * sheet.margin;
    const double height = sheet.height - 2.0 * sheet.margin;
    sheet.unit = std::max(UNIT, std::max(width, height) / MOST_UNITS);
    // A whole number of units may come out a hair too small.
    constexpr double HAIR = 1e-6;
    sheet.areaWidth = static_cast<int>(width / sheet.unit + HAIR);
    sheet.areaHeight = static_cast<int>(height / sheet.unit + HAIR);
    return sheet;
}

}  // namespace qrvel
