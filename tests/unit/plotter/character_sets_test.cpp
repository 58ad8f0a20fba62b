// What the codes of the sets stand for.
#include "plotter/character_sets.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using plotter::decode;
using plotter::SymbolSet;

constexpr bool CS = true;
constexpr bool SD = false;

struct CodeRow {
    const char* name;
    bool hpgl;
    int32_t number;
    int code;
    char32_t character;
};

class Code : public testing::TestWithParam<CodeRow> {};

TEST_P(Code, StandsForThatCharacter) {
    const auto& [name, hpgl, number, code, character] = GetParam();
    EXPECT_EQ(static_cast<uint32_t>(decode({hpgl, number}, static_cast<uint8_t>(code))),
              static_cast<uint32_t>(character));
}

// clang-format off
constexpr CodeRow CODES[] = {
    {"Ascii",              CS,   0, 'A',  U'A'},
    {"AsciiTilde",         CS,   0, '~',  U'~'},
    {"Control",            CS,   0, 10,   0},
    {"Delete",             CS,   0, 127,  0},
    {"EightBits",          CS,   0, 0xCC, U'ä'},
    {"UpperControl",       CS,   0, 0x8F, 0},
    {"UnknownSet",         CS,  73, '[',  U'['},
    {"Root",               CS,   1, '\\', U'√'},
    {"Arrow",              CS,   1, '}',  U'→'},
    {"FrenchPound",        CS,   2, '#',  U'£'},
    {"FrenchAcute",        CS,   2, '\'', U'\u0301'},
    {"FrenchDieresis",     CS,   2, '}',  U'\u0308'},
    {"FrenchHighDieresis", CS,   2, '{',  0xF308},
    {"ScandinavianSlash",  CS,   3, '[',  U'Ø'},
    {"ScandinavianRing",   CS,   3, '|',  0xF30A},
    {"SpanishQuestion",    CS,   4, '#',  U'¿'},
    {"CentredBox",         CS,   5, 'A',  0xF441},
    {"SymbolDigits",       CS,   5, '7',  U'7'},
    {"Yen",                CS,   6, '\\', U'¥'},
    {"RomanExtension",     CS,   7, 'L',  U'ä'},
    {"RomanSpace",         CS,   7, ' ',  U' '},
    {"Katakana",           CS,   8, '1',  U'ｱ'},
    {"Currency",           CS,   9, '$',  U'¤'},
    {"ArcVariant",         CS,  17, 'L',  U'ä'},
    {"NoSuchSet",         CS,  27, 'L',  U'L'},
    {"Swedish",            CS,  30, '}',  U'å'},
    {"SwedishNames",       CS,  31, '@',  U'É'},
    {"Norwegian",          CS,  32, '[',  U'Æ'},
    {"German",             CS,  33, '~',  U'ß'},
    {"GermanArc",          CS,  43, '~',  U'ß'},
    {"French",             CS,  34, '{',  U'é'},
    {"British",            CS,  35, '#',  U'£'},
    {"Italian",            CS,  36, '`',  U'ù'},
    {"Spanish",            CS,  37, '\\', U'Ñ'},
    {"Portuguese",         CS,  38, '~',  U'°'},
    {"Norwegian2",         CS,  39, '#',  U'§'},
    {"User",               CS,  99, 'A',  0xF841},
    {"UserByMinus",        CS,  -1, 'A',  0xF841},
    {"Roman8First",        SD, 277, 0xA1, U'À'},
    {"Roman8Last",         SD, 277, 0xFE, U'±'},
    {"Roman8Middle",       SD, 277, 0xDE, U'ß'},
    {"Roman8Nothing",      SD, 277, 0xFF, 0},
    {"Latin1",             SD,  14, 0xE4, U'ä'},
    {"Latin1Control",      SD,  14, 0x85, 0},
    {"Latin2",             SD,  78, 0xE8, U'č'},
    {"Latin9Euro",         SD, 302, 0xA4, U'€'},
    {"Pc8Small",           SD, 341, 0x84, U'ä'},
    {"Pc8Form",            SD, 341, 0xC9, U'╔'},
    {"Pc850",              SD, 405, 0x9D, U'Ø'},
    {"Windows",            SD, 629, 0x80, U'€'},
    {"WindowsUpper",       SD, 629, 0xFC, U'ü'},
    {"WindowsNothing",     SD, 629, 0x81, 0},
    {"SymbolGreek",        SD, 621, 'a',  U'α'},
    {"SymbolUpper",        SD, 621, 0xA5, U'∞'},
    {"GermanByNumber",     SD,  39, '[',  U'Ä'},
    {"UserByNumber",       SD, 531, 'A',  0xF841},
    {"UnknownIsRoman8",    SD, 999, 0xCC, U'ä'},
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(CharacterSets, Code, testing::ValuesIn(CODES), [](const auto& row) { return row.param.name; });

TEST(CharacterSets, ArcFontsAreProportional) {
    for (int number = 0; number < 110; ++number) {
        const bool expected = (number >= 10 && number <= 19) || (number >= 40 && number <= 49);
        EXPECT_EQ(plotter::isProportional({true, number}), expected) << number;
        EXPECT_FALSE(plotter::isProportional({false, number})) << number;
    }
}

struct Utf8Row {
    const char* name;
    std::string_view text;
    bool isUtf8;
};

class Utf8 : public testing::TestWithParam<Utf8Row> {};

TEST_P(Utf8, IsTakenForWhatItIs) {
    EXPECT_EQ(plotter::isUtf8(GetParam().text), GetParam().isUtf8);
}

// clang-format off
constexpr Utf8Row UTF8[] = {
    {"AsciiAlone",    "abc",               false},
    {"Empty",         "",                  false},
    {"TwoBytes",      "a\xC3\xA4",         true},
    {"ThreeBytes",    "\xE2\x82\xAC",      true},
    {"FourBytes",     "\xF0\x9F\x98\x80",  true},
    {"Latin1",        "M\xFCller",         false},
    {"OneOfTwo",      "\xC3\xA4\xE4",      false},
    {"Broken",        "\xE2\x82",          false},
    {"Overlong",      "\xC0\xAF",          false},
    {"OverlongThree", "\xE0\x80\xAF",      false},
    {"Surrogate",     "\xED\xA0\x80",      false},
    {"BeyondUnicode", "\xF4\x90\x80\x80",  false},
    {"Continuation",  "\x80",              false},
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(CharacterSets, Utf8, testing::ValuesIn(UTF8), [](const auto& row) { return row.param.name; });

TEST(CharacterSets, SequencesAreReadOneByOne) {
    char32_t character = 0;
    EXPECT_EQ(plotter::readUtf8("\xC3\xA4x", character), 2U);
    EXPECT_EQ(static_cast<uint32_t>(character), 0xE4U);
    EXPECT_EQ(plotter::readUtf8("\xE2\x82\xAC", character), 3U);
    EXPECT_EQ(static_cast<uint32_t>(character), 0x20ACU);
    EXPECT_EQ(plotter::readUtf8("\xF0\x9F\x98\x80", character), 4U);
    EXPECT_EQ(static_cast<uint32_t>(character), 0x1F600U);
    EXPECT_EQ(plotter::readUtf8("a", character), 0U);
    EXPECT_EQ(plotter::readUtf8("", character), 0U);
}

}  // namespace
