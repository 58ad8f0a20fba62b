// What may be spent in one drawing on things that a few bytes of a file can multiply.
#pragma once

#include <cstddef>

namespace plotter {

// Assigning leaves it as it is: state is reset by assignment, and a file that says IN again and again must not get
// more.
class Budget {
  public:
    explicit constexpr Budget(std::size_t most) : left_(most) {}
    Budget(const Budget&) = default;
    Budget& operator=(const Budget&) { return *this; }
    ~Budget() = default;

    std::size_t left() const { return left_; }
    // False when so much is not left, and then nothing is spent. Not a number is too much.
    bool spend(double amount) {
        if (!(amount >= 0 && amount <= static_cast<double>(left_))) return false;
        left_ -= static_cast<std::size_t>(amount);
        return true;
    }

  private:
    std::size_t left_;
};

}  // namespace plotter
