// When waiting ends.
#pragma once

#include <algorithm>
#include <chrono>
#include <climits>

namespace kelhost {

class Deadline {
  public:
    // That long from now; below 0: never.
    explicit Deadline(std::chrono::milliseconds limit) : endless_(limit.count() < 0) {
        using std::chrono::milliseconds;
        // A limit of years is cut, so that the sum does not overflow.
        if (!endless_) end_ = Clock::now() + std::min<milliseconds>(limit, std::chrono::hours(24 * 365));
    }
    // Milliseconds, rounded up, as poll takes them: -1 when there is no end.
    int left() const {
        if (endless_) return -1;
        const auto time = std::chrono::ceil<std::chrono::milliseconds>(end_ - Clock::now()).count();
        return static_cast<int>(std::clamp<decltype(time)>(time, 0, INT_MAX));
    }
    bool isOver() const { return left() == 0; }

  private:
    using Clock = std::chrono::steady_clock;

    bool endless_;
    Clock::time_point end_;
};

}  // namespace kelhost
