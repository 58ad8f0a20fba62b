#include <array>
#include <cstdint>

#include "plotter/digits.h"
#include "plotter/plotter.h"
#include "plotter/short_numbers.h"

// The viewer's dialect and a plotter's are the same here: absolute moves in whole numbers, pens that are chosen before
// they draw and have one colour, polygons whose rings are drawn with the pen down.

namespace plotter {

namespace {

constexpr std::size_t MOST_PARAMETERS = 255;  // of a command, in the viewer
constexpr int64_t MOST_COORDINATE = 1 << 30;
constexpr int64_t LONGEST_SIDE = 131'071;  // beyond, the viewer's products wrap on the finest page
constexpr std::size_t MOST_DIGITS = 10;
constexpr int32_t MOST_PEN = 63;
constexpr std::size_t MOST_POINTS_IN_A_RING = 1998;
constexpr std::size_t MOST_RINGS_IN_AN_AREA = 256;

constexpr uint16_t nameOf(char first, char second) {
    return static_cast<uint16_t>(first << 8 | second);
}

// Where an instruction stands that says nothing, or what both understand alike.
class PlainScan {
  public:
    // exact: every number is read, also where it may be skipped.
    PlainScan(std::string_view file, bool exact) : at_(file.data()), end_(file.data() + file.size()), exact_(exact) {}

    bool run() {
        while (skipBlanks()) {
            if (end_ - at_ < 2) return false;
            const uint16_t name = nameOf(at_[0], at_[1]);
            at_ += 2;
            if (!carryOut(name)) return false;
        }
        if (skippedAny_) {
            widen(0, 0);
            widen(SHORT_NUMBER, SHORT_NUMBER);
        }
        isWide_ = !isNarrow();
        return !inPolygon_ && !mayBeDot_ && !isWide_;
    }
    // Whether the numbers that were skipped may have been the reason for a no.
    bool isDoubtful() const { return isWide_ && skippedAny_; }

  private:
    // False at the end.
    bool skipBlanks() {
        while (at_ != end_ && (*at_ == ';' || *at_ == '\n' || *at_ == '\r' || *at_ == ' ')) {
            ++at_;
        }
        return at_ != end_;
    }

    bool carryOut(uint16_t name) {
        if (over_) return false;  // something follows a second IN
        switch (name) {
            case nameOf('P', 'D'):
                down_ = true;
                if (!readPoints()) return false;
                if (points_ == 0) mayBeDot_ = !inPolygon_;
                return true;
            case nameOf('P', 'U'):
                if (mayBeDot_) return false;
                down_ = false;
                // A polygon whose last side has the pen up is open for a plotter, and the viewer closes it.
                return readPoints() && !(inPolygon_ && points_ == 0);
            case nameOf('P', 'A'):
                return !inPolygon_ && readPoints();
            case nameOf('S', 'P'):
                return selectPen();
            case nameOf('I', 'N'):
                over_ = begun_;
                begun_ = true;
                return readNumbers() && count_ == 0;
            case nameOf('P', 'W'):
                return readWidth();
            case nameOf('P', 'C'):
                return readColour();
            case nameOf('P', 'M'):
                return polygonMode();
            case nameOf('F', 'P'):
            case nameOf('E', 'P'):
                return readNumbers() && count_ == 0 && hasPolygon_ && !inPolygon_ && mayDraw();
            default:
                return false;
        }
    }

    // A whole number where a sign or digit stands; `at` goes behind it.
    static bool readNumber(const char*& at, const char* end, int64_t& number) {
        const bool negative = *at == '-';
        if (negative) ++at;
        uint64_t value = 0;
        std::size_t digits = 0;
        if (end - at >= static_cast<std::ptrdiff_t>(DIGITS_AT_ONCE)) {
            digits = readEightDigits(at, value);
            at += digits;
            if (digits < DIGITS_AT_ONCE) {
                number = negative ? -static_cast<int64_t>(value) : static_cast<int64_t>(value);
                return digits > 0;
            }
        }
        for (; at != end && *at >= '0' && *at <= '9'; ++at, ++digits) {
            if (digits == MOST_DIGITS) return false;
            value = value * 10 + static_cast<uint64_t>(*at - '0');
        }
        number = negative ? -static_cast<int64_t>(value) : static_cast<int64_t>(value);
        return digits > 0;
    }

    static bool begins(char c) { return (c >= '0' && c <= '9') || c == '-'; }
    bool ends() const {
        return at_ == end_ || *at_ == ';' || *at_ == '\n' || *at_ == '\r' || (*at_ >= 'A' && *at_ <= 'Z');
    }

    // The few numbers of an instruction that has no coordinates.
    bool readNumbers() {
        for (count_ = 0; at_ != end_ && begins(*at_);) {
            if (count_ == numbers_.size() || !readNumber(at_, end_, numbers_[count_++])) return false;
            if (at_ != end_ && *at_ == ',') ++at_;
        }
        return ends();
    }

    bool readPoints() {
        begun_ = true;
        const char* at = at_;
        const char* const end = end_;
        std::size_t points = 0;
        if (at != end && *at == ' ') ++at;
        while (at != end && begins(*at)) {
            if (maySkip()) {
                const ShortNumbers skipped = skipShortNumbers(at, end);
                skippedAny_ = skippedAny_ || skipped.pairs != 0;
                points += skipped.pairs;
                at = skipped.behind;
                if (at == end || !begins(*at)) break;
            }
            int64_t x = 0;
            int64_t y = 0;
            if (!readNumber(at, end, x) || at == end || (*at != ',' && *at != ' ')) return false;
            ++at;
            if (at == end || !begins(*at) || !readNumber(at, end, y)) return false;
            if (at != end && (*at == ',' || *at == ' ')) ++at;
            if (!takePoint(x, y)) return false;
            ++points;
        }
        at_ = at;
        points_ = points;
        return 2 * points <= MOST_PARAMETERS && ends();
    }

    // Whether it does not matter which numbers come, as long as they are short.
    bool maySkip() const { return !exact_ && down_ && drawn_ && placed_ && !inPolygon_ && !mayBeDot_; }

    bool takePoint(int64_t x, int64_t y) {
        if (x > MOST_COORDINATE || x < -MOST_COORDINATE || y > MOST_COORDINATE || y < -MOST_COORDINATE) return false;
        if (inPolygon_ && !takeVertex()) return false;
        if (down_) {
            if (!inPolygon_ && !drawn_ && !mayDraw()) return false;
            if (!placed_) return false;
            mayBeDot_ = false;
            if (fresh_) widen(x_, y_);
            widen(x, y);
        }
        fresh_ = !down_;
        x_ = x;
        y_ = y;
        placed_ = true;
        return true;
    }

    // The first point behind PM1 is reached with the pen up, all others with the pen down.
    bool takeVertex() { return down_ == (ringPoints_ != 0) && ++ringPoints_ <= MOST_POINTS_IN_A_RING; }

    void widen(int64_t x, int64_t y) {
        if (x < lowX_) lowX_ = x;
        if (x > highX_) highX_ = x;
        if (y < lowY_) lowY_ = y;
        if (y > highY_) highY_ = y;
    }

    bool isNarrow() const { return highX_ - lowX_ <= LONGEST_SIDE && highY_ - lowY_ <= LONGEST_SIDE; }

    // Whether the pen has ink whose colour both agree on.
    bool mayDraw() {
        drawn_ = anythingDrawn_ = true;
        return pen_ != 0 && (!coloursSaid_ || coloured_[static_cast<std::size_t>(pen_)]);
    }

    bool selectPen() {
        begun_ = true;
        if (inPolygon_ || mayBeDot_ || !readNumbers() || count_ > 1) return false;
        const int64_t pen = count_ == 1 ? numbers_[0] : 0;
        if (pen < 0 || pen > MOST_PEN) return false;
        pen_ = static_cast<int32_t>(pen);
        drawn_ = false;
        return true;
    }

    // Millimetres may have a fraction.
    bool readWidth() {
        begun_ = true;
        if (inPolygon_) return false;
        int points = 0;
        while (at_ != end_ && ((*at_ >= '0' && *at_ <= '9') || (*at_ == '.' && ++points == 1))) {
            ++at_;
        }
        if (at_ == end_ || *at_ != ',') return false;
        ++at_;
        return readNumbers() && count_ == 1 && numbers_[0] > 0 && numbers_[0] <= MOST_PEN;
    }

    bool readColour() {
        begun_ = true;
        if (!readNumbers() || count_ != 4 || anythingDrawn_ || numbers_[0] < 1 || numbers_[0] > MOST_PEN) return false;
        for (std::size_t i = 1; i < 4; ++i) {
            if (numbers_[i] < 0 || numbers_[i] > 255) return false;
        }
        bool& coloured = coloured_[static_cast<std::size_t>(numbers_[0])];
        if (coloured) return false;
        return coloured = coloursSaid_ = true;
    }

    // Behind a polygon only a move with the pen up says where the pen is, and how.
    bool polygonMode() {
        if (!readNumbers() || count_ > 1 || mayBeDot_) return false;
        const int64_t mode = count_ == 1 ? numbers_[0] : 0;
        if (mode == 0) {
            if (inPolygon_ || !placed_ || down_) return false;
            inPolygon_ = true;
            ringPoints_ = rings_ = 1;
            return true;
        }
        if (!inPolygon_ || ringPoints_ < 2) return false;
        if (mode == 1) {
            ringPoints_ = 0;
            return ++rings_ <= MOST_RINGS_IN_AN_AREA;
        }
        inPolygon_ = false;
        hasPolygon_ = true;
        placed_ = false;
        return mode == 2;
    }

    const char* at_;
    const char* end_;
    bool exact_;
    bool skippedAny_ = false;
    bool isWide_ = false;
    std::array<int64_t, 4> numbers_ = {};
    std::size_t count_ = 0;
    std::size_t points_ = 0;  // of one instruction
    int64_t x_ = 0, y_ = 0;
    int64_t lowX_ = MOST_COORDINATE, lowY_ = MOST_COORDINATE, highX_ = -MOST_COORDINATE, highY_ = -MOST_COORDINATE;
    bool begun_ = false;
    bool over_ = false;
    bool down_ = false;
    bool placed_ = false;    // the pen's position has been said
    bool mayBeDot_ = false;  // the pen has come down and not drawn yet
    bool drawn_ = false;     // with the pen that is selected
    bool anythingDrawn_ = false;
    bool fresh_ = true;  // no line ends at the pen's position
    int32_t pen_ = 0;
    bool coloursSaid_ = false;
    std::array<bool, MOST_PEN + 1> coloured_ = {};
    bool inPolygon_ = false;
    bool hasPolygon_ = false;
    std::size_t ringPoints_ = 0;
    std::size_t rings_ = 0;
};

bool isInHostsDialect(std::string_view file) {
    if (file.starts_with(':')) return true;
    for (std::size_t at = file.find("HPGL_"); at != std::string_view::npos; at = file.find("HPGL_", at + 1)) {
        const std::string_view word = file.substr(at + 5, 4);
        if (word == "FILE" || word == "INFO" || word == "DATA") return true;
    }
    return false;
}

}  // namespace

bool isPlain(std::string_view file) {
    PlainScan scan(file, false);
    if (scan.run()) return true;
    if (scan.isDoubtful() && PlainScan(file, true).run()) return true;
    return isInHostsDialect(file);
}

}  // namespace plotter
