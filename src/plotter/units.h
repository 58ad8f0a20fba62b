// Lengths in plotter units (0.025 mm; HP-GL/2's reference).
#pragma once

namespace plotter {

inline constexpr double UNITS_PER_MILLIMETRE = 40;
inline constexpr double UNITS_PER_CENTIMETRE = 400;
inline constexpr double UNITS_PER_INCH = 1016;
inline constexpr double UNITS_PER_POINT = UNITS_PER_INCH / 72;
inline constexpr double UNITS_PER_DOT = UNITS_PER_INCH / 300;  // of a printer

// Where HP-GL/2's coordinates end. Of numbers that are not larger, the products of two are numbers still.
inline constexpr double FARTHEST = 0x1p30;

}  // namespace plotter
