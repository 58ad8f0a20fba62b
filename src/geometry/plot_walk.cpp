#include "geometry/plot_walk.h"

#include <cmath>
#include <cstddef>

#include "geometry/pen_numbers.h"
#include "geometry/sc_command.h"

namespace {

double stepOf(double sweep, double chord) {
    return sweep > 0 ? chord : -chord;
}

}  // namespace

void HPGLwalkScale(HPGLWalk* walk, const CompactCodeRecord& record) {
    handleSCCommand(record.params, record.count, &walk->scalingSet, &walk->scaleX, &walk->scaleY, walk->rotationSign);
}

void HPGLwalkMode(HPGLWalk* walk, uint8_t id) {
    if (id == CMD_PA || id == CMD_PR) {
        walk->relative = id == CMD_PR;
    } else {
        walk->penDown = id == CMD_PD;
    }
}

HPGLPoint HPGLreadCorner(const HPGLWalk* walk, const CompactCodeRecord& record) {
    const HPGLPoint read = HPGLreadPoint(walk, record.params);
    return record.id == CMD_ER || record.id == CMD_RR ? wrapAdd(walk->position, read) : read;
}

HPGLEllipse HPGLellipseOf(const HPGLWalk* walk, double radius) {
    return {static_cast<double>(walk->scaleX) * radius, static_cast<double>(walk->scaleY) * radius, 0.0};
}

double HPGLreadChord(const HPGLWalk* walk, const CompactCodeRecord& record, int32_t countWithChord) {
    const bool given = record.count == countWithChord;
    const float chord = given ? HPGLreadR(record.params + ptrdiff_t{countWithChord - 1} * 4) : 0.0F;
    return HPGLusableChord(&walk->allowance, given, chord, walk->function);
}

HPGLSweep HPGLreadWedge(const HPGLWalk* walk, const CompactCodeRecord& record) {
    double radius = HPGLreadL(record.params);
    double start = HPGLusableAngle(HPGLreadR(record.params + 4));
    const double sweep = HPGLusableAngle(HPGLreadR(record.params + 8));
    if (radius < 0) {
        radius = -radius;
        start += 180.0;
    }
    const double step = stepOf(sweep, HPGLreadChord(walk, record, 4));
    return {walk->position, HPGLellipseOf(walk, radius), start, start + sweep, step};
}

// Deliberate: the centre is not multiplied by the factors of SC, as every other coordinate is. The extents, and with
// them the picture's place in the window, depend on it.
HPGLSweep HPGLreadArc(const HPGLWalk* walk, const CompactCodeRecord& record) {
    const HPGLPoint read = {HPGLreadL(record.params), HPGLreadL(record.params + 4)};
    const bool absolute = record.id == CMD_AA;
    const HPGLPoint centre = absolute ? read : wrapAdd(walk->position, read);
    const HPGLPoint toPen = wrapSub(absolute ? walk->position : HPGLPoint{0, 0}, read);
    const double x = toPen.x;
    const double y = toPen.y;
    const double start = HPGLdegrees(std::atan2(y, x));
    const double sweep = HPGLusableAngle(HPGLreadR(record.params + 8));
    const double step = stepOf(sweep, HPGLreadChord(walk, record, 4));
    return {centre, HPGLellipseOf(walk, std::sqrt(x * x + y * y)), start, start + sweep, step};
}

int32_t HPGLreadPen(const HPGLWalk* walk, const CompactCodeRecord& record) {
    return record.count > 0 ? HPGLselectedPen(HPGLreadI(record.params), walk->function) : 0;
}
