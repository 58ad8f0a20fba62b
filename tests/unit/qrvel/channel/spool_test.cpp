#include "qrvel/channel/spool.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <string>

namespace qrvel {
namespace {

constexpr qint64 MOST_IN_MEMORY = 16777216;  // 16 MiB

std::ptrdiff_t openFiles() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return std::distance(begin(files), end(files));
}

// Fills a spool in uneven pieces and answers how many files that has opened.
std::ptrdiff_t filesFor(qint64 size) {
    const std::ptrdiff_t before = openFiles();
    const std::string piece(65521, 'x');
    Spool spool;
    std::string all;
    for (qint64 left = size; left > 0; left -= static_cast<qint64>(piece.size())) {
        const qint64 count = std::min(left, static_cast<qint64>(piece.size()));
        all.append(piece, 0, static_cast<std::size_t>(count)).back() = static_cast<char>(left);
        EXPECT_TRUE(spool.append(all.data() + all.size() - count, count));
    }
    EXPECT_TRUE(spool.finish());
    EXPECT_TRUE(spool.bytes() == all);
    return openFiles() - before;
}

TEST(Spool, KeepsSixteenMebibytesInMemory) {
    EXPECT_EQ(filesFor(MOST_IN_MEMORY), 0);
}

TEST(Spool, KeepsMoreInOneFile) {
    EXPECT_EQ(filesFor(MOST_IN_MEMORY + 1), 1);
    EXPECT_EQ(filesFor(2 * MOST_IN_MEMORY), 1);
}

TEST(Spool, KeepsNothingToo) {
    EXPECT_EQ(filesFor(0), 0);
}

// A file that may not grow is a full folder: the first bytes of a write find room, the others do not.
TEST(Spool, SaysWhyItsFileCannotGrow) {
    rlimit before = {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlim_t most = 2 * MOST_IN_MEMORY - 1000;
    const rlimit small = {.rlim_cur = most, .rlim_max = before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string half(MOST_IN_MEMORY, 'x');
    Spool spool;
    EXPECT_TRUE(spool.append(half.data(), MOST_IN_MEMORY));
    EXPECT_FALSE(spool.append(half.data(), MOST_IN_MEMORY));
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(spool.failure(), std::strerror(EFBIG));
}

// The bytes are not looked at: there is no room for them.
TEST(Spool, RefusesMoreThanHalfOfTheMemory) {
    const qint64 half = static_cast<qint64>(sysconf(_SC_PHYS_PAGES)) * sysconf(_SC_PAGESIZE) / 2;
    Spool spool;
    EXPECT_TRUE(spool.append("IN;", 3));
    EXPECT_FALSE(spool.append(nullptr, half - 2));
    EXPECT_EQ(spool.failure(), "more data than half of the memory");
}

}  // namespace
}  // namespace qrvel
