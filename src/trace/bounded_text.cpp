#include "trace/bounded_text.h"

#include <cstdio>
#include <cstring>

void TRCCopyBounded(char* destination, size_t size, const char* source) {
    if (size == 0) return;
    const size_t length = strnlen(source, size - 1);
    memcpy(destination, source, length);
    destination[length] = '\0';
}

int32_t TRCFormatBoundedV(size_t size, char* destination, const char* format, va_list arguments) {
    char area[TRC_FORMAT_AREA];
    const int length = vsnprintf(area, sizeof area, format, arguments);
    if (length < 0 || static_cast<size_t>(length) >= sizeof area || static_cast<size_t>(length) >= size) return 0;
    memcpy(destination, area, static_cast<size_t>(length) + 1);
    return length;
}

int32_t TRCFormatBounded(size_t size, char* destination, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int32_t length = TRCFormatBoundedV(size, destination, format, arguments);
    va_end(arguments);
    return length;
}
