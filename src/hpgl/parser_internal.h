// What the parser's files share with each other and with their tests.
#pragma once

#include "hpgl/parser.h"

// Back to the beginning: all zero, but an empty number buffer, terminator ETX and newParse 1.
void HPGLresetStatus(IStatus* status);

// Copies n bytes into the open record; *block is where it lies, before and after. 0 when no block could be had.
int32_t HPGLwriteBytes(CBlockList* blocks, CBlock** block, const void* bytes, int32_t n);

// Keeps a value of n bytes, at most HPGL_NUMBER_LENGTH, for which no block could be had: the next call of HPGLparseCode
// begins with it. The open record, which lies in `block`, gets the count of those that are there.
void HPGLkeepValue(IStatus* status, CBlock* block, const void* bytes, int32_t n);

// Converts the number buffer by the current signature letter, appends it to the open record and counts it. 0 when no
// block could be had: the value is then kept, and not counted.
int32_t HPGLconvertParameter(IStatus* status, CBlockList* blocks, CBlock** block);

// Decodes one value of an encoded polyline, going on from an incomplete one. Answers the number of bytes consumed; the
// state's incomplete flag says whether *result is complete.
int64_t HPGLdecodeEncodedValue(IStatus* status, const char* text, int64_t bytesLeft, int32_t* result, bool sevenBit);

// Opens a record: command start, id and count are written, and the count becomes the running one. 0 when no block could
// be had.
int32_t HPGLopenRecord(IStatus* status, CBlockList* blocks, CBlock** block, uint8_t id, uint8_t count);

// Interprets the polyline byte text[0] and the values behind it. Answers the number of bytes that took, 0 when no block
// could be had.
int64_t HPGLparsePolyline(IStatus* status, CBlockList* blocks, CBlock** block, const char* text, int64_t bytesLeft);

// No command is open any more: its parameters are ignored.
void HPGLcloseCommand(IStatus* status);
