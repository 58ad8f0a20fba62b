#include "plotter/escapes.h"

#include <algorithm>
#include <cmath>

#include "plotter/ascii.h"

namespace plotter {

namespace {

// No field means more than that, and arithmetic with it stays finite.
constexpr double LARGEST_VALUE = 0x1p32;

constexpr std::string_view DEVICE_LETTERS = "()@ABEHIJKLMNOPQRSTUVYZ";
constexpr std::string_view DEVICE_LETTERS_WITH_NUMBERS = "@HIMNPQST";

bool isFamily(char c) {
    return c >= 0x21 && c <= 0x2f;
}
bool isSmall(char c) {
    return c >= 0x60 && c <= 0x7e;
}
bool isLast(char c) {
    return c >= 0x40 && c <= 0x5e;
}
bool isSecondOfTwo(char c) {
    return c >= 0x30 && c <= 0x7e;
}
// Of a small letter or a sign beside them; all others are their own.
char toLast(char c) {
    return isSmall(c) ? static_cast<char>(c - 0x20) : c;
}

// Reads what stands there of: blanks, a sign, digits, a point, digits. Larger than LARGEST_VALUE is cut to that.
std::size_t readValue(std::string_view bytes, std::size_t at, EscapeField& field) {
    const auto skipBlanks = [&] {
        while (at < bytes.size() && bytes[at] == ' ') {
            ++at;
        }
    };
    skipBlanks();
    double sign = 1;
    if (at < bytes.size() && (bytes[at] == '+' || bytes[at] == '-')) {
        field.isSigned = true;
        sign = bytes[at++] == '-' ? -1 : 1;
    }
    skipBlanks();
    double value = 0;
    double place = 0;  // of the next digit behind the point; 0 in front of it
    for (; at < bytes.size() && (isDigit(bytes[at]) || (bytes[at] == '.' && place == 0)); ++at) {
        if (bytes[at] == '.') {
            place = 0.1;
        } else if (place == 0) {
            value = value * 10 + (bytes[at] - '0');
        } else {
            value += (bytes[at] - '0') * place;
            place /= 10;
        }
    }
    skipBlanks();
    field.value = sign * std::min(value, LARGEST_VALUE);
    return at;
}

// Whether the field's value counts bytes that follow it. W does, but of the text modes of ink-jet printers and of the
// names of symbol sets, which have no group.
bool carriesData(char family, char group, char letter) {
    if (group == 0) return false;
    if (letter == 'W') return !(family == '&' && group == 'k');
    return (family == '*' && group == 'b' && letter == 'V') || (family == '&' && group == 'p' && letter == 'X');
}

}  // namespace

EscapeReader::EscapeReader(std::string_view bytes, std::size_t offset) : bytes_(bytes), at_(offset + 1) {
    readHead();
}

void EscapeReader::readHead() {
    if (at_ >= bytes_.size()) return;
    const char second = bytes_[at_];
    if (second == '.') {
        kind_ = Kind::DeviceControl;
        const std::size_t end = skipDeviceControl(bytes_, at_);
        family_ = end > at_ ? bytes_[at_ + 1] : '\0';
        at_ = std::max(end, at_ + 1);
    } else if (isSecondOfTwo(second)) {
        kind_ = Kind::TwoCharacters;
        family_ = second;
        ++at_;
    } else if (isFamily(second)) {
        kind_ = Kind::Fields;
        family_ = second;
        ++at_;
        if (at_ < bytes_.size() && isSmall(bytes_[at_])) group_ = bytes_[at_++];
        goesOn_ = true;
    }
}

bool EscapeReader::next(EscapeField& field) {
    if (!goesOn_) return false;
    EscapeField read;
    at_ = readValue(bytes_, at_, read);
    if (at_ >= bytes_.size() || !(isSmall(bytes_[at_]) || isLast(bytes_[at_]))) {
        goesOn_ = false;
        return false;
    }
    goesOn_ = isSmall(bytes_[at_]);
    read.letter = toLast(bytes_[at_++]);
    if (carriesData(family_, group_, read.letter)) takeData(read);
    field = read;
    return true;
}

void EscapeReader::takeData(EscapeField& field) {
    const double count = is('*', 'b') ? std::abs(field.value) : std::max(field.value, 0.0);
    const std::size_t left = bytes_.size() - at_;
    const std::size_t taken = count < static_cast<double>(left) ? static_cast<std::size_t>(count) : left;
    field.data = bytes_.substr(at_, taken);
    field.isCut = count > static_cast<double>(taken);
    at_ += taken;
}

std::size_t skipEscape(std::string_view bytes, std::size_t offset) {
    EscapeReader reader(bytes, offset);
    EscapeField field;
    while (reader.next(field)) {
    }
    return reader.end();
}

std::size_t skipDeviceControl(std::string_view bytes, std::size_t offset) {
    if (offset + 1 >= bytes.size() || bytes[offset] != '.' ||
        DEVICE_LETTERS.find(bytes[offset + 1]) == std::string_view::npos) {
        return offset;
    }
    std::size_t at = offset + 2;
    if (DEVICE_LETTERS_WITH_NUMBERS.find(bytes[offset + 1]) == std::string_view::npos) return at;
    constexpr std::string_view OF_NUMBERS = "0123456789;+-. \r\n";
    at = std::min(bytes.find_first_not_of(OF_NUMBERS, at), bytes.size());
    return at < bytes.size() && bytes[at] == ':' ? at + 1 : at;
}

}  // namespace plotter
