// Numbers, however they are written.
#include <algorithm>
#include <cmath>

#include "plotter/byte_kinds.h"
#include "plotter/digits.h"
#include "plotter/reader.h"

namespace plotter {

namespace {

// With a parity bit, too.
bool isDigitOrMarked(uint8_t byte) {
    return kindOf(byte) == Kind::Digit;
}

int digitOf(uint8_t byte) {
    return (byte & 0x7F) - '0';
}

constexpr double POWERS[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8, 1e9,
                             1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};
constexpr int MOST_EXPONENT = 18;
constexpr uint64_t TENS[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};

// A sign, digits, a point, digits and a separator that are read at once, and the bytes that are looked at behind them.
constexpr std::size_t LONGEST_PLAIN_NUMBER = 3 * DIGITS_AT_ONCE + 3;

// Digits without a sign, and a power of ten.
struct Decimal {
    static constexpr uint64_t FULL = 10'000'000'000;  // eight more digits fit

    uint64_t digits = 0;
    int exponent = 0;

    double value() const {
        const auto whole = static_cast<double>(digits);
        if (exponent == 0) return whole;
        if (exponent < -MOST_EXPONENT) return whole / POWERS[MOST_EXPONENT] * std::pow(10.0, exponent + MOST_EXPONENT);
        if (exponent < 0) return whole / POWERS[-exponent];
        return whole * POWERS[std::min(exponent, MOST_EXPONENT)];
    }
};

// The digits that stand there, before the point or behind it. More of them than a double holds count for nothing behind
// the point, and for tens before it. Answers the place behind them.
std::size_t appendDigits(std::string_view bytes, std::size_t at, Decimal& decimal, bool beforePoint) {
    while (at + DIGITS_AT_ONCE <= bytes.size() && decimal.digits < Decimal::FULL) {
        uint64_t value = 0;
        const std::size_t count = readEightDigits(bytes.data() + at, value);
        if (count == 0) break;
        decimal.digits = decimal.digits * TENS[count] + value;
        if (!beforePoint) decimal.exponent -= static_cast<int>(count);
        at += count;
        if (count < DIGITS_AT_ONCE) break;
    }
    for (; at < bytes.size() && isDigitOrMarked(static_cast<uint8_t>(bytes[at])); ++at) {
        if (decimal.digits >= Decimal::FULL * TENS[6]) {
            if (beforePoint) ++decimal.exponent;
            continue;
        }
        decimal.digits = decimal.digits * 10 + static_cast<uint64_t>(digitOf(static_cast<uint8_t>(bytes[at])));
        if (!beforePoint) --decimal.exponent;
    }
    return at;
}

// At an E: what stands behind it where that is an exponent. Answers the place behind, the E's own where it is none.
std::size_t readExponent(std::string_view bytes, std::size_t at, Decimal& decimal) {
    const auto byte = [bytes](std::size_t place) { return static_cast<uint8_t>(bytes[place]); };
    const bool sign = kindOf(byte(at + 1)) == Kind::Sign;
    std::size_t next = at + (sign ? 2 : 1);
    if (next >= bytes.size() || !isDigitOrMarked(byte(next))) return at;
    const bool negative = sign && (bytes[next - 1] & 0x7F) == '-';
    constexpr int MOST = 1000;
    int given = 0;
    for (; next < bytes.size() && isDigitOrMarked(byte(next)); ++next) {
        given = std::min(given * 10 + digitOf(byte(next)), MOST);
    }
    decimal.exponent += negative ? -given : given;
    return next;
}

}  // namespace

// at_ stands on a sign, a digit or a point that begin one.
double Reader::readNumber() {
    const std::size_t end = bytes_.size();
    std::size_t at = at_;
    bool negative = false;
    if (kindOf(byte(at)) == Kind::Sign) {
        negative = (bytes_[at] & 0x7F) == '-';
        ++at;
    }
    Decimal decimal;
    at = appendDigits(bytes_, at, decimal, true);
    if (at < end && kindOf(byte(at)) == Kind::Point) at = appendDigits(bytes_, at + 1, decimal, false);
    // No name has a digit or a sign as its second letter, so an exponent cannot be mistaken.
    if (at + 1 < end && (bytes_[at] & 0x5F) == 'E' && at > at_) at = readExponent(bytes_, at, decimal);
    at_ = at;
    const double value = decimal.value();
    return negative ? -value : value;
}

// Whole numbers and separators as nearly all plots write them, for as long as they last and there is room; what is
// anything else is left to the others.
void Reader::readPlainNumbers() {
    const char* at = bytes_.data() + at_;
    const char* const last = bytes_.data() + bytes_.size() - LONGEST_PLAIN_NUMBER;
    double* next = numbers_.data() + count_;
    double* const end = numbers_.data() + numbers_.size();
    while (at < last && next != end) {
        const bool negative = *at == '-';
        uint64_t value = 0;
        const char* behind = at + (negative ? 1 : 0);
        const std::size_t digits = readEightDigits(behind, value);
        behind += digits;
        double number = static_cast<double>(value);
        if (*behind == '.') {
            uint64_t fraction = 0;
            const std::size_t more = readEightDigits(behind + 1, fraction);
            behind += 1 + more;
            number = static_cast<double>(value * TENS[more] + fraction) / POWERS[more];
        }
        const char separator = *behind;
        const bool ends = separator == ',' || separator == ';' || separator == ' ' || separator == '\n';
        if (digits == 0 || digits == DIGITS_AT_ONCE || !ends) break;
        *next++ = negative ? -number : number;
        at = behind;
        if (separator == ';') break;
        ++at;
    }
    at_ = static_cast<std::size_t>(at - bytes_.data());
    count_ = static_cast<std::size_t>(next - numbers_.data());
}

// Up to the terminator, the next name, an ESC or the end; at most NUMBERS_AT_ONCE. False: a letter that begins no name
// stands between them, and what was read is damaged.
bool Reader::readNumbers() {
    count_ = 0;
    if (bytes_.size() > LONGEST_PLAIN_NUMBER) readPlainNumbers();
    while (at_ < bytes_.size()) {
        switch (kindOf(byte(at_))) {
            case Kind::Digit:
            case Kind::Sign:
            case Kind::Point:
                if (count_ == NUMBERS_AT_ONCE) return true;
                numbers_[count_++] = readNumber();
                break;
            case Kind::End:
                ++at_;
                return true;
            case Kind::Escape:
                return true;
            case Kind::Letter: {
                std::size_t behind = 0;
                if (nameAt(at_, &behind) != nullptr || behind != 0) return true;
                report_.passOver(std::string(instruction_.name) + " (damaged)", instruction_.offset);
                skipTo(';');
                return false;
            }
            case Kind::Blank:
                ++at_;
                break;
            case Kind::Other:
                if (bytes_[at_] == '!' || (bytes_[at_] == '#' && atLineStart())) return true;
                ++at_;
                break;
        }
    }
    return true;
}

bool Reader::readPairs(const ManifestRow& row) {
    if (!readNumbers()) return false;
    instruction_.numbers = {numbers_.data(), count_};
    if (count_ == NUMBERS_AT_ONCE) going_ = &row;
    return true;
}

}  // namespace plotter
