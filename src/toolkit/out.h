// The W toolkit: the output device of a drawing child.
//
// Coordinates are device pixels, signed 32-bit, x to the right and y growing upward from the lower left corner.
// Colours are indexes into the device's colour table (WCLRcreate). Any coordinate is allowed: what lies outside is
// clipped, and the time that takes is bounded by the surface. The screen changes only at OUTendpaint.
#pragma once

#include <cstdint>

#include "toolkit/w.h"

struct OUTPoint {
    int32_t x;
    int32_t y;
};

enum OUTDestination : uint32_t { OUT_TO_PRINTER = 1, OUT_TO_FILE = 2, OUT_TO_HOST = 3 };
enum OUTQuery : uint32_t { OUT_NUMBER_OF_FONTS = 2, OUT_FONTS = 3 };

extern "C" {

// Makes the child's device. owner: the object that fonts belong to; colours: at most so many; flags 0.
int32_t OUTstdcreate(WHandle child, WHandle owner, uint32_t colours, uint32_t flags, WHandle colourTable);
void OUTdestroy(WHandle child);

// Begins a drawing with fresh attributes and the colour table made last; clears nothing.
int32_t OUTreset(WHandle child);
// Ends it: what was drawn is shown.
int32_t OUTendpaint(WHandle child);

// The colour with which the surface is filled before every paint message.
int32_t OUTsetbackground(WHandle child, uint32_t colour);

// Size of the child's output in device pixels; answers before a device exists too.
int32_t OUTquerysize(WHandle child, int32_t* width, int32_t* height);

// A thin line, both end points drawn.
int32_t OUTline(WHandle child, int32_t x1, int32_t y1, int32_t x2, int32_t y2);

// A polyline of `count` points, `width` pixels wide, round caps and joins. 0 points draw nothing, one draws a dot;
// width 0 and 1 are thin lines. The points are only read during the call.
int32_t OUTgeomline(WHandle child, const OUTPoint* points, int32_t count, int32_t width);

// The outline from (x, y) to (x + w, y + h); negative sizes are normalised.
int32_t OUTboxr0(WHandle child, int32_t x, int32_t y, int32_t w, int32_t h);
// The same box, w x h pixels, filled with the fill colour.
int32_t OUTboxr1(WHandle child, int32_t x, int32_t y, int32_t w, int32_t h);
// The same, filled, ignoring attributes other than the fill colour; for clearing.
int32_t OUTboxr2(WHandle child, int32_t x, int32_t y, int32_t w, int32_t h);

// `n` polygons as one area, even-odd: counts[i] points each, one after the other in `points`.
int32_t OUTwinsolidpolygons(WHandle child, const OUTPoint* points, const int32_t* counts, int32_t n);

// A box over the drawing; the same call again takes it away.
int32_t OUTtrackbox(WHandle child, int32_t x, int32_t y, int32_t w, int32_t h, uint32_t flags);

int32_t OUTlinecolour(WHandle child, int32_t colour);
int32_t OUTfillcolour(WHandle child, int32_t colour);

// The size of the texts that follow: a text fills `width` pixels exactly and its capitals are `height` high.
// The four other values are 0.
int32_t OUTsettext(WHandle child, int32_t a, int32_t b, int32_t width, int32_t height, int32_t e, int32_t f);

// `length` characters of 8 bits with their baseline's start at (x, y); no terminator needed. flags 0.
int32_t OUTchars_len(WHandle child, int32_t x, int32_t y, int32_t length, const char* text, uint32_t flags);

// What an OUTQuery asks. OUT_FONTS answers the address of an array of so many font handles (WHandle), or of all fonts
// when there are no device fonts, or null when there are none at all. Owned by the device, valid until its next
// operation.
uintptr_t OUTquery(WHandle child, uint32_t kind);

// Makes a page the child's output (destination and format as PSSETUPtransDestAndFormatValues gives them, name the
// file's; for OUT_TO_HOST the address of the data-channel handle), until OUTclosedevice gives the surface back.
int32_t OUTopendevice(WHandle child, uint32_t destination, uint32_t format, const void* name);
int32_t OUTclosedevice(WHandle child);
}
