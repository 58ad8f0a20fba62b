#include "system/whole_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// A folder of its own for each test, with a file that is there already.
class WholeFiles : public testing::Test {
  protected:
    WholeFiles() {
        std::string made = fs::temp_directory_path() / "whole-XXXXXX";
        folder = mkdtemp(made.data());
        std::ofstream(folder / "old") << "old";
    }
    ~WholeFiles() override { fs::remove_all(folder); }

    long entries() const { return std::distance(fs::directory_iterator(folder), fs::directory_iterator()); }

    fs::path folder;
};

TEST_F(WholeFiles, AreMade) {
    EXPECT_EQ(kelsystem::writeWhole(folder / "new", "bytes"), "");
    EXPECT_EQ(contentOf(folder / "new"), "bytes");
    EXPECT_EQ(entries(), 2);
}

TEST_F(WholeFiles, TakeThePlaceOfOthersWithTheirPermissions) {
    fs::permissions(folder / "old", fs::perms(0640));
    EXPECT_EQ(kelsystem::writeWhole(folder / "old", "bytes"), "");
    EXPECT_EQ(contentOf(folder / "old"), "bytes");
    EXPECT_EQ(fs::status(folder / "old").permissions(), fs::perms(0640));
    EXPECT_EQ(entries(), 1);
}

TEST_F(WholeFiles, HaveNoNameBeforeTheyAreWhole) {
    kelsystem::WholeFile file(folder / "old");
    ASSERT_EQ(file.problem(), "");
    ASSERT_EQ(write(file.descriptor(), "new", 3), 3);
    EXPECT_EQ(entries(), 1) << "this folder's file system has no unnamed files";
    EXPECT_EQ(contentOf(folder / "old"), "old");
    EXPECT_TRUE(file.finish());
    EXPECT_EQ(contentOf(folder / "old"), "new");
}

TEST_F(WholeFiles, LeaveNothingWithoutAnEnd) {
    { const kelsystem::WholeFile file(folder / "new"); }
    EXPECT_EQ(entries(), 1);
}

TEST_F(WholeFiles, AreWrittenBehindLinks) {
    fs::create_symlink("old", folder / "link");
    fs::create_symlink(folder / "link", folder / "another");
    EXPECT_EQ(kelsystem::writeWhole(folder / "another", "bytes"), "");
    EXPECT_EQ(contentOf(folder / "old"), "bytes");
    EXPECT_TRUE(fs::is_symlink(folder / "link") && fs::is_symlink(folder / "another"));
}

TEST_F(WholeFiles, AreMadeBehindLinksToNothing) {
    fs::create_symlink("missing", folder / "link");
    EXPECT_EQ(kelsystem::writeWhole(folder / "link", "bytes"), "");
    EXPECT_EQ(contentOf(folder / "missing"), "bytes");
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
}

TEST_F(WholeFiles, AreNotWrittenBehindLinksInACircle) {
    fs::create_symlink("b", folder / "a");
    fs::create_symlink("a", folder / "b");
    EXPECT_NE(kelsystem::writeWhole(folder / "a", "bytes"), "");
    EXPECT_EQ(entries(), 3);
}

TEST_F(WholeFiles, AreOrdinaryFilesAlone) {
    ASSERT_EQ(mkfifo((folder / "fifo").c_str(), 0600), 0);
    for (const fs::path& file : {folder / "fifo", folder, fs::path("/dev/null"), folder / "none" / "file"}) {
        EXPECT_NE(kelsystem::obstacleTo(file), "") << file;
        EXPECT_NE(kelsystem::writeWhole(file, "bytes"), "") << file;
    }
}

}  // namespace
