#include "plotter/glyphs.h"

#include <charconv>
#include <string_view>
#include <unordered_map>

#include "plotter/font_data.h"
#include "plotter/glyph_tables.h"

namespace plotter {

namespace {

// Cells of form characters meet: an advance wide and a line feed high, about their middle.
constexpr Box FORM_CELL = {{-10.5, -14}, {10.5, 28}};
constexpr Point FORM_MIDDLE = {0, 7};
constexpr double FORM_GAP = 2;  // of two lines, from the middle of both
// Cyrillic's small letters are its capitals, but for some.
constexpr double SMALL_CAPITAL = 14 / GLYPH_CAPITAL;

double readNumber(std::string_view& text) {
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(error == std::errc() ? static_cast<std::size_t>(end - text.data()) : text.size());
    return number;
}

std::vector<Line> readStrokes(std::string_view text) {
    std::vector<Line> strokes;
    bool begins = true;
    while (!text.empty()) {
        if (begins) strokes.emplace_back();
        const double x = readNumber(text);
        text.remove_prefix(std::min<std::size_t>(1, text.size()));
        const double y = readNumber(text);
        strokes.back().push_back({x, y});
        begins = text.starts_with('|');
        text.remove_prefix(std::min<std::size_t>(1, text.size()));
    }
    return strokes;
}

void append(Glyph& glyph, const Glyph& other, double scale, Point shift) {
    for (const Line& stroke : other.strokes) {
        Line& added = glyph.strokes.emplace_back();
        for (const Point p : stroke) {
            added.push_back(p * scale + shift);
        }
    }
}

// All characters, made once.
class Font {
  public:
    Font() {
        takeFont();
        takeStrokes();
        takeForms();
        takeLikes();
        takeParts();
        takeMarks();
        takeHighMarks();
        takeSmallCyrillic();
        takeSmallSymbols();
        for (auto& [character, glyph] : glyphs_) {
            if (glyph.ink.empty()) glyph.ink = boxOf(glyph.strokes);
            if (character < NEAR) near_[character] = &glyph;
        }
    }

    const Glyph* find(char32_t character) const {
        if (character < NEAR) return near_[character];
        const auto at = glyphs_.find(character);
        return at == glyphs_.end() ? nullptr : &at->second;
    }

  private:
    static constexpr std::size_t NEAR = 256;

    void takeFont() {
        for (const FontGlyph& row : fontGlyphs()) {
            Glyph& glyph = glyphs_[row.character];
            glyph.left = row.left;
            glyph.right = row.right;
            bool begins = true;
            const auto numbers = fontCoordinates().subspan(row.first, row.count);
            for (std::size_t i = 0; i + 1 < numbers.size(); i += 2) {
                if (begins) glyph.strokes.emplace_back();
                begins = numbers[i] == PEN_UP;
                if (!begins) glyph.strokes.back().push_back({double(numbers[i]), double(numbers[i + 1])});
            }
        }
    }

    void takeStrokes() {
        for (const StrokesRow& row : strokesTable()) {
            Glyph glyph = row.base == 0 ? Glyph() : glyphs_.at(row.base);
            if (row.left < row.right) {
                glyph.left = row.left;
                glyph.right = row.right;
            }
            append(glyph, {.left = 0, .right = 0, .strokes = readStrokes(row.strokes), .ink = {}}, 1, {});
            glyphs_[row.character] = std::move(glyph);
        }
    }

    // How far towards its own side of the middle a line must end, so that corners and crossings of lines and double
    // lines are whole. near, far: the arm on this line's side of the middle, and the one across.
    static double endOf(char arm, char nearArm, char farArm, bool goesOn) {
        if (arm == '2') {
            if (nearArm == '2') return FORM_GAP;
            return nearArm == '0' && farArm == '2' && !goesOn ? -FORM_GAP : 0;
        }
        if (goesOn || (nearArm != '2' && farArm != '2')) return 0;
        return nearArm == farArm ? FORM_GAP : -FORM_GAP;
    }

    // direction: of the arm; side: turned a quarter left. The arms are this one, those to its left and right, and the
    // one opposite.
    static void addArm(Glyph& glyph, Point direction, double reach, const char (&arms)[4]) {
        const Point side = {-direction.y, direction.x};
        const bool goesOn = arms[3] != '0';
        for (const double offset : {FORM_GAP, -FORM_GAP}) {
            const bool left = offset > 0;
            if (arms[0] == '1' && !left) return;
            const double end = endOf(arms[0], left ? arms[1] : arms[2], left ? arms[2] : arms[1], goesOn);
            const Point middle = arms[0] == '1' ? FORM_MIDDLE : FORM_MIDDLE + side * offset;
            glyph.strokes.push_back({middle + direction * end, middle + direction * reach});
        }
    }

    void takeForms() {
        for (const FormRow& row : formTable()) {
            Glyph glyph = {.left = FORM_CELL.low.x, .right = FORM_CELL.high.x, .strokes = {}, .ink = {}};
            const auto [left, right, up, down, end] = row.arms;
            static_cast<void>(end);
            const double across = FORM_CELL.high.x;
            const double along = FORM_CELL.high.y - FORM_MIDDLE.y;
            if (left != '0') addArm(glyph, {-1, 0}, across, {left, down, up, right});
            if (right != '0') addArm(glyph, {1, 0}, across, {right, up, down, left});
            if (up != '0') addArm(glyph, {0, 1}, along, {up, left, right, down});
            if (down != '0') addArm(glyph, {0, -1}, along, {down, right, left, up});
            glyphs_[row.character] = std::move(glyph);
        }
    }

    void takeLikes() {
        for (const LikeRow& row : likeTable()) {
            for (std::size_t i = 0; i < row.characters.size(); ++i) {
                glyphs_[row.characters[i]] = Glyph(glyphs_.at(row.like[i]));
            }
        }
    }

    void takeParts() {
        for (const PartsRow& row : partsTable()) {
            Glyph glyph = {.left = 1e9, .right = -1e9, .strokes = {}, .ink = {}};
            for (const Part& part : row.parts) {
                if (part.character == 0) continue;
                const Glyph& from = glyphs_.at(part.character);
                append(glyph, from, part.scale, {part.x, part.y});
                const auto [low, high] = std::minmax({from.left * part.scale, from.right * part.scale});
                glyph.left = std::min(glyph.left, low + part.x);
                glyph.right = std::max(glyph.right, high + part.x);
            }
            glyphs_[row.character] = std::move(glyph);
        }
    }

    // What carries the mark: i and j lose their dots under one, not over one.
    const Glyph& carrier(char32_t letter, char32_t mark) const {
        const bool below = mark >= U'\u0323';
        if (!below && (letter == U'i' || letter == U'і')) return glyphs_.at(U'\u0131');
        if (!below && letter == U'j') return glyphs_.at(U'\u0237');
        return glyphs_.at(letter);
    }

    void takeMarks() {
        for (const MarkRow& row : markTable()) {
            const Glyph& mark = glyphs_.at(row.mark);
            for (std::size_t i = 0; i < row.letters.size(); ++i) {
                Glyph glyph = carrier(row.letters[i], row.mark);
                glyph.ink = boxOf(glyph.strokes);
                glyph.letter = row.letters[i];
                append(glyph, mark, 1, {0, glyph.ink.high.y > GLYPH_TALL ? row.rise : 0});
                glyphs_[row.accented[i]] = std::move(glyph);
            }
        }
    }

    void takeHighMarks() {
        for (const MarkRow& row : markTable()) {
            Glyph glyph = {
                .left = glyphs_.at(row.mark).left, .right = glyphs_.at(row.mark).right, .strokes = {}, .ink = {}};
            append(glyph, glyphs_.at(row.mark), 1, {0, row.rise});
            glyphs_[HIGH_MARKS + (row.mark - COMBINING_MARKS)] = std::move(glyph);
        }
    }

    void takeSmall(char32_t small, char32_t capital, double scale, Point shift) {
        const Glyph& from = glyphs_.at(capital);
        Glyph glyph = {.left = from.left * scale, .right = from.right * scale, .strokes = {}, .ink = {}};
        append(glyph, from, scale, shift);
        glyphs_.try_emplace(small, std::move(glyph));
    }

    void takeSmallCyrillic() {
        constexpr char32_t CASES_APART = U'а' - U'А';
        for (char32_t capital = U'А'; capital <= U'Я'; ++capital) {
            takeSmall(capital + CASES_APART, capital, SMALL_CAPITAL, {});
        }
        // Those of the neighbours of Russian.
        constexpr char32_t PAIRS[][2] = {{U'є', U'Є'}, {U'ђ', U'Ђ'}, {U'ћ', U'Ћ'}, {U'љ', U'Љ'}, {U'њ', U'Њ'},
                                         {U'џ', U'Џ'}, {U'ґ', U'Ґ'}, {U'ѓ', U'Ѓ'}, {U'ќ', U'Ќ'}};
        for (const auto& [small, capital] : PAIRS) {
            takeSmall(small, capital, SMALL_CAPITAL, {});
        }
    }

    void takeSmallSymbols() {
        constexpr double SCALE = 0.6;
        constexpr Point SHIFT = {0, 10.5 * (1 - SCALE)};
        for (char32_t letter = U'A'; letter <= U'Z'; ++letter) {
            takeSmall(CENTRED_SYMBOLS + letter + (U'a' - U'A'), CENTRED_SYMBOLS + letter, SCALE, SHIFT);
        }
    }

    std::unordered_map<char32_t, Glyph> glyphs_;
    const Glyph* near_[NEAR] = {};
};

}  // namespace

const Glyph* findGlyph(char32_t character) {
    static const Font FONT;
    return FONT.find(character);
}

const Glyph& unknownGlyph() {
    static const Glyph BOX = {
        .left = -9, .right = 9, .strokes = {{{-6, 0}, {-6, 21}, {6, 21}, {6, 0}, {-6, 0}}}, .ink = {{-6, 0}, {6, 21}}};
    return BOX;
}

}  // namespace plotter
