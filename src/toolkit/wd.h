// The W toolkit: the host data channel.
#pragma once

#include <cstdint>

#include "toolkit/w.h"

inline constexpr uint32_t WD_CHUNK_FURTHER = 0;
inline constexpr uint32_t WD_CHUNK_BEGIN = 1;
inline constexpr uint32_t WD_CHUNK_END = 2;

inline constexpr uint32_t WD_RECEIVE_BUFFER = 256;  // bytes of the buffer that WDstdopen is given

// One chunk of a transmission: `length` bytes, not terminated, valid during the call; kind as above.
using WDCallback = void (*)(const char* data, uint64_t length, uint32_t kind);

extern "C" {

// Opens the channel. Chunks of at most the receive buffer's size go to the callback. The constants 8 and 1 are
// the channel's own. Answers its handle, 0 on failure.
WHandle WDstdopen(WHandle app, char* buffer, uint32_t kind, WDCallback callback, uint32_t flag);
void WDstdclose(WHandle channel);
}
