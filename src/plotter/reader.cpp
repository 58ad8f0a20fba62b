#include "plotter/reader.h"

#include <algorithm>
#include <cstring>

#include "plotter/ascii.h"
#include "plotter/digits.h"
#include "plotter/escapes.h"
#include "plotter/polyline_decoder.h"

namespace plotter {

namespace {

// How many numbers are handed over at once: whole pairs and whole groups of six, so that memory does not grow with an
// instruction.
constexpr std::size_t NUMBERS_AT_ONCE = 6000;

enum class Kind : uint8_t { Other, Blank, Digit, Sign, Point, Letter, End, Escape };

constexpr std::array<Kind, 256> KINDS = [] {
    std::array<Kind, 256> kinds = {};
    for (const int blank : {0, 9, 10, 11, 12, 13, 32, 127, int{','}}) {
        kinds[static_cast<std::size_t>(blank)] = Kind::Blank;
    }
    for (std::size_t c = '0'; c <= '9'; ++c) {
        kinds[c] = Kind::Digit;
    }
    for (std::size_t c = 'A'; c <= 'Z'; ++c) {
        kinds[c] = kinds[c + 32] = Kind::Letter;
    }
    kinds['+'] = kinds['-'] = Kind::Sign;
    kinds['.'] = Kind::Point;
    kinds[';'] = Kind::End;
    kinds[ESCAPE] = Kind::Escape;
    // A line that adds a parity bit: what is left without it is meant.
    for (std::size_t c = 128; c < 256; ++c) {
        const Kind kind = kinds[c - 128];
        if (kind != Kind::Escape) kinds[c] = kind;
    }
    return kinds;
}();

Kind kindOf(uint8_t byte) {
    return KINDS[byte];
}

char capital(uint8_t letter) {
    return static_cast<char>(letter & 0x5F);
}

bool isDigit(uint8_t byte) {
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
    for (; at < bytes.size() && isDigit(static_cast<uint8_t>(bytes[at])); ++at) {
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
    if (next >= bytes.size() || !isDigit(byte(next))) return at;
    const bool negative = sign && (bytes[next - 1] & 0x7F) == '-';
    constexpr int most = 1000;
    int given = 0;
    for (; next < bytes.size() && isDigit(byte(next)); ++next) {
        given = std::min(given * 10 + digitOf(byte(next)), most);
    }
    decimal.exponent += negative ? -given : given;
    return next;
}

}  // namespace

int32_t toInteger(double number) {
    if (!(std::abs(number) < 0x1p31)) return number > 0 ? INT32_MAX : number < 0 ? INT32_MIN : 0;
    return static_cast<int32_t>(number < 0 ? std::max(number - 0.5, -0x1p31) : std::min(number + 0.5, 0x1p31 - 1));
}

Reader::Reader(std::string_view bytes, Report& report) : bytes_(bytes), report_(report), numbers_(NUMBERS_AT_ONCE) {}

// The first such byte from there on; the file's end where there is none.
std::size_t Reader::find(char wanted, std::size_t from) {
    Sought& sought = sought_[static_cast<uint8_t>(wanted)];
    if (from < sought.from || from > sought.at) sought = {from, std::min(bytes_.find(wanted, from), bytes_.size())};
    return sought.at;
}

bool Reader::atLineStart() const {
    return at_ == 0 || bytes_[at_ - 1] == '\n' || bytes_[at_ - 1] == '\r';
}

void Reader::skipTo(char end) {
    while (at_ < bytes_.size() && bytes_[at_] != end && bytes_[at_] != ESCAPE) {
        ++at_;
    }
}

// ---- names ----------------------------------------------------------------------------------------------------------

// The row of the name whose first letter stands there, white space between its letters; behind: what follows it.
const ManifestRow* Reader::nameAt(std::size_t at, std::size_t* behind) const {
    if (at >= bytes_.size() || kindOf(byte(at)) != Kind::Letter) return nullptr;
    if (at + 1 < bytes_.size() && kindOf(byte(at + 1)) == Kind::Letter) {
        if (behind != nullptr) *behind = at + 2;
        return findInstruction(capital(byte(at)), capital(byte(at + 1)));
    }
    std::size_t second = at + 1;
    while (second < bytes_.size() && bytes_[second] != ',' && kindOf(byte(second)) == Kind::Blank) {
        ++second;
    }
    if (second >= bytes_.size() || kindOf(byte(second)) != Kind::Letter) return nullptr;
    if (behind != nullptr) *behind = second + 1;
    return findInstruction(capital(byte(at)), capital(byte(second)));
}

bool Reader::startsKnownName(std::size_t at) const {
    return nameAt(at, nullptr) != nullptr;
}

// Numbers behind an unknown name are nobody's; letters that begin no known name neither, up to the terminator.
void Reader::passOverUnknown(char first, char second, std::size_t start) {
    report_.passOver(std::string_view(std::array<char, 2>{first, second}.data(), 2), start);
    while (at_ < bytes_.size()) {
        const Kind kind = kindOf(byte(at_));
        if (kind == Kind::End || kind == Kind::Escape) return;
        if (kind == Kind::Letter) {
            if (!startsKnownName(at_)) skipTo(';');
            return;
        }
        ++at_;
    }
}

const ManifestRow* Reader::readName() {
    while (at_ < bytes_.size()) {
        const uint8_t here = byte(at_);
        if (here == ESCAPE) return nullptr;
        if (here == '#' && atLineStart()) {
            skipTo('\n');
        } else if (here == '.' && !hasNamed_ && atLineStart()) {
            at_ = std::max(skipDeviceControl(bytes_, at_), at_ + 1);  // an editor or the mail has taken its ESC
        } else if (here == '!') {
            skipTo(';');  // a cutter's own instruction, whatever its letters are
        } else if (kindOf(here) == Kind::Letter) {
            const std::size_t start = at_;
            std::size_t behind = at_ + 1;
            const ManifestRow* row = nameAt(at_, &behind);
            at_ = behind;
            if (row != nullptr) {
                hasNamed_ = true;
                instruction_ = {};
                instruction_.offset = start;
                std::memcpy(instruction_.name, row->name, sizeof row->name);
                return row;
            }
            if (behind > start + 1) passOverUnknown(capital(here), capital(byte(behind - 1)), start);
        } else {
            ++at_;
        }
    }
    return nullptr;
}

const ManifestRow* Reader::next(LabelEnd labelEnd) {
    while (true) {
        brokenOff_.reset();
        if (going_ != nullptr) {
            const ManifestRow* row = going_;
            going_ = nullptr;
            if (readPairs(*row) && count_ != 0) return row;
        }
        const ManifestRow* row = readName();
        if (row == nullptr) return nullptr;
        if (read(*row, labelEnd)) return row;
    }
}

// False: the instruction is damaged, and dropped.
bool Reader::read(const ManifestRow& row, LabelEnd labelEnd) {
    switch (row.form) {
        case Form::Numbers:
            if (!readNumbers()) return false;
            instruction_.numbers = {numbers_.data(), count_};
            return true;
        case Form::Pairs:
        case Form::Curve:
            return readPairs(row);
        case Form::Encoded:
            readEncoded();
            return true;
        case Form::Label:
            readLabel(labelEnd);
            return true;
        case Form::Terminator:
            readTerminator();
            return true;
        case Form::Character:
            readCharacter();
            return true;
        case Form::Quoted:
            readQuoted();
            return true;
        case Form::Comment:
            readComment();
            return true;
    }
    return true;
}

// ---- numbers --------------------------------------------------------------------------------------------------------

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

// ---- strings --------------------------------------------------------------------------------------------------------

bool Reader::looksLikeInstruction(std::size_t at) const {
    std::size_t behind = 0;
    if (nameAt(at, &behind) == nullptr) return false;
    return behind >= bytes_.size() || kindOf(byte(behind)) != Kind::Letter || startsKnownName(behind);
}

// Encoded data are letters too: where a line ended between two pairs and a name follows that cannot be data, or hardly,
// the terminator was forgotten. Digits are no data, and capitals never end a number.
std::size_t Reader::endOfEncoded(std::size_t end) const {
    PolylineDecoder decoder(bytes_.substr(at_, end - at_));
    std::size_t behindPair = at_;
    const auto endsPair = [&](std::size_t lineEnd) {
        while (at_ + decoder.at() < lineEnd && decoder.next()) {
            behindPair = at_ + decoder.at();
        }
        return behindPair == lineEnd;
    };
    const std::string_view within = bytes_.substr(0, end);  // a search beyond would be made for every PE
    for (std::size_t line = within.find('\n', at_); line < end; line = within.find('\n', line + 1)) {
        const std::size_t name = line + 1;
        std::size_t behind = 0;
        if (nameAt(name, &behind) == nullptr || behind != name + 2 || behind >= bytes_.size()) continue;
        const char next = bytes_[behind];
        if (next == '-' || (isDigit(next) && next != '7')) return name;
        if (!isCapital(bytes_[name]) || !isCapital(bytes_[name + 1])) continue;
        if (next == ';') return name;
        if (bytes_[line - 1] == '\r' && looksLikeInstruction(name) && endsPair(line - 1)) return name;
    }
    return end;
}

void Reader::readEncoded() {
    const std::size_t escape = find(ESCAPE, at_);
    const std::size_t found = std::min(find(';', at_), escape);
    const std::size_t end = endOfEncoded(found);
    const bool terminated = end == found && found < escape;
    instruction_.text = bytes_.substr(at_, end - at_);
    instruction_.endsEarly = !terminated;
    if (!terminated && end == bytes_.size()) brokenOff_ = Ending::InEncodedLine;
    at_ = end + (terminated ? 1 : 0);
}

// Where a label ends whose terminator does not come in all the rest of the file: before a line that begins with an
// instruction.
std::size_t Reader::endOfBrokenLabel() const {
    for (std::size_t line = bytes_.find('\n', at_); line != std::string_view::npos;
         line = bytes_.find('\n', line + 1)) {
        std::size_t next = line + 1;
        while (next < bytes_.size() && (bytes_[next] == '\n' || bytes_[next] == '\r')) {
            ++next;
        }
        if (!looksLikeInstruction(next)) continue;
        std::size_t end = line;
        while (end > at_ && (bytes_[end - 1] == '\r' || bytes_[end - 1] == ';')) {
            --end;
        }
        return end;
    }
    return bytes_.size();
}

std::size_t Reader::endOfLabel(char terminator) {
    const std::size_t end = find(terminator, at_);
    return end < bytes_.size() ? end : endOfBrokenLabel();
}

void Reader::readWideLabel(char terminator) {
    const std::size_t start = at_;
    while (at_ + 1 < bytes_.size() && !(bytes_[at_] == '\0' && bytes_[at_ + 1] == terminator)) {
        at_ += 2;
    }
    instruction_.text = bytes_.substr(start, at_ - start);
    instruction_.endsEarly = at_ + 1 >= bytes_.size();
    if (instruction_.endsEarly) brokenOff_ = Ending::InLabel;
    at_ = std::min(at_ + 2, bytes_.size());
}

void Reader::readLabel(LabelEnd labelEnd) {
    if (labelEnd.isWide) {
        readWideLabel(labelEnd.byte);
        return;
    }
    const char terminator = labelEnd.byte;
    const std::size_t start = at_;
    std::size_t end = endOfLabel(terminator);
    // Writers that forget the terminator leave the language in mid-label.
    for (std::size_t escape = find(ESCAPE, start); escape < end; escape = find(ESCAPE, escape + 1)) {
        const char next = escape + 1 < bytes_.size() ? bytes_[escape + 1] : '\0';
        if (next == '%' || next == 'E' || next == '.') end = escape;
    }
    const bool terminated = end < bytes_.size() && bytes_[end] == terminator;
    instruction_.text = bytes_.substr(start, end - start);
    instruction_.endsEarly = !terminated;
    if (!terminated && end == bytes_.size()) brokenOff_ = Ending::InLabel;
    at_ = end + (terminated ? 1 : 0);
}

// DTc, DTc,0 or DT alone: the text is "c" or "c,0" or nothing.
void Reader::readTerminator() {
    const std::size_t start = at_;
    if (at_ >= bytes_.size() || bytes_[at_] == ';') return;
    ++at_;
    if (at_ + 1 < bytes_.size() && bytes_[at_] == ',' && (bytes_[at_ + 1] == '0' || bytes_[at_ + 1] == '1')) at_ += 2;
    instruction_.text = bytes_.substr(start, at_ - start);
}

void Reader::readCharacter() {
    while (at_ < bytes_.size() && bytes_[at_] == ' ') {
        ++at_;
    }
    if (at_ >= bytes_.size() || bytes_[at_] == ';' || bytes_[at_] == ESCAPE) return;
    instruction_.text = bytes_.substr(at_, 1);
    ++at_;
}

// Numbers, and text in quotes between them.
void Reader::readQuoted() {
    count_ = 0;
    while (at_ < bytes_.size()) {
        const Kind kind = kindOf(byte(at_));
        if (bytes_[at_] == '"') {
            const std::size_t end = bytes_.find('"', at_ + 1);
            if (end == std::string_view::npos) {
                skipTo(';');
                break;
            }
            instruction_.text = bytes_.substr(at_ + 1, end - at_ - 1);
            at_ = end + 1;
        } else if (kind == Kind::Digit || kind == Kind::Sign || kind == Kind::Point) {
            const double number = readNumber();
            if (count_ < NUMBERS_AT_ONCE) numbers_[count_++] = number;
        } else if (kind == Kind::End || kind == Kind::Escape || kind == Kind::Letter) {
            break;
        } else {
            ++at_;
        }
    }
    instruction_.numbers = {numbers_.data(), count_};
}

// In quotes, or up to the terminator.
void Reader::readComment() {
    while (at_ < bytes_.size() && bytes_[at_] == ' ') {
        ++at_;
    }
    const std::size_t start = at_;
    const std::size_t quote =
        at_ < bytes_.size() && bytes_[at_] == '"' ? bytes_.find('"', at_ + 1) : std::string_view::npos;
    if (quote != std::string_view::npos) {
        at_ = quote + 1;
    } else {
        skipTo(';');
    }
    instruction_.text = bytes_.substr(start, at_ - start);
}

}  // namespace plotter
