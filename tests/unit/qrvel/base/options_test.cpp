// The toolkit's own options.
#include "qrvel/base/options.h"

#include <gtest/gtest.h>

#include "platform/arguments.h"
#include "rows.h"

namespace qrvel {
namespace {

using Words = std::vector<const char*>;

Options read(Words words) {
    words.insert(words.begin(), "kelhpgl");
    setPlatformArguments(static_cast<int>(words.size()), words.data());
    return readOptions();
}

TEST(ReadOptions, TakesFilesInTheirOrder) {
    const Options options = read({"a.plt", "-", "--", "-", "--watch"});
    EXPECT_EQ(options.sources, (QByteArrayList{"a.plt", "-", "./-", "--watch"}));
    EXPECT_FALSE(options.watch);
}

TEST(ReadOptions, TakesValues) {
    const Options options =
        read({"--picture", "a.png", "--size", "30x40", "--page", "3", "--as-is", "-I=12", "-p=34", "a"});
    EXPECT_EQ(options.picture, "a.png");
    EXPECT_EQ(options.pictureWidth, 30);
    EXPECT_EQ(options.pictureHeight, 40);
    EXPECT_EQ(options.page, 3);
    EXPECT_TRUE(options.asIs);
    EXPECT_EQ(options.notifyId, 12U);
    EXPECT_EQ(options.notifyWindow, 34U);
}

TEST(ReadOptions, KnowsAPageFromAPaper) {
    const Options options = read({"--print-to", "%n.pdf", "--page", "A3", "--page", "2", "--landscape", "a", "b"});
    EXPECT_EQ(options.paper.width, 297);
    EXPECT_EQ(options.page, 2);
    EXPECT_TRUE(options.landscape);
}

TEST(ReadOptions, MakesAPaperOfASizeInPixels) {
    const Options options = read({"--print-to", "a.png", "--dpi", "254", "--size", "1000x2000", "a"});
    EXPECT_DOUBLE_EQ(options.paper.width, 100);
    EXPECT_DOUBLE_EQ(options.paper.height, 200);
}

struct WrongRow : NamedRow {
    Words words;
    const char* said;
};

class WrongOptions : public testing::TestWithParam<WrongRow> {};

TEST_P(WrongOptions, EndTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(read(GetParam().words), testing::ExitedWithCode(2), GetParam().said);
}

const WrongRow WRONG_ROWS[] = {
    {"Unknown", {"--unknown"}, "unknown option: --unknown"},
    {"ValueMissing", {"--dpi"}, "a value is missing behind: --dpi"},
    {"NoPng", {"--picture", "a.plt"}, "no name that ends with .png: a.plt"},
    {"NoSize", {"--size", "10"}, "no size: 10"},
    {"SizeOfNothing", {"--size", "0x9"}, "no size: 0x9"},
    {"PageNought", {"--page", "0"}, "pages are counted from 1: 0"},
    {"NoFormat", {"--print-to", "a.gif", "a"}, "no name that ends with .pdf, .svg or .png: a.gif"},
    {"NothingToPrint", {"--print-to", "a.pdf", "--watch"}, "goes with files alone: --print-to"},
    {"OneNameForTwo", {"--print-to", "a.pdf", "a", "b"}, "several files need a %n in the name: a.pdf"},
    {"NoDescriptor", {"--channel-fd", "99"}, "no open descriptor: 99"},
    {"NoName", {"--channel", "../a"}, "no channel name: ../a"},
    {"ControlCharacters", {"--\x1b[m"}, "unknown option: --.\\[m"},
};

INSTANTIATE_TEST_SUITE_P(Rows, WrongOptions, testing::ValuesIn(WRONG_ROWS), byRowName);

}  // namespace
}  // namespace qrvel
