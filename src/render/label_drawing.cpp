#include "render/label_drawing.h"

#include <cstdio>

#include "geometry/scaling.h"
#include "platform/windows.h"
#include "toolkit/wf.h"

namespace {

constexpr int32_t FIRST_SIZE = 2;
constexpr int32_t SIZE_LIMIT = 100;

// 2 4 6 8 10 13 16 19 22 27 … 52 62 72 82 92
constexpr int32_t nextSize(int32_t size) {
    if (size < 10) return size + 2;
    if (size < 20) return size + 3;
    return size < 50 ? size + 5 : size + 10;
}

const char* fullName(const LOGFONTA* font) {
    return reinterpret_cast<const char*>(reinterpret_cast<const ENUMLOGFONTA*>(font)->elfFullName);
}

// Answers 0, so that a family's enumeration ends after its first face: one face a family is deliberate.
int CALLBACK registerFace(const LOGFONTA* font, const TEXTMETRICA* /*metrics*/, DWORD /*type*/, LPARAM parameter) {
    const auto* display = reinterpret_cast<const HPGLDisplay*>(parameter);
    for (int32_t size = FIRST_SIZE; size < SIZE_LIMIT; size = nextSize(size)) {
        char description[128];
        snprintf(description, sizeof description, "%s,A,%2d", fullName(font), static_cast<int>(size));
        if (WFcreate(display->FontOwner, description) == 0) break;
    }
    return 0;
}

int CALLBACK registerFamily(const LOGFONTA* font, const TEXTMETRICA* /*metrics*/, DWORD type, LPARAM parameter) {
    if (type != TRUETYPE_FONTTYPE) return 1;
    const HDC screen = GetDC(nullptr);
    EnumFontFamiliesA(screen, fullName(font), registerFace, parameter);
    ReleaseDC(nullptr, screen);
    return 1;
}

int32_t deviceFonts(WHandle device) {
    const auto count = static_cast<int32_t>(OUTquery(device, 2));
    return count != 0 ? count : WFqueryfontval(0, 5);
}

}  // namespace

int32_t HPGLinitFonts(HPGLDisplay* display) {
    const HDC screen = GetDC(nullptr);
    EnumFontFamiliesA(screen, nullptr, registerFamily, reinterpret_cast<LPARAM>(display));
    ReleaseDC(nullptr, screen);
    return 1;
}

int32_t HPGLsetLabelFont(WHandle device, int32_t textWidth, int32_t textHeight) {
    const int32_t count = deviceFonts(device);
    const auto* fonts = count > 0 ? reinterpret_cast<const WHandle*>(OUTquery(device, 3)) : nullptr;
    if (fonts == nullptr) return 0;
    for (int32_t i = 0; i < count; ++i) {
        const int32_t size = WFqueryfontval(fonts[i], 0);
        if (size <= 0 || size > textHeight) continue;
        // Which font fits best does not matter: the device stretches its text to the size that is set here.
        OUTsettext(device, 0, 0, textWidth, textHeight, 0, 0);
        return 1;
    }
    return 0;
}

int32_t HPGLdrawLabel(const HPGLDisplay* display, const int32_t* x, const int32_t* y, const char* text, int32_t length,
                      int32_t characterWidth, int32_t characterHeight) {
    const int32_t left = HPGLmapX(display, *x);
    const int32_t baseline = HPGLmapY(display, *y);
    const int32_t width = wrapMul(HPGLmapLength(display, characterWidth), length);
    if (HPGLsetLabelFont(display->Window, width, HPGLmapLength(display, characterHeight)) == 0) return 1;
    OUTchars_len(display->Window, left, baseline, length, text, 0);
    return 1;
}
