// The host's data channel and the intake of a picture: chunks are parsed as they come, and at the end of a transmission
// the picture's extents, colours and zoom stack are made and the window is shown or refitted. Drawing waits for the
// next paint message.
#pragma once

#include <cstdint>

#include "hpgl/parser.h"
#include "toolkit/w.h"
#include "toolkit/wd.h"

// Opens the channel with these arguments. False when it cannot be opened or memory is lacking.
bool initTolk(WHandle app, char* wdbuff, uint32_t kind, WDCallback callback, uint32_t flag);
void closeTolk();

// Receives one chunk: kind WD_CHUNK_BEGIN, WD_CHUNK_FURTHER or WD_CHUNK_END; any other is ignored.
void CallbackData(const char* data, uint64_t length, uint32_t kind);

// Feeds a whole file to the parser. 0 when it is no regular file that can be opened, or memory is lacking; what was
// read up to an error is kept. The file stays open until the next one is read.
int32_t readFromFile(ParseInt* parserContext, const char* fileName);
