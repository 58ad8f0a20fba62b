// Copying and formatting into buffers of a given size.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>

// Copies at most size - 1 characters and terminates; a size of 0 does nothing.
void TRCCopyBounded(char* destination, size_t size, const char* source);

// The work area of TRCFormatBounded: no text of that many characters or more comes out of it.
inline constexpr size_t TRC_FORMAT_AREA = 1024;

// Formats, and copies the result only when it is shorter than both `size` and TRC_FORMAT_AREA; answers its length.
// Otherwise answers 0 and leaves the destination untouched.
[[gnu::format(printf, 3, 4)]] int32_t TRCFormatBounded(size_t size, char* destination, const char* format, ...);
int32_t TRCFormatBoundedV(size_t size, char* destination, const char* format, va_list arguments);
