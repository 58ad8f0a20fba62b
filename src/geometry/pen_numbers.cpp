#include "geometry/pen_numbers.h"

#include "hpgl/parser.h"
#include "trace/trace.h"

namespace {

constexpr int32_t LAST_PEN = HPGL_PENS - 1;

}  // namespace

int32_t HPGLselectedPen(int32_t number, const char* function) {
    if (number == -1) return 0;
    if (number >= 0 && number <= LAST_PEN) return number;
    const int32_t pen = number < 0 ? 0 : (number - 1) % LAST_PEN + 1;
    TRCTraceError(HPGLTraceHandle, "WARNING-%s: there is no pen %d, take pen %d\n", function, number, pen);
    return pen;
}

bool HPGLpenExists(int32_t number, const char* function) {
    if (number >= 0 && number <= LAST_PEN) return true;
    TRCTraceError(HPGLTraceHandle, "WARNING-%s: there is no pen %d, ignore it\n", function, number);
    return false;
}
