// The trace: levelled diagnostic lines to a log file and, independently, to a window.
//
// Life of one: TRCOpen at start, TRCTrace and its kin everywhere, TRCClose (the viewer leaves closing to the system).
// Which lines are written is decided by two thresholds from the environment, read at the first TRCOpen of the process
// and fixed from then on: DPTRACE or DGTRACE (which wins) for the file, KELGTRACE for the window. A line of level L is
// written where the threshold is L or more. With nothing set nothing is written and no file is created.
//
// Every operation does nothing on handle 0.
#pragma once

#include <cstddef>
#include <cstdint>

using TRCHandle = uint32_t;  // 1 to 8; 0: no tracing

inline constexpr int32_t TRC_ERROR = 1;   // errors, warnings, major events
inline constexpr int32_t TRC_INFO = 2;    // headers, normal flow
inline constexpr int32_t TRC_DETAIL = 3;  // messages, command dumps, coordinates

inline constexpr int32_t TRC_LINE_SIZE = 512;  // characters of the longest line
inline constexpr int32_t TRC_SLOTS = 8;

// The one trace that the viewer opens at start and every caller passes.
extern TRCHandle HPGLTraceHandle;

// The higher of the two thresholds: no line above it is written anywhere.
extern int32_t TRCHighestLevel;

// Whether a line of that level would be written.
inline bool TRCAdmits(TRCHandle handle, int32_t level) {
    return handle != 0 && level <= TRCHighestLevel;
}

// Opens a trace into the named file, or where that cannot be (it is held, or has another's content), into name.001 to
// name.008. The low 4 bits of
// defaultLevels become the file's threshold and the high 4 bits the window's, each only where the environment left 0.
// 0 when all eight traces are open.
TRCHandle TRCOpen(const char* name, uint8_t defaultLevels);

// The same, and keeps the handle in HPGLTraceHandle.
TRCHandle TRCOpenViewer(const char* name);

// Writes the closing header and closes the file.
void TRCClose(TRCHandle handle);

// Writes one formatted line; answers its length, 0 when it was not written anywhere. A line of more than
// TRC_LINE_SIZE characters is reported in a message box and becomes an empty line.
[[gnu::format(printf, 3, 4)]] int32_t TRCTrace(TRCHandle handle, int32_t level, const char* format, ...);
[[gnu::format(printf, 2, 3)]] int32_t TRCTraceError(TRCHandle handle, const char* format, ...);  // level 1
[[gnu::format(printf, 2, 3)]] int32_t TRCTraceInfo(TRCHandle handle, const char* format, ...);   // level 2

// Each stands behind an inline test, so that a line that nobody wants costs nothing else: not even its arguments are
// computed.
#define TRCTrace(handle, level, ...) ((level) <= TRCHighestLevel ? TRCTrace(handle, level, __VA_ARGS__) : 0)
#define TRCTraceError(handle, ...) (TRC_ERROR <= TRCHighestLevel ? TRCTraceError(handle, __VA_ARGS__) : 0)
#define TRCTraceInfo(handle, ...) (TRC_INFO <= TRCHighestLevel ? TRCTraceInfo(handle, __VA_ARGS__) : 0)

// Writes a ready line without a level: to window and file when the window's threshold is not 0 or `force` is set,
// otherwise to the file when its threshold is not 0. What exceeds TRC_LINE_SIZE characters is cut off.
void TRCWriteRaw(TRCHandle handle, const char* text, bool force);

// Sets a value of the trace's window: index 0 to 3 are x, y, width, height in pixels, 4 to 6 are spare.
void TRCSetWindowValue(TRCHandle handle, uint32_t index, int32_t value);

// Makes the name of a log file, "BBBBBBnn.log": the base's first six characters before a dot, filled up with '_', and
// the first of 00 to 09 that can be opened for writing. `buffer` holds `size` characters with the terminator. 1, or 0
// when all ten fail (the buffer then holds the last name) or it does not fit (the buffer is untouched). Makes no
// file.
int32_t TRCMakeLogName(char* buffer, size_t size, const char* base);
