// Runs a fuzz target over the files named, and over all files in the folders named, and prints how many they were.
// usage: TARGET FILE-OR-FOLDER...
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz_target.h"

namespace {

namespace fs = std::filesystem;

// The files that a name stands for; none when it is missing, or a folder without files.
std::vector<fs::path> filesOf(const fs::path& name) {
    if (fs::is_regular_file(name)) return {name};
    std::vector<fs::path> files;
    if (!fs::is_directory(name)) return files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(name)) {
        if (entry.is_regular_file()) files.push_back(entry.path());
    }
    return files;
}

// The bytes stand in memory of exactly their size, so that AddressSanitizer sees a read behind them.
void replay(const fs::path& name) {
    std::ifstream file(name, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    const std::vector<uint8_t> input(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

}  // namespace

int main(int argc, char** argv) {
    size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        const std::vector<fs::path> files = filesOf(argv[i]);
        if (files.empty()) {
            std::fprintf(stderr, "%s: no input there\n", argv[i]);
            return 1;
        }
        for (const fs::path& file : files) {
            std::fprintf(stderr, "%s\n", file.c_str());
            replay(file);
        }
        count += files.size();
    }
    std::printf("%zu inputs\n", count);
    return count > 0 ? 0 : 1;
}
