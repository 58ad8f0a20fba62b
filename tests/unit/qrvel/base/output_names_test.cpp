// The names of the files that drawings are printed to.
#include "qrvel/base/output_names.h"

#include "rows.h"

namespace qrvel {
namespace {

struct NameRow : NamedRow {
    const char* pattern;
    const char* source;
    const char* output;
};

// clang-format off
constexpr NameRow NAME_ROWS[] = {
    {"NoName",          "a.pdf",            "b.plt",            "a.pdf"},
    {"Name",            "%n.pdf",           "b.plt",            "b.pdf"},
    {"InAFolder",       "out/%n.svg",       "b.plt",            "out/b.svg"},
    {"OfAFolder",       "out/%n.svg",       "/in/sub.d/b.plt",  "out/b.svg"},
    {"NoEnding",        "%n.pdf",           "b",                "b.pdf"},
    {"TwoEndings",      "%n.pdf",           "b.tar.plt",        "b.tar.pdf"},
    {"EmptyEnding",     "%n.pdf",           "b.",               "b.pdf"},
    {"EndingAlone",     "%n.pdf",           ".plt",             ".plt.pdf"},
    {"Twice",           "%n/%n.pdf",        "b.plt",            "b/b.pdf"},
    {"InTheMiddle",     "x%ny.png",         "b.plt",            "xby.png"},
    {"PercentSign",     "100%%.pdf",        "b.plt",            "100%.pdf"},
    {"PercentThenN",    "%%n.pdf",          "b.plt",            "%n.pdf"},
    {"PercentThenName", "%%%n.pdf",         "b.plt",            "%b.pdf"},
    {"OtherLetter",     "%d.pdf",           "b.plt",            "%d.pdf"},
    {"CapitalLetter",   "%N.pdf",           "b.plt",            "%N.pdf"},
    {"LastCharacter",   "a.pdf%",           "b.plt",            "a.pdf%"},
    {"PatternInAName",  "%n.pdf",           "a%n%%.plt",        "a%n%%.pdf"},
    {"StandardInput",   "%n.pdf",           "-",                "stdin.pdf"},
    {"FileCalledDash",  "%n.pdf",           "./-",              "-.pdf"},
    {"NoUtf8",          "%n.pdf",           "\xFF\xFE.plt",     "\xFF\xFE.pdf"},
    {"Umlauts",         "%n.pdf",           "\xC3\xA4.plt",     "\xC3\xA4.pdf"},
    {"Blanks",          "%n.pdf",           " a b .plt",        " a b .pdf"},
};
// clang-format on

class OutputName : public testing::TestWithParam<NameRow> {};

TEST_P(OutputName, ComesOfThePatternAndTheSource) {
    EXPECT_EQ(outputName(GetParam().pattern, GetParam().source).toStdString(), GetParam().output);
}

INSTANTIATE_TEST_SUITE_P(Rows, OutputName, testing::ValuesIn(NAME_ROWS), byRowName);

struct PageRow : NamedRow {
    const char* pattern;
    int page;
    bool oneOfSeveral;
    const char* output;
};

// clang-format off
constexpr PageRow PAGE_ROWS[] = {
    {"OnlyOne",          "%n.pdf",     1,  false, "b.pdf"},
    {"FirstOfSeveral",   "%n.png",     1,  true,  "b-1.png"},
    {"TwelfthOfSeveral", "%n.png",     12, true,  "b-12.png"},
    {"Said",             "%n_%p.png",  2,  true,  "b_2.png"},
    {"SaidOfOne",        "%n_%p.png",  1,  false, "b_1.png"},
    {"PercentThenP",     "%n%%p.png",  3,  true,  "b%p-3.png"},
    {"InAFolderWithDot", "d.x/%n.svg", 2,  true,  "d.x/b-2.svg"},
};
// clang-format on

class OutputPage : public testing::TestWithParam<PageRow> {};

TEST_P(OutputPage, IsNamed) {
    const PageRow& row = GetParam();
    EXPECT_EQ(outputName(row.pattern, "b.plt", row.page, row.oneOfSeveral).toStdString(), row.output);
}

INSTANTIATE_TEST_SUITE_P(Rows, OutputPage, testing::ValuesIn(PAGE_ROWS), byRowName);

TEST(PagePattern, NamesPages) {
    EXPECT_TRUE(namesPages("%p.png"));
    EXPECT_TRUE(namesPages("%%%p.png"));
    EXPECT_FALSE(namesPages("%%p.png"));
    EXPECT_FALSE(namesPages("%n.png"));
}

struct PatternRow : NamedRow {
    const char* pattern;
    bool namesEach;
};

// clang-format off
constexpr PatternRow PATTERN_ROWS[] = {
    {"Nothing",         "",           false},
    {"NoName",          "n.pdf",      false},
    {"Name",            "%n.pdf",     true},
    {"PercentThenN",    "%%n.pdf",    false},
    {"PercentThenName", "%%%n.pdf",   true},
    {"LastCharacters",  "a%n",        true},
    {"CutOff",          "a%",         false},
    {"OtherLetter",     "%N%d.pdf",   false},
};
// clang-format on

class Pattern : public testing::TestWithParam<PatternRow> {};

TEST_P(Pattern, NamesEachSource) {
    EXPECT_EQ(namesEach(GetParam().pattern), GetParam().namesEach);
}

INSTANTIATE_TEST_SUITE_P(Rows, Pattern, testing::ValuesIn(PATTERN_ROWS), byRowName);

}  // namespace
}  // namespace qrvel
