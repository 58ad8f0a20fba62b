#include "geometry/step_loop.h"

#include <cmath>

#include "trace/trace.h"

double HPGLusableAngle(float angle) {
    return std::isfinite(angle) ? static_cast<double>(angle) : 0.0;
}

double HPGLusableChord(const StepAllowance* allowance, bool given, float chord, const char* function) {
    if (!given || allowance->left == 0) return HPGL_DEFAULT_CHORD;
    if (std::isfinite(chord) && chord > 0) return static_cast<double>(chord);
    TRCTraceError(HPGLTraceHandle, "WARNING-%s: chord angle %f cannot be used, take %f\n", function,
                  static_cast<double>(chord), HPGL_DEFAULT_CHORD);
    return HPGL_DEFAULT_CHORD;
}

void HPGLwarnStepsUsedUp(const char* function) {
    TRCTraceError(HPGLTraceHandle, "WARNING-%s: the picture has too many arc steps, the rest is drawn coarsely\n",
                  function);
}
