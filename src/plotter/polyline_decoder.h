// The data of PE: digits to base 64 or 32, the lowest first, their lowest bit the sign; flags stand between the
// numbers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "plotter/plane.h"

namespace plotter {

class PolylineDecoder {
  public:
    enum class Kind { Pair, Pen };
    struct Item {
        Kind kind;
        Point pair;             // user units, as given
        bool absolute = false;  // else relative to the pen
        bool penUp = false;
        int32_t pen = 0;
    };

    explicit PolylineDecoder(std::string_view data) : data_(data) {}

    // The next pair or pen number; nothing at the end. A number without its partner is dropped.
    std::optional<Item> next();
    // Behind what next() has read, bytes from the data's start.
    std::size_t at() const { return at_; }

  private:
    std::optional<double> number();
    void flag(uint8_t byte);

    std::string_view data_;
    std::size_t at_ = 0;
    double unit_ = 1;  // of a number, by the fractional bits
    bool sevenBit_ = false;
    bool absolute_ = false;
    bool penUp_ = false;
};

}  // namespace plotter
