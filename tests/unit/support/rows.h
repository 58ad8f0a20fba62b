// Tables of test rows: the row's name is the test's name, and what is printed of the row.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>

// The first member of every row.
struct NamedRow {
    const char* name;
};

inline std::ostream& operator<<(std::ostream& to, const NamedRow& row) {
    return to << row.name;
}

// Last argument of INSTANTIATE_TEST_SUITE_P.
constexpr auto byRowName = [](const auto& info) { return std::string(info.param.name); };
