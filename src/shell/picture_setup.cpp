#include "shell/picture_setup.h"

#include <cstdlib>
#include <cstring>

#include "geometry/setup_pass.h"

namespace {

WColour colourOf(const HPGLPen& pen) {
    return {static_cast<uint8_t>(pen.red), static_cast<uint8_t>(pen.green), static_cast<uint8_t>(pen.blue), 0};
}

// Answers the number of entries.
int32_t fillPalette(HPGLPen* pens, WColour* palette) {
    int32_t count = 0;
    for (int32_t i = 0; i < HPGL_PENS && count < HPGL_MAX_COLOURS; ++i) {
        if (pens[i].used == 0) continue;
        palette[count] = colourOf(pens[i]);
        pens[i].paletteIndex = count++;
    }
    if (count != 1) return count;
    palette[1] = {0, 0, 0, 0};
    pens[HPGL_PENS - 1].paletteIndex = 1;
    return 2;
}

bool clearPalette(HPGLDisplay* display) {
    constexpr size_t bytes = HPGL_PALETTE_SIZE * sizeof(WColour);
    if (display->Palette == nullptr) display->Palette = static_cast<WColour*>(malloc(bytes));
    if (display->Palette != nullptr) memset(display->Palette, 0, bytes);
    return display->Palette != nullptr;
}

void createColourTable(HPGLPen* pens, HPGLDisplay* display) {
    if (!clearPalette(display)) return;
    display->ColourCount = fillPalette(pens, display->Palette);
    display->Palette[display->ColourCount] = {0, 255, 0, 0};
    display->RubberColour = display->ColourCount;
    display->ColourTable = WCLRcreate(display->Application, display->Palette, display->ColourCount + 1);
}

void prepareDevice(HPGLDisplay* display) {
    if (!display->DeviceExists) {
        OUTstdcreate(display->Window, display->FontOwner, HPGL_MAX_COLOURS, 0, display->ColourTable);
        OUTsetbackground(display->Window, 0);
        Wsetfocus(display->Window);
        display->DeviceExists = true;
        return;
    }
    OUTreset(display->Window);
    OUTsetbackground(display->Window, 0);
    Wupdate(display->Window, 1);
}

}  // namespace

int32_t HPGLsetupPicture(ParseInt* picture, HPGLDisplay* display, int32_t rotationSign) {
    HPGLfindExtents(picture, rotationSign);
    createColourTable(picture->PStatus, display);
    prepareDevice(display);
    return 1;
}

void HPGLreleaseColours(HPGLDisplay* display) {
    if (display->ColourTable != 0) WCLRdestroy(display->ColourTable);
    display->ColourTable = 0;
    display->ColourCount = 0;
    free(display->Palette);
    display->Palette = nullptr;
}
