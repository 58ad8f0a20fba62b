#include "display.h"

#include <windows.h>

#include <cstdlib>
#include <limits>

HPGLDisplay TheDisplay = {};
ParseInt* TheParser = nullptr;
ZoomData* TheZoom = nullptr;
int32_t RotationSign = 1;
int32_t CoordMax = std::numeric_limits<int32_t>::max();
int32_t CoordMin = std::numeric_limits<int32_t>::min();

void HPGLsetCoordLimits() {
    constexpr DWORD NT_FAMILY = 2;
    OSVERSIONINFOA version = {};
    version.dwOSVersionInfoSize = sizeof version;
    const bool narrow = GetVersionExA(&version) != 0 && version.dwPlatformId != NT_FAMILY;
    CoordMax = narrow ? 32767 : std::numeric_limits<int32_t>::max();
    CoordMin = narrow ? -32768 : std::numeric_limits<int32_t>::min();
}

void HPGLreleaseColours(HPGLDisplay* display) {
    if (display->ColourTable != 0) WCLRdestroy(display->ColourTable);
    display->ColourTable = 0;
    display->ColourCount = 0;
    free(display->Palette);
    display->Palette = nullptr;
}
