// The drawing window: its size, and clearing it.
#pragma once

#include <cstdint>

#include "render/display.h"

// Sets the limits of device coordinates from the platform.
void HPGLsetCoordLimits(HPGLTransform* transform);

// Usable size of the drawing window in pixels. Always 1.
int32_t HPGLqueryDeviceSize(const HPGLDisplay* display, int32_t* width, int32_t* height);

// The window has another size, or the picture another view: the drawing child fills the main object's window, and the
// top of the zoom stack is fitted into it. Without a stack nothing is scaled and the result is 0.
int32_t KWMsize();

// Clears the drawing child and asks for a paint message. Always 1.
int32_t HPGLpaintBackground(WHandle child);
