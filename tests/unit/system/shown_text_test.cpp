#include "system/shown_text.h"

#include <gtest/gtest.h>

#include "rows.h"

namespace kelsystem {
namespace {

struct Row : NamedRow {
    std::string text;
    const char* shown;
};

// clang-format off
const Row ROWS[] = {
    {"Nothing",             "",                             ""},
    {"Words",               "a plot~.plt",                  "a plot~.plt"},
    {"Escape",              "\x1B]0;title\x07",             "?]0;title?"},
    {"LinesAndTabs",        "a\nhpglsend: b\tc\r",          "a?hpglsend: b?c?"},
    {"Zero",                std::string("a\0b", 3),         "a?b"},
    {"Delete",              "\x7F",                         "?"},
    {"Umlaut",              "\xC3\xA4.plt",                 "\xC3\xA4.plt"},
    {"LongestOfEach",       "\xDF\xBF\xEF\xBF\xBD\xF4\x8F\xBF\xBD", "\xDF\xBF\xEF\xBF\xBD\xF4\x8F\xBF\xBD"},
    {"ControlOfTwoBytes",   "a\xC2\x9B" "2J",               "a?2J"},
    {"LastControl",         "\xC2\x9F\xC2\xA0",             "?\xC2\xA0"},
    {"ControlOfOneByte",    "a\x9B" "2J",                   "a?2J"},
    {"ContinuationAlone",   "\x80z",                        "?z"},
    {"CutOff",              "a\xC3",                        "a?"},
    {"CutShort",            "\xE2\x82z",                    "??z"},
    {"EscapeInCharacter",   "\xC3\x1B",                     "??"},
    {"OverlongEscape",      "\xC0\x9B" "\xE0\x80\x9B",      "?????"},
    {"NoLead",              "\xF5\xFF",                     "??"},
};
// clang-format on

class ShownText : public testing::TestWithParam<Row> {};

TEST_P(ShownText, HasNoControls) {
    EXPECT_EQ(shownText(GetParam().text), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(Rows, ShownText, testing::ValuesIn(ROWS), byRowName);

}  // namespace
}  // namespace kelsystem
