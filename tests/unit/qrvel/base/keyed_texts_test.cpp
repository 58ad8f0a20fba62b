#include "qrvel/base/keyed_texts.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "qrvel/base/text_buffer.h"
#include "scratch_folder.h"

namespace qrvel {
namespace {

// Of a file of `size` bytes that ends with the key's value.
QByteArray lastValueOf(std::size_t size) {
    const ScratchFolder folder;
    const std::string last = "\nKEY=value";
    folder.write("texts", '#' + std::string(size - last.size() - 1, 'x') + last);
    return readKeyedTexts("texts").value_or(KeyedTexts()).value("KEY");
}

TEST(KeyedTextsFile, IsReadUpToOneMebibyte) {
    EXPECT_EQ(lastValueOf(1048576), "value");
    EXPECT_EQ(lastValueOf(1048577), "valu");
    EXPECT_EQ(lastValueOf(1048576 + 100), "");
}

TEST(KeyedTextsFile, IsAnOrdinaryOne) {
    const ScratchFolder folder;
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    ASSERT_EQ(mkdir("folder", 0700), 0);
    for (const char* name : {"pipe", "folder", "nothing", "/dev/zero"}) {
        QString reason;
        EXPECT_FALSE(readKeyedTexts(name, &reason)) << name;
        EXPECT_EQ(reason, "no ordinary file") << name;
    }
}

TEST(KeyedTexts, BeginBehindAByteOrderMark) {
    EXPECT_EQ(parseKeyedTexts("\xEF\xBB\xBF"
                              "KEY=value\n")
                  .value("KEY"),
              "value");
    EXPECT_EQ(parseKeyedTexts("KEY= value \r\n").value("KEY"), " value ");
}

// With the terminators it takes 128 bytes: the viewer's buffer for its settings.
TEST(TextBuffer, TakesWhatFits) {
    char buffer[128];
    TextBuffer texts(buffer, sizeof buffer);
    EXPECT_STREQ(texts.add("german"), "german");
    EXPECT_EQ(texts.add(QByteArray(121, 'x')), nullptr);
    EXPECT_STREQ(texts.add(QByteArray(120, 'x')), std::string(120, 'x').c_str());
    EXPECT_EQ(texts.add(""), nullptr);
}

}  // namespace
}  // namespace qrvel
