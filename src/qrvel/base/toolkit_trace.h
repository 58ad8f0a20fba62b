// The toolkit's own trace: lines on stderr while the environment variable KEL_WTRACE is set.
#pragma once

#include <cstdarg>

namespace qrvel {

[[gnu::format(printf, 1, 2)]] void traceLine(const char* format, ...);
void traceArguments(const char* format, std::va_list arguments);

}  // namespace qrvel
