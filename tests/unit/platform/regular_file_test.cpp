// Files whose name came with the data.
#include "platform/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <thread>
#include <vector>

#include "files_fixture.h"

namespace {

using RegularFiles = Files;

TEST_F(RegularFiles, AreRead) {
    std::FILE* file = openRegularFile(write("a.plt", "IN;").c_str());
    ASSERT_NE(file, nullptr);
    std::array<char, 8> bytes{};
    EXPECT_EQ(std::fread(bytes.data(), 1, bytes.size(), file), 3U);
    EXPECT_STREQ(bytes.data(), "IN;");
    std::fclose(file);
}

TEST_F(RegularFiles, OthersAreRefusedAtOnce) {
    ASSERT_EQ(mkfifo(path("fifo").c_str(), 0600), 0);
    EXPECT_EQ(openRegularFile(path("fifo").c_str()), nullptr);
    EXPECT_EQ(openRegularFile(path("").c_str()), nullptr);
    EXPECT_EQ(openRegularFile("/dev/null"), nullptr);
    EXPECT_EQ(openRegularFile(path("none").c_str()), nullptr);
}

// A fifo that is opened without waiting is there for its writer; one that is looked at is not.
TEST_F(RegularFiles, OthersAreNeverOpened) {
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

}  // namespace
