#include "qrvel/channel/file_watch.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

#include "scratch_folder.h"

namespace qrvel {
namespace {

namespace fs = std::filesystem;

constexpr qint64 PATIENCE = 10000;  // milliseconds
// Longer than the time stamps of some file systems are apart.
constexpr std::chrono::milliseconds BETWEEN_LOOKS{15};
constexpr int LOOKS_TO_SEE = 3;  // in which a change is seen, were there one

class WatchedFiles : public testing::Test {
  protected:
    void SetUp() override { folder_.write("a.plt", "IN;"); }

    // One turn of the event loop, in which there may be a look.
    static void turn() { QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents); }

    // A timer beside the watch's ticks as often as that one looks, also on a loaded machine.
    static void letItLook() {
        int looks = 0;
        QTimer beside;
        QObject::connect(&beside, &QTimer::timeout, [&] { ++looks; });
        beside.start(BETWEEN_LOOKS);
        while (looks < LOOKS_TO_SEE) {
            turn();
        }
    }

    void expectChange(const std::string& names) {
        QElapsedTimer timer;
        for (timer.start(); changed_.size() < names.size() && !timer.hasExpired(PATIENCE);) {
            turn();
        }
        expectNoChange(names);
    }

    // But for those that were reported before.
    void expectNoChange(const std::string& names = "") {
        letItLook();
        EXPECT_EQ(changed_, names);
        changed_.clear();
    }

    static void write(const char* name, const std::string& text) { std::ofstream(name) << text; }

    int argumentCount_ = 1;
    char name_[5] = "test";
    char* arguments_[2] = {name_, nullptr};
    QCoreApplication application_{argumentCount_, arguments_};
    ScratchFolder folder_;
    std::string changed_;
    FileWatch watch_{BETWEEN_LOOKS, [this](const QByteArray& name) { changed_ += name + ' '; }};
};

TEST_F(WatchedFiles, AreNotReportedAsTheyAre) {
    watch_.add("a.plt");
    expectNoChange();
}

TEST_F(WatchedFiles, MayBeWrittenInPlace) {
    watch_.add("a.plt");
    for (const char* text : {"IN;SP1;", "IN;SP2;", "IN;"}) {
        write("a.plt", text);
        expectChange("a.plt ");
    }
}

TEST_F(WatchedFiles, MayBeReplaced) {
    watch_.add("a.plt");
    for (const char* text : {"IN;SP1;", "IN;SP1;", "IN;SP2;"}) {
        write("new.plt", text);
        fs::rename("new.plt", "a.plt");
        expectChange("a.plt ");
    }
}

TEST_F(WatchedFiles, AreSeenBesideACopyThatWasKept) {
    watch_.add("a.plt");
    fs::create_hard_link("a.plt", "a.bak");
    write("new.plt", "IN;SP1;");
    fs::rename("new.plt", "a.plt");
    expectChange("a.plt ");
    write("a.plt", "IN;SP2;");
    expectChange("a.plt ");
}

TEST_F(WatchedFiles, MayGoAndComeBack) {
    watch_.add("a.plt");
    fs::remove("a.plt");
    expectNoChange();
    write("a.plt", "IN;SP1;");
    expectChange("a.plt ");
}

// As by a program that opens its output long before it writes.
TEST_F(WatchedFiles, AreNotReportedWhileTheyAreEmpty) {
    watch_.add("a.plt");
    write("a.plt", "");
    expectNoChange();
    write("a.plt", "IN;SP1;");
    expectChange("a.plt ");
}

TEST_F(WatchedFiles, AreNoPipes) {
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    watch_.add("pipe");
    fs::last_write_time("pipe", fs::file_time_type::clock::now());
    expectNoChange();
}

TEST_F(WatchedFiles, MayComeLaterWithTheirFolder) {
    watch_.add("folder/b.plt");
    expectNoChange();
    fs::create_directory("folder");
    write("folder/b.plt", "IN;");
    expectChange("folder/b.plt ");
    fs::remove_all("folder");
    expectNoChange();
    fs::create_directory("folder");
    write("folder/b.plt", "IN;");
    expectChange("folder/b.plt ");
}

TEST_F(WatchedFiles, AreReportedWhenNobodyWritesAnyMore) {
    watch_.add("a.plt");
    std::ofstream file("a.plt");
    for (int i = 0; i < 20; ++i) {
        file << "PU;" << std::flush;
        turn();
        EXPECT_EQ(changed_, "");
    }
    expectChange("a.plt ");
}

TEST_F(WatchedFiles, MayBeNamesThatLeadElsewhere) {
    write("b.plt", "IN;SP2;");
    fs::create_symlink("a.plt", "latest.plt");
    watch_.add("latest.plt");
    write("a.plt", "IN;SP1;");
    expectChange("latest.plt ");
    fs::remove("latest.plt");
    fs::create_symlink("b.plt", "latest.plt");
    expectChange("latest.plt ");
}

TEST_F(WatchedFiles, AreToldApart) {
    write("\xE4.plt", "IN;");
    watch_.add("a.plt");
    watch_.add("\xE4.plt");
    write("other.plt", "IN;");
    expectNoChange();
    write("\xE4.plt", "IN;SP1;");
    expectChange("\xE4.plt ");
}

}  // namespace
}  // namespace qrvel
