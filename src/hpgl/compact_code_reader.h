// Reading compact code: the one bounded walk that the set-up pass, the interpreter and hpgldump share.
//
// How far a record reaches depends on who reads. Both passes step over most commands by their signature; some have a
// fixed form that is read and stepped over whatever the count says, and a few differ between the passes: commands.inl.
#pragma once

#include <cstdint>
#include <cstring>

#include "hpgl/command_table.h"
#include "hpgl/compact_code.h"

enum class CompactCodePass : uint8_t { Setup, Drawing };

// A record whose bytes, as far as the pass looks at them or steps over them, all lie inside its block.
struct CompactCodeRecord {
    uint8_t id;             // 0 to 92
    uint8_t count;          // as stored
    const uint8_t* start;   // of the record, in the block
    const uint8_t* params;  // the first parameter byte
};

// One block being walked.
struct CompactCodeReader {
    CompactCodePass pass;
    const uint8_t* at;   // the next byte
    const uint8_t* end;  // behind the last occupied one
};

// Begins a block.
CompactCodeReader HPGLreadBlock(const CBlock* block, CompactCodePass pass);

// The next record; the reader then stands behind it. A code above 92 is passed over as a single byte, so that the byte
// behind it is taken as the next code. False at the block's end, and at a record that reaches beyond it: such a one is
// not acted on, and the block is left.
bool HPGLreadRecord(CompactCodeReader* reader, CompactCodeRecord* record);

// Hands the records of all blocks in turn to take(record), until that answers false. Whether it never did.
template <class Take>
bool HPGLforEachRecord(CBlockList* blocks, CompactCodePass pass, Take take) {
    void* block = nullptr;
    bool more = HPGLgotoFirst(blocks) && HPGLgetActualListData(blocks, &block, nullptr, nullptr);
    for (; more; more = HPGLgetNextListData(blocks, &block, nullptr, nullptr)) {
        CompactCodeReader reader = HPGLreadBlock(static_cast<const CBlock*>(block), pass);
        CompactCodeRecord record;
        while (HPGLreadRecord(&reader, &record)) {
            if (!take(record)) return false;
        }
    }
    return true;
}

// The number of bytes that a pass steps over behind the count.
int32_t HPGLparameterBytes(uint8_t id, uint8_t count, CompactCodePass pass);

// The same for SC: as many as handleSCCommand reads of a supported count, 0 of any other.
int32_t HPGLscParameterBytes(int32_t count);

// Unaligned little-endian values. The caller knows that the bytes are there.
inline int32_t HPGLreadL(const uint8_t* at) {
    int32_t value;
    memcpy(&value, at, sizeof value);
    return value;
}
inline int16_t HPGLreadI(const uint8_t* at) {
    int16_t value;
    memcpy(&value, at, sizeof value);
    return value;
}
inline float HPGLreadR(const uint8_t* at) {
    float value;
    memcpy(&value, at, sizeof value);
    return value;
}

// Bytes of one parameter of a signature letter: L and R 4, I 2, C 1, any other 0.
int32_t HPGLletterBytes(char letter);
