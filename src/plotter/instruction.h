// One instruction, as the reader hands it to the machine.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace plotter {

struct Instruction {
    char name[3] = "";                // capital letters
    std::span<const double> numbers;  // as many as were given; valid until the next one is read
    std::string_view text;            // of a label, a comment …: the file's own bytes, without the terminator
    std::size_t offset = 0;           // bytes from the file's start
    bool endsEarly = false;           // the file ended, or an escape came, before its terminator

    bool has(std::size_t count) const { return numbers.size() >= count; }
    // The number at that place, or what stands for it where it was not given.
    double number(std::size_t index, double missing) const { return index < numbers.size() ? numbers[index] : missing; }
};

// A number as an integer of the language: rounded, and clamped to 32 bits; not a number is 0.
inline int32_t toInteger(double number) {
    if (!(std::abs(number) < 0x1p31)) return number > 0 ? INT32_MAX : number < 0 ? INT32_MIN : 0;
    return static_cast<int32_t>(number < 0 ? std::max(number - 0.5, -0x1p31) : std::min(number + 0.5, 0x1p31 - 1));
}

}  // namespace plotter
