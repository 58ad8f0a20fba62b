#include "plotter/labels.h"

#include "plotter/ascii.h"
#include "plotter/label_cells.h"
#include "plotter/label_codes.h"
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
constexpr int TAB_SPACES = 5;  // of a printer
// A symbol whose middle is not further from a capital's than this is put on its point exactly.
constexpr double NEARLY_MIDDLE = 4;

bool isUser(char32_t character) {
    return character >= USER_CHARACTERS && character < USER_CHARACTERS + 0x100;
}

// The way to the next character along a path, from how far it is to the right and how far down.
Point onPath(int path, double along, double down) {
    const Point ways[] = {{along, 0}, {0, -down}, {-along, 0}, {0, down}};
    return ways[path & 3];
}

class LabelWriter {
  public:
    LabelWriter(const Lettering& lettering, std::string_view text, LabelPen& pen, LabelOutput& output)
        : lettering_(lettering), text_(text), codes_(lettering, text), pen_(pen), output_(output) {}

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
    LabelCodes codes_;
    LabelPen& pen_;
    LabelOutput& output_;
};

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
    cell.shift.x = (walk.lastCell.advance > 0 ? walk.lastCell.width : now.width) / 2;
    return cell;
}

Point LabelWriter::stepOf(const Face& now, double advance) const {
    const double along = advance + spaceAdvance(now) * lettering_.extraSpace;
    const double down = LINE_SPACING * now.height * (1 + lettering_.extraLine);
    return onPath(lettering_.path, along, down);
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
        const Token token = codes_.next(walk.at, walk.alternate);
        if (token.kind == Token::Kind::Character) {
            character(walk, token, start);
        } else if (token.kind == Token::Kind::Nothing) {
            if (start != nullptr && token.code >= UPPER_HALF) output_.unknown(token.code, true);
        } else if (token.code == CARRIAGE_RETURN || token.code == LINE_FEED ||
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
    if (code == CARRIAGE_RETURN) {
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
    const Token token = codes_.ofByte(static_cast<uint8_t>(byte), walk.alternate);
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
    return turned(onPath(path, along, LINE_SPACING * face.height * (1 + extraLine)));
}

Point Lettering::feed(const Face& face) const {
    const double along = spaceAdvance(face) * (1 + extraSpace);
    // A quarter turn to the right of the path.
    return turned(onPath(path + 1, along, LINE_SPACING * face.height * (1 + extraLine))) * (feedReversed ? -1 : 1);
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
