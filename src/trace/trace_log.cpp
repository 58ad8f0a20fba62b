#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "trace/bounded_text.h"
#include "trace/trace.h"
#include "trace/trace_slots.h"
#include "trace/trace_window.h"

// Here stand the operations themselves, without the test in front of them.
#undef TRCTrace
#undef TRCTraceError
#undef TRCTraceInfo

TRCHandle HPGLTraceHandle = 0;
int32_t TRCHighestLevel = 0;
TRCState TRCGlobal = {};

namespace {

constexpr char FATAL_TITLE[] = "KEL Graphics Fatal Error";
constexpr char MAKERS_BANNER[] = "--------------------- KEL Graphics under MS Windows -----------------------\n";
constexpr char PLAIN_BANNER[] = "---------------------------------------------------------------------------\n";
constexpr int32_t FILE_ATTEMPTS = 9;
constexpr int32_t WINDOW_WIDTH = 500;  // of a trace that has a file
constexpr int32_t WINDOW_HEIGHT = 250;

// Room for the longest line, the carriage return that the file adds, and the terminator.
using LineBuffer = char[TRC_LINE_SIZE + 2];

void readLevelsOnce() {
    TRCState& state = TRCGlobal;
    if (state.levelsRead) return;
    state.levelsRead = true;
    TRCReadEnvironment("DPTRACE", &state.fileLevel);
    TRCReadEnvironment("DGTRACE", &state.fileLevel);
    TRCReadEnvironment("KELGTRACE", &state.windowLevel);
}

void applyDefaultLevels(uint8_t defaultLevels) {
    TRCState& state = TRCGlobal;
    if (state.fileLevel == 0) state.fileLevel = defaultLevels & 0x0F;
    if (state.windowLevel == 0) state.windowLevel = defaultLevels >> 4;
    TRCHighestLevel = std::max(state.fileLevel, state.windowLevel);
}

// Opened twice: the first shows whether the file can be had alone, the second empties it.
HFILE openTruncated(const char* name) {
    OFSTRUCT info = {};
    const bool exists = OpenFile(name, &info, OF_EXIST) != HFILE_ERROR;
    const HFILE probe = OpenFile(name, &info, OF_WRITE | (exists ? OF_SHARE_EXCLUSIVE : OF_CREATE));
    if (probe == HFILE_ERROR) return HFILE_ERROR;
    _lclose(probe);
    return OpenFile(name, &info, OF_CREATE | OF_WRITE);
}

void nameAttempt(char (&name)[80], int32_t attempt) {
    const size_t stem = std::min(strcspn(name, "."), sizeof name - sizeof ".000");
    snprintf(name + stem, sizeof name - stem, ".%03d", static_cast<int>(attempt));
}

void openFile(TRCSlot* slot) {
    slot->file = openTruncated(slot->fileName);
    for (int32_t attempt = 1; attempt < FILE_ATTEMPTS && slot->file == HFILE_ERROR; ++attempt) {
        nameAttempt(slot->fileName, attempt);
        slot->file = openTruncated(slot->fileName);
    }
    if (slot->file != HFILE_ERROR) return;
    OutputDebugStringA("HPGL: no trace file can be written, the last one tried is ");
    OutputDebugStringA(slot->fileName);
    OutputDebugStringA("\n");
}

// `line` has room for one more character behind its terminator. Deliberate: the window, whose turn comes next, gets the
// line as it stands in the file, and leaves only the line feed out.
void writeToFile(const TRCSlot* slot, char* line) {
    size_t length = strlen(line);
    if (slot->file == 0 || slot->file == HFILE_ERROR || length == 0 || TRCGlobal.fileLevel == 0) return;
    if (line[length - 1] == '\n') {
        line[length - 1] = '\r';
        line[length++] = '\n';
        line[length] = '\0';
    }
    _lwrite(slot->file, line, static_cast<UINT>(length));
}

void reportOverlong(long length) {
    char text[256];
    snprintf(text, sizeof text, "%s %s %d bytes length (max allowed are %d bytes).\n%s",
             "Illegal Trace:", "An application produced illegal trace information of", static_cast<int>(length),
             static_cast<int>(TRC_LINE_SIZE), "The program should be aborted.");
    MessageBoxA(nullptr, text, FATAL_TITLE, MB_ICONHAND);
}

// Answers the length of what the buffer holds then.
int32_t formatLine(LineBuffer& line, const char* format, va_list arguments) {
    const int length = vsnprintf(line, TRC_LINE_SIZE + 1, format, arguments);
    if (length >= 0 && length <= TRC_LINE_SIZE) return length;
    reportOverlong(length < 0 ? TRC_LINE_SIZE + 1L : length);
    memcpy(line, "\n", 2);
    return 1;
}

int32_t traceV(TRCHandle handle, int32_t level, const char* format, va_list arguments) {
    TRCSlot* slot = TRCAdmits(handle, level) ? TRCFindSlot(handle) : nullptr;
    if (slot == nullptr) return 0;
    LineBuffer line;
    const int32_t length = formatLine(line, format, arguments);
    if (TRCGlobal.fileLevel >= level) writeToFile(slot, line);
    if (TRCGlobal.windowLevel >= level) TRCShowLine(handle, slot, line);
    return length;
}

const char* platformName(DWORD id) {
    constexpr const char* names[] = {"3.x", "95", "NT"};
    return id < 3 ? names[id] : "???";
}

void writeSystem(TRCHandle handle) {
    OSVERSIONINFOA version = {};
    version.dwOSVersionInfoSize = sizeof version;
    GetVersionExA(&version);
    SYSTEM_INFO system = {};
    GetSystemInfo(&system);
    TRCTraceInfo(handle, "--- 32 Bit Windows Version %ld.%ld (Build %ld) under Windows %s (%ld)\n",
                 static_cast<long>(version.dwMajorVersion), static_cast<long>(version.dwMinorVersion),
                 static_cast<long>(version.dwBuildNumber), platformName(version.dwPlatformId),
                 static_cast<long>(version.dwPlatformId));
    TRCTraceInfo(handle, "--- Processor Type %lX\n", static_cast<unsigned long>(system.dwProcessorType));
}

struct ProfileText {
    char text[64] = "";
    explicit ProfileText(const char* key) { GetProfileStringA("intl", key, "", text, sizeof text); }
};

void writeCountry(TRCHandle handle) {
    const ProfileText language("sLanguage");
    const ProfileText country("sCountry");
    const UINT code = GetProfileIntA("intl", "iCountry", 0);
    const ProfileText date("sShortDate");
    const ProfileText currency("sCurrency");
    const ProfileText thousand("sThousand");
    const ProfileText decimal("sDecimal");
    TRCTraceInfo(handle, "--- Intl: Ctry '%s' '%s' (%d)\n", language.text, country.text, static_cast<int>(code));
    TRCTraceInfo(handle, "---       Date '%s', Cur '%s', Th '%s' Dec '%s'\n", date.text, currency.text, thousand.text,
                 decimal.text);
}

void writeTime(TRCHandle handle, const char* what) {
    const time_t now = time(nullptr);
    TRCTraceInfo(handle, "--- %s on %s", what, ctime(&now));
}

void writeOpeningHeader(TRCHandle handle, const TRCSlot* slot) {
    TRCTraceInfo(handle, "%s", MAKERS_BANNER);
    TRCTraceInfo(handle, "---\n");
    TRCTraceInfo(handle, "--- Build: %s, %s\n", __DATE__, __TIME__);
    TRCTraceInfo(handle, "--- trace file '%s'\n", slot->fileName);
    writeTime(handle, "opened");
    writeSystem(handle);
    TRCTraceInfo(handle, "---\n");
    writeCountry(handle);
    TRCTraceInfo(handle, "---\n");
    TRCTraceInfo(handle, "%s", PLAIN_BANNER);
    TRCTraceInfo(handle, "\n\n");
}

void writeClosingHeader(TRCHandle handle) {
    TRCTraceInfo(handle, "\n\n");
    TRCTraceInfo(handle, "%s", PLAIN_BANNER);
    TRCTraceInfo(handle, "---\n");
    writeTime(handle, "closed");
    TRCTraceInfo(handle, "---\n");
    TRCTraceInfo(handle, "%s", MAKERS_BANNER);
}

// The lowest free slot's number, or -1.
int32_t takeSlot() {
    for (int32_t i = 0; i < TRC_SLOTS; ++i) {
        const auto bit = static_cast<uint8_t>(1U << i);
        if ((TRCGlobal.occupied & bit) != 0) continue;
        TRCGlobal.occupied |= bit;
        return i;
    }
    return -1;
}

}  // namespace

bool TRCReadEnvironment(const char* name, int32_t* value) {
    char text[32];
    const DWORD length = GetEnvironmentVariableA(name, text, sizeof text);
    if (length == 0 || length >= sizeof text) return false;
    *value = static_cast<int32_t>(atoi(text));
    return true;
}

TRCSlot* TRCFindSlot(TRCHandle handle) {
    if (handle == 0 || handle > TRC_SLOTS) return nullptr;
    const bool open = ((TRCGlobal.occupied >> (handle - 1)) & 1) != 0;
    return open ? &TRCGlobal.slots[handle - 1] : nullptr;
}

void TRCForgetEverything() {
    TRCGlobal = {};
    TRCHighestLevel = 0;
    HPGLTraceHandle = 0;
}

TRCHandle TRCOpen(const char* name, uint8_t defaultLevels) {
    const int32_t number = takeSlot();
    if (number < 0) return 0;
    readLevelsOnce();
    applyDefaultLevels(defaultLevels);
    TRCSlot* slot = &TRCGlobal.slots[number];
    *slot = {};
    TRCCopyBounded(slot->fileName, sizeof slot->fileName, name);
    const auto handle = static_cast<TRCHandle>(number + 1);
    if (TRCGlobal.fileLevel == 0) return handle;

    openFile(slot);
    slot->values[TRC_WIDTH] = WINDOW_WIDTH;
    slot->values[TRC_HEIGHT] = WINDOW_HEIGHT;
    writeOpeningHeader(handle, slot);
    return handle;
}

TRCHandle TRCOpenViewer(const char* name) {
    HPGLTraceHandle = TRCOpen(name, 0);
    return HPGLTraceHandle;
}

void TRCClose(TRCHandle handle) {
    TRCSlot* slot = TRCFindSlot(handle);
    if (slot == nullptr) return;
    writeClosingHeader(handle);
    if (slot->file != 0 && slot->file != HFILE_ERROR) _lclose(slot->file);
    TRCGlobal.occupied &= static_cast<uint8_t>(~(1U << (handle - 1)));
}

int32_t TRCTrace(TRCHandle handle, int32_t level, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int32_t length = traceV(handle, level, format, arguments);
    va_end(arguments);
    return length;
}

int32_t TRCTraceError(TRCHandle handle, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int32_t length = traceV(handle, TRC_ERROR, format, arguments);
    va_end(arguments);
    return length;
}

int32_t TRCTraceInfo(TRCHandle handle, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int32_t length = traceV(handle, TRC_INFO, format, arguments);
    va_end(arguments);
    return length;
}

void TRCWriteRaw(TRCHandle handle, const char* text, bool force) {
    TRCSlot* slot = TRCFindSlot(handle);
    if (slot == nullptr) return;
    LineBuffer line;
    TRCCopyBounded(line, TRC_LINE_SIZE + 1, text);
    if (force || TRCGlobal.windowLevel != 0) TRCShowLine(handle, slot, line);
    writeToFile(slot, line);
}

void TRCSetWindowValue(TRCHandle handle, uint32_t index, int32_t value) {
    TRCSlot* slot = TRCFindSlot(handle);
    if (slot != nullptr && index < 7) slot->values[index] = value;
}
