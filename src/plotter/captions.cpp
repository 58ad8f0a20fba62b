#include "plotter/captions.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "plotter/character_sets.h"
#include "plotter/glyphs.h"
#include "plotter/typeface_widths.h"
#include "plotter/units.h"

namespace plotter {

namespace {

constexpr double CAPITAL_HEIGHT = 21;  // of the glyphs
constexpr double CAPITAL_WIDTH = 14;
constexpr double CAPITAL_TO_EM = 0.7;  // of a printer's typefaces
constexpr double CELL_TO_WIDTH = 1.5;
constexpr double SLANT = 0.2;

// Those of a printer's own that are made for a pitch are as high as the pitch makes them.
double pointsOf(const CaptionFont& font) {
    constexpr int COURIER = 3;
    constexpr int COURIER_OUTLINE = 4099;
    constexpr double PITCH_TIMES_POINTS = 120;
    const bool byPitch = !font.proportional && (font.typeface == COURIER || font.typeface == COURIER_OUTLINE);
    return byPitch ? PITCH_TIMES_POINTS / font.pitch : font.height;
}

TextFace faceOf(const CaptionFont& font) {
    constexpr int WITHOUT_MAKER = 0xfff;
    constexpr int SERIFS[] = {5, 8, 15, 23, 44, 47, 101, 127, 517};
    const bool hasSerifs = std::ranges::find(SERIFS, font.typeface & WITHOUT_MAKER) != std::end(SERIFS);
    return hasSerifs ? TextFace::Serif : TextFace::Sans;
}

struct Extent {
    double low = 0, high = 0;
};

Extent widthOf(const Glyph& glyph) {
    Box box;
    for (const Line& stroke : glyph.strokes) {
        std::ranges::for_each(stroke, [&](Point p) { box.add(p); });
    }
    return box.empty() ? Extent{} : Extent{box.low.x, box.high.x};
}

// How a glyph is set: its scale across, where its x of 0 comes to lie, and the way to the next.
struct Fit {
    double wide, left, advance;
};

Fit fitWidth(char32_t character, const Glyph& glyph, const CaptionFont& font) {
    const double advance = textWidth(faceOf(font), character, glyph) / 1000 * font.height * UNITS_PER_POINT;
    const double wide = advance / std::max(glyph.right - glyph.left, 1.0);
    return {wide, -glyph.left * wide, advance};
}

Fit fitCell(const Glyph& glyph, double cell) {
    const Extent body = widthOf(glyph);
    const double room = cell / CELL_TO_WIDTH;
    const double wide = room / std::max(CAPITAL_WIDTH, body.high - body.low);
    return {wide, (room - (body.low + body.high) * wide) / 2, cell};
}

}  // namespace

double CaptionFont::advance() const {
    return UNITS_PER_INCH / pitch;
}

CaptionCharacter nextCharacter(std::string_view text, int symbolSet) {
    char32_t character = 0;
    if (const std::size_t length = readUtf8(text, character); length > 0) return {character, length};
    return {decode({false, symbolSet}, static_cast<uint8_t>(text.front())), 1};
}

CaptionStrokes strokesOf(char32_t character, const CaptionFont& font, double cell) {
    CaptionStrokes strokes;
    const Glyph* known = findGlyph(character == U'\xa0' ? U' ' : character);
    strokes.isKnown = known != nullptr;
    const Glyph& glyph = known != nullptr ? *known : unknownGlyph();
    const double tall = pointsOf(font) * UNITS_PER_POINT * CAPITAL_TO_EM / CAPITAL_HEIGHT;
    const auto [wide, left, advance] = font.proportional ? fitWidth(character, glyph, font) : fitCell(glyph, cell);
    strokes.advance = advance;
    const double slant = font.italic ? SLANT : 0;
    for (const Line& stroke : glyph.strokes) {
        Line& line = strokes.lines.emplace_back();
        for (const Point p : stroke) {
            line.push_back({left + p.x * wide + p.y * tall * slant, p.y * tall});
        }
    }
    return strokes;
}

}  // namespace plotter
