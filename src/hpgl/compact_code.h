// Compact code: the picture as a stream of command records, in a list of fixed-size blocks.
//
//   record   | id | count | parameters …                       multi-byte values little-endian, nothing aligned
//            +----+-------+------------------------------
//              1     1      by signature, repeated: L 4, I 2, R 4 (IEEE float), C the characters as they stand
//
// id is the command's row (0 to 92), count the number of parameters seen (at most 255; those beyond are not stored).
// LB holds its characters, one byte each; a command without a signature has a count and no parameter bytes. C
// parameters of other commands hold up to 16 characters with nothing to mark their length.
// HPGL_DATA, HPGL_FILE, HPGL_INFO, CO and PE write no record; an encoded polyline becomes PU, PA, PR, PD and SP.
//
//   block    | record | record | record … | free             30000 bytes, at most 29999 of them occupied
//            ^Data                        ^actPnt            commandStart: the record being written, or null
//
// No record lies in two blocks: one that reaches a block's end is moved whole into the next.
#pragma once

#include <bit>
#include <cstdint>

#include "hpgl/list.h"

// Values are copied as they stand in memory, wherever compact code is written or read.
static_assert(std::endian::native == std::endian::little);

inline constexpr int32_t HPGL_BLOCK_SIZE = 30000;
inline constexpr int32_t HPGL_MAX_PARAMETERS = 255;  // the count is one byte

struct CBlock {
    int32_t Size;      // bytes of the data area
    int32_t Occupied;  // bytes written
    uint8_t* Data;     // owned
    uint8_t* actPnt;   // Data + Occupied
    uint8_t* commandStart;
};

// Blocks in the order in which they were made; the last is being written. Elements are copies of descriptors.
using CBlockList = HPGLList;

// The block being written, or null; the list's cursor goes there.
CBlock* HPGLlastCBlock(CBlockList* blocks);

// Appends a block and moves the unfinished record of the one before into it. The list's copy of the descriptor, or
// null (after an error line, list unchanged) when memory is lacking.
CBlock* GetNewCBlock(CBlockList* blocks);

inline bool HPGLCBlockHasRoom(const CBlock* block, int32_t n) {
    return block->Occupied + n < block->Size;
}
// The block into which n more bytes can be written: this one or a new one; null when none can be had.
inline CBlock* HPGLCBlockMakeRoom(CBlockList* blocks, CBlock* block, int32_t n) {
    return HPGLCBlockHasRoom(block, n) ? block : GetNewCBlock(blocks);
}

// Takes n bytes behind actPnt as written; 0 when that would fill the block.
inline int32_t HPGLCBlockAdvance(CBlock* block, int32_t n) {
    if (!HPGLCBlockHasRoom(block, n)) return 0;
    block->Occupied += n;
    block->actPnt += n;
    return 1;
}
// Gives the last n bytes back; 0 when there are fewer.
int32_t HPGLCBlockRetract(CBlock* block, int32_t n);

// A record begins at actPnt; no record is open. Both 0 for a null block.
int32_t HPGLCBlockMarkCommand(CBlock* block);
int32_t HPGLCBlockClearCommand(CBlock* block);

// Writes the open record's count byte; more than 255 gives a warning and 255. 0 without an open record.
int32_t setNoOfParameters(CBlock* block, int32_t n);
