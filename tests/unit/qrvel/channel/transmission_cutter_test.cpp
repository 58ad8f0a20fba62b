#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "qrvel/channel/transmission_cutter.h"
#include "rows.h"

namespace qrvel {
namespace {

// The pieces of a text, one a line.
std::string cut(std::string_view text, std::size_t room) {
    std::string pieces;
    while (!text.empty()) {
        const std::size_t length = nextPieceLength(text, room);
        EXPECT_GT(length, 0U);
        EXPECT_LE(length, room);
        pieces += std::string(text.substr(0, length)) + '|';
        text.remove_prefix(length);
    }
    return pieces;
}

struct Row : NamedRow {
    const char* text;
    std::size_t room;
    const char* pieces;
};

// clang-format off
const Row ROWS[] = {
    {"nothing",             "",                              20, ""},
    {"short",               "IN;SP1;",                       20, "IN;SP1;|"},
    {"exactly",             "PD10,20;",                       8, "PD10,20;|"},
    {"plain",               "PD10,20;PU;",                    4, "PD10|,20;|PU;|"},
    {"name_whole",          "HPGL_FILEabc\nPU;",             16, "HPGL_FILEabc\nPU;|"},
    {"name_moved",          "IN;SP1;HPGL_FILEabc\nPU;PD;",   16, "IN;SP1;|HPGL_FILEabc\nPU;|PD;|"},
    {"name_at_the_end",     "IN;HPGL_FILEabcd\nPU;",         16, "IN;HPGL_FILEabcd|\nPU;|"},
    {"name_one_too_long",   "IN;HPGL_FILEabcde\nPU;",        16, "IN;|HPGL_FILEabcde\nP|U;|"},
    {"word_straddles",      "IN;SP1;PA1,2;HPGL_FILEx\n",     16, "IN;SP1;PA1,2;|HPGL_FILEx\n|"},
    {"word_ends_at_cut",    "IN;PA1;HPGL_FILEx\n",           16, "IN;PA1;|HPGL_FILEx\n|"},
    {"name_with_blanks",    "IN;HPGL_FILE/a b;c,d\nPU;",     18, "IN;|HPGL_FILE/a b;c,d\n|PU;|"},
    {"high_byte_ends",      "IN;HPGL_FILEab\xE4PUPDPUPD",    15, "IN;HPGL_FILEab\xE4|PUPDPUPD|"},
    {"byte_127_does_not",   "IN;HPGL_FILEab\x7FPUPD",        15, "IN;|HPGL_FILEab\x7FPUP|D|"},
    {"word_in_the_name",    "HPGL_FILEaHPGL_FILE\nPUPDPU",   20, "HPGL_FILEaHPGL_FILE\n|PUPDPU|"},
    {"longer_than_a_piece", "HPGL_FILEabcdefghijk\nPU;",     16, "HPGL_FILEabcdefg|hijk\nPU;|"},
    {"two_names",           "HPGL_FILEa\nHPGL_FILEb\nPU;",   21, "HPGL_FILEa\nHPGL_FILEb|\nPU;|"},
    {"second_name_moved",   "HPGL_FILEa\nHPGL_FILEbc\nPU;",  21, "HPGL_FILEa\n|HPGL_FILEbc\nPU;|"},
    {"other_pseudo_names",  "IN;HPGL_DATAabcdef;",           12, "IN;HPGL_DATA|abcdef;|"},
};
// clang-format on

class Cutter : public testing::TestWithParam<Row> {};

TEST_P(Cutter, Pieces) {
    EXPECT_EQ(cut(GetParam().text, GetParam().room), GetParam().pieces);
}

// The cutter must not need more than it says of what lies ahead.
TEST_P(Cutter, NeedsOnlyTheBytesThatItNames) {
    const std::string_view text = GetParam().text;
    const std::size_t room = GetParam().room;
    EXPECT_EQ(nextPieceLength(text.substr(0, room + NAME_FOLLOWS.size()), room), nextPieceLength(text, room));
}

INSTANTIATE_TEST_SUITE_P(Rows, Cutter, testing::ValuesIn(ROWS), byRowName);

// In the viewer's pieces of 256 bytes.
TEST(Cutter, KeepsNamesOf246CharactersWhole) {
    const std::string longest = "HPGL_FILE:" + std::string(246, 'n');
    EXPECT_EQ(cut("IN;" + longest + "\nPU;", 256), "IN;|" + longest + "|\nPU;|");
    EXPECT_EQ(cut("IN;" + longest + "n\nPU;", 256), "IN;|" + longest + "|n\nPU;|");
}

TEST(ColonTransmission, IsTheFirstByteOfTheData) {
    EXPECT_TRUE(isColonTransmission(":IN;"));
    EXPECT_FALSE(isColonTransmission("IN;:"));
    EXPECT_FALSE(isColonTransmission(""));
}

}  // namespace
}  // namespace qrvel
