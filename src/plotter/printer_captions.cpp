// Text in the printer's language, and rules.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "plotter/ascii.h"
#include "plotter/printer.h"

namespace plotter {

namespace {

constexpr double UNDERLINE = 0.1;  // below the baseline, in heights of the font

// From text, y upwards, to the logical page, y downwards.
Point turned(Point p, int direction) {
    switch (direction) {
        case 1:
            return {-p.y, -p.x};
        case 2:
            return {-p.x, p.y};
        case 3:
            return {p.y, p.x};
        default:
            return {p.x, -p.y};
    }
}

}  // namespace

// ---- fonts ----

void Printer::choosePitch(double pitch) {
    for (CaptionFont& font : settings_.fonts) {
        font.pitch = pitch;
    }
    settings_.columnWidth = UNITS_PER_INCH / pitch;
}

void Printer::chooseFont(CaptionFont& font, char group, const EscapeField& field) {
    constexpr double LEAST_PITCH = 1, MOST_PITCH = 576;
    constexpr double LEAST_POINTS = 0.25, MOST_POINTS = 999.75;
    constexpr double LETTERS_BEFORE_A = 64;
    if (group == 0 && field.letter >= 'A' && field.letter <= 'Z' && field.letter != 'X') {
        font.symbolSet = static_cast<int>(std::clamp(field.value, 0.0, 2047.0) * 32 + field.letter - LETTERS_BEFORE_A);
    } else if (group == 0 && field.letter == '@') {
        font = {};
    }
    if (group != 's') return;
    switch (field.letter) {
        case 'P':
            font.proportional = field.value == 1;
            break;
        case 'H':
            font.pitch = std::clamp(field.value, LEAST_PITCH, MOST_PITCH);
            break;
        case 'V':
            font.height = std::clamp(field.value, LEAST_POINTS, MOST_POINTS);
            break;
        case 'S':
            font.italic = std::fmod(std::abs(field.value), 2) == 1;
            break;
        case 'T':
            font.typeface = static_cast<int>(std::clamp(field.value, 0.0, 65535.0));
            break;
        default:
            break;
    }
    settings_.columnWidth = settings_.fonts[settings_.font].advance();
}

// ---- text ----

void Printer::returnCarriage() {
    setTurnedCursor({margin(LEFT), turnedCursor().y});
}

void Printer::feedLine(double count) {
    const Point cursor = turnedCursor();
    const double down = cursor.y + lines(count);
    if (settings_.skipsPerforation && down > turnedSize().y - margin(BOTTOM)) {
        endPage();
        home();
        setTurnedCursor({cursor.x, turnedCursor().y});
    } else {
        setTurnedCursor({cursor.x, down});
    }
}

void Printer::control(char c) {
    const bool returnFeeds = settings_.lineEnds == 1 || settings_.lineEnds == 3;
    const bool feedReturns = settings_.lineEnds >= 2;
    const Point cursor = turnedCursor();
    switch (c) {
        case CARRIAGE_RETURN:
            returnCarriage();
            if (returnFeeds) feedLine(1);
            break;
        case LINE_FEED:
            feedLine(1);
            if (feedReturns) returnCarriage();
            break;
        case FORM_FEED:
            endPage();
            home();
            setTurnedCursor({feedReturns ? margin(LEFT) : cursor.x, turnedCursor().y});
            break;
        case BACKSPACE:
            setTurnedCursor({std::max(cursor.x - settings_.columnWidth, 0.0), cursor.y});
            break;
        case TAB: {
            const double stop = std::max(columns(8), 1.0);
            const double left = margin(LEFT);
            setTurnedCursor({left + (std::floor(std::max(cursor.x - left, 0.0) / stop) + 1) * stop, cursor.y});
            break;
        }
        case SHIFT_OUT:
        case SHIFT_IN:
            settings_.font = c == SHIFT_OUT ? 1 : 0;
            settings_.columnWidth = settings_.fonts[settings_.font].advance();
            break;
        default:
            break;
    }
}

void Printer::drawText(std::string_view text) {
    while (!text.empty()) {
        const CaptionCharacter next = nextCharacter(text, settings_.fonts[settings_.font].symbolSet);
        text.remove_prefix(next.length);
        drawCharacter(next.code);
    }
}

void Printer::drawCharacter(char32_t character) {
    if (character < U' ' || character == char32_t{DELETE}) return;
    if (captionCharacters_ >= MOST_CAPTION_CHARACTERS) {
        machine_.report().meetBound("text of a page");
        return;
    }
    const CaptionFont& font = settings_.fonts[settings_.font];
    CaptionStrokes strokes = strokesOf(character, font, settings_.columnWidth);
    const Point cursor = turnedCursor();
    const bool isOnPage = cursor.x < turnedSize().x && cursor.y <= turnedSize().y;
    if (!strokes.isKnown) {
        std::array<char, 32> name{};
        std::snprintf(name.data(), name.size(), "text character U+%04X", static_cast<unsigned>(character));
        machine_.report().passOver(name.data());
    }
    if (settings_.underlines) {
        const double below = -UNDERLINE * font.height * UNITS_PER_INCH / 72;
        strokes.lines.push_back({{0, below}, {strokes.advance, below}});
    }
    if (isOnPage && !strokes.lines.empty()) {
        ++captionCharacters_;
        drawLines(strokes.lines);
    }
    setTurnedCursor({cursor.x + strokes.advance, cursor.y});
}

void Printer::drawLines(const std::vector<Line>& lines) {
    const Ink ink = captionInk();
    Line there;
    for (const Line& line : lines) {
        there.clear();
        for (const Point point : line) {
            there.push_back(settings_.page.toPaper(settings_.cursor + turned(point, settings_.direction)));
        }
        machine_.drawOnPaper(there, ink);
    }
}

Ink Printer::captionInk() const {
    Ink ink;
    ink.pen = settings_.foreground;
    ink.colour = machine_.state.pens.colourOf(ink.pen);
    return ink;
}

// ---- rules ----

// A rule reaches to the right and downwards; it follows the direction of text.
void Printer::fillRule(double how) {
    constexpr double SOLID = 0, UNSEEN = 1, SHADED = 2;
    constexpr double HATCHED = 0.5;  // as dark as the patterns are, about
    const Point size = {std::max(settings_.rule.x, 0.0), std::max(settings_.rule.y, 0.0)};
    const double shade = how == SOLID ? 1 : how == SHADED ? std::clamp(settings_.pattern / 100, 0.0, 1.0) : HATCHED;
    if (size.x == 0 || size.y == 0 || how == UNSEEN || shade == 0) return;
    Ring ring = {{0, 0}, {size.x, 0}, {size.x, -size.y}, {0, -size.y}};
    for (Point& point : ring) {
        point = settings_.page.toPaper(settings_.cursor + turned(point, settings_.direction));
    }
    Ink ink = captionInk();
    ink.shade = shade;
    machine_.drawOnPaper(Area{ring}, ink);
}

}  // namespace plotter
