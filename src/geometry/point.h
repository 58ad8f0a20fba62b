// A point of a picture, or the way from one to another.
#pragma once

#include <cstdint>

#include "trace/wrapping.h"

struct HPGLPoint {
    int32_t x, y;  // scaled plotter units
};

inline HPGLPoint wrapAdd(HPGLPoint a, HPGLPoint b) {
    return {wrapAdd(a.x, b.x), wrapAdd(a.y, b.y)};
}
inline HPGLPoint wrapSub(HPGLPoint a, HPGLPoint b) {
    return {wrapSub(a.x, b.x), wrapSub(a.y, b.y)};
}
