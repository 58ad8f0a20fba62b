#include "qrvel/base/recent_files.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "scratch_folder.h"

namespace qrvel {

namespace {

class RecentFiles : public testing::Test {
  protected:
    RecentFiles() { setenv("XDG_STATE_HOME", std::filesystem::current_path().c_str(), 1); }
    ~RecentFiles() override { unsetenv("XDG_STATE_HOME"); }

    static std::string kept() {
        std::string text;
        for (const QByteArray& file : recentFiles()) {
            text += file.toStdString() + '|';
        }
        return text;
    }

    ScratchFolder folder;  // the current one
};

TEST_F(RecentFiles, AreNoneAtFirst) {
    EXPECT_EQ(kept(), "");
}

TEST_F(RecentFiles, ComeWithTheLastOneFirst) {
    for (const char* file : {"/a.plt", "/b\n%.plt", "/\xff\xe4.plt", "/a.plt"}) {
        keepRecentFile(file);
    }
    EXPECT_EQ(kept(), "/a.plt|/\xff\xe4.plt|/b\n%.plt|");
}

TEST_F(RecentFiles, AreTen) {
    for (int i = 0; i < 12; ++i) {
        keepRecentFile("/" + QByteArray::number(i));
    }
    EXPECT_EQ(recentFiles().size(), MOST_RECENT_FILES);
    EXPECT_EQ(kept(), "/11|/10|/9|/8|/7|/6|/5|/4|/3|/2|");
}

TEST_F(RecentFiles, PassOverWhatIsNoPath) {
    std::filesystem::create_directory("kelhpgl");
    folder.write("kelhpgl/recent", "nonsense\n\n/good.plt\n%00\n" + std::string(1000, 'x'));
    EXPECT_EQ(kept(), "/good.plt|");
}

TEST_F(RecentFiles, AreNotKeptWhereNothingCanBeWritten) {
    folder.write("kelhpgl", "a file in the folder's place");
    keepRecentFile("/a.plt");
    EXPECT_EQ(kept(), "");
}

}  // namespace

}  // namespace qrvel
