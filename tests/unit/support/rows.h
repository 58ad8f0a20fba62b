// Tables of test rows: the row's name is the test's name.
#pragma once

#include <gtest/gtest.h>

#include <string>

// Last argument of INSTANTIATE_TEST_SUITE_P.
constexpr auto byRowName = [](const auto& info) { return std::string(info.param.name); };
