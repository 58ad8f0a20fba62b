// One instruction, as the reader hands it to the machine.
#pragma once

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
int32_t toInteger(double number);

}  // namespace plotter
