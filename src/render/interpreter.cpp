#include "interpreter.h"

#include <cmath>

#include "arithmetic.h"
#include "compact_code_reader.h"
#include "ellipse.h"
#include "interpreter_state.h"
#include "labels.h"
#include "pens.h"
#include "primitives.h"
#include "sc_command.h"
#include "trace.h"

namespace {

constexpr char NAME[] = "HPGLinterpretCompactCode";

using State = HPGLInterpState;
using Record = CompactCodeRecord;
using Point = HPGLPBufPoint;

// Carries one record out; false ends the pass at once.
using Action = bool (*)(State* state, const Record& record);

Point readScaled(const State* state, const uint8_t* at) {
    return {scaleCoordinate(HPGLreadL(at), state->scaleX), scaleCoordinate(HPGLreadL(at + 4), state->scaleY)};
}

Point position(const State* state) {
    return {state->X, state->Y};
}

void moveTo(State* state, Point point) {
    state->X = point.x;
    state->Y = point.y;
}

Point sum(Point a, Point b) {
    return {wrapAdd(a.x, b.x), wrapAdd(a.y, b.y)};
}

HPGLPen* currentPen(const State* state) {
    return &state->view->PStatus[state->pen];
}

// ---- commands without drawing ---------------------------------------------------------------------------------------

bool ignore(State* /*state*/, const Record& /*record*/) {
    return true;
}

void traceParameters(const char* signature, const Record& record) {
    const uint8_t* at = record.params;
    const char* letter = signature;
    for (int32_t i = 0; i < record.count && *signature != '\0'; ++i) {
        switch (*letter) {
            case 'I':
                TRCTraceError(HPGLTraceHandle, " %d ", static_cast<int>(HPGLreadI(at)));
                break;
            case 'L':
                TRCTraceError(HPGLTraceHandle, " %d ", static_cast<int>(HPGLreadL(at)));
                break;
            case 'R':
                TRCTraceError(HPGLTraceHandle, " %f ", static_cast<double>(HPGLreadR(at)));
                break;
            case 'C':
                TRCTraceError(HPGLTraceHandle, "%c", static_cast<char>(*at));
                break;
            default:
                break;
        }
        at += HPGLletterBytes(*letter++);
        if (*letter == '\0') letter = signature;
    }
}

bool cantHandle(State* /*state*/, const Record& record) {
    if (!TRCAdmits(HPGLTraceHandle, TRC_ERROR)) return true;
    const HPGLCommand& row = HPGLCommandTable[record.id];
    TRCTraceError(HPGLTraceHandle, "WARNING-HPGLinterpretCompactCode:  Cant handle %s, ignore command\n", row.name);
    traceParameters(row.signature, record);
    TRCTraceError(HPGLTraceHandle, "\n");
    return true;
}

bool cantRotate(State* /*state*/, const Record& /*record*/) {
    TRCTraceError(HPGLTraceHandle, "Can not handle RO command, will not rotated drawing\n");
    return true;
}

bool scale(State* state, const Record& record) {
    handleSCCommand(record.params, record.count, &state->scalingSet, &state->scaleX, &state->scaleY,
                    state->rotationSign);
    return true;
}

// ---- moves and rectangles -------------------------------------------------------------------------------------------

// Goes to the point of every pair in turn, and answers how many there are. points has room for all of a record.
int32_t goThroughPairs(State* state, const Record& record, Point* points) {
    const uint8_t* at = record.params;
    const int32_t pairs = record.count / 2;
    Point pen = position(state);
    for (int32_t i = 0; i < pairs; ++i, at += 8) {
        const Point read = readScaled(state, at);
        pen = state->relative ? sum(pen, read) : read;
        points[i] = pen;
    }
    moveTo(state, pen);
    return pairs;
}

// In polygon mode every point is taken, whatever the pen state.
bool drawMoves(State* state, const Record& record) {
    static_assert(HPGL_MAX_RUN > HPGL_MAX_PARAMETERS / 2);
    Point points[HPGL_MAX_RUN];
    points[0] = position(state);
    const int32_t pairs = goThroughPairs(state, record, points + 1);
    if (state->polygonMode) {
        for (int32_t i = 1; i <= pairs; ++i) {
            HPGLPBufAddPoint(state->polygon, points[i].x, points[i].y);
        }
    } else if (state->penDown) {
        HPGLdrawLines(state->display, currentPen(state)->width, points, pairs + 1);
    }
    return true;
}

bool plotAbsolute(State* state, const Record& record) {
    state->relative = false;
    return drawMoves(state, record);
}

bool plotRelative(State* state, const Record& record) {
    state->relative = true;
    return drawMoves(state, record);
}

bool penDown(State* state, const Record& record) {
    state->penDown = true;
    return drawMoves(state, record);
}

bool penUp(State* state, const Record& record) {
    state->penDown = false;
    return drawMoves(state, record);
}

// Neither moves the pen nor asks whether it is down.
void drawRectangle(State* state, int32_t w, int32_t h, bool fill) {
    const Point p = position(state);
    if (!state->polygonMode) {
        HPGLdrawBox(state->display, currentPen(state)->width, p.x, p.y, w, h, fill);
        return;
    }
    const Point q = {wrapAdd(p.x, w), wrapAdd(p.y, h)};
    const Point corners[] = {p, {q.x, p.y}, q, {p.x, q.y}, p};
    for (const Point corner : corners) {
        HPGLPBufAddPoint(state->polygon, corner.x, corner.y);
    }
}

// The added 1 of the absolute forms is deliberate.
bool rectangleAbsolute(State* state, const Record& record) {
    const Point corner = readScaled(state, record.params);
    drawRectangle(state, wrapAdd(wrapSub(corner.x, state->X), 1), wrapAdd(wrapSub(corner.y, state->Y), 1),
                  record.id == CMD_RA);
    return true;
}

bool rectangleRelative(State* state, const Record& record) {
    const Point size = readScaled(state, record.params);
    drawRectangle(state, size.x, size.y, record.id == CMD_RR);
    return true;
}

// ---- circles, arcs, wedges, curves: assembled in the local buffer ---------------------------------------------------

// Outside polygon mode the local buffer is drawn, inside it becomes part of the polygon.
void finishLocal(State* state, bool fill) {
    if (!state->polygonMode) {
        HPGLdrawPolygon(state->display, currentPen(state)->width, state->local, fill);
        return;
    }
    const Point* points = nullptr;
    int32_t count = 0;
    if (HPGLPBufGetActual(state->local, &points, &count) == 0) {
        TRCTraceError(HPGLTraceHandle, "WARNING-HPGLinterpretCompactCode: Cant get Local PBuf\n");
        return;
    }
    HPGLPBufAddPoints(state->polygon, points, count);
}

HPGLEllipse ellipseOf(const State* state, double radius) {
    return {static_cast<double>(state->scaleX) * radius, static_cast<double>(state->scaleY) * radius, 0.0};
}

// Adds one point a step; those that the full buffer would refuse are not computed.
void addSteps(State* state, Point centre, const HPGLEllipse& ellipse, double first, double step, double last) {
    double angles[HPGL_POLYGON_POINTS];
    EllipseOffset offsets[HPGL_POLYGON_POINTS];
    const int32_t room = HPGL_POLYGON_POINTS - HPGLPBufPoints(state->local);
    int32_t count = 0;
    HPGLforEachStep(&state->allowance, NAME, first, step, last, [&](double angle) {
        if (count == room) {
            HPGLPBufReportFull();
        } else {
            angles[count++] = angle;
        }
    });
    HPGLonEllipse(ellipse, angles, count, offsets);
    Point* points = HPGLPBufAppend(state->local, count);
    for (int32_t i = 0; i < count; ++i) {
        points[i] = sum(centre, {offsets[i].x, offsets[i].y});
    }
}

double chordOf(const State* state, const Record& record, uint8_t countWithChord, const uint8_t* at) {
    const bool given = record.count == countWithChord;
    return HPGLusableChord(&state->allowance, given, given ? HPGLreadR(at) : 0.0F, NAME);
}

bool circle(State* state, const Record& record) {
    const double radius = HPGLreadL(record.params);
    const HPGLEllipse ellipse = ellipseOf(state, radius);
    if (HPGLPBufBegin(state->local, wrapAdd(state->X, truncToInt(ellipse.rX)), state->Y) == 0) return true;
    const double chord = chordOf(state, record, 2, record.params + 4);
    if (chord <= 360.0) addSteps(state, position(state), ellipse, chord, chord, 360.0);
    HPGLPBufClose(state->local);
    finishLocal(state, false);
    return true;
}

// Deliberate: the centre is not multiplied by the factors of SC, as every other coordinate is.
bool arc(State* state, const Record& record) {
    const Point read = {HPGLreadL(record.params), HPGLreadL(record.params + 4)};
    const bool absolute = record.id == CMD_AA;
    const Point centre = absolute ? read : sum(position(state), read);
    const double dx = absolute ? wrapSub(state->X, read.x) : wrapSub(0, read.x);
    const double dy = absolute ? wrapSub(state->Y, read.y) : wrapSub(0, read.y);
    if (HPGLPBufBegin(state->local, state->X, state->Y) == 0) return true;
    const double sweep = HPGLusableAngle(HPGLreadR(record.params + 8));
    const double chord = chordOf(state, record, 4, record.params + 12);
    const double radius = std::sqrt(dx * dx + dy * dy);
    const double start = HPGLdegrees(std::atan2(dy, dx));
    const double end = start + sweep;
    const HPGLEllipse ellipse = ellipseOf(state, radius);
    addSteps(state, centre, ellipse, start, sweep > 0 ? chord : -chord, end);
    const EllipseOffset offset = HPGLonEllipse(ellipse, end);
    moveTo(state, {wrapAdd(centre.x, offset.x), wrapAdd(centre.y, offset.y)});
    HPGLPBufAddPoint(state->local, state->X, state->Y);
    finishLocal(state, false);
    return true;
}

bool wedge(State* state, const Record& record) {
    double radius = HPGLreadL(record.params);
    double start = HPGLusableAngle(HPGLreadR(record.params + 4));
    const double sweep = HPGLusableAngle(HPGLreadR(record.params + 8));
    if (radius < 0) {
        radius = -radius;
        start += 180.0;
    }
    if (HPGLPBufBegin(state->local, state->X, state->Y) == 0) return true;
    const double chord = chordOf(state, record, 4, record.params + 12);
    const HPGLEllipse ellipse = ellipseOf(state, radius);
    addSteps(state, position(state), ellipse, start, sweep > 0 ? chord : -chord, start + sweep);
    HPGLPBufAddPoint(state->local, state->X, state->Y);
    HPGLPBufClose(state->local);
    finishLocal(state, record.id == CMD_WG);
    return true;
}

bool curves(State* state, const Record& record) {
    if (HPGLPBufBegin(state->local, state->X, state->Y) == 0) return false;
    const uint8_t* at = record.params;
    for (int32_t group = 0; group < record.count / 6; ++group, at += 24) {
        const Point start = position(state);
        const Point origin = record.id == CMD_BR ? start : Point{0, 0};
        const Point p1 = sum(origin, readScaled(state, at));
        const Point p2 = sum(origin, readScaled(state, at + 8));
        const Point p3 = sum(origin, readScaled(state, at + 16));
        HPGLaddBezierPoints(state->local, start, p1, p2, p3, HPGL_CURVE_SEGMENTS);
        moveTo(state, p3);
    }
    finishLocal(state, false);
    return true;
}

// ---- polygons -------------------------------------------------------------------------------------------------------

void warn(const char* what) {
    TRCTraceError(HPGLTraceHandle, "WARNING-HPGLinterpretCompactCode: %s\n", what);
}

void moveToFirstPoint(State* state) {
    Point first = {};
    if (HPGLPBufFirstPoint(state->polygon, &first) != 0) moveTo(state, first);
}

bool polygonMode(State* state, const Record& record) {
    switch (record.count > 0 ? HPGLreadI(record.params) : 0) {
        case 0:
            state->polygonMode = true;
            HPGLbeginRedraws(&state->redraws);
            if (HPGLPBufBegin(state->polygon, state->X, state->Y) == 0) warn("Cant init Polygonbuffer");
            break;
        case 1:
            if (HPGLPBufNextSubPolygon(state->polygon) == 0) warn("Cant go to next SubPolygon");
            moveToFirstPoint(state);
            break;
        case 2:
            state->polygonMode = false;
            if (HPGLPBufClose(state->polygon) == 0) warn("Cant close Polygonbuffer");
            moveToFirstPoint(state);
            break;
        default:
            break;
    }
    return true;
}

bool drawPolygon(State* state, bool fill) {
    const int32_t width = currentPen(state)->width;
    if (HPGLmayDrawPolygon(&state->redraws, state->display, width, state->polygon, fill, NAME)) {
        HPGLdrawPolygon(state->display, width, state->polygon, fill);
    }
    return true;
}

bool edgePolygon(State* state, const Record& /*record*/) {
    return drawPolygon(state, false);
}

bool fillPolygon(State* state, const Record& /*record*/) {
    return drawPolygon(state, true);
}

// ---- labels ---------------------------------------------------------------------------------------------------------

void defineFont(HPGLFontDef* font, int16_t kind, float value) {
    switch (kind) {
        case 1:
            font->symbolSet = truncToInt(value);
            break;
        case 2:
            font->spacing = truncToInt(value);
            break;
        case 3:
            font->characterWidth = truncToInt(1016.0F / value);
            break;  // pitch in characters an inch
        case 4:
            font->characterHeight = truncToInt(static_cast<double>(value) * 1016.0 / 72.0);
            break;  // points
        case 5:
            font->posture = truncToInt(value);
            break;
        case 6:
            font->strokeWeight = truncToInt(value);
            break;
        case 7:
            font->typeface = truncToInt(value);
            break;
        default:
            break;
    }
}

bool defineFonts(State* state, const Record& record) {
    HPGLFontDef* font = record.id == CMD_SD ? &state->standardFont : &state->alternateFont;
    if (record.count == 0) *font = HPGLFontDef();
    const uint8_t* at = record.params;
    for (int32_t i = 0; i < record.count; i += 2, at += 6) {
        defineFont(font, HPGLreadI(at), HPGLreadR(at + 2));
    }
    return true;
}

// Deliberate: SA and SS both select the alternate font.
bool selectFont(State* state, const Record& /*record*/) {
    state->font = &state->alternateFont;
    return true;
}

bool setSize(State* state, int32_t width, int32_t height) {
    state->widthOverride = width;
    state->heightOverride = height;
    return true;
}

// In centimetres.
bool absoluteSize(State* state, const Record& record) {
    if (record.count == 0) return setSize(state, 0, 0);
    return setSize(state, truncToInt(HPGLreadR(record.params) * 400.0F),
                   truncToInt(HPGLreadR(record.params + 4) * 400.0F));
}

// In per cent of the picture's extents.
bool relativeSize(State* state, const Record& record) {
    if (record.count == 0) return setSize(state, 0, 0);
    const HPGLGlobal* global = state->view->global;
    const auto width = static_cast<float>(wrapSub(global->MaxX, global->MinX));
    const auto height = static_cast<float>(wrapSub(global->MaxY, global->MinY));
    return setSize(state, truncToInt(width * (HPGLreadR(record.params) / 100.0F)),
                   truncToInt(height * (HPGLreadR(record.params + 4) / 100.0F)));
}

bool label(State* state, const Record& record) {
    const int32_t width = state->widthOverride != 0 ? state->widthOverride : state->font->characterWidth;
    const int32_t height = state->heightOverride != 0 ? state->heightOverride : state->font->characterHeight;
    HPGLdrawLabel(state->display, &state->X, &state->Y, reinterpret_cast<const char*>(record.params), record.count,
                  width, height);
    return true;
}

// ---- pens -----------------------------------------------------------------------------------------------------------

// In millimetres, of 40 plotter units.
bool penWidth(State* state, const Record& record) {
    const int32_t pen = record.count > 1 ? HPGLreadI(record.params + 4) : state->pen;
    if (!HPGLpenExists(pen, NAME)) return true;
    state->view->PStatus[pen].width = static_cast<int16_t>(truncToInt(HPGLreadR(record.params) * 40.0F));
    return true;
}

bool selectPen(State* state, const Record& record) {
    state->pen = record.count > 0 ? HPGLselectedPen(HPGLreadI(record.params), NAME) : 0;
    HPGLsetPenColour(state->display, currentPen(state)->paletteIndex);
    return true;
}

// ---- dispatch: an action for every row of the command table, in its order -------------------------------------------

// clang-format off
constexpr Action ACTIONS[] = {
    /* HPGL_DATA */ ignore, /* HPGL_FILE */ ignore, /* HPGL_INFO */ ignore,
    /* CO */ cantHandle,        /* DF */ ignore,            /* IN */ ignore,            /* IP */ cantHandle,
    /* IR */ cantHandle,        /* IW */ cantHandle,        /* PG */ ignore,            /* RO */ cantRotate,
    /* RP */ ignore,            /* SC */ scale,             /* AA */ arc,               /* AR */ arc,
    /* AT */ cantHandle,        /* BR */ curves,            /* BZ */ curves,            /* CI */ circle,
    /* PA */ plotAbsolute,      /* PD */ penDown,           /* PE */ cantHandle,        /* PR */ plotRelative,
    /* PU */ penUp,             /* RT */ cantHandle,        /* EA */ rectangleAbsolute, /* EP */ edgePolygon,
    /* ER */ rectangleRelative, /* EW */ wedge,             /* FP */ fillPolygon,       /* PM */ polygonMode,
    /* RA */ rectangleAbsolute, /* RR */ rectangleRelative, /* WG */ wedge,             /* AD */ defineFonts,
    /* CF */ cantHandle,        /* CP */ cantHandle,        /* DI */ cantHandle,        /* DR */ cantHandle,
    /* DT */ cantHandle,        /* DV */ cantHandle,        /* ES */ cantHandle,        /* FI */ cantHandle,
    /* FN */ cantHandle,        /* LB */ label,             /* LO */ cantHandle,        /* SA */ selectFont,
    /* SB */ cantHandle,        /* SD */ defineFonts,       /* SI */ absoluteSize,      /* SL */ cantHandle,
    /* SR */ relativeSize,      /* SS */ selectFont,        /* TD */ cantHandle,        /* AC */ cantHandle,
    /* FT */ cantHandle,        /* LA */ cantHandle,        /* LT */ cantHandle,        /* PW */ penWidth,
    /* RF */ cantHandle,        /* SM */ cantHandle,        /* SP */ selectPen,         /* SV */ cantHandle,
    /* TR */ cantHandle,        /* UL */ cantHandle,        /* WU */ cantHandle,        /* BP */ ignore,
    /* MC */ cantHandle,        /* NP */ ignore,            /* PC */ ignore,            /* CS */ cantHandle,
    /* AS */ cantHandle,        /* FS */ cantHandle,        /* VS */ cantHandle,        /* PT */ cantHandle,
    /* CT */ cantHandle,        /* DL */ cantHandle,        /* EC */ cantHandle,        /* FR */ cantHandle,
    /* MG */ cantHandle,        /* MT */ cantHandle,        /* OH */ cantHandle,        /* OI */ cantHandle,
    /* OP */ cantHandle,        /* OS */ cantHandle,        /* PS */ cantHandle,        /* QL */ cantHandle,
    /* ST */ cantHandle,        /* VR */ cantHandle,        /* CR */ cantHandle,        /* DC */ cantHandle,
    /* DP */ cantHandle,        /* OD */ cantHandle,
};
// clang-format on
static_assert(sizeof ACTIONS / sizeof ACTIONS[0] == HPGL_COMMANDS);
static_assert(ACTIONS[CMD_SP] == selectPen && ACTIONS[CMD_LB] == label && ACTIONS[CMD_BP] == ignore);

bool interpretBlocks(State* state, CBlockList* blocks) {
    void* block = nullptr;
    if (!HPGLgotoFirst(blocks)) return true;
    for (bool more = HPGLgetActualListData(blocks, &block, nullptr, nullptr); more;
         more = HPGLgetNextListData(blocks, &block, nullptr, nullptr)) {
        CompactCodeReader reader = HPGLreadBlock(static_cast<const CBlock*>(block), CompactCodePass::Drawing);
        Record record;
        while (HPGLreadRecord(&reader, &record)) {
            if (!ACTIONS[record.id](state, record)) return false;
        }
    }
    return true;
}

void createBuffers(State* state) {
    state->polygon = HPGLPBufcreate(HPGL_MAIN_POLYGONS);
    if (state->polygon == nullptr) warn("creating of PolygonBuffer failed, ignore all related actions");
    state->local = HPGLPBufcreate(1);
    if (state->local == nullptr) warn("creating of local PolygonBuffer failed, ignore all related actions");
}

void destroyBuffers(State* state) {
    HPGLPBufDestroy(state->polygon);
    HPGLPBufDestroy(state->local);
}

void resetPenWidths(HPGLPen* pens) {
    for (int32_t i = 0; i < HPGL_PENS; ++i) {
        pens[i].width = 0;
    }
}

}  // namespace

void HPGLaddBezierPoints(HPGLPBuf* buf, HPGLPBufPoint p0, HPGLPBufPoint p1, HPGLPBufPoint p2, HPGLPBufPoint p3,
                         int32_t segments) {
    const Point threeP1 = {wrapMul(3, p1.x), wrapMul(3, p1.y)};
    const Point threeP2 = {wrapMul(3, p2.x), wrapMul(3, p2.y)};
    for (int32_t i = 1; i <= segments + 1; ++i) {
        const double t = i / (segments + 1.0);
        const double u = 1.0 - t;
        const auto along = [t, u](int32_t a, int32_t b, int32_t c, int32_t d) {
            return truncToInt(u * u * u * a + t * u * u * b + t * t * u * c + t * t * t * d);
        };
        HPGLPBufAddPoint(buf, along(p0.x, threeP1.x, threeP2.x, p3.x), along(p0.y, threeP1.y, threeP2.y, p3.y));
    }
}

int32_t HPGLinterpretCompactCode(ParseInt* view, HPGLDisplay* display, int32_t flag) {
    State state;
    state.view = view;
    state.display = display;
    state.rotationSign = flag;
    state.redraws = HPGLredrawAllowance(view->blocks);
    createBuffers(&state);
    resetPenWidths(view->PStatus);
    HPGLallocDeviceArrays(display, HPGL_MAIN_POLYGONS, HPGL_POLYGON_POINTS);
    HPGLinitFonts(display);
    HPGLsetPenColour(display, currentPen(&state)->paletteIndex);
    const bool whole = interpretBlocks(&state, view->blocks);
    // A pass that ends early leaves the device's arrays to the next one.
    if (whole) HPGLfreeDeviceArrays(display);
    destroyBuffers(&state);
    return whole ? 1 : 0;
}
