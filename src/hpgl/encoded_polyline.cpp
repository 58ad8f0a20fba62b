#include <algorithm>

#include "hpgl/parser_internal.h"

// A value's digits come lowest first, the last one marked as such by its byte; the sum's lowest bit is the sign.

namespace {

struct Digit {
    uint32_t value;  // modulo 2^32: bytes below the digits' range give what the arithmetic gives
    bool terminal;
};

Digit digitOf(char c, bool sevenBit) {
    const auto byte = static_cast<uint8_t>(c);
    if (sevenBit && byte == '5') return {29, true};  // deliberate, whatever the table of digits says
    const uint32_t lastContinuation = sevenBit ? 94 : 190;
    if (byte > lastContinuation) return {byte - lastContinuation - 1, true};
    return {byte - uint32_t{63}, false};
}

int32_t signedValue(uint32_t sum) {
    const auto half = static_cast<int32_t>(sum / 2);
    return sum % 2 == 0 ? half : -half;
}

// The record was opened with the count of all its values: one for which there is no block is taken off again.
int32_t storeBytes(IStatus* status, CBlockList* blocks, CBlock** block, const void* bytes, int32_t n) {
    if (HPGLwriteBytes(blocks, block, bytes, n) != 0) return 1;
    status->parameterCount -= status->polyline.owed;
    HPGLkeepValue(status, *block, bytes, n);
    return 0;
}

int32_t storeValue(IStatus* status, CBlockList* blocks, CBlock** block, int32_t value, bool wasCut) {
    EncodedPolyline& polyline = status->polyline;
    if (polyline.item == PolylineItem::FractionBits) {
        polyline.fractionBits = value;
        return 1;
    }
    // A pen number that was cut is stored like every value completed later, in 32 bits.
    if (polyline.item == PolylineItem::PenNumber && !wasCut) {
        const auto pen = static_cast<int16_t>(value);
        return storeBytes(status, blocks, block, &pen, sizeof pen);
    }
    return storeBytes(status, blocks, block, &value, sizeof value);
}

int32_t endItem(IStatus* status, CBlockList* blocks, CBlock** block) {
    EncodedPolyline& polyline = status->polyline;
    const bool pair = polyline.item == PolylineItem::Pair;
    const bool lowersPen = pair && polyline.penUp;
    polyline.item = PolylineItem::None;
    if (pair) polyline.penUp = polyline.absolute = false;
    return lowersPen ? HPGLopenRecord(status, blocks, block, CMD_PD, 0) : 1;
}

// Reads the values that the item still owes, as far as the chunk goes. Answers the bytes consumed, -1 for no block.
int64_t readValues(IStatus* status, CBlockList* blocks, CBlock** block, const char* text, int64_t bytesLeft) {
    EncodedPolyline& polyline = status->polyline;
    int64_t used = 0;
    while (polyline.owed > 0) {
        int32_t value = 0;
        const bool wasCut = polyline.incomplete;
        used += HPGLdecodeEncodedValue(status, text + used, bytesLeft - used, &value, polyline.sevenBit);
        if (polyline.incomplete) {
            if (used < bytesLeft) continue;  // over the digit limit: it goes on with the next byte
            return used;
        }
        if (storeValue(status, blocks, block, value, wasCut) == 0) return -1;
        --polyline.owed;
    }
    return endItem(status, blocks, block) != 0 ? used : -1;
}

int32_t beginPair(IStatus* status, CBlockList* blocks, CBlock** block) {
    const EncodedPolyline& polyline = status->polyline;
    if (polyline.penUp && HPGLopenRecord(status, blocks, block, CMD_PU, 0) == 0) return 0;
    return HPGLopenRecord(status, blocks, block, polyline.absolute ? CMD_PA : CMD_PR, 2);
}

// Begins the item that c announces (or, of a pair, is the first digit of). Answers how many bytes that took.
int64_t beginItem(IStatus* status, CBlockList* blocks, CBlock** block, char c) {
    EncodedPolyline& polyline = status->polyline;
    polyline.owed = 1;
    if (c == '>') {
        polyline.item = PolylineItem::FractionBits;
        return 1;
    }
    if (c == ':') {
        polyline.item = PolylineItem::PenNumber;
        return HPGLopenRecord(status, blocks, block, CMD_SP, 1) != 0 ? 1 : -1;
    }
    polyline.item = PolylineItem::Pair;
    polyline.owed = 2;
    return beginPair(status, blocks, block) != 0 ? 0 : -1;
}

// The plotting mode that held before is written down again.
int32_t endPolyline(IStatus* status, CBlockList* blocks, CBlock** block) {
    const uint8_t mode = status->polyline.relative ? CMD_PR : CMD_PA;
    if (HPGLopenRecord(status, blocks, block, mode, 0) == 0) return 0;
    status->stringMode = 0;
    HPGLcloseCommand(status);
    return 1;
}

}  // namespace

int64_t HPGLdecodeEncodedValue(IStatus* status, const char* text, int64_t bytesLeft, int32_t* result, bool sevenBit) {
    EncodedPolyline& polyline = status->polyline;
    const int32_t bits = sevenBit ? 5 : 6;
    int64_t limit = bytesLeft;  // one that goes on has no digit limit any more
    if (!polyline.incomplete) {
        polyline.digits = 0;
        polyline.partialValue = 0;
        limit = std::min<int64_t>(bytesLeft, sevenBit ? 6 : 5);
    }
    int64_t used = 0;
    while (used < limit) {
        const Digit digit = digitOf(text[used++], sevenBit);
        const int32_t shift = polyline.digits * bits;
        if (shift < 32) {  // further digits have no weight left
            polyline.partialValue += digit.value << shift;
            ++polyline.digits;
        }
        if (!digit.terminal) continue;
        polyline.incomplete = false;
        *result = signedValue(polyline.partialValue);
        return used;
    }
    polyline.incomplete = true;
    return used;
}

int64_t HPGLparsePolyline(IStatus* status, CBlockList* blocks, CBlock** block, const char* text, int64_t bytesLeft) {
    EncodedPolyline& polyline = status->polyline;
    int64_t used = 0;
    if (!polyline.incomplete) {
        switch (text[0]) {
            case '7':
                polyline.sevenBit = true;
                return 1;
            case '<':
                polyline.penUp = true;
                return 1;
            case '=':
                polyline.absolute = true;
                return 1;
            case ';':
                return endPolyline(status, blocks, block);
            default:
                used = beginItem(status, blocks, block, text[0]);
        }
        if (used < 0) return 0;
    }
    const int64_t values = readValues(status, blocks, block, text + used, bytesLeft - used);
    return values >= 0 ? used + values : 0;
}
