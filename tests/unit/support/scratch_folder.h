// A folder of its own as the working directory, gone with everything in it at the end.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

class ScratchFolder {
  public:
    ScratchFolder() : before_(std::filesystem::current_path()) {
        std::string pattern = (std::filesystem::temp_directory_path() / "scratchXXXXXX").string();
        folder_ = mkdtemp(pattern.data());
        std::filesystem::current_path(folder_);
    }
    ~ScratchFolder() {
        std::filesystem::current_path(before_);
        std::filesystem::remove_all(folder_);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    static void write(const std::string& name, const std::string& bytes) {
        std::ofstream(name, std::ios::binary) << bytes;
    }
    static std::string read(const std::string& name) {
        std::ifstream file(name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

  private:
    std::filesystem::path before_;
    std::filesystem::path folder_;
};
