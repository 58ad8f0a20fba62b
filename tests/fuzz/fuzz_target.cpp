#include "fuzz_target.h"

#include <bit>
#include <cstdio>
#include <cstdlib>

void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

FuzzInput::FuzzInput(const uint8_t* data, size_t size) : text_(std::bit_cast<const char*>(data), size) {
    const size_t nul = text_.rfind('\0');
    if (nul == text_.npos) return;
    steering_ = text_.substr(nul + 1);
    text_ = text_.substr(0, nul);
}

uint8_t FuzzInput::byte(uint8_t otherwise) {
    if (!steered()) return otherwise;
    const auto value = static_cast<uint8_t>(steering_.front());
    steering_.remove_prefix(1);
    return value;
}

int32_t FuzzInput::pixels(int32_t otherwise) {
    if (!steered()) return otherwise;
    const uint32_t high = byte(0);
    const auto value = static_cast<int16_t>(high << 8 | byte(0));
    if (value == INT16_MIN) return INT32_MIN;
    return value == INT16_MAX ? INT32_MAX : value;
}
