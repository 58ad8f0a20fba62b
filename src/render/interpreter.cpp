#include "render/interpreter.h"

#include "geometry/arithmetic.h"
#include "geometry/ellipse.h"
#include "geometry/pen_numbers.h"
#include "hpgl/compact_code_reader.h"
#include "render/interpreter_state.h"
#include "render/label_drawing.h"
#include "render/primitives.h"
#include "trace/trace.h"

namespace {

using State = HPGLInterpState;
using Record = CompactCodeRecord;

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
    HPGLwalkScale(state, record);
    return true;
}

// ---- moves and rectangles -------------------------------------------------------------------------------------------

// In polygon mode every point is taken, whatever the pen state.
bool moves(State* state, const Record& record) {
    static_assert(HPGL_MAX_RUN > HPGL_MAX_PARAMETERS / 2);
    HPGLPoint points[HPGL_MAX_RUN];
    int32_t count = 0;
    points[count++] = state->position;
    HPGLwalkMode(state, record.id);
    HPGLwalkPairs(state, record, [&points, &count](HPGLPoint point) { points[count++] = point; });
    if (state->polygonMode) {
        for (int32_t i = 1; i < count; ++i) {
            HPGLPBufAddPoint(state->polygon, points[i].x, points[i].y);
        }
    } else if (state->penDown) {
        HPGLdrawLines(state->display, currentPen(state)->width, points, count);
    }
    return true;
}

// Neither moves the pen nor asks whether it is down. The added 1 of the absolute forms is deliberate.
bool rectangle(State* state, const Record& record) {
    const int32_t added = record.id == CMD_EA || record.id == CMD_RA ? 1 : 0;
    const HPGLPoint p = state->position;
    const HPGLPoint size = wrapAdd(wrapSub(HPGLreadCorner(state, record), p), {added, added});
    if (!state->polygonMode) {
        const bool fill = record.id == CMD_RA || record.id == CMD_RR;
        HPGLdrawBox(state->display, currentPen(state)->width, p.x, p.y, size.x, size.y, fill);
        return true;
    }
    const HPGLPoint q = wrapAdd(p, size);
    const HPGLPoint corners[] = {p, {q.x, p.y}, q, {p.x, q.y}, p};
    for (const HPGLPoint corner : corners) {
        HPGLPBufAddPoint(state->polygon, corner.x, corner.y);
    }
    return true;
}

// ---- circles, arcs, wedges, curves: assembled in the local buffer ---------------------------------------------------

// Outside polygon mode the local buffer is drawn, inside it becomes part of the polygon.
void finishLocal(State* state, bool fill) {
    if (!state->polygonMode) {
        HPGLdrawPolygon(state->display, currentPen(state)->width, state->local, fill);
        return;
    }
    const HPGLPoint* points = nullptr;
    int32_t count = 0;
    if (HPGLPBufGetActual(state->local, &points, &count) == 0) {
        TRCTraceError(HPGLTraceHandle, "WARNING-HPGLinterpretCompactCode: Cant get Local PBuf\n");
        return;
    }
    HPGLPBufAddPoints(state->polygon, points, count);
}

// Adds one point a step; those that the full buffer would refuse are not computed.
void addSteps(State* state, const HPGLSweep& sweep) {
    double angles[HPGL_POLYGON_POINTS];
    EllipseOffset offsets[HPGL_POLYGON_POINTS];
    const int32_t room = HPGL_POLYGON_POINTS - HPGLPBufPoints(state->local);
    int32_t count = 0;
    HPGLforEachStep(&state->allowance, state->function, sweep.first, sweep.step, sweep.last, [&](double angle) {
        if (count == room) {
            HPGLPBufReportFull();
        } else {
            angles[count++] = angle;
        }
    });
    HPGLonEllipse(sweep.ellipse, angles, count, offsets);
    HPGLPoint* points = HPGLPBufAppend(state->local, count);
    for (int32_t i = 0; i < count; ++i) {
        points[i] = wrapAdd(sweep.centre, {offsets[i].x, offsets[i].y});
    }
}

// Begins the local buffer at the pen; 0 when there is none.
int32_t beginLocal(State* state) {
    return HPGLPBufBegin(state->local, state->position.x, state->position.y);
}

bool circle(State* state, const Record& record) {
    const HPGLPoint centre = state->position;
    const HPGLEllipse ellipse = HPGLellipseOf(state, HPGLreadL(record.params));
    if (HPGLPBufBegin(state->local, wrapAdd(centre.x, truncToInt(ellipse.rX)), centre.y) == 0) return true;
    const double chord = HPGLreadChord(state, record, 2);
    if (chord <= 360.0) addSteps(state, {centre, ellipse, chord, 360.0, chord});
    HPGLPBufClose(state->local);
    finishLocal(state, false);
    return true;
}

bool arc(State* state, const Record& record) {
    if (beginLocal(state) == 0) return true;
    const HPGLSweep sweep = HPGLreadArc(state, record);
    addSteps(state, sweep);
    const EllipseOffset offset = HPGLonEllipse(sweep.ellipse, sweep.last);
    state->position = wrapAdd(sweep.centre, {offset.x, offset.y});
    HPGLPBufAddPoint(state->local, state->position.x, state->position.y);
    finishLocal(state, false);
    return true;
}

bool wedge(State* state, const Record& record) {
    if (beginLocal(state) == 0) return true;
    addSteps(state, HPGLreadWedge(state, record));
    HPGLPBufAddPoint(state->local, state->position.x, state->position.y);
    HPGLPBufClose(state->local);
    finishLocal(state, record.id == CMD_WG);
    return true;
}

bool curves(State* state, const Record& record) {
    if (beginLocal(state) == 0) return false;
    HPGLwalkCurves(state, record, [state](const HPGLPoint(&points)[4]) {
        HPGLaddBezierPoints(state->local, points[0], points[1], points[2], points[3], HPGL_CURVE_SEGMENTS);
    });
    finishLocal(state, false);
    return true;
}

// ---- polygons -------------------------------------------------------------------------------------------------------

void warn(const char* what) {
    TRCTraceError(HPGLTraceHandle, "WARNING-HPGLinterpretCompactCode: %s\n", what);
}

void moveToFirstPoint(State* state) {
    HPGLPBufFirstPoint(state->polygon, &state->position);
}

bool polygonMode(State* state, const Record& record) {
    switch (record.count > 0 ? HPGLreadI(record.params) : 0) {
        case 0:
            state->polygonMode = true;
            HPGLbeginRedraws(&state->redraws);
            if (HPGLPBufBegin(state->polygon, state->position.x, state->position.y) == 0) {
                warn("Cant init Polygonbuffer");
            }
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
    if (HPGLmayDrawPolygon(&state->redraws, state->display, width, state->polygon, fill, state->function)) {
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
    HPGLdrawLabel(state->display, &state->position.x, &state->position.y, reinterpret_cast<const char*>(record.params),
                  record.count, width, height);
    return true;
}

// ---- pens -----------------------------------------------------------------------------------------------------------

// In millimetres, of 40 plotter units.
bool penWidth(State* state, const Record& record) {
    const int32_t pen = record.count > 1 ? HPGLreadI(record.params + 4) : state->pen;
    if (!HPGLpenExists(pen, state->function)) return true;
    state->view->PStatus[pen].width = static_cast<int16_t>(truncToInt(HPGLreadR(record.params) * 40.0F));
    return true;
}

bool selectPen(State* state, const Record& record) {
    state->pen = HPGLreadPen(state, record);
    HPGLsetPenColour(state->display, currentPen(state)->paletteIndex);
    return true;
}

// ---- the pass -------------------------------------------------------------------------------------------------------

// Carries one record out; false ends the pass at once.
constexpr bool (*ACTIONS[])(State* state, const Record& record) = {
#define HPGL_COMMAND(name, signature, setup, drawing, action, sure) action,
#include "hpgl/commands.inl"
};

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

void HPGLaddBezierPoints(HPGLPBuf* buf, HPGLPoint p0, HPGLPoint p1, HPGLPoint p2, HPGLPoint p3, int32_t segments) {
    const HPGLPoint threeP1 = {wrapMul(3, p1.x), wrapMul(3, p1.y)};
    const HPGLPoint threeP2 = {wrapMul(3, p2.x), wrapMul(3, p2.y)};
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
    state.function = "HPGLinterpretCompactCode";
    state.view = view;
    state.display = display;
    state.rotationSign = flag;
    state.redraws = HPGLredrawAllowance(view->blocks);
    createBuffers(&state);
    resetPenWidths(view->PStatus);
    HPGLallocDeviceArrays(display, HPGL_MAIN_POLYGONS, HPGL_POLYGON_POINTS);
    HPGLinitFonts(display);
    HPGLsetPenColour(display, currentPen(&state)->paletteIndex);
    const bool whole = HPGLforEachRecord(view->blocks, CompactCodePass::Drawing,
                                         [&state](const Record& record) { return ACTIONS[record.id](&state, record); });
    // A pass that ends early leaves the device's arrays to the next one.
    if (whole) HPGLfreeDeviceArrays(display);
    destroyBuffers(&state);
    return whole ? 1 : 0;
}
