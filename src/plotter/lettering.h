// From the state of the character group to what a label looks like.
#pragma once

#include "plotter/labels.h"
#include "plotter/machine.h"

namespace plotter {

Lettering currentLettering(Machine& machine);
// The font that is selected.
inline const Face& currentFace(const Machine& machine, const Lettering& lettering) {
    return lettering.faces[machine.state.characters.alternateSelected ? 1 : 0];
}

// Draws on the machine, and tells its report what is not known. Strokes are solid lines of the current pen.
class MachineLabelOutput : public LabelOutput {
  public:
    explicit MachineLabelOutput(Machine& machine) : machine_(machine) {}

    void stroke(std::span<const Point> points) override { machine_.drawSolid(points); }
    void unknown(char32_t character, bool isCode) override;
    bool mayDraw(std::size_t points) override;

  private:
    Machine& machine_;
};

// The symbol of SM, about a point in plotter units; the pen is not moved. Nothing while there is none.
void drawSymbol(Machine& machine, Point units);

// The nearest place that a plotter has coordinates for; not a number is the old place.
Point reachable(Point place, Point old);

}  // namespace plotter
