// The user's commands, from wherever they come.
#pragma once

#include <cstdint>

// Carries a menu item out (HPGLMenuItem); kind is the action message's first parameter. Without a picture zoom and
// rotation do nothing.
void HPGLmenuAction(uint32_t kind, uint32_t item);

// Carries out what the help line says about the action of that number.
void HPGLuserAction(uint32_t action);

// Whether there is a picture to do something with; when there is none, a trace line says so for the procedure.
bool HPGLhavePicture(const char* procedure);
