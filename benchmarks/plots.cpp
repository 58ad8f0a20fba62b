#include "plots.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>
#include <random>

namespace {

constexpr int32_t MARGIN = 200;  // so that a coordinate has three digits at least
constexpr int32_t PAIRS = 40;    // of a polyline of pen moves
constexpr int32_t STEP = 120;    // the longest of a pen move on each axis
constexpr int32_t STROKE_SEGMENTS = 20;
constexpr int32_t LABEL_LENGTH = 8;

// The engine's numbers are the same everywhere, those of the library's distributions are not.
class Random {
  public:
    int32_t between(int32_t least, int32_t most) {
        return least + static_cast<int32_t>(engine_() % (static_cast<uint32_t>(most - least) + 1));
    }

  private:
    std::mt19937 engine_{1};
};

struct Point {
    int32_t x, y;
};

void append(std::string& text, int32_t number) {
    char digits[16];
    text.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

void append(std::string& text, Point point) {
    append(text, point.x);
    text += ',';
    append(text, point.y);
}

void appendMove(std::string& text, const char* command, Point point) {
    text += command;
    append(text, point);
    text += ';';
}

Point anywhere(Random& random, int32_t margin) {
    return {random.between(margin, SHEET_WIDTH - margin), random.between(margin, SHEET_HEIGHT - margin)};
}

Point stepFrom(Random& random, Point from) {
    return {std::clamp(from.x + random.between(-STEP, STEP), MARGIN, SHEET_WIDTH - MARGIN),
            std::clamp(from.y + random.between(-STEP, STEP), MARGIN, SHEET_HEIGHT - MARGIN)};
}

bool isOnSheet(double x, double y) {
    return x >= 0.0 && x <= SHEET_WIDTH && y >= 0.0 && y <= SHEET_HEIGHT;
}

// A polyline whose direction changes by and by; at the sheet's edge it turns back.
void appendStroke(std::string& text, Random& random, int64_t segments) {
    const Point start = anywhere(random, MARGIN);
    double x = start.x;
    double y = start.y;
    double heading = random.between(0, 359);
    appendMove(text, "PU", start);
    text += "PD";
    for (int64_t i = 0; i < segments; ++i) {
        const double radians = (heading += random.between(-40, 40)) * std::numbers::pi / 180.0;
        double length = random.between(10, 150);
        if (!isOnSheet(x + length * std::cos(radians), y + length * std::sin(radians))) length = -length;
        if (length < 0) heading += 180.0;
        x += length * std::cos(radians);
        y += length * std::sin(radians);
        if (i > 0) text += ',';
        append(text, {static_cast<int32_t>(std::lround(x)), static_cast<int32_t>(std::lround(y))});
    }
    text += ";\n";
}

}  // namespace

Plot penMoves(int64_t bytes) {
    Random random;
    Plot plot;
    plot.text.reserve(static_cast<size_t>(bytes) + 1000);
    while (static_cast<int64_t>(plot.text.size()) < bytes) {
        Point at = anywhere(random, MARGIN);
        appendMove(plot.text, "PU", at);
        plot.text += "PD";
        for (int32_t i = 0; i < PAIRS; ++i) {
            at = stepFrom(random, at);
            if (i > 0) plot.text += ',';
            append(plot.text, at);
        }
        plot.text += ";\n";
        plot.items += PAIRS + 1;
    }
    return plot;
}

Plot strokes(int64_t segments, double penWidth) {
    constexpr Point CORNERS[] = {{0, 0}, {SHEET_WIDTH, SHEET_HEIGHT}};
    Random random;
    Plot plot;
    plot.text = "IN;SP1;";
    if (penWidth > 0.0) plot.text += "PW" + std::to_string(penWidth) + ",1;";
    for (const Point corner : CORNERS) {
        appendMove(plot.text, "PU", corner);
        appendMove(plot.text, "PD", corner);
        ++plot.items;
    }
    for (int64_t left = segments; left > 0; left -= STROKE_SEGMENTS) {
        appendStroke(plot.text, random, std::min<int64_t>(left, STROKE_SEGMENTS));
    }
    plot.items += segments;
    return plot;
}

Plot labels(int64_t count) {
    Random random;
    Plot plot = strokes(0, 0.0);
    plot.text += "SI0.2,0.3;";
    for (int64_t i = 0; i < count; ++i) {
        appendMove(plot.text, "PU", anywhere(random, MARGIN));
        plot.text += "LB";
        for (int32_t letter = 0; letter < LABEL_LENGTH; ++letter) {
            plot.text += static_cast<char>(random.between('A', 'z'));
        }
        plot.text += "\x03\n";
    }
    plot.items = count;
    return plot;
}

Plot scaledPenMoves(int64_t bytes) {
    const Plot moves = penMoves(bytes);
    Plot plot = {"IN;SP1;IP0,0,8000,5000;SC0,16000,0,10000;", moves.items};
    plot.text.reserve(moves.text.size() * 3 / 2);
    for (std::size_t i = 0; i < moves.text.size(); ++i) {
        plot.text += moves.text[i];
        const bool digit = moves.text[i] >= '0' && moves.text[i] <= '9';
        const bool more = i + 1 < moves.text.size() && moves.text[i + 1] >= '0' && moves.text[i + 1] <= '9';
        if (digit && !more) plot.text += ".5";
    }
    return plot;
}

int64_t sumNumbers(std::string_view text) {
    int64_t sum = 0;
    const char* at = text.data();
    const char* end = at + text.size();
    while (at != end) {
        uint32_t digit = static_cast<uint32_t>(*at++) - '0';
        if (digit > 9) continue;
        uint32_t number = digit;
        for (; at != end && (digit = static_cast<uint32_t>(*at) - '0') <= 9; ++at) {
            number = number * 10 + digit;
        }
        sum += number;
    }
    return sum;
}
