// Every instruction that the plotter knows: one row each. It is a table of its own beside the viewer's
// (hpgl/commands.inl): plotters understand another and larger language than the plain text to which the plotter brings
// it and which the viewer draws, and neither table follows from the other.
#include "plotter/manifest.h"

#include <array>

#include "plotter/ascii.h"
#include "plotter/instructions.h"

namespace plotter {

namespace {

// An instruction that leaves nothing on the paper: it is read and passed over.
constexpr Procedure NOTHING = nullptr;

// clang-format off
constexpr ManifestRow ROWS[] = {
    // name  form           inPolygon whileLost draws  hpgl2  procedure
    {"AA", Form::Numbers,    true,  false, true,  false, arcAbsolute},
    {"AC", Form::Numbers,    false, true,  false, false, anchorCorner},
    {"AD", Form::Numbers,    false, true,  false, true,  alternateFont},
    {"AF", Form::Numbers,    false, true,  false, false, advancePage},
    {"AH", Form::Numbers,    false, true,  false, false, advancePage},
    {"AP", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"AR", Form::Numbers,    true,  false, true,  false, arcRelative},
    {"AS", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"AT", Form::Numbers,    true,  false, true,  false, threePointsAbsolute},
    {"BF", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"BL", Form::Label,      false, true,  false, false, bufferLabel},
    {"BP", Form::Quoted,     true,  true,  false, true,  initialise},
    {"BR", Form::Curve,      true,  false, true,  false, bezierRelative},
    {"BZ", Form::Curve,      true,  false, true,  false, bezierAbsolute},
    {"CA", Form::Numbers,    false, true,  false, false, alternateSet},
    {"CC", Form::Numbers,    false, true,  false, false, NOTHING},
    {"CF", Form::Numbers,    false, true,  false, false, NOTHING},
    {"CI", Form::Numbers,    true,  false, true,  false, circle},
    {"CM", Form::Numbers,    false, true,  false, false, characterMode},
    {"CO", Form::Comment,    true,  true,  false, false, NOTHING},
    {"CP", Form::Numbers,    false, false, false, false, characterPlot},
    {"CR", Form::Numbers,    false, true,  false, true,  colourRange},
    {"CS", Form::Numbers,    false, true,  false, false, standardSet},
    {"CT", Form::Numbers,    true,  true,  false, false, chordTolerance},
    {"CV", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"DC", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"DF", Form::Numbers,    true,  true,  false, false, setDefaults},
    {"DI", Form::Numbers,    false, true,  false, false, absoluteDirection},
    {"DL", Form::Numbers,    false, true,  false, false, downloadCharacter},
    {"DP", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"DR", Form::Numbers,    false, true,  false, false, relativeDirection},
    {"DS", Form::Numbers,    false, true,  false, false, designateSet},
    {"DT", Form::Terminator, true,  true,  false, false, defineTerminator},
    {"DU", Form::Numbers,    false, true,  false, false, userDirection},
    {"DV", Form::Numbers,    false, true,  false, false, verticalPath},
    {"EA", Form::Numbers,    false, false, true,  false, edgeRectangleAbsolute},
    {"EC", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"EP", Form::Numbers,    false, false, true,  false, edgePolygon},
    {"ER", Form::Numbers,    false, false, true,  false, edgeRectangleRelative},
    {"ES", Form::Numbers,    false, true,  false, false, extraSpace},
    {"EW", Form::Numbers,    false, false, true,  false, edgeWedge},
    {"FC", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"FI", Form::Numbers,    false, true,  false, false, NOTHING},
    {"FN", Form::Numbers,    false, true,  false, false, NOTHING},
    {"FP", Form::Numbers,    false, false, true,  false, fillPolygon},
    {"FR", Form::Numbers,    false, true,  false, false, advancePage},
    {"FS", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"FT", Form::Numbers,    false, true,  false, false, fillType},
    {"FX", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"GC", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"GM", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"GP", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"IC", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"IM", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"IN", Form::Numbers,    true,  true,  false, false, initialise},
    {"IP", Form::Numbers,    false, true,  false, false, inputCorners},
    {"IR", Form::Numbers,    false, true,  false, false, inputRelative},
    {"IV", Form::Numbers,    false, true,  false, false, NOTHING},
    {"IW", Form::Numbers,    false, true,  false, false, inputWindow},
    {"KY", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"LA", Form::Numbers,    false, true,  false, true,  lineAttributes},
    {"LB", Form::Label,      true,  true,  true,  false, label},
    {"LM", Form::Numbers,    false, true,  false, false, labelMode},
    {"LO", Form::Numbers,    false, true,  false, false, labelOrigin},
    {"LT", Form::Numbers,    false, true,  false, false, lineType},
    {"MC", Form::Numbers,    false, true,  false, true,  NOTHING},
    {"MG", Form::Comment,    true,  true,  false, false, NOTHING},
    {"MT", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"NP", Form::Numbers,    false, true,  false, true,  numberOfPens},
    {"NR", Form::Numbers,    false, true,  false, false, advancePage},
    {"OA", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"OB", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"OC", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"OD", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"OE", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"OF", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"OG", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"OH", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"OI", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"OK", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"OL", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"OO", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"OP", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"OS", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"OT", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"OW", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"PA", Form::Pairs,      true,  true,  true,  false, plotAbsolute},
    {"PB", Form::Numbers,    false, false, true,  false, printBuffer},
    {"PC", Form::Numbers,    false, true,  false, true,  penColour},
    {"PD", Form::Pairs,      true,  true,  true,  false, penDown},
    {"PE", Form::Encoded,    true,  true,  true,  true,  encodedLine},
    {"PG", Form::Numbers,    false, true,  false, false, advancePage},
    {"PM", Form::Numbers,    true,  false, false, false, polygonMode},
    {"PP", Form::Numbers,    true,  true,  false, true,  NOTHING},
    {"PR", Form::Pairs,      true,  true,  true,  false, plotRelative},
    {"PS", Form::Numbers,    false, true,  false, false, plotSize},
    {"PT", Form::Numbers,    false, true,  false, false, penThickness},
    {"PU", Form::Pairs,      true,  true,  true,  false, penUp},
    {"PW", Form::Numbers,    false, true,  false, true,  penWidth},
    {"QL", Form::Numbers,    true,  true,  false, true,  NOTHING},
    {"RA", Form::Numbers,    false, false, true,  false, fillRectangleAbsolute},
    {"RF", Form::Numbers,    false, true,  false, true,  rasterFill},
    {"RL", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"RO", Form::Numbers,    false, true,  false, false, rotate},
    {"RP", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"RQ", Form::Numbers,    false, false, true,  false, fillRectangleRelative},
    {"RR", Form::Numbers,    false, false, true,  false, fillRectangleRelative},
    {"RT", Form::Numbers,    true,  false, true,  false, threePointsRelative},
    {"SA", Form::Numbers,    false, true,  false, false, selectAlternate},
    {"SB", Form::Numbers,    false, true,  false, false, NOTHING},
    {"SC", Form::Numbers,    false, true,  false, false, scale},
    {"SD", Form::Numbers,    false, true,  false, true,  standardFont},
    {"SG", Form::Numbers,    false, true,  false, false, selectPen},
    {"SI", Form::Numbers,    false, true,  false, false, absoluteSize},
    {"SL", Form::Numbers,    false, true,  false, false, slant},
    {"SM", Form::Character,  false, true,  false, false, symbolMode},
    {"SO", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"SP", Form::Numbers,    false, true,  false, false, selectPen},
    {"SR", Form::Numbers,    false, true,  false, false, relativeSize},
    {"SS", Form::Numbers,    false, true,  false, false, selectStandard},
    {"ST", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"SU", Form::Numbers,    false, true,  false, false, userSize},
    {"SV", Form::Numbers,    false, true,  false, true,  screenedVectors},
    {"TB", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"TD", Form::Numbers,    false, true,  false, false, transparentData},
    {"TL", Form::Numbers,    false, true,  false, false, tickLength},
    {"TR", Form::Numbers,    false, true,  false, true,  transparency},
    {"UC", Form::Numbers,    false, false, true,  false, userCharacter},
    {"UF", Form::Numbers,    false, true,  false, false, userFill},
    {"UL", Form::Numbers,    false, true,  false, true,  userLineType},
    {"VA", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"VN", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"VS", Form::Numbers,    true,  true,  false, false, NOTHING},
    {"WD", Form::Label,      true,  true,  false, false, NOTHING},
    {"WG", Form::Numbers,    false, false, true,  false, fillWedge},
    {"WU", Form::Numbers,    false, true,  false, true,  widthUnit},
    {"XT", Form::Numbers,    false, false, true,  false, tickX},
    {"YT", Form::Numbers,    false, false, true,  false, tickY},
    {"ZO", Form::Numbers,    true,  true,  false, false, NOTHING},
};
// clang-format on

constexpr std::size_t LETTERS = 26;

constexpr std::size_t indexOf(char first, char second) {
    return static_cast<std::size_t>(first - 'A') * LETTERS + static_cast<std::size_t>(second - 'A');
}

// By the two letters: the row's place, counted from 1; 0: none.
constexpr std::array<uint8_t, LETTERS* LETTERS> PLACES = [] {
    std::array<uint8_t, LETTERS* LETTERS> places = {};
    uint8_t place = 0;
    for (const ManifestRow& row : ROWS) {
        places[indexOf(row.name[0], row.name[1])] = ++place;
    }
    return places;
}();

constexpr bool isSorted() {
    for (std::size_t i = 1; i < std::size(ROWS); ++i) {
        if (indexOf(ROWS[i - 1].name[0], ROWS[i - 1].name[1]) >= indexOf(ROWS[i].name[0], ROWS[i].name[1]))
            return false;
    }
    return true;
}
static_assert(isSorted());
static_assert(std::size(ROWS) < 256);

}  // namespace

const ManifestRow* findInstruction(char first, char second) {
    if (!isCapital(first) || !isCapital(second)) return nullptr;
    const uint8_t place = PLACES[indexOf(first, second)];
    return place == 0 ? nullptr : &ROWS[place - 1];
}

}  // namespace plotter
