#include "plotter/curves.h"
#include "plotter/instructions.h"

namespace plotter {

namespace {

// From the plotter units of the polygon to those of now: RO may have turned the paper since.
Affine toNow(const State& state) {
    const Affine now = state.coordinates.toPaper();
    const Affine& made = state.polygon.made;
    if (made == now) return {};
    const Affine back = inverse(now);
    const Point x = linear(back, {made.xx, made.yx});
    const Point y = linear(back, {made.xy, made.yy});
    const Point origin = back({made.dx, made.dy});
    return {x.x, y.x, origin.x, x.y, y.y, origin.y};
}

// Closes the ring under way: an edge that EP draws where the pen is down.
void closeRing(State& state) {
    auto& rings = state.polygon.rings;
    if (rings.empty() || rings.back().empty()) return;
    auto& ring = rings.back();
    if (ring.front().point != ring.back().point) ring.push_back({ring.front().point, state.penDown});
}

void beginPolygon(Machine& machine) {
    State& state = machine.state;
    state.polygon = {};
    state.polygon.rings.push_back({{state.position, false}});
    state.polygon.open = state.polygon.fresh = true;
    state.polygon.made = state.coordinates.toPaper();
    state.polygon.position = state.position;
    state.polygon.penDown = state.penDown;
}

// A ring of one point is none.
void finishRing(State& state) {
    closeRing(state);
    auto& rings = state.polygon.rings;
    if (!rings.empty() && rings.back().size() < 2) rings.pop_back();
}

void nextRing(State& state) {
    finishRing(state);
    state.polygon.rings.emplace_back();
    state.polygon.fresh = true;
}

void endPolygon(State& state) {
    finishRing(state);
    state.polygon.open = false;
    state.position = state.polygon.position;
    state.penDown = state.polygon.penDown;
}

// Into the ring under way, with all edges drawn.
void addOutline(Polygon& polygon, const Line& outline) {
    for (const Point point : outline) {
        polygon.rings.back().push_back({point, true});
    }
}

// A figure of its own that the polygon buffer holds from now on.
void keepFigure(State& state, const Line& outline) {
    state.polygon = {};
    state.polygon.made = state.coordinates.toPaper();
    state.polygon.rings.emplace_back();
    addOutline(state.polygon, outline);
}

void edgeFigure(Machine& machine, const Line& outline) {
    keepFigure(machine.state, outline);
    machine.drawOutline(outline);
}

void fillFigure(Machine& machine, const Line& outline) {
    keepFigure(machine.state, outline);
    machine.drawArea({outline}, FillRule::EvenOdd);
}

Line rectangle(const State& state, Point corner, bool relative) {
    const Affine map = state.coordinates.toUnits();
    const Point from = inverse(map)(state.position);
    const Point to = relative ? from + corner : corner;
    return {state.position, map({to.x, from.y}), map(to), map({from.x, to.y}), state.position};
}

using FigureDrawing = void (*)(Machine&, const Line&);

void drawRectangle(Machine& machine, const Instruction& instruction, bool relative, FigureDrawing draw) {
    if (!instruction.has(2)) return;
    draw(machine, rectangle(machine.state, {instruction.numbers[0], instruction.numbers[1]}, relative));
}

void drawWedge(Machine& machine, const Instruction& instruction, FigureDrawing draw) {
    if (!instruction.has(3)) return;
    const State& state = machine.state;
    const double radius = std::abs(instruction.numbers[0]);
    const double start = instruction.numbers[1] + (instruction.numbers[0] < 0 ? 180 : 0);
    const double sweep = std::clamp(instruction.numbers[2], -360.0, 360.0);
    const Affine map = state.coordinates.toUnits();
    const Point centre = inverse(map)(state.position);
    Line outline;
    const bool wholeTurn = std::abs(sweep) >= 360;
    if (!wholeTurn) outline.push_back(state.position);
    appendArc(map, centre, radius, start, 0, 1, outline);
    appendArc(map, centre, radius, start, sweep, chordsOf(machine, instruction, 3, radius, sweep), outline);
    if (!wholeTurn) outline.push_back(state.position);
    draw(machine, outline);
}

// Edges whose pen was up separate the lines that are drawn.
void drawEdges(Machine& machine, const std::vector<Polygon::Vertex>& ring) {
    const Affine map = toNow(machine.state);
    Line line;
    const auto flush = [&] {
        if (line.size() > 1) machine.drawOutline(line);
        line.clear();
    };
    for (const Polygon::Vertex& vertex : ring) {
        if (!vertex.down) flush();
        line.push_back(map(vertex.point));
    }
    flush();
}

// The rings that have an inside; plotter units.
Area areaOf(const State& state) {
    const Affine map = toNow(state);
    Area area;
    for (const auto& vertices : state.polygon.rings) {
        if (vertices.size() < 3) continue;
        Ring& ring = area.emplace_back();
        ring.reserve(vertices.size());
        for (const Polygon::Vertex& vertex : vertices) {
            ring.push_back(map(vertex.point));
        }
    }
    return area;
}

}  // namespace

void polygonMode(Machine& machine, const Instruction& instruction) {
    State& state = machine.state;
    switch (toInteger(instruction.number(0, 0))) {
        case 0:
            if (!state.polygon.open) beginPolygon(machine);
            break;
        case 1:
            if (state.polygon.open) nextRing(state);
            break;
        case 2:
            if (state.polygon.open) endPolygon(state);
            break;
        default:
            break;
    }
}

void edgePolygon(Machine& machine, const Instruction& /*instruction*/) {
    if (machine.share() >= 1) return;
    for (const auto& ring : machine.state.polygon.rings) {
        drawEdges(machine, ring);
    }
}

void fillPolygon(Machine& machine, const Instruction& instruction) {
    const int32_t method = toInteger(instruction.number(0, 0));
    if (method != 0 && method != 1) {
        machine.state.polygon = {};
        return;
    }
    if (machine.share() >= 1) return;
    const Area area = areaOf(machine.state);
    if (!area.empty()) machine.drawArea(area, method == 1 ? FillRule::Winding : FillRule::EvenOdd);
}

void edgeRectangleAbsolute(Machine& machine, const Instruction& instruction) {
    drawRectangle(machine, instruction, false, edgeFigure);
}

void edgeRectangleRelative(Machine& machine, const Instruction& instruction) {
    drawRectangle(machine, instruction, true, edgeFigure);
}

void fillRectangleAbsolute(Machine& machine, const Instruction& instruction) {
    drawRectangle(machine, instruction, false, fillFigure);
}

void fillRectangleRelative(Machine& machine, const Instruction& instruction) {
    drawRectangle(machine, instruction, true, fillFigure);
}

void edgeWedge(Machine& machine, const Instruction& instruction) {
    drawWedge(machine, instruction, edgeFigure);
}

void fillWedge(Machine& machine, const Instruction& instruction) {
    drawWedge(machine, instruction, fillFigure);
}

// In a polygon it is a ring of its own, whatever the pen does.
void circle(Machine& machine, const Instruction& instruction) {
    if (!instruction.has(1)) return;
    State& state = machine.state;
    const double radius = instruction.numbers[0];
    const Affine map = state.coordinates.toUnits();
    const Point centre = inverse(map)(state.position);
    Line outline;
    appendArc(map, centre, radius, 0, 0, 1, outline);
    if (radius != 0) appendArc(map, centre, radius, 0, 360, chordsOf(machine, instruction, 1, radius, 360), outline);
    if (!state.polygon.open) {
        machine.drawOutline(outline);
        return;
    }
    if (!machine.takeVertices(outline.size())) return;
    nextRing(state);
    addOutline(state.polygon, outline);
    nextRing(state);
}

}  // namespace plotter
