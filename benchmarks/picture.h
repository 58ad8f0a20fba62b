// A picture as the viewer holds it, and looks into its compact code.
#pragma once

#include <cstdint>
#include <string_view>

#include "hpgl/compact_code_reader.h"
#include "hpgl/parser.h"

inline constexpr size_t RECEIVE_BUFFER = 256;  // bytes of a chunk from the host

class Picture {
  public:
    Picture() = default;
    // Parses the text in pieces of `chunk` bytes.
    explicit Picture(std::string_view text, size_t chunk = RECEIVE_BUFFER);
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;
    ~Picture() { clear(); }

    void parse(std::string_view text, size_t chunk);
    void clear();
    ParseInt* get() const { return parser_; }

    // Bytes occupied in all blocks.
    int64_t compactBytes() const;
    // Pairs of coordinates in all records of the pen moves named.
    int64_t pairsOf(uint8_t command) const;
    int64_t recordsOf(uint8_t command) const;

    template <class Use>
    void forEachBlock(Use use) const {
        void* block = nullptr;
        bool more = HPGLgotoFirst(parser_->blocks) && HPGLgetActualListData(parser_->blocks, &block, nullptr, nullptr);
        for (; more; more = HPGLgetNextListData(parser_->blocks, &block, nullptr, nullptr)) {
            use(*static_cast<const CBlock*>(block));
        }
    }

    template <class Use>
    void forEachRecord(Use use) const {
        forEachBlock([&use](const CBlock& block) {
            CompactCodeReader reader = HPGLreadBlock(&block, CompactCodePass::Drawing);
            CompactCodeRecord record;
            while (HPGLreadRecord(&reader, &record)) {
                use(record);
            }
        });
    }

  private:
    ParseInt* parser_ = nullptr;
};
