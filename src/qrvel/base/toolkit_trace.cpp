#include "qrvel/base/toolkit_trace.h"

#include <cstdio>
#include <cstdlib>

#include "toolkit/w.h"

namespace qrvel {

void traceArguments(const char* format, std::va_list arguments) {
    static const bool wanted = std::getenv("KEL_WTRACE") != nullptr;
    if (!wanted) return;
    std::fputs("W: ", stderr);
    std::vfprintf(stderr, format, arguments);
}

void traceLine(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    traceArguments(format, arguments);
    va_end(arguments);
}

}  // namespace qrvel

void Wtrace(WHandle /*app*/, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    qrvel::traceArguments(format, arguments);
    va_end(arguments);
}
