// The half of the platform that needs no window system.
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "platform/arguments.h"
#include "platform/log_file.h"
#include "platform/posix.h"
#include "platform/regular_file.h"

namespace {

namespace fs = std::filesystem;

// A folder of its own for each test.
class Files : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = testing::TempDir() + "kelXXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder_ = pattern;
    }
    void TearDown() override { fs::remove_all(folder_); }

    std::string path(const std::string& name) const { return (folder_ / name).string(); }

    std::string write(const std::string& name, const std::string& content) const {
        std::ofstream(path(name)) << content;
        return path(name);
    }

    HFILE open(const std::string& name, UINT style) { return posix::openFile(path(name).c_str(), &info_, style); }

    OFSTRUCT info_{};

  private:
    fs::path folder_;
};

std::string contentOf(const std::string& name) {
    std::ifstream file(name);
    return {std::istreambuf_iterator<char>(file), {}};
}

// ---- OpenFile -------------------------------------------------------------------------------------------------------

TEST_F(Files, CreatesAndWrites) {
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

TEST_F(Files, CreateEmptiesWhatItHasMade) {
    const std::string name = path("a.log");
    ASSERT_TRUE(canBeCreatedElsewhere(name));
    write("a.log", "by another process");
    if (getxattr(name.c_str(), "user.kelhpgl.log", nullptr, 0) < 0) GTEST_SKIP() << "no attributes here";
    EXPECT_EQ(posix::closeFile(open("a.log", OF_CREATE | OF_WRITE)), 0);
    EXPECT_EQ(contentOf(name), "");
}

TEST_F(Files, CreateTakesWhatIsEmpty) {
    write("a.log", "");
    EXPECT_EQ(posix::closeFile(open("a.log", OF_CREATE | OF_WRITE)), 0);
}

TEST_F(Files, CreateLeavesWhatItHasNotMade) {
    write("a.log", "a letter");
    EXPECT_EQ(open("a.log", OF_CREATE | OF_WRITE), HFILE_ERROR);
    EXPECT_EQ(info_.nErrCode, EEXIST);
    EXPECT_EQ(openLogFile(path("a.log").c_str()), nullptr);
    EXPECT_EQ(contentOf(path("a.log")), "a letter");
}

TEST_F(Files, NothingGoesThroughALink) {
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

TEST_F(Files, LogsAreStreams) {
    for (const char* text : {"first", "next"}) {
        std::FILE* log = openLogFile(path("a.log").c_str());
        ASSERT_NE(log, nullptr);
        std::fputs(text, log);
        std::fclose(log);
        EXPECT_EQ(contentOf(path("a.log")), text);
    }
}

TEST_F(Files, WriteWithoutCreateNeedsTheFile) {
    EXPECT_EQ(open("none", OF_WRITE), HFILE_ERROR);
    EXPECT_EQ(info_.nErrCode, ENOENT);
    EXPECT_FALSE(fs::exists(path("none")));
}

TEST_F(Files, TwoMayShare) {
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

TEST_F(Files, ExclusiveNeedsToBeTheOnlyOne) {
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

TEST_F(Files, CreateLeavesAnExclusiveFilesContent) {
    write("a.log", "mine");
    const HFILE alone = open("a.log", OF_WRITE | OF_SHARE_EXCLUSIVE);
    EXPECT_EQ(open("a.log", OF_CREATE | OF_WRITE), HFILE_ERROR);
    EXPECT_EQ(contentOf(path("a.log")), "mine");
    posix::closeFile(alone);
}

TEST_F(Files, ExistOnlyTests) {
    write("a.log", "x");
    const HFILE answer = open("a.log", OF_EXIST);
    EXPECT_GT(answer, 0);
    EXPECT_EQ(posix::closeFile(answer), HFILE_ERROR);  // nothing was open
    EXPECT_EQ(open("b.log", OF_EXIST), HFILE_ERROR);
    const HFILE alone = open("a.log", OF_WRITE | OF_SHARE_EXCLUSIVE);
    EXPECT_GT(open("a.log", OF_EXIST), 0);
    posix::closeFile(alone);
}

TEST_F(Files, ExistWithCreateTestsForRoom) {
    constexpr UINT style = OF_WRITE | OF_CREATE | OF_EXIST;
    EXPECT_GT(open("a.log", style), 0);
    EXPECT_FALSE(fs::exists(path("a.log")));
    write("a.log", "");
    EXPECT_EQ(open("a.log", style), HFILE_ERROR);
    EXPECT_EQ(open("none/a.log", style), HFILE_ERROR);
    EXPECT_EQ(open("a.log/b.log", style), HFILE_ERROR);
    EXPECT_EQ(posix::openFile("", nullptr, style), HFILE_ERROR);
}

TEST_F(Files, OnlyRegularFiles) {
    fs::create_directory(path("folder"));
    ASSERT_EQ(mkfifo(path("fifo").c_str(), 0600), 0);
    for (const UINT style : {OF_READ, OF_WRITE, OF_CREATE | OF_WRITE, OF_EXIST, OF_WRITE | OF_CREATE | OF_EXIST}) {
        EXPECT_EQ(open("folder", style), HFILE_ERROR) << style;
        EXPECT_EQ(open("fifo", style), HFILE_ERROR) << style;
        EXPECT_EQ(posix::openFile("/dev/null", &info_, style), HFILE_ERROR) << style;
    }
    EXPECT_TRUE(fs::exists(path("fifo")));
}

TEST_F(Files, PathIsCutInTheRecordOnly) {
    const std::string folder = path(std::string(150, 'd'));
    fs::create_directory(folder);
    const std::string name = folder + "/a.log";
    const HFILE file = posix::openFile(name.c_str(), &info_, OF_CREATE | OF_WRITE);
    EXPECT_GT(file, 0);
    posix::closeFile(file);
    EXPECT_TRUE(fs::exists(name));
    EXPECT_EQ(std::string(info_.szPathName), name.substr(0, OFS_MAXPATHNAME - 1));
}

TEST_F(Files, RecordIsOptionalAndNamesMayBeMissing) {
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

TEST_F(Files, StaysAboveTheStandardStreams) {
    const int file = openWithoutStandardStreams(write("a.log", "x"));
    EXPECT_GT(file, 2);
    EXPECT_LT(file, 255);
}

TEST_F(Files, WriteToAClosedFileFails) {
    EXPECT_EQ(posix::writeFile(HFILE_ERROR, "x", 1), static_cast<UINT>(HFILE_ERROR));
    EXPECT_EQ(posix::writeFile(HFILE_ERROR, "", 0), 0U);
}

// ---- openRegularFile ------------------------------------------------------------------------------------------------

TEST_F(Files, RegularFileIsRead) {
    std::FILE* file = openRegularFile(write("a.plt", "IN;").c_str());
    ASSERT_NE(file, nullptr);
    std::array<char, 8> bytes{};
    EXPECT_EQ(std::fread(bytes.data(), 1, bytes.size(), file), 3U);
    EXPECT_STREQ(bytes.data(), "IN;");
    std::fclose(file);
}

TEST_F(Files, OthersAreRefusedAtOnce) {
    ASSERT_EQ(mkfifo(path("fifo").c_str(), 0600), 0);
    EXPECT_EQ(openRegularFile(path("fifo").c_str()), nullptr);
    EXPECT_EQ(openRegularFile(path("").c_str()), nullptr);
    EXPECT_EQ(openRegularFile("/dev/null"), nullptr);
    EXPECT_EQ(openRegularFile(path("none").c_str()), nullptr);
}

// A fifo that is opened without waiting is there for its writer; one that is looked at is not.
TEST_F(Files, OthersAreNeverOpened) {
    ASSERT_EQ(mkfifo(path("fifo").c_str(), 0600), 0);
    std::atomic<bool> done{false};
    std::atomic<int> opened{0};
    std::thread writer([&] {
        while (!done) {
            const int file = open(path("fifo").c_str(), O_WRONLY | O_NONBLOCK);
            if (file >= 0) ++opened, close(file);
        }
    });
    for (int i = 0; i < 2000; ++i) {
        EXPECT_EQ(openRegularFile(path("fifo").c_str()), nullptr);
    }
    done = true;
    writer.join();
    EXPECT_EQ(opened, 0);
}

struct Guard final : FileGuard {
    bool mayOpen(const char* name, int descriptor, uint64_t bytes) override {
        asked = name;
        size = bytes;
        canBeRead = read(descriptor, nullptr, 0) == 0;
        return opens;
    }
    bool mayGoOn(uint64_t bytesRead) override {
        looks.push_back(bytesRead);
        return bytesRead < most;
    }

    bool opens = true;
    uint64_t most = UINT64_MAX;
    std::string asked;
    uint64_t size = 0;
    bool canBeRead = true;
    std::vector<uint64_t> looks;
};

class Guarded : public Files {
  protected:
    Guarded() { guardRegularFiles(&guard); }
    ~Guarded() override { guardRegularFiles(nullptr); }

    Guard guard;
};

TEST_F(Guarded, FilesAreOpenedWhenTheyMay) {
    const std::string file = write("a.plt", "IN;PU;");
    guard.opens = false;
    EXPECT_EQ(openRegularFile(file.c_str()), nullptr);
    EXPECT_EQ(guard.asked, file);
    EXPECT_EQ(guard.size, 6U);
    EXPECT_FALSE(guard.canBeRead);
}

TEST_F(Guarded, ReadingIsBrokenOff) {
    const std::string text(100000, 'x');
    guard.most = 50000;
    std::FILE* file = openRegularFile(write("a.plt", text).c_str());
    ASSERT_NE(file, nullptr);
    std::vector<char> bytes(8192);
    std::size_t count = 0;
    for (std::size_t step = 1; step > 0; count += step) {
        step = std::fread(bytes.data(), 1, bytes.size(), file);
    }
    EXPECT_NE(std::ferror(file), 0);
    EXPECT_GE(count, 50000U);
    EXPECT_LT(count, 60000U);
    EXPECT_EQ(guard.looks.front(), 0U);
    std::fclose(file);
}

// ---- environment ----------------------------------------------------------------------------------------------------

TEST(Environment, AnswersLengthNothingOrTheRoomNeeded) {
    std::array<char, 6> value{};
    setenv("KEL_TEST", "12345", 1);
    EXPECT_EQ(posix::environmentVariable("KEL_TEST", value.data(), 6), 5U);
    EXPECT_STREQ(value.data(), "12345");
    setenv("KEL_TEST", "123456", 1);
    EXPECT_EQ(posix::environmentVariable("KEL_TEST", value.data(), 6), 7U);
    EXPECT_STREQ(value.data(), "");
    EXPECT_EQ(posix::environmentVariable("KEL_TEST", nullptr, 0), 7U);
    unsetenv("KEL_TEST");
    EXPECT_EQ(posix::environmentVariable("KEL_TEST", value.data(), 6), 0U);
}

// ---- version and machine --------------------------------------------------------------------------------------------

TEST(System, IsOfTheNtFamily) {
    OSVERSIONINFOA info{};
    EXPECT_EQ(posix::versionInfo(&info), 0);  // its size was not filled in
    info.dwOSVersionInfoSize = sizeof info;
    EXPECT_EQ(posix::versionInfo(&info), 1);
    EXPECT_EQ(info.dwPlatformId, 2U);
    EXPECT_EQ(info.dwMajorVersion, 10U);
    EXPECT_EQ(info.dwMinorVersion, 0U);
}

TEST(System, KnowsTheMachine) {
    SYSTEM_INFO info{};
    posix::systemInfo(&info);
    EXPECT_GE(info.dwPageSize, 4096U);
    EXPECT_GE(info.dwNumberOfProcessors, 1U);
#if defined(__x86_64__)
    EXPECT_EQ(info.dwProcessorType, 8664U);
#endif
}

// ---- profile --------------------------------------------------------------------------------------------------------

// Puts LC_ALL back at its end.
class Profile : public testing::Test {
  protected:
    void SetUp() override { before_ = std::getenv("LC_ALL") != nullptr ? std::getenv("LC_ALL") : ""; }
    void TearDown() override { before_.empty() ? unsetenv("LC_ALL") : setenv("LC_ALL", before_.c_str(), 1); }

    static std::string value(const char* key) {
        std::array<char, 64> text{};
        posix::profileString("intl", key, "none", text.data(), text.size());
        return text.data();
    }

  private:
    std::string before_;
};

TEST_F(Profile, OfTheCLocale) {
    setenv("LC_ALL", "C", 1);
    EXPECT_EQ(value("sLanguage"), "none");
    EXPECT_EQ(value("sCountry"), "none");
    EXPECT_EQ(value("sShortDate"), "MM/dd/yy");
    EXPECT_EQ(value("sCurrency"), "none");
    EXPECT_EQ(value("sThousand"), "none");
    EXPECT_EQ(value("sDecimal"), ".");
    EXPECT_EQ(posix::profileInt("intl", "iCountry", 7), 7U);
}

TEST_F(Profile, OfALocaleThatIsNotInstalled) {
    setenv("LC_ALL", "xx_XX.UTF-8", 1);
    EXPECT_EQ(value("sDecimal"), ".");
}

TEST_F(Profile, OfGermany) {
    const locale_t german = newlocale(LC_ALL_MASK, "de_DE.UTF-8", nullptr);
    if (german == nullptr) GTEST_SKIP() << "no locale de_DE.UTF-8 here";
    freelocale(german);
    setenv("LC_ALL", "de_DE.UTF-8", 1);
    EXPECT_EQ(value("sLanguage"), "DEU");
    EXPECT_EQ(value("sCountry"), "Deutschland");
    EXPECT_EQ(value("sShortDate"), "dd.MM.yyyy");
    EXPECT_EQ(value("sCurrency"), "€");
    EXPECT_EQ(value("sThousand"), ".");
    EXPECT_EQ(value("sDecimal"), ",");
    EXPECT_EQ(posix::profileInt("intl", "iCountry", 0), 49U);
    EXPECT_STREQ(std::localeconv()->decimal_point, ".");  // the process's own locale stays
}

TEST_F(Profile, OtherSectionsAndKeysHaveNoValues) {
    std::array<char, 5> text{};
    EXPECT_EQ(posix::profileString("fonts", "sDecimal", "fallback", text.data(), text.size()), 4U);
    EXPECT_STREQ(text.data(), "fall");
    EXPECT_EQ(posix::profileString("intl", "sList", nullptr, text.data(), text.size()), 0U);
    EXPECT_STREQ(text.data(), "");
    EXPECT_EQ(posix::profileInt("fonts", "iCountry", 3), 3U);
}

// ---- modules --------------------------------------------------------------------------------------------------------

TEST(Modules, UnknownOnesAreNotFound) {
    EXPECT_EQ(posix::moduleHandle("KELNOSUCHMODULE"), nullptr);
    EXPECT_EQ(posix::loadLibrary("KELNOSUCHMODULE"), nullptr);
    EXPECT_EQ(posix::procAddress(nullptr, "main"), nullptr);
    EXPECT_EQ(posix::freeLibrary(nullptr), 0);
}

TEST(Modules, ProgramIsAModule) {
    const HMODULE program = posix::moduleHandle(nullptr);
    ASSERT_NE(program, nullptr);
    std::array<char, 4096> name{};
    const DWORD length = posix::moduleFileName(nullptr, name.data(), name.size());
    EXPECT_EQ(std::string(name.data()), fs::read_symlink("/proc/self/exe").string());
    EXPECT_EQ(length, std::string(name.data()).size());
    EXPECT_EQ(posix::moduleFileName(program, name.data(), 5), 4U);
    EXPECT_EQ(std::string(name.data()).size(), 4U);
    EXPECT_EQ(posix::moduleFileName(program, nullptr, 0), 0U);
}

TEST(Modules, LibraryHasNameAndEntries) {
    const auto library = static_cast<HMODULE>(dlopen("libc.so.6", RTLD_LAZY));
    ASSERT_NE(library, nullptr);
    std::array<char, 256> name{};
    posix::moduleFileName(library, name.data(), name.size());
    EXPECT_TRUE(std::string(name.data()).ends_with("/libc.so.6"));
    EXPECT_NE(posix::procAddress(library, "malloc"), nullptr);
    EXPECT_EQ(posix::procAddress(library, "KELNoSuchEntry"), nullptr);
    EXPECT_EQ(posix::freeLibrary(library), 1);
}

// ---- arguments ------------------------------------------------------------------------------------------------------

TEST(Arguments, AreKeptAsTheyAre) {
    const std::array<const char*, 2> values = {"kelhpgl", "a \"b\".plt"};
    setPlatformArguments(2, values.data());
    EXPECT_EQ(platformArguments().count, 2);
    EXPECT_STREQ(platformArguments().values[1], "a \"b\".plt");
    setPlatformArguments(0, nullptr);
}

}  // namespace
