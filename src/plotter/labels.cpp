#include "plotter/labels.h"

#include "plotter/glyph_tables.h"
#include "plotter/typeface_widths.h"
#include "plotter/units.h"

namespace plotter {

namespace {

constexpr double LINE_SPACING = 2;  // of heights
// Letters of a heavy typeface are drawn twice, so far apart; of widths.
constexpr double HEAVY = 0.05;
// Downloaded characters are drawn on a grid. Pen plotters have 32 steps to a capital's width and to its height; later
// ones have 32 to the font's height in points, which is one and a half capitals, and letters in this proportion.
constexpr double USER_GRID = 32;
constexpr double USER_GRID_EM = 1.5;
constexpr double USER_PROPORTION = 0.269 / 0.188;
constexpr char32_t FORMS = 0x2500;
constexpr char32_t FORMS_END = 0x25A0;
constexpr char32_t MARKS_END = 0x0370;
constexpr char32_t HIGH_MARKS_END = HIGH_MARKS + (MARKS_END - COMBINING_MARKS);
constexpr int TAB_SPACES = 5;  // of a printer
// A symbol whose middle is not further from a capital's than this is put on its point exactly.
constexpr double NEARLY_MIDDLE = 4;

enum Control : uint8_t {
    BACKSPACE = 8,
    TAB = 9,
    LINE_FEED_CODE = 10,
    VERTICAL_TAB = 11,
    RETURN = 13,
    SHIFT_OUT = 14,
    SHIFT_IN = 15,
    FIRST_PRINTED = 32,
    DELETE = 127,
    UPPER_HALF = 128,
    UPPER_PRINTED = 160,
};

// A glyph or a downloaded character as it lies in its cell: x and y times scale, plus shift; upright, before SL.
struct Cell {
    const std::vector<Line>* strokes = nullptr;
    Point scale = {};
    Point shift = {};
    double advance = 0;  // without ES
    double width = 0;    // that is seen
    bool over = false;   // goes over the one before
    bool user = false;
};

struct Token {
    enum class Kind { Character, Control, Nothing };
    Kind kind = Kind::Nothing;
    char32_t character = 0;  // Control: the code. Character: 0 is a blank
    char32_t code = 0;
    bool isCode = true;  // code has been looked up in a set, and is not Unicode
};

bool isMark(char32_t character) {
    return (character >= COMBINING_MARKS && character < MARKS_END) ||
           (character >= HIGH_MARKS && character < HIGH_MARKS_END);
}

bool isUser(char32_t character) {
    return character >= USER_CHARACTERS && character < USER_CHARACTERS + 0x100;
}

// Units of a glyph to plotter units, across, where each has a width of its own.
double unitWidth(const Face& face, char32_t character, const Glyph& glyph) {
    if (face.spacing == Face::Spacing::Stick) return ADVANCE * face.width / GLYPH_ADVANCE;
    const TextFace text = face.spacing == Face::Spacing::Sans ? TextFace::Sans : TextFace::Serif;
    const double em = face.width / TEXT_AVERAGE * (1 / TEXT_CAPITAL);
    const double own = glyph.right - glyph.left;
    return own > 0 ? textWidth(text, character, glyph) / 1000 * em / own : 0;
}

double spaceAdvance(const Face& face) {
    if (face.spacing == Face::Spacing::Fixed) return ADVANCE * face.width;
    const Glyph* space = findGlyph(U' ');
    return (space->right - space->left) * unitWidth(face, U' ', *space);
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

Cell cellOf(const Face& face, char32_t character, const Glyph& glyph) {
    return face.spacing == Face::Spacing::Fixed ? fixedCell(face, character, glyph) : ownCell(face, character, glyph);
}

class LabelWriter {
  public:
    LabelWriter(const Lettering& lettering, std::string_view text, LabelPen& pen, LabelOutput& output)
        : lettering_(lettering), text_(text), pen_(pen), output_(output), utf8_(!lettering.wide && isUtf8(text)) {}

    void writeAll();
    void writeSymbol(char byte, Point middle);

  private:
    // Where a line has come to. Reading a line twice, to measure and to draw, begins with the same one twice.
    struct Walk {
        std::size_t at = 0;  // in the text
        bool alternate = false;
        Point cursor = {};    // from the line's start, upright plotter units
        Point lastStep = {};  // what brought it there; none: nothing has been drawn
        Cell lastCell = {};
        bool lastTall = false;
        Box box = {};  // of what has been drawn, likewise
    };

    const Face& face(bool alternate) const { return lettering_.faces[alternate ? 1 : 0]; }
    Token next(Walk& walk) const;
    Token wideToken(Walk& walk) const;
    char32_t decodeByte(uint8_t code, bool alternate) const;
    Token tokenOf(uint8_t code, bool alternate) const;
    bool readLine(Walk& walk, const Point* start);
    void control(Walk& walk, uint8_t code) const;
    void character(Walk& walk, const Token& token, const Point* start);
    Cell cellFor(const Walk& walk, const Token& token, bool report);
    Cell userCell(const Face& now, const Token& token, bool report);
    Point stepOf(const Face& now, double advance) const;
    Point originShift(const Box& box) const;
    bool linesFollow() const;
    void breakLine(uint8_t code);

    const Lettering& lettering_;
    std::string_view text_;
    LabelPen& pen_;
    LabelOutput& output_;
    bool utf8_;
};

char32_t LabelWriter::decodeByte(uint8_t code, bool alternate) const {
    const SymbolSet set = face(alternate).symbols;
    const bool eightBits = lettering_.mode == CharacterMode::Hp8 || lettering_.mode == CharacterMode::Iso8;
    if (code < UPPER_HALF || !eightBits || !set.hpgl) return decode(set, code);
    // The upper half is the alternate set then.
    const SymbolSet upper = lettering_.faces[1].symbols;
    if (upper.hpgl && upper.number != 0) {
        return code < UPPER_PRINTED ? 0 : decode(upper, static_cast<uint8_t>(code - UPPER_HALF));
    }
    return lettering_.mode == CharacterMode::Iso8 && code >= UPPER_PRINTED ? code : decode(set, code);
}

Token LabelWriter::tokenOf(uint8_t code, bool alternate) const {
    if (code < FIRST_PRINTED && !lettering_.transparent) return {Token::Kind::Control, code, code};
    const char32_t found = decodeByte(code, alternate);
    if (found != 0) return {Token::Kind::Character, found, code};
    const bool blank = code < FIRST_PRINTED || lettering_.transparent;
    if (blank) return {Token::Kind::Character, U' ', code};
    if (code == DELETE) return {Token::Kind::Nothing, 0, code};
    // Codes of the upper half's control area have no width either.
    const bool ignored = code >= UPPER_HALF && code < UPPER_PRINTED;
    return {ignored ? Token::Kind::Nothing : Token::Kind::Character, 0, code};
}

Token LabelWriter::wideToken(Walk& walk) const {
    const auto high = static_cast<uint8_t>(text_[walk.at]);
    const bool whole = walk.at + 1 < text_.size();
    const auto low = whole ? static_cast<uint8_t>(text_[walk.at + 1]) : uint8_t{0};
    walk.at += whole ? 2 : 1;
    if (!whole) return {};
    if (high == 0) return tokenOf(low, walk.alternate);
    const char32_t code = static_cast<char32_t>(high) << 8 | low;
    const bool known = isUnicode(face(walk.alternate).symbols);
    return {Token::Kind::Character, known ? code : 0, code, !known};
}

Token LabelWriter::next(Walk& walk) const {
    if (lettering_.wide) return wideToken(walk);
    const auto code = static_cast<uint8_t>(text_[walk.at]);
    if (utf8_ && code >= UPPER_HALF) {
        char32_t character = 0;
        walk.at += std::max<std::size_t>(1, readUtf8(text_.substr(walk.at), character));
        return {Token::Kind::Character, character, character, false};
    }
    ++walk.at;
    return tokenOf(code, walk.alternate);
}

Cell LabelWriter::userCell(const Face& now, const Token& token, bool report) {
    Cell cell = {.advance = spaceAdvance(now), .width = now.width, .user = true};
    const auto* characters = lettering_.userCharacters;
    const auto at = characters == nullptr ? decltype(characters->begin())()
                                          : characters->find(static_cast<uint8_t>(token.character - USER_CHARACTERS));
    if (characters == nullptr || at == characters->end()) {
        if (report && token.code != ' ') output_.unknown(token.code, true);
        return cell;
    }
    const double em = USER_GRID_EM / USER_GRID;
    const Point grid = {now.width / USER_GRID, now.height / USER_GRID};
    const Point emGrid = {em * USER_PROPORTION * now.width, em * now.height};
    cell.strokes = &at->second;
    cell.scale = lettering_.hpgl2 ? emGrid : grid;
    return cell;
}

Cell LabelWriter::cellFor(const Walk& walk, const Token& token, bool report) {
    const Face& now = face(walk.alternate);
    if (isUser(token.character)) return userCell(now, token, report);
    char32_t wanted = token.character;
    // A mark over a capital is the high one, whichever was asked for.
    if (walk.lastTall && wanted >= COMBINING_MARKS && wanted < MARKS_END &&
        findGlyph(wanted - COMBINING_MARKS + HIGH_MARKS) != nullptr) {
        wanted = wanted - COMBINING_MARKS + HIGH_MARKS;
    }
    const Glyph* glyph = wanted == 0 ? nullptr : findGlyph(wanted);
    if (glyph == nullptr && report) output_.unknown(token.code, token.isCode);
    if (glyph == nullptr && isMark(wanted)) return {.over = true};
    Cell cell = cellOf(now, wanted, glyph == nullptr ? unknownGlyph() : *glyph);
    if (!isMark(wanted)) return cell;
    cell.over = true;
    const double middle = walk.lastCell.advance > 0 ? walk.lastCell.width / 2 : now.width / 2;
    cell.shift.x = middle;
    return cell;
}

Point LabelWriter::stepOf(const Face& now, double advance) const {
    const double along = advance + spaceAdvance(now) * lettering_.extraSpace;
    const double upwards = LINE_SPACING * now.height * (1 + lettering_.extraLine);
    switch (lettering_.path) {
        case 1:
            return {0, -upwards};
        case 2:
            return {-along, 0};
        case 3:
            return {0, upwards};
        default:
            return {along, 0};
    }
}

void LabelWriter::character(Walk& walk, const Token& token, const Point* start) {
    const Face& now = face(walk.alternate);
    const Cell cell = cellFor(walk, token, start != nullptr);
    const Point step = cell.over ? Point() : stepOf(now, cell.advance);
    Point at = walk.cursor;
    if (cell.over) at = at - (walk.lastStep == Point() ? stepOf(now, spaceAdvance(now)) : walk.lastStep);
    // To the left, a letter lies before the place where the pen comes to stand, and so does one that goes over it.
    if (lettering_.path == 2) at = at + (cell.over ? walk.lastStep : step);
    if (start != nullptr && cell.strokes != nullptr) {
        if (!cell.user || output_.mayDraw(pointsOf(*cell.strokes))) {
            layStrokes(lettering_, now, *cell.strokes, cell.scale, cell.shift, *start + lettering_.turned(at), output_);
        }
    }
    if (cell.over) return;
    walk.box.add(at);
    walk.box.add(at + Point{cell.width, now.height});
    walk.cursor = walk.cursor + step;
    walk.lastStep = step;
    walk.lastCell = cell;
    const Glyph* glyph = isUser(token.character) ? nullptr : findGlyph(token.character);
    walk.lastTall = glyph != nullptr && glyph->ink.high.y > GLYPH_TALL;
}

void LabelWriter::control(Walk& walk, uint8_t code) const {
    const Face& now = face(walk.alternate);
    const Point back = walk.lastStep == Point() ? stepOf(now, spaceAdvance(now)) : walk.lastStep;
    switch (code) {
        case BACKSPACE:
            walk.cursor = walk.cursor - back;
            break;
        case TAB:
            walk.cursor =
                walk.cursor + (lettering_.printer ? stepOf(now, spaceAdvance(now)) * TAB_SPACES : back * -0.5);
            break;
        case SHIFT_OUT:
            walk.alternate = true;
            break;
        case SHIFT_IN:
            walk.alternate = false;
            break;
        default:
            break;
    }
}

// Up to a code that ends the line, which is passed over too, and to be found in front of walk.at; false: to the end of
// the text. Without a start it is only measured.
bool LabelWriter::readLine(Walk& walk, const Point* start) {
    while (walk.at < text_.size()) {
        const Token token = next(walk);
        if (token.kind == Token::Kind::Character) {
            character(walk, token, start);
        } else if (token.kind == Token::Kind::Nothing) {
            if (start != nullptr && token.code >= UPPER_HALF) output_.unknown(token.code, true);
        } else if (token.code == RETURN || token.code == LINE_FEED_CODE ||
                   (token.code == VERTICAL_TAB && !lettering_.printer)) {
            return true;
        } else {
            control(walk, static_cast<uint8_t>(token.code));
        }
    }
    return false;
}

// LO counts from 1 in columns of three, each from the bottom up; ten more keep a distance.
bool leavesLineAsItIs(int origin) {
    return origin == 1 || origin == 11 || origin == 21;
}

Point LabelWriter::originShift(const Box& box) const {
    const int place = (lettering_.origin - 1) % 10;  // 0 to 8
    const int column = place / 3;
    const int row = place % 3;
    const Face& now = face(pen_.alternate);
    Point shift;
    if (!leavesLineAsItIs(lettering_.origin) && !box.empty()) {
        shift.x = -(box.low.x + box.width() * column / 2);
        shift.y = -(box.low.y + box.height() * row / 2);
    }
    if (lettering_.origin > 10 && lettering_.origin < 20) {
        shift.x += now.width / 2 * (1 - column);
        shift.y += now.height / 2 * (1 - row);
    }
    return shift;
}

// Whether the pen stays where the line ends, so that another label goes on there.
bool LabelWriter::linesFollow() const {
    if (leavesLineAsItIs(lettering_.origin)) return true;
    const int column = (lettering_.origin - 1) % 10 / 3;
    const int row = (lettering_.origin - 1) % 10 % 3;
    switch (lettering_.path) {
        case 1:
            return row == 2;
        case 2:
            return column == 2;
        case 3:
            return row == 0;
        default:
            return column == 0;
    }
}

void LabelWriter::breakLine(uint8_t code) {
    if (code == RETURN) {
        pen_.position = pen_.carriage;
        return;
    }
    const Point feed = lettering_.feed(face(pen_.alternate)) * (code == VERTICAL_TAB ? -1 : 1);
    pen_.position = pen_.position + feed;
    pen_.carriage = pen_.carriage + feed;
}

void LabelWriter::writeAll() {
    Walk walk = {.alternate = pen_.alternate};
    while (walk.at < text_.size()) {
        Walk measured = walk;
        if (!leavesLineAsItIs(lettering_.origin)) readLine(measured, nullptr);
        const Point start = pen_.position + lettering_.turned(originShift(measured.box));
        const bool broken = readLine(walk, &start);
        pen_.alternate = walk.alternate;
        if (linesFollow()) pen_.position = pen_.position + lettering_.turned(walk.cursor);
        if (broken) breakLine(static_cast<uint8_t>(text_[walk.at - 1]));
        walk = {.at = walk.at, .alternate = walk.alternate};
    }
}

void LabelWriter::writeSymbol(char byte, Point middle) {
    const Walk walk = {.alternate = pen_.alternate};
    const Face& now = face(walk.alternate);
    const Token token = tokenOf(static_cast<uint8_t>(byte), walk.alternate);
    if (token.kind != Token::Kind::Character) return;
    const Cell cell = cellFor(walk, token, true);
    if (cell.strokes == nullptr) return;
    Point shift = {cell.shift.x - cell.width / 2, -now.height / 2};
    const Glyph* glyph = isUser(token.character) ? nullptr : findGlyph(token.character);
    if (glyph != nullptr && !glyph->ink.empty()) {
        const double off = GLYPH_CAPITAL / 2 - (glyph->ink.low.y + glyph->ink.high.y) / 2;
        if (std::abs(off) <= NEARLY_MIDDLE) shift.y += off * cell.scale.y;
    }
    layStrokes(lettering_, now, *cell.strokes, cell.scale, shift, middle, output_);
}

}  // namespace

Point Lettering::turned(Point p) const {
    const Point mirrored = {mirroredX ? -p.x : p.x, mirroredY ? -p.y : p.y};
    return {mirrored.x * cosine - mirrored.y * sine, mirrored.x * sine + mirrored.y * cosine};
}

Point Lettering::step(const Face& face) const {
    const double along = spaceAdvance(face) * (1 + extraSpace);
    const double upwards = LINE_SPACING * face.height * (1 + extraLine);
    const Point steps[] = {{along, 0}, {0, -upwards}, {-along, 0}, {0, upwards}};
    return turned(steps[path & 3]);
}

Point Lettering::feed(const Face& face) const {
    const double along = spaceAdvance(face) * (1 + extraSpace);
    const double upwards = LINE_SPACING * face.height * (1 + extraLine);
    // A quarter turn to the right of the path.
    const Point feeds[] = {{0, -upwards}, {-along, 0}, {0, upwards}, {along, 0}};
    return turned(feeds[path & 3]) * (feedReversed ? -1 : 1);
}

void layStrokes(const Lettering& lettering, const Face& face, std::span<const Line> strokes, Point scale, Point shift,
                Point at, LabelOutput& output) {
    Line drawn;
    for (int copy = 0; copy < (face.bold ? 2 : 1); ++copy) {
        const double displaced = copy * HEAVY * face.width;
        for (const Line& stroke : strokes) {
            drawn.clear();
            drawn.reserve(stroke.size());
            for (const Point p : stroke) {
                const double y = p.y * scale.y + shift.y;
                const double x = p.x * scale.x + shift.x + displaced + y * face.slant;
                drawn.push_back(at + lettering.turned({x, y}));
            }
            if (std::ranges::all_of(drawn, [](Point p) { return isWithin(p, FARTHEST); })) output.stroke(drawn);
        }
    }
}

void layLabel(const Lettering& lettering, std::string_view text, LabelPen& pen, LabelOutput& output) {
    LabelWriter(lettering, text, pen, output).writeAll();
}

void laySymbol(const Lettering& lettering, bool alternate, char byte, Point middle, LabelOutput& output) {
    LabelPen pen = {.position = middle, .carriage = middle, .alternate = alternate};
    LabelWriter(lettering, {&byte, 1}, pen, output).writeSymbol(byte, middle);
}

}  // namespace plotter
