#include "platform/arguments.h"

#include <gtest/gtest.h>

#include <array>

namespace {

TEST(Arguments, AreKeptAsTheyAre) {
    const std::array<const char*, 2> values = {"kelhpgl", "a \"b\".plt"};
    setPlatformArguments(2, values.data());
    EXPECT_EQ(platformArguments().count, 2);
    EXPECT_STREQ(platformArguments().values[1], "a \"b\".plt");
    setPlatformArguments(0, nullptr);
}

}  // namespace
