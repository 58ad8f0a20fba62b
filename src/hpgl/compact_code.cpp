#include "hpgl/compact_code.h"

#include <cstdlib>
#include <cstring>

#include "trace/trace.h"

namespace {

void printBlock(const void* data) {
    const auto* block = static_cast<const CBlock*>(data);
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "Size:  %d  Data:  %p  Occupied: %d  actPnt: %p", block->Size,
             static_cast<void*>(block->Data), block->Occupied, static_cast<void*>(block->actPnt));
}

void freeBlock(void* data) {
    free(static_cast<CBlock*>(data)->Data);
    free(data);
}

void moveUnfinishedRecord(CBlock* from, CBlock* to) {
    if (from == nullptr || from->commandStart == nullptr) return;
    const auto n = static_cast<int32_t>(from->actPnt - from->commandStart);
    if (n <= 0) return;
    memcpy(to->Data, from->commandStart, static_cast<size_t>(n));
    HPGLCBlockAdvance(to, n);
    HPGLCBlockRetract(from, n);
}

}  // namespace

CBlock* HPGLlastCBlock(CBlockList* blocks) {
    void* block = nullptr;
    HPGLgotoLast(blocks);
    return HPGLgetActualListData(blocks, &block, nullptr, nullptr) ? static_cast<CBlock*>(block) : nullptr;
}

CBlock* GetNewCBlock(CBlockList* blocks) {
    CBlock* old = HPGLlastCBlock(blocks);
    auto* data = static_cast<uint8_t*>(malloc(HPGL_BLOCK_SIZE));
    if (data == nullptr) {
        TRCTraceError(HPGLTraceHandle, "GetNewCBlock: malloc failed for NewCBlock.Data (%d bytes)\n", HPGL_BLOCK_SIZE);
        return nullptr;
    }
    const CBlock fresh = {HPGL_BLOCK_SIZE, 0, data, data, data};
    if (!HPGLappendListElement(blocks, &fresh, 1, sizeof fresh, printBlock, freeBlock)) {
        TRCTraceError(HPGLTraceHandle, "GetNewCBlock: no memory to append NewCBlock\n");
        free(data);
        return nullptr;
    }
    CBlock* block = HPGLlastCBlock(blocks);
    moveUnfinishedRecord(old, block);
    return block;
}

int32_t HPGLCBlockRetract(CBlock* block, int32_t n) {
    if (block->Occupied < n) return 0;
    block->Occupied -= n;
    block->actPnt -= n;
    return 1;
}

int32_t HPGLCBlockMarkCommand(CBlock* block) {
    if (block == nullptr) return 0;
    block->commandStart = block->actPnt;
    return 1;
}

int32_t HPGLCBlockClearCommand(CBlock* block) {
    if (block == nullptr) return 0;
    block->commandStart = nullptr;
    return 1;
}

int32_t setNoOfParameters(CBlock* block, int32_t n) {
    if (block == nullptr || block->commandStart == nullptr) return 0;
    if (n > HPGL_MAX_PARAMETERS) {
        TRCTraceError(HPGLTraceHandle,
                      "WARNING-setNoOfParameters: NoOfParameters was %d but maximum I can handle is %d\n", n,
                      HPGL_MAX_PARAMETERS);
        n = HPGL_MAX_PARAMETERS;
    }
    block->commandStart[1] = static_cast<uint8_t>(n);
    return 1;
}
