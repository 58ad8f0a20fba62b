// What the fuzz targets share. Each is one file with LLVMFuzzerTestOneInput; it is linked with libFuzzer in a build
// with KEL_FUZZ, else with replay_main.cpp, which runs it over files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

// Ends the process with a line that says what does not hold: a finding.
void require(bool holds, const char* what);

// An input: a text and, behind its last NUL byte if it has one, bytes that steer the target. So every file is an input
// as it stands, and its text may still hold any byte.
class FuzzInput {
  public:
    FuzzInput(const uint8_t* data, size_t size);

    std::string_view text() const { return text_; }

    // Whether there are steering bytes left.
    bool steered() const { return !steering_.empty(); }
    // The next steering byte; `otherwise` when there is none.
    uint8_t byte(uint8_t otherwise);
    // A size or position out of two steering bytes, signed; the lowest and highest stand for those of 32 bits.
    int32_t pixels(int32_t otherwise);

  private:
    std::string_view text_, steering_;
};
