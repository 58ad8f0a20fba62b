#include "plotter/escapes.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace plotter {
namespace {

using namespace std::string_literals;

// "*c 2880X 2160Y", with a data count where there is one, and what is left behind it.
std::string describe(const std::string& bytes) {
    EscapeReader reader(bytes, 0);
    std::ostringstream out;
    switch (reader.kind()) {
        case EscapeReader::Kind::Alone:
            out << "alone";
            break;
        case EscapeReader::Kind::TwoCharacters:
            out << "two " << reader.family();
            break;
        case EscapeReader::Kind::DeviceControl:
            out << "device " << (reader.family() != 0 ? reader.family() : '-');
            break;
        case EscapeReader::Kind::Fields:
            out << reader.family() << (reader.group() != 0 ? std::string(1, reader.group()) : ""s);
            break;
    }
    EscapeField field;
    while (reader.next(field)) {
        out << ' ' << (field.isSigned && field.value >= 0 ? "+" : "") << field.value << field.letter;
        if (!field.data.empty()) {
            out << '[' << field.data << ']';
        }
        out << (field.isCut ? " cut" : "");
    }
    EXPECT_EQ(skipEscape(bytes, 0), reader.end());
    out << '|' << bytes.substr(reader.end());
    return out.str();
}

struct Row {
    std::string name;
    std::string bytes;
    std::string expected;
};

class Escapes : public testing::TestWithParam<Row> {};

TEST_P(Escapes, AreReadFieldByField) {
    EXPECT_EQ(describe(GetParam().bytes), GetParam().expected);
}

// clang-format off
const Row ROWS[] = {
    {"Reset",             "\x1b" "E;",                      "two E|;"},
    {"HalfLine",          "\x1b=x",                         "two =|x"},
    {"AloneAtEnd",        "\x1b",                           "alone|"},
    {"AloneBeforeBlank",  "\x1b PU",                        "alone| PU"},
    {"AloneBeforeHigh",   "\x1b\xc4x",                      "alone|\xc4x"},
    {"Enter",             "\x1b%0BIN",                      "% 0B|IN"},
    {"EnterNegative",     "\x1b%-1BIN",                     "% -1B|IN"},
    {"UniversalExit",     "\x1b%-12345X@PJL",               "% -12345X|@PJL"},
    {"SymbolSet",         "\x1b(8Ux",                       "( 8U|x"},
    {"Combined",          "\x1b*c2880x2160Yz",              "*c 2880X 2160Y|z"},
    {"MissingValue",      "\x1b*rBz",                       "*r 0B|z"},
    {"Relative",          "\x1b&a+36Hz",                    "&a +36H|z"},
    {"Fraction",          "\x1b(s16.67Hz",                  "(s 16.67H|z"},
    {"Blanks",            "\x1b&l 26 Az",                   "&l 26A|z"},
    {"BadByteEnds",       "\x1b&l26!z",                     "&l|!z"},
    {"BadByteAtOnce",     "\x1b&\n",                        "&|\n"},
    {"Row",               "\x1b*b3WabcPU",                  "*b 3W[abc]|PU"},
    {"RowInTheMiddle",    "\x1b*b3wabc2Wdez",               "*b 3W[abc] 2W[de]|z"},
    {"MethodThenRow",     "\x1b*b2m6W%0BPU;z",              "*b 2M 6W[%0BPU;]|z"},
    {"Plane",             "\x1b*b2Vabz",                    "*b 2V[ab]|z"},
    {"NegativeRow",       "\x1b*b-2Wabz",                   "*b -2W[ab]|z"},
    {"NegativeElsewhere", "\x1b*v-2Wabz",                   "*v -2W|abz"},
    {"TransparentText",   "\x1b&p3X\x1b%Az",                "&p 3X[\x1b%A]|z"},
    {"MacroIsNoText",     "\x1b&f2Xabz",                    "&f 2X|abz"},
    {"TextMode",          "\x1b&k2Wabz",                    "&k 2W|abz"},
    {"SymbolSetW",        "\x1b(2Wabz",                     "( 2W|abz"},
    {"FontHeader",        "\x1b)s2Wabz",                    ")s 2W[ab]|z"},
    {"CutData",           "\x1b*b9Wabc",                    "*b 9W[abc] cut|"},
    {"CutBeforeLetter",   "\x1b*b9",                        "*b|"},
    {"EnormousValue",     "\x1b*b99999999999999999999Wabc", "*b 4.29497e+09W[abc] cut|"},
    {"DevicePlain",       "\x1b.(;",                        "device (|;"},
    {"DeviceNumbers",     "\x1b.I81;;17:IN",                "device I|IN"},
    {"DeviceNoColon",     "\x1b.I81;;17IN",                 "device I|IN"},
    {"DeviceLineEnd",     "\x1b.N;\r\n19:IN",               "device N|IN"},
    {"DeviceNoNumbers",   "\x1b.Z5:",                       "device Z|5:"},
    {"DeviceUnknown",     "\x1b.xIN",                       "device -|xIN"},
    {"DeviceAtEnd",       "\x1b.",                          "device -|"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(All, Escapes, testing::ValuesIn(ROWS), [](const auto& row) { return row.param.name; });

TEST(DeviceControl, IsKnownWithoutItsEscape) {
    EXPECT_EQ(skipDeviceControl(".(;IN", 0), 2u);
    EXPECT_EQ(skipDeviceControl("IN;.I81;;17:SP", 3), 12u);
}

TEST(DeviceControl, IsNoDecimalPoint) {
    EXPECT_EQ(skipDeviceControl(".5,3", 0), 0u);
    EXPECT_EQ(skipDeviceControl(".", 0), 0u);
    EXPECT_EQ(skipDeviceControl("PU", 0), 0u);
}

}  // namespace
}  // namespace plotter
