// What both passes keep while they walk over compact code, and what they read alike: extents and drawing go by the same
// points. Points and lengths are in scaled plotter units, angles in degrees, unless said otherwise.
#pragma once

#include <cstdint>

#include "geometry/arithmetic.h"
#include "geometry/ellipse.h"
#include "geometry/point.h"
#include "geometry/step_loop.h"
#include "hpgl/compact_code_reader.h"

struct HPGLWalk {
    const char* function = "";  // whose walk it is, in warnings
    int32_t rotationSign = 1;
    HPGLPoint position = {0, 0};  // of the pen
    bool penDown = false;
    bool relative = false;
    float scaleX = 1.0F, scaleY = 1.0F;  // set by SC
    int32_t scalingSet = 0;
    StepAllowance allowance;
};

// A part of an ellipse: a point at `first` and at every step from there until `last` has been passed.
struct HPGLSweep {
    HPGLPoint centre;
    HPGLEllipse ellipse;
    double first, last, step;
};

inline HPGLPoint HPGLreadPoint(const HPGLWalk* walk, const uint8_t* at) {
    return {scaleCoordinate(HPGLreadL(at), walk->scaleX), scaleCoordinate(HPGLreadL(at + 4), walk->scaleY)};
}

// SC.
void HPGLwalkScale(HPGLWalk* walk, const CompactCodeRecord& record);

// PA, PR, PD, PU: what each says of itself, then the point of every pair in turn to take(point), while the pen still
// stands where it was; it moves to the last one.
void HPGLwalkMode(HPGLWalk* walk, uint8_t id);
template <class Take>
void HPGLwalkPairs(HPGLWalk* walk, const CompactCodeRecord& record, Take take) {
    const uint8_t* at = record.params;
    HPGLPoint point = walk->position;
    for (int32_t pairs = record.count / 2; pairs > 0; --pairs, at += 8) {
        const HPGLPoint read = HPGLreadPoint(walk, at);
        point = walk->relative ? wrapAdd(point, read) : read;
        take(point);
    }
    walk->position = point;
}

// BR, BZ: hands over the four points of every curve, of which the pen stands at the first, and then at the last.
template <class Take>
void HPGLwalkCurves(HPGLWalk* walk, const CompactCodeRecord& record, Take take) {
    const uint8_t* at = record.params;
    for (int32_t curves = record.count / 6; curves > 0; --curves, at += 24) {
        const HPGLPoint origin = record.id == CMD_BR ? walk->position : HPGLPoint{0, 0};
        const HPGLPoint points[] = {walk->position, wrapAdd(origin, HPGLreadPoint(walk, at)),
                                    wrapAdd(origin, HPGLreadPoint(walk, at + 8)),
                                    wrapAdd(origin, HPGLreadPoint(walk, at + 16))};
        take(points);
        walk->position = points[3];
    }
}

// EA, ER, RA, RR: the corner opposite to the pen.
HPGLPoint HPGLreadCorner(const HPGLWalk* walk, const CompactCodeRecord& record);

HPGLEllipse HPGLellipseOf(const HPGLWalk* walk, double radius);

// The chord angle of CI, EW, WG, AA and AR, which is their last parameter where there are so many.
double HPGLreadChord(const HPGLWalk* walk, const CompactCodeRecord& record, int32_t countWithChord);

// EW, WG; and AA, AR.
HPGLSweep HPGLreadWedge(const HPGLWalk* walk, const CompactCodeRecord& record);
HPGLSweep HPGLreadArc(const HPGLWalk* walk, const CompactCodeRecord& record);

// The number of the pen that SP selects.
int32_t HPGLreadPen(const HPGLWalk* walk, const CompactCodeRecord& record);
