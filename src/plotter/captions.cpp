#include "plotter/captions.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "plotter/character_sets.h"
#include "plotter/glyphs.h"
#include "plotter/labels.h"
#include "plotter/typeface_widths.h"
#include "plotter/units.h"

namespace plotter {

namespace {

// Those of a printer's own that are made for a pitch are as high as the pitch makes them.
double heightOf(const CaptionFont& font) {
    constexpr int COURIER = 3;
    constexpr int COURIER_OUTLINE = 4099;
    constexpr double PITCH_TIMES_POINTS = 120;
    const bool byPitch = !font.proportional && (font.typeface == COURIER || font.typeface == COURIER_OUTLINE);
    return byPitch ? PITCH_TIMES_POINTS / font.pitch : font.height;
}

// How a glyph is set: its scale across, where its x of 0 comes to lie, and the way to the next.
struct Fit {
    double wide, left, advance;
};

Fit fitWidth(char32_t character, const Glyph& glyph, const CaptionFont& font) {
    const double advance = textWidth(textFace(font.typeface), character, glyph) / 1000 * font.height * UNITS_PER_POINT;
    const double wide = advance / std::max(glyph.right - glyph.left, 1.0);
    return {wide, -glyph.left * wide, advance};
}

Fit fitCell(const Glyph& glyph, double cell) {
    Box body = boxOf(glyph.strokes);
    if (body.empty()) body = {{0, 0}, {0, 0}};
    const double room = cell / ADVANCE;
    const double wide = room / std::max(GLYPH_BODY, body.high.x - body.low.x);
    return {wide, (room - (body.low.x + body.high.x) * wide) / 2, cell};
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
    const double tall = heightOf(font) * UNITS_PER_POINT * TEXT_CAPITAL / GLYPH_CAPITAL;
    const auto [wide, left, advance] = font.proportional ? fitWidth(character, glyph, font) : fitCell(glyph, cell);
    strokes.advance = advance;
    const double slant = font.italic ? ITALIC_SLANT : 0;
    for (const Line& stroke : glyph.strokes) {
        Line& line = strokes.lines.emplace_back();
        for (const Point p : stroke) {
            line.push_back({left + p.x * wide + p.y * tall * slant, p.y * tall});
        }
    }
    return strokes;
}

}  // namespace plotter
