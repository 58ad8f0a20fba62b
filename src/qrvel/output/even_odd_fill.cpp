#include "qrvel/output/even_odd_fill.h"

#include <bit>
#include <limits>
#include <utility>

namespace qrvel {

namespace {

constexpr int64_t BITS = 64;

// Every bit becomes the parity of itself and all lower ones.
uint64_t parityUpTo(uint64_t bits) {
    for (int shift = 1; shift < BITS; shift *= 2) {
        bits ^= bits << shift;
    }
    return bits;
}

// Calls run(first, end) for every run of set bits.
template <class Run>
void forEachRun(uint64_t bits, Run run) {
    while (bits != 0) {
        const int first = std::countr_zero(bits);
        const int length = std::countr_one(bits >> first);
        run(first, first + length);
        if (first + length == BITS) return;
        bits &= ~uint64_t{0} << (first + length);
    }
}

}  // namespace

void EvenOddFill::fitTo(const PixelArea& area) {
    wordsARow_ = static_cast<std::size_t>(area.width / BITS + 1);
    const std::size_t words = wordsARow_ * static_cast<std::size_t>(area.height);
    if (changes_.size() != words) changes_ = std::vector<uint64_t>(words);
    left_ = bottom_ = std::numeric_limits<int64_t>::max();
    right_ = top_ = -1;
}

void EvenOddFill::change(int64_t column, int64_t row) {
    uint64_t* words = changes_.data() + static_cast<std::size_t>(row) * wordsARow_;
    words[column / BITS] ^= uint64_t{1} << (column % BITS);
    left_ = std::min(left_, column);
    right_ = std::max(right_, column);
}

// In row y the side lies at from.x ± (y - from.y) * run / rise; the first pixel that is not left of it is where the
// area changes. run and rise fit into 32 bits without a sign, so every product fits into 64.
void EvenOddFill::addSide(const PixelArea& area, OUTPoint from, OUTPoint to) {
    if (from.y > to.y) std::swap(from, to);
    const int64_t first = std::max<int64_t>(from.y, 0);
    const int64_t end = std::min<int64_t>(to.y, area.height);
    if (first >= end) return;
    const bool leansRight = to.x > from.x;
    const auto rise = static_cast<uint64_t>(int64_t{to.y} - from.y);
    const auto run = static_cast<uint64_t>(std::abs(int64_t{to.x} - from.x));
    const uint64_t moved = static_cast<uint64_t>(first - from.y) * run + (leansRight ? rise - 1 : 0);
    auto offset = static_cast<int64_t>(moved / rise);
    uint64_t rest = moved % rise;
    for (int64_t row = first; row < end; ++row) {
        change(std::clamp<int64_t>(leansRight ? from.x + offset : from.x - offset, 0, area.width), row);
        offset += static_cast<int64_t>(run / rise);
        rest += run % rise;
        if (rest >= rise) {
            rest -= rise;
            ++offset;
        }
    }
    bottom_ = std::min(bottom_, first);
    top_ = std::max(top_, end - 1);
}

void EvenOddFill::fillRow(const PixelArea& area, int64_t row, uint32_t colour) {
    uint64_t* words = changes_.data() + static_cast<std::size_t>(row) * wordsARow_;
    uint32_t* pixels = area.at(0, row);
    uint64_t inside = 0;  // all bits: the area goes on from the word before
    for (int64_t word = left_ / BITS; word <= right_ / BITS; ++word) {
        const uint64_t covered = parityUpTo(std::exchange(words[word], 0)) ^ inside;
        uint32_t* begin = pixels + word * BITS;
        forEachRun(covered, [&](int first, int last) { std::fill(begin + first, begin + last, colour); });
        inside = covered >> (BITS - 1) != 0 ? ~uint64_t{0} : 0;
    }
}

void EvenOddFill::fill(const PixelArea& area, std::span<const OUTPoint> points, std::span<const int32_t> counts,
                       uint32_t colour) {
    fitTo(area);
    for (const int32_t count : counts) {
        const auto polygon = points.first(static_cast<std::size_t>(count));
        points = points.subspan(polygon.size());
        if (polygon.empty()) continue;
        OUTPoint from = polygon.back();
        for (const OUTPoint to : polygon) {
            addSide(area, from, to);
            from = to;
        }
    }
    for (int64_t row = bottom_; row <= top_; ++row) {
        fillRow(area, row, colour);
    }
}

}  // namespace qrvel
