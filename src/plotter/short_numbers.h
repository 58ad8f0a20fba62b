// Looking over the coordinates of plain pen moves without reading them: most are whole numbers of at most five digits,
// and whoever asks only whether they are all like that can look at 64 bytes at a time.
#pragma once

#include <cstddef>

#if defined(__SSE2__)
#include <emmintrin.h>

#include <bit>
#include <cstdint>
#endif

namespace plotter {

inline constexpr int SHORT_NUMBER = 99'999;

struct ShortNumbers {
    const char* behind;     // the last of their commas
    std::size_t pairs = 0;  // that stand before
};

#if defined(__SSE2__)

namespace short_numbers {

inline constexpr std::ptrdiff_t BLOCK = 64;

// A bit a byte, the first the lowest: whether it is a digit, whether it is a comma.
struct Masks {
    uint64_t digits = 0;
    uint64_t commas = 0;
};

inline Masks masksOf(const char* block) {
    Masks masks;
    for (std::ptrdiff_t part = 3; part >= 0; --part) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + 16 * part));
        const __m128i values = _mm_sub_epi8(bytes, _mm_set1_epi8('0'));
        const __m128i isDigit = _mm_cmpeq_epi8(_mm_min_epu8(values, _mm_set1_epi8(9)), values);
        const __m128i isComma = _mm_cmpeq_epi8(bytes, _mm_set1_epi8(','));
        masks.digits = masks.digits << 16 | static_cast<uint32_t>(_mm_movemask_epi8(isDigit));
        masks.commas = masks.commas << 16 | static_cast<uint32_t>(_mm_movemask_epi8(isComma));
    }
    return masks;
}

}  // namespace short_numbers

// The pairs of short numbers, each followed by a comma, that stand there; `at` is where a number begins.
inline ShortNumbers skipShortNumbers(const char* at, const char* end) {
    ShortNumbers found = {at};
    while (end - at >= short_numbers::BLOCK) {
        short_numbers::Masks masks = short_numbers::masksOf(at);
        // Only what stands before any other byte counts.
        const uint64_t others = ~(masks.digits | masks.commas);
        if (others != 0) {
            const uint64_t before = (others & -others) - 1;
            masks = {masks.digits & before, masks.commas & before};
        }
        if (std::popcount(masks.commas) % 2 != 0) masks.commas &= ~std::bit_floor(masks.commas);
        if (masks.commas == 0) return found;
        const auto last = static_cast<int>(std::bit_width(masks.commas)) - 1;
        const uint64_t upToLast = ~uint64_t{0} >> (63 - last);
        const uint64_t d = masks.digits & upToLast;
        const uint64_t three = d & d >> 1 & d >> 2;
        const bool hasLong = (three & three >> 3) != 0;
        // A comma where a number should begin, or behind another.
        const bool hasEmpty = ((d | masks.commas) & (masks.commas << 1 | 1) & ~d) != 0;
        if (hasLong || hasEmpty || (d | masks.commas) != upToLast) return found;
        found.pairs += static_cast<std::size_t>(std::popcount(masks.commas)) / 2;
        at += last + 1;
        found.behind = at;
    }
    return found;
}

#else

inline ShortNumbers skipShortNumbers(const char* at, const char* /*end*/) {
    return {at};
}

#endif

}  // namespace plotter
