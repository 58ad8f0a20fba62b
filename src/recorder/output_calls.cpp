// The output device of the drawing child, and its fonts.
#include <numeric>
#include <utility>

#include "recorder/world.h"
#include "toolkit/out.h"
#include "toolkit/wf.h"

using namespace recorder;

namespace {

// Handles of the device's fonts count from here, far from those that operations answer.
constexpr WHandle FIRST_DEVICE_FONT = 0x40000000;

const WHandle* handOutFonts() {
    world.deviceFonts.resize(script.fontSizes.size());
    std::iota(world.deviceFonts.begin(), world.deviceFonts.end(), FIRST_DEVICE_FONT);
    return world.deviceFonts.data();
}

int32_t sizeOfDeviceFont(WHandle font) {
    const size_t index = font - FIRST_DEVICE_FONT;
    return font >= FIRST_DEVICE_FONT && index < script.fontSizes.size() ? script.fontSizes[index] : 0;
}

}  // namespace

// ---- the device -----------------------------------------------------------------------------------------------------

int32_t OUTstdcreate(WHandle child, WHandle owner, uint32_t colours, uint32_t flags, WHandle colourTable) {
    return note(__func__, child, owner, colours, flags, colourTable);
}

void OUTdestroy(WHandle child) {
    note(__func__, child);
}

int32_t OUTreset(WHandle) {
    return note(__func__);
}
int32_t OUTendpaint(WHandle) {
    return note(__func__);
}
int32_t OUTsetbackground(WHandle, uint32_t colour) {
    return note(__func__, colour);
}

int32_t OUTquerysize(WHandle, int32_t* width, int32_t* height) {
    if (!note(__func__)) return 0;
    *width = script.width;
    *height = script.height;
    return 1;
}

int32_t OUTopendevice(WHandle child, uint32_t destination, uint32_t format, const void* name) {
    if (destination == OUT_TO_HOST) {
        return note(__func__, child, destination, format, *static_cast<const WHandle*>(name));
    }
    return note(__func__, child, destination, format, static_cast<const char*>(name));
}

int32_t OUTclosedevice(WHandle child) {
    return note(__func__, child);
}

// ---- drawing --------------------------------------------------------------------------------------------------------

int32_t OUTline(WHandle, int32_t x1, int32_t y1, int32_t x2, int32_t y2) {
    return draw(__func__, x1, y1, x2, y2);
}

int32_t OUTgeomline(WHandle, const OUTPoint* points, int32_t count, int32_t width) {
    return draw(__func__, width, count, list(points, count));
}

int32_t OUTboxr0(WHandle, int32_t x, int32_t y, int32_t w, int32_t h) {
    return draw(__func__, x, y, w, h);
}
int32_t OUTboxr1(WHandle, int32_t x, int32_t y, int32_t w, int32_t h) {
    return draw(__func__, x, y, w, h);
}
int32_t OUTboxr2(WHandle, int32_t x, int32_t y, int32_t w, int32_t h) {
    return note(__func__, x, y, w, h);
}

int32_t OUTwinsolidpolygons(WHandle, const OUTPoint* points, const int32_t* counts, int32_t n) {
    const auto sizes = list(counts, n);
    return draw(__func__, n, sizes, list(points, std::accumulate(sizes.begin(), sizes.end(), 0)));
}

int32_t OUTtrackbox(WHandle, int32_t x, int32_t y, int32_t w, int32_t h, uint32_t flags) {
    return note(__func__, x, y, w, h, flags);
}

int32_t OUTlinecolour(WHandle, int32_t colour) {
    return draw(__func__, colour);
}
int32_t OUTfillcolour(WHandle, int32_t colour) {
    return draw(__func__, colour);
}

int32_t OUTsettext(WHandle, int32_t a, int32_t b, int32_t width, int32_t height, int32_t e, int32_t f) {
    return draw(__func__, a, b, width, height, e, f);
}

int32_t OUTchars_len(WHandle, int32_t x, int32_t y, int32_t length, const char* text, uint32_t) {
    const auto bytes = list(text, length);
    return draw(__func__, x, y, length, Hex{{bytes.data(), bytes.size()}});
}

// ---- fonts ----------------------------------------------------------------------------------------------------------

uintptr_t OUTquery(WHandle, uint32_t kind) {
    if (!note(__func__, kind)) return 0;
    if (kind == OUT_NUMBER_OF_FONTS) return script.fontSizes.size();
    return kind == OUT_FONTS ? std::bit_cast<uintptr_t>(handOutFonts()) : 0;
}

WHandle WFcreate(WHandle owner, const char* description) {
    if (!note(__func__, owner, description)) return 0;
    const auto known = world.fonts.find(description);
    if (known != world.fonts.end()) return known->second;
    if (std::cmp_greater_equal(world.fonts.size(), script.fontsAccepted)) return 0;
    return world.fonts[description] = newHandle(__func__);
}

int32_t WFqueryfontval(WHandle font, uint32_t value) {
    if (!note(__func__, font, value)) return 0;
    if (font == 0) return value == WF_NUMBER_OF_FONTS ? script.allFonts : 0;
    return value == WF_SIZE ? sizeOfDeviceFont(font) : 0;
}
