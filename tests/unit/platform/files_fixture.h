// A folder of its own for each test of files.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

class Files : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = testing::TempDir() + "kelXXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder_ = pattern;
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    std::string path(const std::string& name) const { return (folder_ / name).string(); }

    std::string write(const std::string& name, const std::string& content) const {
        std::ofstream(path(name)) << content;
        return path(name);
    }
    static std::string contentOf(const std::string& name) {
        std::ifstream file(name);
        return {std::istreambuf_iterator<char>(file), {}};
    }

  private:
    std::filesystem::path folder_;
};
