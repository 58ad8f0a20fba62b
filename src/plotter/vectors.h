// The way of the pen through the points of one instruction.
#pragma once

#include "plotter/machine.h"

namespace plotter {

class Path {
  public:
    explicit Path(Machine& machine);
    Path(const Path&) = delete;
    Path& operator=(const Path&) = delete;

    // As the pen stands, up or down, and into the polygon while one is being made. Points out of range lose the pen.
    void goTo(Point units);
    // The same from user units; it finds a lost pen again where it is absolute, and draws the symbol of SM.
    void goToUser(Point user, bool relative);
    // The same for many at once: x and y in turn.
    void goAlong(std::span<const double> numbers, bool relative);
    // Draws what has been kept back: at the end, and before the pen, its attributes or its state change.
    void flush();

  private:
    static constexpr std::size_t MOST_POINTS = 4096;  // kept back at once

    bool goesStraight() const;

    Machine& machine_;
    Affine map_;
    Line& line_;  // the machine's, so that its room is kept
};

}  // namespace plotter
