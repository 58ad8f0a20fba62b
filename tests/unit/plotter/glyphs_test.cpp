// Shapes of characters: the font's measures, what is composed, and that nothing is missing.
#include "plotter/glyphs.h"

#include <gtest/gtest.h>

#include <string>

#include "plane_text.h"
#include "plotter/character_sets.h"

namespace {

using plotter::findGlyph;
using plotter::Glyph;
using plotter::SymbolSet;

std::string boxOf(const plotter::Box& box) {
    return box.empty() ? "" : plane_text::of(box.low) + " " + plane_text::of(box.high);
}

std::string strokesOf(const Glyph& glyph) {
    plane_text::Pieces pieces;
    for (const plotter::Line& stroke : glyph.strokes) {
        pieces.add(stroke);
    }
    return pieces.text();
}

plotter::Box wholeInk(const Glyph& glyph) {
    plotter::Box box;
    for (const plotter::Line& stroke : glyph.strokes) {
        for (const plotter::Point p : stroke)
            box.add(p);
    }
    return box;
}

// ---- measures ----

struct MeasureRow {
    const char* name;
    char32_t character;
    const char* ink;
    double left, right;
};

class Measure : public testing::TestWithParam<MeasureRow> {};

TEST_P(Measure, IsThePlottersOwn) {
    const Glyph* glyph = findGlyph(GetParam().character);
    ASSERT_NE(glyph, nullptr);
    EXPECT_EQ(boxOf(glyph->ink), GetParam().ink);
    EXPECT_EQ(glyph->left, GetParam().left);
    EXPECT_EQ(glyph->right, GetParam().right);
}

// clang-format off
constexpr MeasureRow MEASURES[] = {
    {"Capital",     U'H', "-7,0 7,21",   -11, 11},
    {"SmallLetter", U'x', "-5,0 6,14",    -8,  9},
    {"Descender",   U'p', "-6,-7 6,14",  -10,  9},
    {"Digit",       U'0', "-7,0 7,21",   -10, 10},
    {"Minus",       U'-', "-9,9 9,9",    -13, 13},
    {"Period",      U'.', "-1,0 1,2",     -5,  5},
    {"Space",       U' ', "",             -8,  8},
    {"Unbreakable", U'\u00A0', "",        -8,  8},
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(Glyphs, Measure, testing::ValuesIn(MEASURES), [](const auto& row) { return row.param.name; });

// ---- what is composed ----

struct ComposedRow {
    const char* name;
    char32_t character;
    char32_t letter;
    const char* mark;  // strokes behind those of the letter
};

class Composed : public testing::TestWithParam<ComposedRow> {};

TEST_P(Composed, IsItsLetterAndAMark) {
    const auto& [name, character, letter, mark] = GetParam();
    const Glyph* glyph = findGlyph(character);
    ASSERT_NE(glyph, nullptr);
    EXPECT_EQ(glyph->letter, letter);
    const char32_t carrier = letter == U'i' ? U'ı' : letter;
    const Glyph& plain = *findGlyph(carrier);
    EXPECT_EQ(strokesOf(*glyph), strokesOf(plain) + " | " + mark);
    EXPECT_EQ(boxOf(glyph->ink), boxOf(plain.ink));
    EXPECT_EQ(glyph->right, plain.right);
}

// clang-format off
constexpr ComposedRow COMPOSED[] = {
    {"AcuteOverCapital",   U'É', U'E', "-1,23 3,27"},
    {"AcuteOverSmall",     U'é', U'e', "-1,17 3,21"},
    {"GraveOverSmall",     U'à', U'a', "1,17 -3,21"},
    {"CircumflexWithoutDot", U'î', U'i', "-4,17 0,21 4,17"},
    {"TildeOverCapital",   U'Ñ', U'N', "-5,24 -2,26 2,24 5,26"},
    {"RingTouches",        U'Å', U'A', "-1,26 -2,25 -2,23 -1,22 1,22 2,23 2,25 1,26 -1,26"},
    {"DieresisOverSmall",  U'ü', U'u', "-3,20 -4,19 -3,18 -2,19 -3,20 | 3,20 2,19 3,18 4,19 3,20"},
    {"CaronOverCapital",   U'Č', U'C', "-4,27 0,23 4,27"},
    {"CaronBesideTall",    U'ď', U'd', "10,21 10,19 8,16"},
    {"CedillaStaysBelow",  U'Ç', U'C', "0,0 -1,-3 2,-4 1,-7 -2,-7"},
    {"OgonekKeepsDot",     U'ą', U'a', "4,0 2,-2 1,-4 2,-6 4,-6 5,-5"},
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(Glyphs, Composed, testing::ValuesIn(COMPOSED), [](const auto& row) { return row.param.name; });

TEST(Glyphs, MarksAboveReachAboveTheirLetters) {
    for (const char32_t character : U"ÀÂÃÄÅËÏÔÚÝàâãäåëïôúýĀĂĈĠŐŘŽāăĉġőřž") {
        if (character == 0) break;
        const Glyph* glyph = findGlyph(character);
        ASSERT_NE(glyph, nullptr);
        EXPECT_GT(wholeInk(*glyph).high.y, glyph->ink.high.y) << std::hex << static_cast<uint32_t>(character);
    }
}

TEST(Glyphs, TurnedOnesStandOnTheirHeads) {
    EXPECT_EQ(boxOf(findGlyph(U'¡')->ink), "-1,-7 1,14");
    EXPECT_EQ(boxOf(findGlyph(U'!')->ink), "-1,0 1,21");
}

TEST(Glyphs, SmallCyrillicIsCapitalsExceptForSome) {
    EXPECT_EQ(findGlyph(U'ж')->ink.high.y, 14);
    EXPECT_EQ(strokesOf(*findGlyph(U'о')), strokesOf(*findGlyph(U'o')));
    EXPECT_EQ(findGlyph(U'ф')->ink.low.y, -7);
}

// ---- forms ----

struct FormRow {
    const char* name;
    char32_t character;
    const char* strokes;
};

class Form : public testing::TestWithParam<FormRow> {};

TEST_P(Form, ReachesTheSidesOfItsCell) {
    EXPECT_EQ(strokesOf(*findGlyph(GetParam().character)), GetParam().strokes);
}

// clang-format off
constexpr FormRow FORMS[] = {
    {"Horizontal",   U'─', "0,7 -10.5,7 | 0,7 10.5,7"},
    {"Corner",       U'┌', "0,7 10.5,7 | 0,7 0,-14"},
    {"DoubleCorner", U'╔', "-2,9 10.5,9 | 2,5 10.5,5 | 2,5 2,-14 | -2,9 -2,-14"},
    {"DoubleCross",  U'╬', "-2,5 -10.5,5 | -2,9 -10.5,9 | 2,9 10.5,9 | 2,5 10.5,5 | "
                           "-2,9 -2,28 | 2,9 2,28 | 2,5 2,-14 | -2,5 -2,-14"},
    {"SingleIntoDouble", U'╤', "0,5 -10.5,5 | 0,9 -10.5,9 | 0,9 10.5,9 | 0,5 10.5,5 | 0,5 0,-14"},
    {"SingleRoundDouble", U'╒', "0,9 10.5,9 | 0,5 10.5,5 | 0,9 0,-14"},
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(Glyphs, Form, testing::ValuesIn(FORMS), [](const auto& row) { return row.param.name; });

// ---- all of them ----

// The codes of a set that have a character without a glyph.
std::string missing(SymbolSet set) {
    std::string codes;
    for (int code = 0; code < 256; ++code) {
        const char32_t character = decode(set, static_cast<uint8_t>(code));
        const Glyph* glyph = character == 0 ? nullptr : findGlyph(character);
        if (character != 0 && glyph == nullptr) codes += " " + std::to_string(code);
    }
    return codes;
}

TEST(Glyphs, NoCharacterOfASetIsMissing) {
    for (int number = 0; number <= 59; ++number) {
        EXPECT_EQ(missing({true, number}), "") << "CS" << number;
    }
    for (const int number : {14, 21, 78, 174, 277, 302, 306, 334, 341, 373, 405, 565, 114, 293, 629, 180}) {
        EXPECT_EQ(missing({false, number}), "") << "SD1," << number;
    }
}

TEST(Glyphs, StayAboutTheirCell) {
    for (char32_t character = 0; character < 0xFFFF; ++character) {
        const Glyph* glyph = findGlyph(character);
        if (glyph == nullptr || glyph->strokes.empty()) continue;
        const plotter::Box box = wholeInk(*glyph);
        EXPECT_TRUE(box.low.x >= -25 && box.high.x <= 25 && box.low.y >= -15 && box.high.y <= 30)
            << std::hex << static_cast<uint32_t>(character) << " " << boxOf(box);
        for (const plotter::Line& stroke : glyph->strokes)
            EXPECT_FALSE(stroke.empty());
    }
}

TEST(Glyphs, UnknownIsABoxOfACapital) {
    EXPECT_EQ(findGlyph(U'漢'), nullptr);
    EXPECT_EQ(findGlyph(0x10FFFF), nullptr);
    EXPECT_EQ(strokesOf(plotter::unknownGlyph()), "-6,0 -6,21 6,21 6,0 -6,0");
}

}  // namespace
