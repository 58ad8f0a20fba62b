// Copying and formatting into buffers of a given size.
#include "trace/bounded_text.h"

#include <string>

#include "rows.h"

namespace {

// ---- copying --------------------------------------------------------------------------------------------------------

struct CopyRow : NamedRow {
    size_t size;
    const char* source;
    const char* expected;
};

// clang-format off
constexpr CopyRow COPIES[] = {
    {"Shorter",    8, "abc",      "abc"},
    {"Empty",      8, "",         ""},
    {"JustFits",   4, "abc",      "abc"},
    {"Cut",        4, "abcd",     "abc"},
    {"LongCut",    4, "abcdefgh", "abc"},
    {"Terminator", 1, "abc",      ""},
    {"NoRoom",     0, "abc",      "~~~~~~~"},
};
// clang-format on

class BoundedCopy : public testing::TestWithParam<CopyRow> {};

TEST_P(BoundedCopy, KeepsSizeAndTerminates) {
    char buffer[8] = "~~~~~~~";
    TRCCopyBounded(buffer, GetParam().size, GetParam().source);
    EXPECT_STREQ(buffer, GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(Rows, BoundedCopy, testing::ValuesIn(COPIES), byRowName);

// ---- formatting -----------------------------------------------------------------------------------------------------

struct FormatRow : NamedRow {
    size_t size;
    size_t length;  // of the formatted text
    bool copied;
};

// clang-format off
constexpr FormatRow FORMATS[] = {
    {"Nothing",          8,    0,    true},
    {"Shorter",          8,    7,    true},
    {"AsLongAsTheRoom",  8,    8,    false},
    {"Longer",           8,    9,    false},
    {"NoRoom",           0,    0,    false},
    {"LongestOfAll",     2000, 1023, true},
    {"AsLongAsTheArea",  2000, 1024, false},
    {"LongerThanTheArea",2000, 1025, false},
};
// clang-format on

class BoundedFormat : public testing::TestWithParam<FormatRow> {};

TEST_P(BoundedFormat, CopiesOnlyWhatFits) {
    const FormatRow& row = GetParam();
    const std::string text(row.length, 'x');
    std::string buffer(2048, '~');
    const int32_t length = TRCFormatBounded(row.size, buffer.data(), "%s", text.c_str());
    EXPECT_EQ(length, row.copied ? static_cast<int32_t>(row.length) : 0);
    const std::string expected = row.copied ? text + '\0' : "";
    EXPECT_EQ(buffer, expected + std::string(2048 - expected.size(), '~'));
}
INSTANTIATE_TEST_SUITE_P(Rows, BoundedFormat, testing::ValuesIn(FORMATS), byRowName);

}  // namespace
