#include "plotter/label_cells.h"

#include <algorithm>

#include "plotter/typeface_widths.h"

namespace plotter {

namespace {

constexpr char32_t FORMS = 0x2500;
constexpr char32_t FORMS_END = 0x25A0;

// Units of a glyph to plotter units, across, where each has a width of its own.
double unitWidth(const Face& face, char32_t character, const Glyph& glyph) {
    if (face.spacing == Face::Spacing::Stick) return ADVANCE * face.width / GLYPH_ADVANCE;
    const TextFace text = face.spacing == Face::Spacing::Sans ? TextFace::Sans : TextFace::Serif;
    const double em = face.width / TEXT_AVERAGE * (1 / TEXT_CAPITAL);
    const double own = glyph.right - glyph.left;
    return own > 0 ? textWidth(text, character, glyph) / 1000 * em / own : 0;
}

Cell fixedCell(const Face& face, char32_t character, const Glyph& glyph) {
    Cell cell = {.strokes = &glyph.strokes, .advance = ADVANCE * face.width, .width = face.width};
    const double body = glyph.ink.width();
    const bool meetsOthers = character >= FORMS && character < FORMS_END;
    const double scale =
        meetsOthers || isMark(character) ? face.width / GLYPH_BODY : face.width / std::max(GLYPH_BODY, body);
    cell.scale = {scale, face.height / GLYPH_CAPITAL};
    const bool fromMiddle = meetsOthers || isMark(character) || glyph.ink.empty();
    const double free = (face.width - body * scale) / 2;
    cell.shift.x = fromMiddle ? face.width / 2 : free - glyph.ink.low.x * scale;
    return cell;
}

Cell ownCell(const Face& face, char32_t character, const Glyph& glyph) {
    const double unit = unitWidth(face, character, glyph);
    Cell cell = {.strokes = &glyph.strokes, .scale = {unit, face.height / GLYPH_CAPITAL}};
    cell.shift.x = -glyph.left * unit;
    cell.advance = cell.width = (glyph.right - glyph.left) * unit;
    return cell;
}

}  // namespace

bool isMark(char32_t character) {
    return (character >= COMBINING_MARKS && character < MARKS_END) ||
           (character >= HIGH_MARKS && character < HIGH_MARKS_END);
}

double spaceAdvance(const Face& face) {
    if (face.spacing == Face::Spacing::Fixed) return ADVANCE * face.width;
    const Glyph* space = findGlyph(U' ');
    return (space->right - space->left) * unitWidth(face, U' ', *space);
}

Cell cellOf(const Face& face, char32_t character, const Glyph& glyph) {
    return face.spacing == Face::Spacing::Fixed ? fixedCell(face, character, glyph) : ownCell(face, character, glyph);
}

}  // namespace plotter
