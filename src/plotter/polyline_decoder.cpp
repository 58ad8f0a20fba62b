#include "plotter/polyline_decoder.h"

#include <algorithm>
#include <cmath>

namespace plotter {

namespace {

constexpr int MOST_FRACTION_BITS = 26;

bool isFlag(uint8_t byte) {
    const int c = byte & 0x7F;
    return c == ':' || c == '<' || c == '=' || c == '>' || c == '7';
}

bool isBlank(uint8_t byte) {
    const int c = byte & 0x7F;
    return c <= ' ' || c == 0x7F;
}

}  // namespace

// The value of the digits that stand next, or nothing where a flag, a byte that is none or the end cuts them off.
std::optional<double> PolylineDecoder::number() {
    double weight = 1;
    double sum = 0;
    bool negative = false;
    bool first = true;
    for (; at_ < data_.size(); ++at_) {
        const auto byte = static_cast<uint8_t>(data_[at_]);
        if (isBlank(byte)) continue;
        if (isFlag(byte)) return std::nullopt;
        const int c = sevenBit_ ? byte & 0x7F : byte;
        const int digits = sevenBit_ ? 32 : 64;
        const bool last = sevenBit_ ? c >= 95 : c >= 191;
        const int digit = c - (sevenBit_ ? (last ? 95 : 63) : (last ? 191 : 63));
        if (digit < 0 || digit >= digits) {
            ++at_;
            return std::nullopt;
        }
        if (first) negative = digit % 2 != 0;
        sum += first ? static_cast<double>(digit >> 1) : digit * weight;
        weight *= first ? digits >> 1 : digits;
        first = false;
        if (!last) continue;
        ++at_;
        return negative ? -sum : sum;
    }
    return std::nullopt;
}

void PolylineDecoder::flag(uint8_t byte) {
    switch (byte & 0x7F) {
        case '<':
            penUp_ = true;
            break;
        case '=':
            absolute_ = true;
            break;
        case '7':
            sevenBit_ = true;
            break;
        case '>':
            if (const std::optional<double> bits = number()) {
                unit_ = std::ldexp(
                    1.0, -static_cast<int>(std::clamp<double>(*bits, -MOST_FRACTION_BITS, MOST_FRACTION_BITS)));
            }
            break;
        default:
            break;
    }
}

std::optional<PolylineDecoder::Item> PolylineDecoder::next() {
    while (at_ < data_.size()) {
        const auto byte = static_cast<uint8_t>(data_[at_]);
        if ((byte & 0x7F) == ':') {
            ++at_;
            const std::optional<double> pen = number();
            if (pen && std::abs(*pen) < 0x1p31) return Item{Kind::Pen, {}, false, false, static_cast<int32_t>(*pen)};
        } else if (isFlag(byte)) {
            ++at_;
            flag(byte);
        } else if (isBlank(byte)) {
            ++at_;
        } else {
            const std::optional<double> x = number();
            if (!x) continue;
            const std::optional<double> y = number();
            if (!y) continue;
            const Item item = {Kind::Pair, {*x * unit_, *y * unit_}, absolute_, penUp_, 0};
            absolute_ = penUp_ = false;
            return item;
        }
    }
    return std::nullopt;
}

}  // namespace plotter
