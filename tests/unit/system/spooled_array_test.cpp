#include "system/spooled_array.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <string>

namespace {

using Numbers = kelsystem::SpooledArray<uint32_t>;

void add(Numbers& numbers, std::size_t upTo) {
    for (auto i = numbers.size(); i < upTo; ++i) {
        numbers.push_back(static_cast<uint32_t>(i * i));
    }
}

void expectAll(const Numbers& numbers) {
    std::size_t wrong = 0;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (numbers.all()[i] != static_cast<uint32_t>(i * i)) ++wrong;
    }
    EXPECT_EQ(wrong, 0u);
}

TEST(SpooledArray, KeepsAllInTheirOrder) {
    for (const std::size_t count :
         {std::size_t{0}, std::size_t{1}, std::size_t{1024}, std::size_t{1025}, Numbers::MOST_IN_MEMORY,
          Numbers::MOST_IN_MEMORY + 1, 3 * Numbers::MOST_IN_MEMORY}) {
        Numbers numbers;
        add(numbers, count);
        EXPECT_EQ(numbers.size(), count);
        expectAll(numbers);
    }
}

TEST(SpooledArray, CanBeMovedAndCleared) {
    Numbers numbers;
    add(numbers, 2 * Numbers::MOST_IN_MEMORY);
    Numbers others = std::move(numbers);
    EXPECT_EQ(others.back(), static_cast<uint32_t>((others.size() - 1) * (others.size() - 1)));
    others.clear();
    EXPECT_TRUE(others.empty());
    add(others, 10);
    expectAll(others);
}

// A limit for files stands for a full disk.
TEST(SpooledArray, KeepsWhatItHasWhenTheDiskIsFull) {
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit least = {.rlim_cur = 1 << 20, .rlim_max = before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &least);
    Numbers numbers;
    EXPECT_THROW(add(numbers, 2 * Numbers::MOST_IN_MEMORY), std::bad_alloc);
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(numbers.size(), Numbers::MOST_IN_MEMORY);
    expectAll(numbers);
}

TEST(SpooledArray, NeedsAFolderForItsFile) {
    setenv("TMPDIR", "/nowhere", 1);
    Numbers numbers;
    EXPECT_THROW(add(numbers, Numbers::MOST_IN_MEMORY + 1), std::bad_alloc);
    unsetenv("TMPDIR");
    expectAll(numbers);
}

}  // namespace
