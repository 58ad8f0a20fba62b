#include "plotter/lettering.h"

#include <array>
#include <cstdio>

#include "plotter/typeface_widths.h"
#include "plotter/units.h"

namespace plotter {

namespace {

// Capitals of machines that nobody has told a size; centimetres. A pen plotter with A3 paper would take larger ones,
// but nobody knows the paper of a file that does not say, and the smaller ones spoil no drawing.
constexpr Point DEFAULT_SIZE = {0.187, 0.269};
constexpr Point DEFAULT_HPGL2_SIZE = {0.188, 0.269};
// Of the stick font.
constexpr double DEFAULT_PITCH = 9;
constexpr double DEFAULT_POINTS = 11.5;
constexpr double STICK_CAPITAL = 2.0 / 3;  // of the font's height
// Of the em.
constexpr double TYPEWRITER_CAPITAL = 0.58;
constexpr double TYPEWRITER_ADVANCE = 0.6;

constexpr int32_t HEAVY_WEIGHT = 3;
constexpr int32_t WEIGHT_OF_PEN = 9999;

// Typefaces by their number without the maker's.
constexpr std::array STICKS = {48, 49, 50};
constexpr std::array TYPEWRITERS = {0, 1, 2, 3, 6};

bool holds(std::span<const int32_t> numbers, int32_t typeface) {
    return std::ranges::find(numbers, typeface & WITHOUT_MAKER) != numbers.end();
}

Face::Spacing spacingOf(const Typeface& typeface) {
    const bool stick = holds(STICKS, typeface.number);
    const bool ownWidths = isProportional(typeface.symbols) ||
                           (!holds(TYPEWRITERS, typeface.number) && typeface.number != Typeface::STICK);
    if (!typeface.proportional.value_or(ownWidths)) return Face::Spacing::Fixed;
    if (stick) return Face::Spacing::Stick;
    return textFace(typeface.number) == TextFace::Serif ? Face::Spacing::Serif : Face::Spacing::Sans;
}

// Of a font's capitals by its pitch and height.
Point sizeOf(const Typeface& typeface, Face::Spacing spacing) {
    const double height = typeface.height.value_or(DEFAULT_POINTS) * UNITS_PER_POINT;
    const double advance = UNITS_PER_INCH / typeface.pitch.value_or(DEFAULT_PITCH);
    if (spacing == Face::Spacing::Sans || spacing == Face::Spacing::Serif) {
        return {height * TEXT_CAPITAL * TEXT_AVERAGE, height * TEXT_CAPITAL};
    }
    const double capital = height * STICK_CAPITAL;
    if (spacing == Face::Spacing::Stick) return {capital * DEFAULT_SIZE.x / DEFAULT_SIZE.y, capital};
    const bool stick = holds(STICKS, typeface.number);
    return {advance / ADVANCE, stick ? capital : advance / TYPEWRITER_ADVANCE * TYPEWRITER_CAPITAL};
}

Point defaultSize(const Machine& machine) {
    return (machine.traits().hpgl2 ? DEFAULT_HPGL2_SIZE : DEFAULT_SIZE) * UNITS_PER_CENTIMETRE;
}

Point sizeOfFace(Machine& machine, const Typeface& typeface, Face::Spacing spacing) {
    const CharacterSize& size = machine.state.characters.size;
    const Coordinates& coordinates = machine.state.coordinates;
    switch (size.kind) {
        case CharacterSize::Kind::Absolute:
            return {size.width, size.height};
        case CharacterSize::Kind::Relative:
            return {size.width / 100 * (coordinates.p2.x - coordinates.p1.x),
                    size.height / 100 * (coordinates.p2.y - coordinates.p1.y)};
        default:
            break;
    }
    const bool described = typeface.pitch || typeface.height || !holds(STICKS, typeface.number);
    return described ? sizeOf(typeface, spacing) : defaultSize(machine);
}

Face faceOf(const Typeface& typeface, Face::Spacing spacing, Point size, double slant) {
    Face face;
    face.symbols = typeface.symbols;
    face.spacing = spacing;
    face.width = std::min(std::abs(size.x), FARTHEST);
    face.height = std::min(std::abs(size.y), FARTHEST);
    face.slant = slant + (typeface.posture == 1 ? ITALIC_SLANT : 0);
    face.bold = typeface.weight >= HEAVY_WEIGHT && typeface.weight != WEIGHT_OF_PEN;
    return face;
}

void setDirection(Lettering& lettering, const State& state) {
    const TextDirection& direction = state.characters.direction;
    Point way = {direction.run, direction.rise};
    if (direction.relative) {
        const Point extent = state.coordinates.p2 - state.coordinates.p1;
        way = {way.x * extent.x, way.y * extent.y};
    }
    const double angle = std::atan2(way.y, way.x);
    // Exact where it is upright: text along an axis must not lean by the last bit.
    lettering.cosine = way.x == 0 ? 0 : std::cos(angle);
    lettering.sine = way.y == 0 ? 0 : std::sin(angle);
    if (way == Point()) lettering.cosine = 1;
}

}  // namespace

Lettering currentLettering(Machine& machine) {
    const State& state = machine.state;
    const Characters& characters = state.characters;
    Lettering lettering;
    for (const bool alternate : {false, true}) {
        const Typeface& typeface = alternate ? characters.alternate : characters.standard;
        const Face::Spacing spacing = spacingOf(typeface);
        const Point size = sizeOfFace(machine, typeface, spacing);
        lettering.faces[alternate ? 1 : 0] = faceOf(typeface, spacing, size, characters.slant);
        lettering.mirroredX = size.x < 0;
        lettering.mirroredY = size.y < 0;
    }
    setDirection(lettering, state);
    lettering.extraSpace = characters.extraSpace;
    lettering.extraLine = characters.extraLine;
    lettering.origin = characters.origin;
    lettering.path = characters.path;
    lettering.feedReversed = characters.feedReversed;
    lettering.transparent = characters.transparent;
    lettering.wide = characters.wide;
    lettering.printer = state.coordinates.frame.size.has_value();
    lettering.hpgl2 = machine.traits().hpgl2;
    lettering.mode = characters.mode;
    lettering.userCharacters = &characters.userCharacters;
    return lettering;
}

void MachineLabelOutput::unknown(char32_t character, bool isCode) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), isCode ? "LB character 0x%02x" : "LB character U+%04X",
                  static_cast<unsigned>(character));
    machine_.report().passOver(text.data());
}

bool MachineLabelOutput::mayDraw(std::size_t points) {
    if (machine_.state.characters.userPoints.spend(static_cast<double>(points))) return true;
    machine_.report().meetBound("points of downloaded characters");
    return false;
}

void drawSymbol(Machine& machine, Point units) {
    const Characters& characters = machine.state.characters;
    if (characters.symbol == 0 || machine.state.polygon.open) return;
    MachineLabelOutput output(machine);
    laySymbol(currentLettering(machine), characters.alternateSelected, characters.symbol, units, output);
}

Point reachable(Point place, Point old) {
    const auto clamped = [](double to, double from) {
        return std::isnan(to) ? from : std::clamp(to, -FARTHEST, FARTHEST);
    };
    return {clamped(place.x, old.x), clamped(place.y, old.y)};
}

}  // namespace plotter
