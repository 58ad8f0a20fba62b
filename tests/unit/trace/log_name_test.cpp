// The name of a log file: six characters, two digits, the first that can be written.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "picture_text.h"
#include "recorder/recorder.h"
#include "rows.h"
#include "scratch_folder.h"
#include "trace/trace.h"

namespace {

struct LogNameRow : NamedRow {
    const char* base;
    const char* expected;
};

// clang-format off
constexpr LogNameRow NAMES[] = {
    {"Six",            "dev_hp",       "dev_hp00.log"},
    {"Longer",         "developer",    "develo00.log"},
    {"Shorter",        "ab",           "ab____00.log"},
    {"ShorterWithDot", "ab.cd",        "ab____00.log"},
    {"DotBehindSix",   "abcdef.gh",    "abcdef00.log"},
    {"DotBehindEight", "abcdefgh.ij",  "abcdef00.log"},
    {"SecondDot",      "a.b.c",        "a_____00.log"},
    {"OnlyDot",        ".cd",          "______00.log"},
    {"Nothing",        "",             "______00.log"},
    {"Blanks",         "a b",          "a b___00.log"},
};
// clang-format on

class LogName : public testing::TestWithParam<LogNameRow> {
  protected:
    const FreshViewer viewer;
    const ScratchFolder folder;
    char name[64] = "";
};

TEST_P(LogName, TakesSixCharactersOfTheBase) {
    EXPECT_EQ(TRCMakeLogName(name, sizeof name, GetParam().base), 1);
    EXPECT_STREQ(name, GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(Rows, LogName, testing::ValuesIn(NAMES), byRowName);

class LogNameNumber : public LogName {};

// The device under test sees the holder as it would see another process: a lock belongs to an open file.
class Holder {
  public:
    explicit Holder(const char* name) : file_(open(name, O_RDWR | O_CREAT, 0600)) { flock(file_, LOCK_EX); }
    ~Holder() { close(file_); }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;

  private:
    int file_;
};

TEST_F(LogNameNumber, KeepsAFileThatIsThere) {
    ScratchFolder::write("dev_hp00.log", "kept");
    EXPECT_EQ(TRCMakeLogName(name, sizeof name, "dev_hp"), 1);
    EXPECT_STREQ(name, "dev_hp00.log");
    EXPECT_EQ(ScratchFolder::read(name), "kept");
}

TEST_F(LogNameNumber, LeavesNoTraceInTheFolder) {
    const std::filesystem::file_time_type before = {};
    std::filesystem::last_write_time(".", before);
    EXPECT_EQ(TRCMakeLogName(name, sizeof name, "dev_hp"), 1);
    EXPECT_TRUE(std::filesystem::is_empty("."));
    EXPECT_EQ(std::filesystem::last_write_time("."), before);
}

TEST_F(LogNameNumber, GoesOnBehindLinks) {
    ScratchFolder::write("letter", "kept");
    std::filesystem::create_symlink("letter", "dev_hp00.log");
    std::filesystem::create_symlink("nowhere", "dev_hp01.log");
    EXPECT_EQ(TRCMakeLogName(name, sizeof name, "dev_hp"), 1);
    EXPECT_STREQ(name, "dev_hp02.log");
    EXPECT_EQ(ScratchFolder::read("letter"), "kept");
    EXPECT_FALSE(std::filesystem::exists("nowhere"));
}

TEST_F(LogNameNumber, GoesOnBehindAFifo) {
    mkfifo("dev_hp00.log", 0600);
    EXPECT_EQ(TRCMakeLogName(name, sizeof name, "dev_hp"), 1);
    EXPECT_STREQ(name, "dev_hp01.log");
}

TEST_F(LogNameNumber, GoesOnBehindAFileThatIsHeld) {
    const Holder zero("dev_hp00.log");
    EXPECT_EQ(TRCMakeLogName(name, sizeof name, "dev_hp"), 1);
    EXPECT_STREQ(name, "dev_hp01.log");
}

TEST_F(LogNameNumber, GoesOnBehindAFolder) {
    std::filesystem::create_directory("dev_hp00.log");
    EXPECT_EQ(TRCMakeLogName(name, sizeof name, "dev_hp"), 1);
    EXPECT_STREQ(name, "dev_hp01.log");
}

TEST_F(LogNameNumber, TriesTenNames) {
    for (char digit = '0'; digit < '9'; ++digit)
        recorder::script.failing.insert(std::string("OpenFile dev_hp0") + digit + ".log");
    EXPECT_EQ(TRCMakeLogName(name, sizeof name, "dev_hp"), 1);
    EXPECT_STREQ(name, "dev_hp09.log");
    recorder::script.failing = {"OpenFile"};
    recorder::calls.clear();
    EXPECT_EQ(TRCMakeLogName(name, sizeof name, "dev_hp"), 0);
    EXPECT_STREQ(name, "dev_hp09.log");
    EXPECT_EQ(std::ranges::count(recorder::calls, '\n'), 20);
}

TEST_F(LogNameNumber, AsksWhetherItExistsThenForWriting) {
    ScratchFolder::write("old___00.log", "");
    TRCMakeLogName(name, sizeof name, "old");
    EXPECT_EQ(recorder::calls.substr(0, recorder::calls.find("_lclose")),
              "OpenFile \"old___00.log\" 16384\n"
              "OpenFile \"old___00.log\" 17\n");
    recorder::calls.clear();
    TRCMakeLogName(name, sizeof name, "new");
    EXPECT_EQ(recorder::calls,
              "OpenFile \"new___00.log\" 16384\n"
              "OpenFile \"new___00.log\" 20481\n");  // whether it could be made: a name costs nothing
}

}  // namespace
