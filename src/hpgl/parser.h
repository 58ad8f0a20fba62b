// The parser: HP-GL and HP-GL/2 text, in chunks of any length, into compact code.
//
// Life of one instance: HPGLinitParser, HPGLparseCode for every chunk, then the passes read CBlockList, HPGLGlobal and
// PStatus; HPGLflushCompactCode starts over with the same instance, HPGLdestroyParser frees it.
// A command, a number or an encoded value may be cut anywhere between two chunks.
#pragma once

#include <cstdint>

#include "hpgl/command_lookup.h"
#include "hpgl/compact_code.h"

inline constexpr int32_t HPGL_PENS = 255;              // pens 0 to 254
inline constexpr int32_t HPGL_NUMBER_LENGTH = 16;      // characters of a parameter; what is longer is cut
inline constexpr char HPGL_ETX = 3;                    // the label terminator until DT sets another
inline constexpr int32_t HPGL_EMPTY_MIN = 0x3FFFFFFF;  // extents of a picture in which nothing is drawn
inline constexpr int32_t HPGL_EMPTY_MAX = -0x3FFFFFFF;

// One pen. The set-up pass assigns palette index and used flag, the interpreter the width.
struct HPGLPen {
    int32_t red, green, blue;  // 0 to 255; PC stores any 16-bit value
    int32_t paletteIndex;      // the colour as the device knows it
    int32_t used;              // 1: has a palette entry
    int32_t width;             // plotter units; 0: thin
};

// What is known of the picture as a whole.
struct HPGLGlobal {
    char* fileName;                  // given by HPGL_FILE, owned; null: none
    int32_t infoRequested;           // 1 after HPGL_INFO
    int32_t MinX, MinY, MaxX, MaxY;  // extents, scaled plotter units; filled by the set-up pass
    int32_t spare;                   // 0
};

// Which value of an encoded polyline was cut off.
enum class PolylineItem : uint8_t { None, Pair, PenNumber, FractionBits };

// An encoded polyline (PE) in the making.
struct EncodedPolyline {
    bool absolute;         // "=": the next pair is absolute
    bool penUp;            // "<": the next pair is a move
    int32_t fractionBits;  // ">": kept, no coordinate is scaled by it
    bool sevenBit;         // "7"
    bool relative;         // the plotting mode outside, set by PR and cleared by PA
    // A value that the end of the chunk, or the digit limit, has cut off.
    bool incomplete;
    int32_t digits;         // of it so far
    uint32_t partialValue;  // their sum
    PolylineItem item;      // what it belongs to
    int32_t owed;           // values that item still needs, the cut one included
};

// The state that survives between two chunks; HPGLresetStatus says what it is at the start and after a flush.
struct IStatus {
    char numberBuffer[HPGL_NUMBER_LENGTH + 1];  // the text of the current parameter
    char mnemonic[3];                           // previous and current character, the key that is looked up
    char labelTerminator;                       // ETX
    char* bufferPointer;                        // into numberBuffer: where the next character goes
    const char* signatureStart;                 // of the open command; null: none is open, parameters are ignored
    int32_t stringMode;                         // inside CO, LB, PE: no names are looked up, control characters pass
    int32_t parameterCount;                     // of the open record; label characters too
    const char* signatureLetter;                // that the next parameter takes
    int32_t commandId;
    int32_t pending;  // a parameter has begun and is not yet converted
    int32_t signatureLength;
    int32_t signatureIndex;
    int32_t quoteSeen;        // CO: the first quote
    int32_t newParse;         // 1: the next call starts a new block
    int32_t controlsAllowed;  // set by LB
    EncodedPolyline polyline;
    // A pseudo-command's name that the end of the chunk has cut off.
    char pseudoName[10];
    int32_t pseudoLength;  // 0: none
    char lastByte;         // of the chunk before, as it stood in the text
    // A whole value for which no block could be had; it is stored as soon as there is one.
    char owedValue[HPGL_NUMBER_LENGTH];
    int32_t owedBytes;  // of it; 0: none
};

// A parser instance; owns everything of the picture.
struct ParseInt {
    CBlockList* blocks;  // named "cb"
    HashTable* commands;
    IStatus* status;
    HPGLGlobal* global;
    HPGLPen* PStatus;  // HPGL_PENS records
};

// A new instance with default pens (0 white, 1 black, both used) and empty extents; null, after an error line, when
// memory is lacking.
ParseInt* HPGLinitParser();

// Parses `length` bytes. 1 when all were consumed; 0, after an error line and with the records so far in place, when
// memory is lacking or a pseudo-command's name turns out to be none (the rest of the chunk is then lost).
int32_t HPGLparseCode(ParseInt* parser, const char* text, int64_t length);

// Removes every block and resets the state.
int32_t HPGLflushCompactCode(ParseInt* parser);

// 0 for a null instance, else 1.
int32_t HPGLdestroyParser(ParseInt* parser);
