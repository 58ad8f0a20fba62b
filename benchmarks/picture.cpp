#include "picture.h"

#include <algorithm>

Picture::Picture(std::string_view text, size_t chunk) {
    parse(text, chunk);
}

void Picture::parse(std::string_view text, size_t chunk) {
    if (parser_ == nullptr) parser_ = HPGLinitParser();
    for (; !text.empty(); text.remove_prefix(std::min(chunk, text.size()))) {
        HPGLparseCode(parser_, text.data(), static_cast<int64_t>(std::min(chunk, text.size())));
    }
}

void Picture::clear() {
    HPGLdestroyParser(parser_);
    parser_ = nullptr;
}

int64_t Picture::compactBytes() const {
    int64_t bytes = 0;
    forEachBlock([&bytes](const CBlock& block) { bytes += block.Occupied; });
    return bytes;
}

int64_t Picture::pairsOf(uint8_t command) const {
    int64_t pairs = 0;
    forEachRecord([&](const CompactCodeRecord& record) {
        if (record.id == command) pairs += record.count / 2;
    });
    return pairs;
}

int64_t Picture::recordsOf(uint8_t command) const {
    int64_t records = 0;
    forEachRecord([&](const CompactCodeRecord& record) { records += record.id == command ? 1 : 0; });
    return records;
}
