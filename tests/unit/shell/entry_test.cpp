// The command line as the process's entry takes it apart.
#include "shell/entry.h"

#include "failing_allocator.h"
#include "picture_text.h"
#include "rows.h"

namespace {

struct SplitRow : NamedRow {
    const char* line;
    std::vector<std::string> elements;  // behind the module's name
};

// clang-format off
const SplitRow SPLIT_ROWS[] = {
    {"OneWord",          "a.plt",               {"a.plt"}},
    {"TwoWords",         "a b",                 {"a", "b"}},
    {"QuotedPair",       "a \"b c\"",           {"a", "b c"}},
    {"QuotedFirst",      "\"a b\" c",           {"a b", "c"}},
    {"TwoBlanks",        "a  b",                {"a", "", "b"}},
    {"Nothing",          "",                    {""}},
    {"QuoteInsideWord",  "x\"b c\"",            {"b c"}},
    {"BehindTheQuote",   "\"b c\"x y",          {"b c", "y"}},
    {"EmptyQuotes",      "\"\" b",              {"", "b"}},
    {"TabIsNoBlank",     "a\tb",                {"a\tb"}},
    {"Options",          "-I=12 -p=345",        {"-I=12", "-p=345"}},
};
// clang-format on

class CommandLine : public testing::TestWithParam<SplitRow> {};

TEST_P(CommandLine, IsSplit) {
    const FreshViewer viewer;
    HPGLArguments arguments = HPGLsplitCommandLine(GetParam().line);
    ASSERT_EQ(static_cast<size_t>(arguments.count), GetParam().elements.size() + 1);
    EXPECT_NE(std::string(arguments.values[0]).find("unit_shell"), std::string::npos);
    for (size_t i = 0; i < GetParam().elements.size(); ++i) {
        EXPECT_EQ(arguments.values[i + 1], GetParam().elements[i]);
    }
    HPGLfreeArguments(&arguments);
}

INSTANTIATE_TEST_SUITE_P(Rows, CommandLine, testing::ValuesIn(SPLIT_ROWS), byRowName);

// An unclosed quote swallows the end that would have been counted.
TEST(CommandLineEnd, UnclosedQuoteIsHarmless) {
    const FreshViewer viewer;
    HPGLArguments arguments = HPGLsplitCommandLine("a \"b c");
    ASSERT_EQ(arguments.count, 2);
    EXPECT_STREQ(arguments.values[1], "a");
    HPGLfreeArguments(&arguments);
}

TEST(CommandLineEnd, LackOfMemoryEndsTheProcess) {
    const FreshViewer viewer;
    const auto splitFailing = [](int allocation) {
        failing_allocator::failAfter(allocation);
        HPGLsplitCommandLine("a b");
    };
    EXPECT_EXIT(splitFailing(1), testing::ExitedWithCode(255), "^$");
}

}  // namespace
