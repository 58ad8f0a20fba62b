// Whoever takes what a procedure makes, piece by piece: a reference to something that can be called. Nothing is
// allocated, so it costs nothing to hand over a lambda for every line of a drawing.
//
// It must not be kept: what it refers to lives as long as the call that it is handed to.
#pragma once

#include <span>

#include "plotter/plane.h"

namespace plotter {

template <class... Arguments>
class Taker {
  public:
    template <class Callable>
    Taker(const Callable& callable)
        : object_(&callable), call_([](const void* object, Arguments... arguments) {
              (*static_cast<const Callable*>(object))(arguments...);
          }) {}

    void operator()(Arguments... arguments) const { call_(object_, arguments...); }

  private:
    const void* object_;
    void (*call_)(const void*, Arguments...);
};

using LineTaker = Taker<std::span<const Point>>;  // one point is a dot; valid during the call
using AreaTaker = Taker<const Area&>;

}  // namespace plotter
