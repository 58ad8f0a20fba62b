#include "setup_pass.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <numbers>

#include "arithmetic.h"
#include "compact_code_reader.h"
#include "ellipse.h"
#include "pens.h"
#include "sc_command.h"
#include "step_loop.h"

namespace {

constexpr char NAME[] = "HPGLsetupPicture";

struct Point {
    int32_t x, y;
};

// Scaled plotter units.
struct Extents {
    int32_t MinX = HPGL_EMPTY_MIN, MinY = HPGL_EMPTY_MIN;
    int32_t MaxX = HPGL_EMPTY_MAX, MaxY = HPGL_EMPTY_MAX;
};

void addPoint(Extents* extents, Point p) {
    extents->MinX = std::min(extents->MinX, p.x);
    extents->MaxX = std::max(extents->MaxX, p.x);
    extents->MinY = std::min(extents->MinY, p.y);
    extents->MaxY = std::max(extents->MaxY, p.y);
}

// The state of one walk.
struct Walk {
    HPGLPen* pens;
    int32_t rotationSign;
    Point pen = {0, 0};
    bool penDown = false;
    bool relative = false;
    float ScaleFactorX = 1.0F;
    float ScaleFactorY = 1.0F;
    int32_t scalingSet = 0;
    Extents extents;
    StepAllowance allowance;
};

Point readScaled(const Walk* walk, const uint8_t* at) {
    return {scaleCoordinate(HPGLreadL(at), walk->ScaleFactorX), scaleCoordinate(HPGLreadL(at + 4), walk->ScaleFactorY)};
}

Point sum(Point a, Point b) {
    return {wrapAdd(a.x, b.x), wrapAdd(a.y, b.y)};
}

void setMode(Walk* walk, uint8_t id) {
    switch (id) {
        case CMD_PA:
            walk->relative = false;
            break;
        case CMD_PR:
            walk->relative = true;
            break;
        case CMD_PD:
            walk->penDown = true;
            break;
        default:
            walk->penDown = false;
            break;
    }
}

// Moves with the pen up do not enlarge the extents.
void walkMoves(Walk* walk, const CompactCodeRecord& record) {
    setMode(walk, record.id);
    const int32_t pairs = record.count / 2;
    if (pairs == 0) return;
    Extents extents = walk->extents;
    Point pen = walk->pen;
    if (walk->penDown) addPoint(&extents, pen);
    const uint8_t* at = record.params;
    for (int32_t i = 0; i < pairs; ++i, at += 8) {
        const Point read = readScaled(walk, at);
        pen = walk->relative ? sum(pen, read) : read;
        if (walk->penDown) addPoint(&extents, pen);
    }
    walk->pen = pen;
    walk->extents = extents;
}

void walkCircle(Walk* walk, const CompactCodeRecord& record) {
    const int32_t radius = HPGLreadL(record.params);
    const Point r = {scaleCoordinate(radius, walk->ScaleFactorX), scaleCoordinate(radius, walk->ScaleFactorY)};
    // A negative radius reaches the other way: minimum takes the difference, maximum the sum, whatever the sign.
    Extents& extents = walk->extents;
    extents.MinX = std::min(extents.MinX, wrapSub(walk->pen.x, r.x));
    extents.MaxX = std::max(extents.MaxX, wrapAdd(walk->pen.x, r.x));
    extents.MinY = std::min(extents.MinY, wrapSub(walk->pen.y, r.y));
    extents.MaxY = std::max(extents.MaxY, wrapAdd(walk->pen.y, r.y));
}

void walkCurves(Walk* walk, const CompactCodeRecord& record) {
    const uint8_t* at = record.params;
    for (int32_t segment = 0; segment < record.count / 6; ++segment) {
        const Point start = record.id == CMD_BR ? walk->pen : Point{0, 0};
        for (int32_t i = 0; i < 3; ++i, at += 8) {
            walk->pen = sum(start, readScaled(walk, at));
            addPoint(&walk->extents, walk->pen);
        }
    }
}

void walkRectangle(Walk* walk, const CompactCodeRecord& record) {
    const bool relative = record.id == CMD_ER || record.id == CMD_RR;
    addPoint(&walk->extents, sum(relative ? walk->pen : Point{0, 0}, readScaled(walk, record.params)));
}

HPGLEllipse ellipseOf(const Walk* walk, double radius, double added) {
    return {static_cast<double>(walk->ScaleFactorX) * radius, static_cast<double>(walk->ScaleFactorY) * radius, added};
}

// Whether the whole ellipse lies in 32 bits.
bool fits(Point centre, const HPGLEllipse& ellipse) {
    const double reachX = std::abs(ellipse.rX);
    const double reachY = std::abs(ellipse.rY);
    const auto isNumber = [](double value) { return value == std::clamp(value, -2147483648.0, 2147483647.0); };
    return isNumber(centre.x + ellipse.added - reachX) && isNumber(centre.x + ellipse.added + reachX) &&
           isNumber(centre.y + ellipse.added - reachY) && isNumber(centre.y + ellipse.added + reachY);
}

double chordOf(const Walk* walk, const CompactCodeRecord& record) {
    const bool given = record.count == 4;
    return HPGLusableChord(&walk->allowance, given, given ? HPGLreadR(record.params + 12) : 0.0F, NAME);
}

// The points of a sweep, of which only those are computed that may lie farthest out: with points near both ends of both
// axes, one that is farther than all of them from every end lies between them on either axis.
struct Sweep {
    static constexpr int32_t RUN = 128;

    Point centre;
    HPGLEllipse ellipse;
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
Point addWaiting(Sweep* sweep, Extents* extents) {
    EllipseOffset offsets[Sweep::RUN];
    HPGLonEllipse(sweep->ellipse, sweep->angles, sweep->count, offsets);
    Point point = {};
    for (int32_t i = 0; i < sweep->count; ++i) {
        point = sum(sweep->centre, {offsets[i].x, offsets[i].y});
        addPoint(extents, point);
    }
    sweep->count = 0;
    if (sweep->ordered) sweep->near = *std::ranges::max_element(sweep->nearest) + DISTINCT_QUARTERS;
    return point;
}

bool mayBeFarthest(Sweep* sweep, double angle) {
    const double quarters = HPGLwithFewTurns(&sweep->fewTurns, HPGLradians(angle)) * (2.0 / std::numbers::pi);
    const double end = nearestWhole(quarters);
    const double distance = std::abs(quarters - end);
    if (distance >= sweep->near) return false;
    double& nearest = sweep->nearest[static_cast<uint32_t>(static_cast<int32_t>(end)) % 4];
    nearest = std::min(nearest, distance);
    return true;
}

// Adds the points of a sweep, and its end, which is the answer.
Point addSweep(Walk* walk, Point centre, const HPGLEllipse& ellipse, double start, double sweep, double chord) {
    Sweep points = {centre, ellipse, fits(centre, ellipse)};
    const double end = start + sweep;
    HPGLforEachStep(&walk->allowance, NAME, start, sweep > 0 ? chord : -chord, end, [&](double angle) {
        if (!mayBeFarthest(&points, angle)) return;
        points.angles[points.count++] = angle;
        if (points.count == Sweep::RUN - 1) addWaiting(&points, &walk->extents);
    });
    points.angles[points.count++] = end;
    return addWaiting(&points, &walk->extents);
}

void walkWedge(Walk* walk, const CompactCodeRecord& record) {
    double radius = HPGLreadL(record.params);
    double start = HPGLusableAngle(HPGLreadR(record.params + 4));
    const double sweep = HPGLusableAngle(HPGLreadR(record.params + 8));
    const double chord = chordOf(walk, record);
    if (radius < 0) {
        radius = -radius;
        start += 180.0;
    }
    addSweep(walk, walk->pen, ellipseOf(walk, radius, 0.0), start, sweep, chord);
}

// Deliberate: the centre is taken unscaled, and the start angle in degrees is added to every point's offsets. The
// extents, and with them the picture's place in the window, depend on both.
void walkArc(Walk* walk, const CompactCodeRecord& record) {
    const Point read = {HPGLreadL(record.params), HPGLreadL(record.params + 4)};
    const double sweep = HPGLusableAngle(HPGLreadR(record.params + 8));
    const double chord = chordOf(walk, record);
    const bool absolute = record.id == CMD_AA;
    const Point centre = absolute ? read : sum(walk->pen, read);
    const Point vector = absolute ? Point{wrapSub(walk->pen.x, read.x), wrapSub(walk->pen.y, read.y)}
                                  : Point{wrapSub(0, read.x), wrapSub(0, read.y)};
    const double vx = vector.x;
    const double vy = vector.y;
    const double radius = std::sqrt(vx * vx + vy * vy);
    const double start = HPGLdegrees(std::atan2(vy, vx));
    walk->pen = addSweep(walk, centre, ellipseOf(walk, radius, start), start, sweep, chord);
}

void walkSelectPen(Walk* walk, const CompactCodeRecord& record) {
    const int32_t pen = record.count > 0 ? HPGLselectedPen(HPGLreadI(record.params), NAME) : 0;
    walk->pens[pen].used = 1;
}

void walkPenColour(Walk* walk, const CompactCodeRecord& record) {
    const int32_t number = HPGLreadI(record.params);
    if (!HPGLpenExists(number, NAME)) return;
    HPGLPen* pen = &walk->pens[number];
    pen->red = HPGLreadI(record.params + 2);
    pen->green = HPGLreadI(record.params + 4);
    pen->blue = HPGLreadI(record.params + 6);
    pen->used = 1;
}

void walkRecord(Walk* walk, const CompactCodeRecord& record) {
    switch (record.id) {
        case CMD_SC:
            handleSCCommand(record.params, record.count, &walk->scalingSet, &walk->ScaleFactorX, &walk->ScaleFactorY,
                            walk->rotationSign);
            break;
        case CMD_PA:
        case CMD_PD:
        case CMD_PR:
        case CMD_PU:
            walkMoves(walk, record);
            break;
        case CMD_CI:
            walkCircle(walk, record);
            break;
        case CMD_BR:
        case CMD_BZ:
            walkCurves(walk, record);
            break;
        case CMD_EA:
        case CMD_ER:
        case CMD_RA:
        case CMD_RR:
            walkRectangle(walk, record);
            break;
        case CMD_EW:
        case CMD_WG:
            walkWedge(walk, record);
            break;
        case CMD_AA:
        case CMD_AR:
            walkArc(walk, record);
            break;
        case CMD_SP:
            walkSelectPen(walk, record);
            break;
        case CMD_PC:
            walkPenColour(walk, record);
            break;
        default:
            break;  // stepped over; IP, IR, IW and RO have no effect on the extents
    }
}

void walkBlocks(Walk* walk, CBlockList* blocks) {
    void* block = nullptr;
    if (!HPGLgotoFirst(blocks)) return;
    for (bool more = HPGLgetActualListData(blocks, &block, nullptr, nullptr); more;
         more = HPGLgetNextListData(blocks, &block, nullptr, nullptr)) {
        CompactCodeReader reader = HPGLreadBlock(static_cast<const CBlock*>(block), CompactCodePass::Setup);
        CompactCodeRecord record;
        while (HPGLreadRecord(&reader, &record)) {
            walkRecord(walk, record);
        }
    }
}

// ---- colours and device ---------------------------------------------------------------------------------------------

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
    Walk walk = {};
    walk.pens = picture->PStatus;
    walk.rotationSign = rotationSign;
    walkBlocks(&walk, picture->blocks);
    HPGLGlobal* global = picture->global;
    global->MinX = walk.extents.MinX;
    global->MinY = walk.extents.MinY;
    global->MaxX = walk.extents.MaxX;
    global->MaxY = walk.extents.MaxY;
    global->spare = 0;
    createColourTable(picture->PStatus, display);
    prepareDevice(display);
    return 1;
}
