// Points, lines and areas as text, for tests that put what is drawn beside what should be; and random ones.
#pragma once

#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <random>
#include <span>
#include <sstream>
#include <string>

#include "plotter/plane.h"

namespace plane_text {

inline std::string of(plotter::Point p) {
    const auto rounded = [](double number) {
        const double thousandths = std::round(number * 1000) / 1000;
        return thousandths == 0 ? 0.0 : thousandths;
    };
    std::ostringstream text;
    text.precision(15);
    text << rounded(p.x) << "," << rounded(p.y);
    return text.str();
}

// "0,0 10,0"; a dot is "0,0".
inline std::string of(std::span<const plotter::Point> points) {
    std::string text;
    for (const plotter::Point p : points) {
        text += (text.empty() ? "" : " ") + of(p);
    }
    return text;
}

// Pieces one after the other: "0,0 10,0 | 20,0 30,0".
class Pieces {
  public:
    void add(const std::string& piece) { text_ += (text_.empty() ? "" : " | ") + piece; }
    void add(std::span<const plotter::Point> piece) { add(of(piece)); }
    const std::string& text() const { return text_; }

  private:
    std::string text_;
};

inline std::string of(const plotter::Area& area) {
    Pieces pieces;
    for (const plotter::Ring& ring : area) {
        pieces.add(ring);
    }
    return pieces.text();
}

// ---- random ones, the same in every run ----

using Random = std::mt19937;

inline double number(Random& random, double from, double to) {
    return std::uniform_real_distribution<double>(from, to)(random);
}

inline plotter::Point point(Random& random, double size) {
    return {number(random, -size, size), number(random, -size, size)};
}

inline plotter::Line line(Random& random, std::size_t points, double size) {
    plotter::Line line;
    for (std::size_t i = 0; i < points; ++i)
        line.push_back(point(random, size));
    return line;
}

// ---- inside and outside, straight from the rules ----

inline int windingOf(const plotter::Ring& ring, plotter::Point p) {
    int winding = 0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const plotter::Point a = ring[i];
        const plotter::Point b = ring[(i + 1) % ring.size()];
        if ((a.y <= p.y) == (b.y <= p.y)) continue;
        const double x = a.x + (b.x - a.x) * (p.y - a.y) / (b.y - a.y);
        if (x > p.x) winding += a.y <= p.y ? 1 : -1;
    }
    return winding;
}

inline bool isInside(const plotter::Area& area, plotter::Point p, plotter::FillRule rule) {
    int winding = 0;
    int crossings = 0;
    for (const plotter::Ring& ring : area) {
        const int one = windingOf(ring, p);
        winding += one;
        crossings += std::abs(one);
    }
    return rule == plotter::FillRule::Winding ? winding != 0 : crossings % 2 != 0;
}

}  // namespace plane_text
