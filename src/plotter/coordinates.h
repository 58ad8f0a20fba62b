// From user units to the paper: P1 and P2, SC, RO, the window, and the picture frame of a printer's page.
#pragma once

#include <optional>

#include "plotter/plane.h"

namespace plotter {

// Where plotter units lie on the paper. A pen plotter's sheet has no frame of its own: size is empty, its edges clip
// nothing and the drawing decides what is seen.
struct Frame {
    Point corner;               // paper: where the frame's lower left lies
    std::optional<Point> size;  // plotter units, before the scale: the default P2, and where drawing ends
    bool clips = true;          // false: nobody has asked for this size, and what reaches beyond it is shown
    double scaleX = 1;          // paper units a plotter unit (ESC*c#K and #L)
    double scaleY = 1;
    friend bool operator==(const Frame&, const Frame&) = default;
};

// SC, as given.
struct Scaling {
    enum class Type { Off, Anisotropic, Isotropic, PointFactor };
    Type type = Type::Off;
    double x1 = 0, x2 = 1, y1 = 0, y2 = 1;  // PointFactor: x2 and y2 are plotter units a user unit
    double left = 50, bottom = 50;          // per cent of the free room
    friend bool operator==(const Scaling&, const Scaling&) = default;
};

struct Coordinates {
    Frame frame;
    std::optional<Point> sheet;         // what PS says where there is no frame: plotter units; it clips nothing
    std::optional<bool> switchedLarge;  // PS as a pen plotter's paper switch
    Point p1, p2;                       // plotter units
    Scaling scaling;
    int rotation = 0;           // RO, quarter turns counter-clockwise, 0 to 3
    std::optional<Box> window;  // IW, plotter units

    // User units to plotter units.
    Affine toUnits() const;
    // Plotter units to paper.
    Affine toPaper() const;
    // What is seen, plotter units; empty: all of it.
    std::optional<Box> clip() const;
    // The area that IR counts in and P2 is in by default, as RO has turned it; plotter units.
    Point room(bool large) const;
    double diagonal() const { return length(p2 - p1); }  // of P1 and P2, plotter units
};

// P1 and P2 where the file has not set them: the frame's corners, or those of a machine. A pen plotter is taken to hold
// A3 paper unless PS says otherwise; a later one, with hpgl2, holds A3 where the drawing is that large, else A4.
void setDefaultCorners(Coordinates& coordinates, bool hpgl2, bool large);

// The way back of a map without shear or with a quarter turn; the identity where there is none.
Affine inverse(const Affine& map);

}  // namespace plotter
