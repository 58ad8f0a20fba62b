// What the plotter draws on. Points are plotter units on the paper: scaled, turned, clipped, dashed and hatched.
#pragma once

#include <span>

#include "plotter/ink.h"
#include "plotter/plane.h"

namespace plotter {

class Sheet {
  public:
    Sheet() = default;
    Sheet(const Sheet&) = delete;
    Sheet& operator=(const Sheet&) = delete;
    virtual ~Sheet() = default;

    // One point is a dot.
    virtual void line(std::span<const Point> points, const Ink& ink) = 0;
    // Even-odd, all rings together; any number of them, of any length.
    virtual void area(const Area& rings, const Ink& ink) = 0;
    // What comes next is on another page. A page may be empty.
    virtual void nextPage() = 0;
};

}  // namespace plotter
