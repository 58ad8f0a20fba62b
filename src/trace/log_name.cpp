#include <cstring>

#include "platform/windows.h"
#include "trace/bounded_text.h"
#include "trace/trace.h"

namespace {

constexpr int NAME_NUMBERS = 10;

// The base's first characters before a dot, filled up to six.
void makeStem(char (&stem)[7], const char* base) {
    size_t length = strcspn(base, ".");
    if (length > 6) length = 6;
    memset(stem, '_', 6);
    memcpy(stem, base, length);
    stem[6] = '\0';
}

// Whether the file can be had for writing alone. One that is not there is not made: a name costs nothing until
// something is written.
bool canBeWritten(const char* name) {
    OFSTRUCT info = {};
    if (OpenFile(name, &info, OF_EXIST) == HFILE_ERROR) {
        return OpenFile(name, &info, OF_WRITE | OF_CREATE | OF_EXIST) != HFILE_ERROR;
    }
    const HFILE file = OpenFile(name, &info, OF_WRITE | OF_SHARE_EXCLUSIVE);
    if (file == HFILE_ERROR) return false;
    _lclose(file);
    return true;
}

}  // namespace

int32_t TRCMakeLogName(char* buffer, size_t size, const char* base) {
    char stem[7];
    makeStem(stem, base);
    for (int number = 0; number < NAME_NUMBERS; ++number) {
        if (TRCFormatBounded(size, buffer, "%.6s%02d.log", stem, number) == 0) return 0;
        if (canBeWritten(buffer)) return 1;
    }
    return 0;
}
