// The application from set-up to teardown.
#pragma once

#include <cstdint>

// Sets everything up in its fixed order, runs the message loop, tears everything down and answers 0.
int32_t HPGLrunApplication(int32_t count, char** values);
