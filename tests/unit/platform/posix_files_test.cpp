// Files as OpenFile and its like treat them, and logs.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cstdio>

#include "files_fixture.h"
#include "platform/log_file.h"
#include "platform/posix.h"

namespace {

namespace fs = std::filesystem;

class PosixFiles : public Files {
  protected:
    HFILE open(const std::string& name, UINT style) { return posix::openFile(path(name).c_str(), &info_, style); }

    OFSTRUCT info_{};
};

TEST_F(PosixFiles, CreatesAndWrites) {
    const HFILE file = open("a.log", OF_CREATE | OF_WRITE);
    ASSERT_GT(file, 0);
    EXPECT_EQ(posix::writeFile(file, "line\r\n", 6), 6U);
    EXPECT_EQ(posix::closeFile(file), 0);
    EXPECT_EQ(contentOf(path("a.log")), "line\r\n");
    EXPECT_EQ(info_.nErrCode, 0);
    EXPECT_EQ(info_.cBytes, sizeof(OFSTRUCT));
}

// In a process of its own, which has not made the file.
bool canBeCreatedElsewhere(const std::string& name) {
    const pid_t child = fork();
    if (child == 0) _exit(posix::openFile(name.c_str(), nullptr, OF_CREATE | OF_WRITE) != HFILE_ERROR ? 0 : 1);
    int status = 0;
    waitpid(child, &status, 0);
    return WEXITSTATUS(status) == 0;
}

TEST_F(PosixFiles, CreateEmptiesWhatItHasMade) {
    const std::string name = path("a.log");
    ASSERT_TRUE(canBeCreatedElsewhere(name));
    write("a.log", "by another process");
    if (getxattr(name.c_str(), "user.kelhpgl.log", nullptr, 0) < 0) GTEST_SKIP() << "no attributes here";
    EXPECT_EQ(posix::closeFile(open("a.log", OF_CREATE | OF_WRITE)), 0);
    EXPECT_EQ(contentOf(name), "");
}

TEST_F(PosixFiles, CreateTakesWhatIsEmpty) {
    write("a.log", "");
    EXPECT_EQ(posix::closeFile(open("a.log", OF_CREATE | OF_WRITE)), 0);
}

TEST_F(PosixFiles, CreateLeavesWhatItHasNotMade) {
    write("a.log", "a letter");
    EXPECT_EQ(open("a.log", OF_CREATE | OF_WRITE), HFILE_ERROR);
    EXPECT_EQ(info_.nErrCode, EEXIST);
    EXPECT_EQ(openLogFile(path("a.log").c_str()), nullptr);
    EXPECT_EQ(contentOf(path("a.log")), "a letter");
}

TEST_F(PosixFiles, NothingGoesThroughALink) {
    write("letter", "");
    fs::create_symlink(path("letter"), path("a.log"));
    fs::create_symlink(path("nowhere"), path("b.log"));
    for (const char* name : {"a.log", "b.log"}) {
        for (const UINT style : {OF_WRITE, OF_CREATE | OF_WRITE, OF_EXIST, OF_WRITE | OF_CREATE | OF_EXIST}) {
            EXPECT_EQ(open(name, style), HFILE_ERROR) << name << style;
        }
        EXPECT_EQ(openLogFile(path(name).c_str()), nullptr);
    }
    EXPECT_FALSE(fs::exists(path("nowhere")));
}

TEST_F(PosixFiles, LogsAreStreams) {
    for (const char* text : {"first", "next"}) {
        std::FILE* log = openLogFile(path("a.log").c_str());
        ASSERT_NE(log, nullptr);
        std::fputs(text, log);
        std::fclose(log);
        EXPECT_EQ(contentOf(path("a.log")), text);
    }
}

TEST_F(PosixFiles, WriteWithoutCreateNeedsTheFile) {
    EXPECT_EQ(open("none", OF_WRITE), HFILE_ERROR);
    EXPECT_EQ(info_.nErrCode, ENOENT);
    EXPECT_FALSE(fs::exists(path("none")));
}

TEST_F(PosixFiles, TwoMayShare) {
    write("a.log", "x");
    const HFILE first = open("a.log", OF_WRITE);
    const HFILE second = open("a.log", OF_WRITE);
    EXPECT_GT(first, 0);
    EXPECT_GT(second, 0);
    EXPECT_NE(first, second);
    for (const HFILE file : {first, second}) {
        EXPECT_EQ(posix::writeFile(file, "y", 1), 1U);
        EXPECT_EQ(contentOf(path("a.log")), "y");
        EXPECT_EQ(posix::closeFile(file), 0);
        write("a.log", "x");
    }
}

TEST_F(PosixFiles, ExclusiveNeedsToBeTheOnlyOne) {
    write("a.log", "x");
    const HFILE shared = open("a.log", OF_WRITE);
    EXPECT_EQ(open("a.log", OF_WRITE | OF_SHARE_EXCLUSIVE), HFILE_ERROR);
    EXPECT_EQ(info_.nErrCode, EWOULDBLOCK);
    posix::closeFile(shared);
    const HFILE alone = open("a.log", OF_WRITE | OF_SHARE_EXCLUSIVE);
    EXPECT_GT(alone, 0);
    EXPECT_EQ(open("a.log", OF_READ), HFILE_ERROR);
    posix::closeFile(alone);
}

TEST_F(PosixFiles, CreateLeavesAnExclusiveFilesContent) {
    write("a.log", "mine");
    const HFILE alone = open("a.log", OF_WRITE | OF_SHARE_EXCLUSIVE);
    EXPECT_EQ(open("a.log", OF_CREATE | OF_WRITE), HFILE_ERROR);
    EXPECT_EQ(contentOf(path("a.log")), "mine");
    posix::closeFile(alone);
}

TEST_F(PosixFiles, ExistOnlyTests) {
    write("a.log", "x");
    const HFILE answer = open("a.log", OF_EXIST);
    EXPECT_GT(answer, 0);
    EXPECT_EQ(posix::closeFile(answer), HFILE_ERROR);  // nothing was open
    EXPECT_EQ(open("b.log", OF_EXIST), HFILE_ERROR);
    const HFILE alone = open("a.log", OF_WRITE | OF_SHARE_EXCLUSIVE);
    EXPECT_GT(open("a.log", OF_EXIST), 0);
    posix::closeFile(alone);
}

TEST_F(PosixFiles, ExistWithCreateTestsForRoom) {
    constexpr UINT style = OF_WRITE | OF_CREATE | OF_EXIST;
    EXPECT_GT(open("a.log", style), 0);
    EXPECT_FALSE(fs::exists(path("a.log")));
    write("a.log", "");
    EXPECT_EQ(open("a.log", style), HFILE_ERROR);
    EXPECT_EQ(open("none/a.log", style), HFILE_ERROR);
    EXPECT_EQ(open("a.log/b.log", style), HFILE_ERROR);
    EXPECT_EQ(posix::openFile("", nullptr, style), HFILE_ERROR);
}

TEST_F(PosixFiles, OnlyRegularFiles) {
    fs::create_directory(path("folder"));
    ASSERT_EQ(mkfifo(path("fifo").c_str(), 0600), 0);
    for (const UINT style : {OF_READ, OF_WRITE, OF_CREATE | OF_WRITE, OF_EXIST, OF_WRITE | OF_CREATE | OF_EXIST}) {
        EXPECT_EQ(open("folder", style), HFILE_ERROR) << style;
        EXPECT_EQ(open("fifo", style), HFILE_ERROR) << style;
        EXPECT_EQ(posix::openFile("/dev/null", &info_, style), HFILE_ERROR) << style;
    }
    EXPECT_TRUE(fs::exists(path("fifo")));
}

TEST_F(PosixFiles, PathIsCutInTheRecordOnly) {
    const std::string folder = path(std::string(150, 'd'));
    fs::create_directory(folder);
    const std::string name = folder + "/a.log";
    const HFILE file = posix::openFile(name.c_str(), &info_, OF_CREATE | OF_WRITE);
    EXPECT_GT(file, 0);
    posix::closeFile(file);
    EXPECT_TRUE(fs::exists(name));
    EXPECT_EQ(std::string(info_.szPathName), name.substr(0, OFS_MAXPATHNAME - 1));
}

TEST_F(PosixFiles, RecordIsOptionalAndNamesMayBeMissing) {
    EXPECT_EQ(posix::openFile("", nullptr, OF_READ), HFILE_ERROR);
    EXPECT_EQ(posix::openFile(nullptr, &info_, OF_READ), HFILE_ERROR);
    EXPECT_EQ(info_.nErrCode, ENOENT);
}

// A process without standard streams would otherwise get 0, which is no handle.
int openWithoutStandardStreams(const std::string& name) {
    const pid_t child = fork();
    if (child == 0) {
        for (const int stream : {0, 1, 2}) {
            close(stream);
        }
        _exit(posix::openFile(name.c_str(), nullptr, OF_WRITE));
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WEXITSTATUS(status);
}

TEST_F(PosixFiles, StaysAboveTheStandardStreams) {
    const int file = openWithoutStandardStreams(write("a.log", "x"));
    EXPECT_GT(file, 2);
    EXPECT_LT(file, 255);
}

TEST_F(PosixFiles, WriteToAClosedFileFails) {
    EXPECT_EQ(posix::writeFile(HFILE_ERROR, "x", 1), static_cast<UINT>(HFILE_ERROR));
    EXPECT_EQ(posix::writeFile(HFILE_ERROR, "", 0), 0U);
}

}  // namespace
