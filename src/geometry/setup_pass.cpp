#include "geometry/setup_pass.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "geometry/arithmetic.h"
#include "geometry/ellipse.h"
#include "geometry/pen_numbers.h"
#include "geometry/plot_walk.h"
#include "geometry/step_loop.h"
#include "hpgl/compact_code_reader.h"

namespace {

// Scaled plotter units.
struct Extents {
    int32_t MinX = HPGL_EMPTY_MIN, MinY = HPGL_EMPTY_MIN;
    int32_t MaxX = HPGL_EMPTY_MAX, MaxY = HPGL_EMPTY_MAX;
};

void addPoint(Extents* extents, HPGLPoint p) {
    extents->MinX = std::min(extents->MinX, p.x);
    extents->MaxX = std::max(extents->MaxX, p.x);
    extents->MinY = std::min(extents->MinY, p.y);
    extents->MaxY = std::max(extents->MaxY, p.y);
}

// The state of one pass.
struct Walk : HPGLWalk {
    HPGLPen* pens = nullptr;
    Extents extents;
};

// ---- arcs and wedges ------------------------------------------------------------------------------------------------

// Whether the whole ellipse lies in 32 bits.
bool fits(HPGLPoint centre, const HPGLEllipse& ellipse) {
    const double reachX = std::abs(ellipse.rX);
    const double reachY = std::abs(ellipse.rY);
    const auto isNumber = [](double value) { return value == std::clamp(value, -2147483648.0, 2147483647.0); };
    return isNumber(centre.x + ellipse.added - reachX) && isNumber(centre.x + ellipse.added + reachX) &&
           isNumber(centre.y + ellipse.added - reachY) && isNumber(centre.y + ellipse.added + reachY);
}

// The points of a sweep, of which only those are computed that may lie farthest out: with points near both ends of both
// axes, one that is farther than all of them from every end lies between them on either axis.
struct SweepPoints : HPGLSweep {
    static constexpr int32_t RUN = 128;

    bool ordered;  // a point between others also is between them once coordinates have been truncated
    double nearest[4] = {1, 1, 1, 1};  // to each end in turn, quarter turns
    double near = 1.0;                 // what may lie farthest out is nearer, quarter turns
    FewTurns fewTurns = {};
    int32_t count = 0;  // points that wait
    double angles[RUN] = {};
};

// Cosines of two angles that differ by as much, in quarter turns, differ in more than their last bits, even near 0.
constexpr double DISTINCT_QUARTERS = 0x1p-24;

// Adds the points that wait, and answers the last one; there is one at least.
HPGLPoint addWaiting(SweepPoints* sweep, Extents* extents) {
    EllipseOffset offsets[SweepPoints::RUN];
    HPGLonEllipse(sweep->ellipse, sweep->angles, sweep->count, offsets);
    HPGLPoint point = {};
    for (int32_t i = 0; i < sweep->count; ++i) {
        point = wrapAdd(sweep->centre, {offsets[i].x, offsets[i].y});
        addPoint(extents, point);
    }
    sweep->count = 0;
    if (sweep->ordered) sweep->near = *std::ranges::max_element(sweep->nearest) + DISTINCT_QUARTERS;
    return point;
}

bool mayBeFarthest(SweepPoints* sweep, double angle) {
    const double quarters = HPGLwithFewTurns(&sweep->fewTurns, HPGLradians(angle)) * (2.0 / std::numbers::pi);
    const double end = nearestWhole(quarters);
    const double distance = std::abs(quarters - end);
    if (distance >= sweep->near) return false;
    double& nearest = sweep->nearest[static_cast<uint32_t>(static_cast<int32_t>(end)) % 4];
    nearest = std::min(nearest, distance);
    return true;
}

// Adds the points of a sweep, and its end, which is the answer.
HPGLPoint addSweep(Walk* walk, const HPGLSweep& sweep) {
    SweepPoints points = {sweep, fits(sweep.centre, sweep.ellipse)};
    HPGLforEachStep(&walk->allowance, walk->function, sweep.first, sweep.step, sweep.last, [&](double angle) {
        if (!mayBeFarthest(&points, angle)) return;
        points.angles[points.count++] = angle;
        if (points.count == SweepPoints::RUN - 1) addWaiting(&points, &walk->extents);
    });
    points.angles[points.count++] = sweep.last;
    return addWaiting(&points, &walk->extents);
}

void walkWedge(Walk* walk, const CompactCodeRecord& record) {
    addSweep(walk, HPGLreadWedge(walk, record));
}

// Deliberate: the start angle in degrees is added to every point's offsets. The extents, and with them the picture's
// place in the window, depend on it.
void walkArc(Walk* walk, const CompactCodeRecord& record) {
    HPGLSweep arc = HPGLreadArc(walk, record);
    arc.ellipse.added = arc.first;
    walk->position = addSweep(walk, arc);
}

// ---- the other forms that the pass acts on --------------------------------------------------------------------------

// Stepped over; IP, IR, IW and RO have no effect on the extents.
void walkSignature(Walk* /*walk*/, const CompactCodeRecord& /*record*/) {}

void walkScale(Walk* walk, const CompactCodeRecord& record) {
    HPGLwalkScale(walk, record);
}

// Moves with the pen up do not enlarge the extents.
void walkMoves(Walk* walk, const CompactCodeRecord& record) {
    HPGLwalkMode(walk, record.id);
    Extents extents = walk->extents;
    const bool penDown = walk->penDown;
    if (penDown && record.count >= 2) addPoint(&extents, walk->position);
    HPGLwalkPairs(walk, record, [&extents, penDown](HPGLPoint point) {
        if (penDown) addPoint(&extents, point);
    });
    walk->extents = extents;
}

void walkCurves(Walk* walk, const CompactCodeRecord& record) {
    HPGLwalkCurves(walk, record, [walk](const HPGLPoint(&points)[4]) {
        for (const int i : {1, 2, 3}) {
            addPoint(&walk->extents, points[i]);
        }
    });
}

void walkCircle(Walk* walk, const CompactCodeRecord& record) {
    const int32_t radius = HPGLreadL(record.params);
    const HPGLPoint r = {scaleCoordinate(radius, walk->scaleX), scaleCoordinate(radius, walk->scaleY)};
    // A negative radius reaches the other way: minimum takes the difference, maximum the sum, whatever the sign.
    const HPGLPoint least = wrapSub(walk->position, r);
    const HPGLPoint most = wrapAdd(walk->position, r);
    Extents& extents = walk->extents;
    extents.MinX = std::min(extents.MinX, least.x);
    extents.MaxX = std::max(extents.MaxX, most.x);
    extents.MinY = std::min(extents.MinY, least.y);
    extents.MaxY = std::max(extents.MaxY, most.y);
}

void walkRectangle(Walk* walk, const CompactCodeRecord& record) {
    addPoint(&walk->extents, HPGLreadCorner(walk, record));
}

void walkPen(Walk* walk, const CompactCodeRecord& record) {
    walk->pens[HPGLreadPen(walk, record)].used = 1;
}

void walkColour(Walk* walk, const CompactCodeRecord& record) {
    const int32_t number = HPGLreadI(record.params);
    if (!HPGLpenExists(number, walk->function)) return;
    HPGLPen* pen = &walk->pens[number];
    pen->red = HPGLreadI(record.params + 2);
    pen->green = HPGLreadI(record.params + 4);
    pen->blue = HPGLreadI(record.params + 6);
    pen->used = 1;
}

constexpr void (*FORMS[])(Walk* walk, const CompactCodeRecord& record) = {
#define HPGL_COMMAND(name, signature, setup, drawing, action, sure) walk##setup,
#include "hpgl/commands.inl"
};

}  // namespace

void HPGLfindExtents(ParseInt* picture, int32_t rotationSign) {
    Walk walk;
    walk.function = "HPGLsetupPicture";
    walk.rotationSign = rotationSign;
    walk.pens = picture->PStatus;
    HPGLforEachRecord(picture->blocks, CompactCodePass::Setup, [&walk](const CompactCodeRecord& record) {
        FORMS[record.id](&walk, record);
        return true;
    });
    HPGLGlobal* global = picture->global;
    global->MinX = walk.extents.MinX;
    global->MinY = walk.extents.MinY;
    global->MaxX = walk.extents.MaxX;
    global->MaxY = walk.extents.MaxY;
    global->spare = 0;
}
