#include "hpgl/parser.h"

#include <cstdlib>
#include <cstring>

#include "hpgl/parser_internal.h"
#include "trace/trace.h"

namespace {

// One call: the instance and the chunk with the reading position.
struct Chunk {
    ParseInt* parser;
    IStatus* status;
    CBlock* block;  // the one being written
    const char* text;
    int64_t length;
    int64_t at;
};

int32_t beginCall(Chunk* chunk) {
    if (chunk->status->newParse == 0) {
        chunk->block = HPGLlastCBlock(chunk->parser->blocks);
        return chunk->block != nullptr ? 1 : 0;
    }
    chunk->status->newParse = 0;
    chunk->block = GetNewCBlock(chunk->parser->blocks);
    return HPGLCBlockClearCommand(chunk->block);
}

// ---- parameters -----------------------------------------------------------------------------------------------------

// Of the next parameter: those beyond are counted only.
bool isStored(const IStatus* status) {
    return status->parameterCount < HPGL_MAX_PARAMETERS;
}

void countParameter(IStatus* status) {
    if (status->parameterCount < INT32_MAX) ++status->parameterCount;
}

int32_t storeValue(IStatus* status, CBlockList* blocks, CBlock** block, const void* bytes, int32_t n) {
    if (HPGLwriteBytes(blocks, block, bytes, n) == 0) {
        HPGLkeepValue(status, *block, bytes, n);
        return 0;
    }
    countParameter(status);
    return 1;
}

// What found no block in an earlier call.
int32_t storeOwedValue(Chunk* chunk) {
    IStatus* status = chunk->status;
    if (status->owedBytes == 0) return 1;
    if (HPGLwriteBytes(chunk->parser->blocks, &chunk->block, status->owedValue, status->owedBytes) == 0) return 0;
    status->owedBytes = 0;
    countParameter(status);
    setNoOfParameters(chunk->block, status->parameterCount);
    return 1;
}

int32_t countAndConvert(Chunk* chunk) {
    IStatus* status = chunk->status;
    if (isStored(status)) return HPGLconvertParameter(status, chunk->parser->blocks, &chunk->block);
    countParameter(status);
    return 1;
}

// The signature repeats.
void nextSignatureLetter(IStatus* status) {
    ++status->signatureLetter;
    if (++status->signatureIndex >= status->signatureLength) {
        status->signatureLetter = status->signatureStart;
        status->signatureIndex = 0;
    }
}

int32_t completeParameter(Chunk* chunk) {
    IStatus* status = chunk->status;
    const int32_t done = countAndConvert(chunk);
    nextSignatureLetter(status);
    status->pending = 0;
    status->bufferPointer = status->numberBuffer;
    return done;
}

void collect(IStatus* status, char c) {
    if (status->bufferPointer < status->numberBuffer + HPGL_NUMBER_LENGTH) *status->bufferPointer++ = c;
    status->pending = 1;
}

bool isSeparator(char c) {
    return c == ' ' || c == ',' || c == ';';
}

int32_t parseOrdinaryByte(Chunk* chunk, char c) {
    IStatus* status = chunk->status;
    if (isSeparator(c)) return status->pending != 0 ? completeParameter(chunk) : 1;
    if ((c == '+' || c == '-') && status->pending != 0 && *status->signatureLetter != 'C') {
        if (completeParameter(chunk) == 0) return 0;
        if (c == '+') return 1;
    }
    collect(status, c);
    return 1;
}

// ---- whole numbers between separators: most of a picture ------------------------------------------------------------

constexpr int32_t PLAIN_DIGITS = 9;  // no more fit into 32 bits whatever they are

struct PlainNumber {
    int32_t value;
    bool minusZero;      // which a float keeps
    const char* behind;  // the first character that is none of it; null: there is no plain number
};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

PlainNumber readPlainNumber(const char* at, const char* end) {
    const bool minus = at < end && *at == '-';
    if (minus) ++at;
    const char* digits = at;
    int32_t value = 0;
    while (at < end && isDigit(*at) && at - digits < PLAIN_DIGITS) {
        value = value * 10 + (*at++ - '0');
    }
    return {minus ? -value : value, minus && value == 0, at > digits ? at : nullptr};
}

bool endsNumber(const char* at, const char* end) {
    return at < end && (isSeparator(*at) || *at == '-');
}

void appendPlainNumber(CBlock* block, char letter, int32_t value) {
    if (letter == 'I') {
        const auto half = static_cast<int16_t>(value);
        memcpy(block->actPnt, &half, sizeof half);
        HPGLCBlockAdvance(block, sizeof half);
        return;
    }
    const auto real = static_cast<float>(value);
    memcpy(block->actPnt, letter == 'R' ? static_cast<const void*>(&real) : &value, 4);
    HPGLCBlockAdvance(block, 4);
}

// As HPGLconvertParameter does; out of the way of the numbers that nobody wants to see.
[[gnu::cold, gnu::noinline]] void tracePlainNumber(char letter, int32_t value) {
    if (letter == 'R') {
        TRCTrace(HPGLTraceHandle, TRC_DETAIL, " %f", static_cast<double>(static_cast<float>(value)));
    } else {
        TRCTrace(HPGLTraceHandle, TRC_DETAIL, " %d", letter == 'I' ? static_cast<int16_t>(value) : value);
    }
}

bool takesPlainNumbers(const Chunk& chunk) {
    const IStatus* status = chunk.status;
    if (status->stringMode != 0 || status->pending != 0 || status->signatureLength == 0) return false;
    return status->signatureStart != nullptr && status->commandId > CMD_CO;
}

// Takes separators and plain numbers as parseByte would, without a look-up, the number buffer or the C library, until
// something else comes, or the block is full, which is left to parseByte.
void parsePlainNumbers(Chunk* chunk) {
    if (!takesPlainNumbers(*chunk)) return;
    IStatus* status = chunk->status;
    const char* at = chunk->text + chunk->at;
    const char* end = chunk->text + chunk->length;
    for (; at < end; ++at) {
        if (isSeparator(*at)) continue;
        const PlainNumber number = readPlainNumber(at, end);
        const char letter = *status->signatureLetter;
        if (number.behind == nullptr || !endsNumber(number.behind, end)) break;
        if (letter == 'C' || (number.minusZero && letter == 'R')) break;
        if (isStored(status)) {
            if (!HPGLCBlockHasRoom(chunk->block, letter == 'I' ? 2 : 4)) break;
            appendPlainNumber(chunk->block, letter, number.value);
            if (TRC_DETAIL <= TRCHighestLevel) tracePlainNumber(letter, number.value);
        }
        countParameter(status);
        nextSignatureLetter(status);
        at = *number.behind == '-' ? number.behind - 1 : number.behind;
    }
    const auto used = at - (chunk->text + chunk->at);
    if (used > 0) status->mnemonic[1] = at[-1];
    chunk->at += used;
}

// ---- the bytes behind a command -------------------------------------------------------------------------------------

int32_t parseFileName(Chunk* chunk) {
    const char* name = chunk->text + chunk->at;
    const char* end = chunk->text + chunk->length;
    const auto bytes = static_cast<size_t>(end - name);  // what remains
    auto* copy = static_cast<char*>(malloc(bytes + 1));  // a name without an end of its own fills them all
    if (copy == nullptr) {
        TRCTraceError(HPGLTraceHandle, "HPGLparseCode: malloc failed for FileName (number of bytes = %d)\n",
                      static_cast<int>(bytes));
        return 0;
    }
    if (*name == ':') ++name;
    size_t length = 0;
    while (name + length < end && static_cast<signed char>(name[length]) >= 32) {
        copy[length] = name[length];
        ++length;
    }
    copy[length] = '\0';
    free(chunk->parser->global->fileName);
    chunk->parser->global->fileName = copy;
    chunk->status->controlsAllowed = 0;
    HPGLcloseCommand(chunk->status);
    chunk->at = name + length - chunk->text;
    return 1;
}

void parseCommentByte(IStatus* status, char c) {
    if (c != '"') return;
    if (status->quoteSeen == 0) {
        status->quoteSeen = 1;
        return;
    }
    status->stringMode = 0;
    HPGLcloseCommand(status);
}

int32_t parseLabelByte(Chunk* chunk, char c) {
    IStatus* status = chunk->status;
    if (c == status->labelTerminator || static_cast<signed char>(c) < 32) {
        status->stringMode = 0;
        status->controlsAllowed = 0;
        HPGLcloseCommand(status);
        return 1;
    }
    int32_t done = 1;
    if (isStored(status)) {
        done = storeValue(status, chunk->parser->blocks, &chunk->block, &c, 1);
    } else {
        countParameter(status);
    }
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "%c", c);
    return done;
}

int32_t parsePolylineBytes(Chunk* chunk) {
    const int64_t used = HPGLparsePolyline(chunk->status, chunk->parser->blocks, &chunk->block, chunk->text + chunk->at,
                                           chunk->length - chunk->at);
    chunk->at += used;
    return used > 0 ? 1 : 0;
}

// Consumes the byte at chunk->at, and for a file name or an encoded value those behind it.
int32_t parseParameterByte(Chunk* chunk, char c) {
    IStatus* status = chunk->status;
    if (status->signatureStart == nullptr) {
        ++chunk->at;
        return 1;
    }
    switch (status->commandId) {
        case CMD_HPGL_FILE:
            return parseFileName(chunk);
        case CMD_PE:
            return parsePolylineBytes(chunk);
        case CMD_CO:
            ++chunk->at;
            parseCommentByte(status, c);
            return 1;
        case CMD_LB:
            ++chunk->at;
            return parseLabelByte(chunk, c);
        default:
            ++chunk->at;
            return parseOrdinaryByte(chunk, c);
    }
}

// ---- commands -------------------------------------------------------------------------------------------------------

// The first letter of the name that was found stands at the end of the number buffer, if a parameter was begun.
int32_t closeRecord(Chunk* chunk) {
    IStatus* status = chunk->status;
    if (status->pending != 0 && --status->bufferPointer > status->numberBuffer && countAndConvert(chunk) == 0) return 0;
    setNoOfParameters(chunk->block, status->parameterCount);
    const bool hasRecord = status->commandId > CMD_CO && status->commandId != CMD_PE;
    if (hasRecord) TRCTrace(HPGLTraceHandle, TRC_DETAIL, " PNo: %d\n", status->parameterCount);
    return 1;
}

int32_t openOrdinary(Chunk* chunk, const HPGLCommand* row) {
    const auto id = static_cast<uint8_t>(row->id);
    if (HPGLopenRecord(chunk->status, chunk->parser->blocks, &chunk->block, id, 0) == 0) return 0;
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "%s(=%d) P: ", row->name, static_cast<int>(row->id));
    return 1;
}

void beginPolyline(EncodedPolyline* polyline) {
    polyline->absolute = false;
    polyline->penUp = false;
    polyline->fractionBits = 0;
    polyline->sevenBit = false;
}

int32_t beginCommand(Chunk* chunk, const HPGLCommand* row) {
    IStatus* status = chunk->status;
    switch (row->id) {
        case CMD_HPGL_DATA:
        case CMD_HPGL_FILE:
            return HPGLCBlockClearCommand(chunk->block);
        case CMD_HPGL_INFO:
            chunk->parser->global->infoRequested = 1;
            return HPGLCBlockClearCommand(chunk->block);
        case CMD_CO:
            status->quoteSeen = 0;
            break;
        case CMD_PE:
            beginPolyline(&status->polyline);
            break;
        case CMD_PA:
            status->polyline.relative = false;
            return openOrdinary(chunk, row);
        case CMD_PR:
            status->polyline.relative = true;
            return openOrdinary(chunk, row);
        case CMD_LB:
            status->stringMode = 1;
            status->controlsAllowed = 1;
            return openOrdinary(chunk, row);
        default:
            return openOrdinary(chunk, row);
    }
    status->stringMode = 1;
    return HPGLCBlockClearCommand(chunk->block);
}

int32_t openCommand(Chunk* chunk, const HPGLCommand* row) {
    IStatus* status = chunk->status;
    if (closeRecord(chunk) == 0) {
        HPGLcloseCommand(status);  // what follows is no parameter of it
        return 0;
    }
    if (beginCommand(chunk, row) == 0) return 0;
    status->commandId = static_cast<int32_t>(row->id);
    status->bufferPointer = status->numberBuffer;
    status->signatureStart = row->signature;
    status->signatureLetter = row->signature;
    status->signatureLength = static_cast<int32_t>(strlen(row->signature));
    status->signatureIndex = 0;
    status->parameterCount = 0;
    status->pending = 0;
    return 1;
}

// ---- pseudo-commands: "HP" has been seen, a whole name must follow --------------------------------------------------

constexpr int32_t PSEUDO_NAME_LENGTH = 9;

int32_t failPseudoName(IStatus* status) {
    status->pseudoLength = 0;
    TRCTraceError(HPGLTraceHandle, "HPGLparseCode: error parsing TOLK command\n");
    return 0;
}

bool canBecomePseudoName(const char* text, int32_t length) {
    for (int32_t id = CMD_HPGL_DATA; id <= CMD_HPGL_INFO; ++id) {
        if (memcmp(text, HPGLCommandTable[id].name, static_cast<size_t>(length)) == 0) return true;
    }
    return false;
}

// Goes on with the name, which may have begun in an earlier chunk, and opens the command when it is whole.
int32_t continuePseudoName(Chunk* chunk) {
    IStatus* status = chunk->status;
    while (status->pseudoLength < PSEUDO_NAME_LENGTH) {
        if (chunk->at == chunk->length) return 1;
        status->pseudoName[status->pseudoLength++] = chunk->text[chunk->at++];
        if (!canBecomePseudoName(status->pseudoName, status->pseudoLength)) return failPseudoName(status);
    }
    status->pseudoName[status->pseudoLength] = '\0';
    status->pseudoLength = 0;
    const HPGLCommand* row = HPGLlookupCommand(chunk->parser->commands, HPGLcompareCommand, status->pseudoName);
    return row != nullptr ? openCommand(chunk, row) : failPseudoName(status);
}

int32_t beginPseudoName(Chunk* chunk) {
    IStatus* status = chunk->status;
    const char before = chunk->at > 0 ? chunk->text[chunk->at - 1] : status->lastByte;
    ++chunk->at;
    if (before != 'H') return failPseudoName(status);  // control characters lie between the two letters
    memcpy(status->pseudoName, "HP", 2);
    status->pseudoLength = 2;
    return continuePseudoName(chunk);
}

// ---- the loop -------------------------------------------------------------------------------------------------------

bool isCapital(char c) {
    return c >= 'A' && c <= 'Z';
}

// Only two capitals can begin a name, so that digits need no look-up.
const HPGLCommand* lookupMnemonic(const Chunk* chunk) {
    const char* mnemonic = chunk->status->mnemonic;
    if (!isCapital(mnemonic[1]) || !isCapital(mnemonic[0])) return nullptr;
    return HPGLlookupCommand(chunk->parser->commands, HPGLcompareCommand, mnemonic);
}

int32_t parseByte(Chunk* chunk) {
    IStatus* status = chunk->status;
    const char c = chunk->text[chunk->at];
    const bool control = static_cast<signed char>(c) < 32;  // bytes from 128 on too
    if (control && status->controlsAllowed == 0 && status->stringMode == 0) {
        ++chunk->at;
        return 1;
    }
    status->mnemonic[0] = status->mnemonic[1];
    status->mnemonic[1] = c;
    const HPGLCommand* row = status->stringMode == 0 ? lookupMnemonic(chunk) : nullptr;
    if (row == nullptr) return parseParameterByte(chunk, c);
    status->mnemonic[1] = '\0';  // its second letter cannot begin another name
    if (row->id == CMD_HPGL_DATA) return beginPseudoName(chunk);
    ++chunk->at;
    return openCommand(chunk, row);
}

int32_t parseChunk(Chunk* chunk) {
    if (beginCall(chunk) == 0 || storeOwedValue(chunk) == 0) return 0;
    if (chunk->status->pseudoLength > 0 && continuePseudoName(chunk) == 0) return 0;
    while (chunk->at < chunk->length) {
        parsePlainNumbers(chunk);
        if (chunk->at < chunk->length && parseByte(chunk) == 0) return 0;
    }
    // The same record may grow in the next call; its count is written again then.
    setNoOfParameters(chunk->block, chunk->status->parameterCount);
    return 1;
}

}  // namespace

int32_t HPGLwriteBytes(CBlockList* blocks, CBlock** block, const void* bytes, int32_t n) {
    CBlock* to = HPGLCBlockMakeRoom(blocks, *block, n);
    if (to == nullptr) return 0;
    memcpy(to->actPnt, bytes, static_cast<size_t>(n));
    HPGLCBlockAdvance(to, n);
    *block = to;
    return 1;
}

void HPGLkeepValue(IStatus* status, CBlock* block, const void* bytes, int32_t n) {
    setNoOfParameters(block, status->parameterCount);
    memcpy(status->owedValue, bytes, static_cast<size_t>(n));
    status->owedBytes = n;
}

int32_t HPGLopenRecord(IStatus* status, CBlockList* blocks, CBlock** block, uint8_t id, uint8_t count) {
    const uint8_t head[] = {id, count};
    HPGLCBlockMarkCommand(*block);
    status->parameterCount = count;
    if (HPGLwriteBytes(blocks, block, head, sizeof head) != 0) return 1;
    // Without a record there is no count to write, and nothing that parameters could belong to.
    HPGLCBlockClearCommand(*block);
    HPGLcloseCommand(status);
    return 0;
}

void HPGLcloseCommand(IStatus* status) {
    status->signatureStart = nullptr;
    status->pending = 0;
}

int32_t HPGLconvertParameter(IStatus* status, CBlockList* blocks, CBlock** block) {
    const char* text = status->numberBuffer;
    const PlainNumber plain = readPlainNumber(text, status->bufferPointer);
    const bool isPlain = plain.behind == status->bufferPointer;
    const bool isFirst = status->parameterCount == 0;
    int32_t done = 1;
    *status->bufferPointer = '\0';
    switch (*status->signatureLetter) {
        case 'C': {
            const auto length = static_cast<int32_t>(status->bufferPointer - text);
            done = storeValue(status, blocks, block, text, length);
            TRCTrace(HPGLTraceHandle, TRC_DETAIL, " %s", text);
            break;
        }
        case 'I': {
            const auto value = static_cast<int16_t>(isPlain ? plain.value : atoi(text));
            done = storeValue(status, blocks, block, &value, sizeof value);
            TRCTrace(HPGLTraceHandle, TRC_DETAIL, " %d", static_cast<int>(value));
            break;
        }
        case 'L': {
            const auto value = isPlain ? plain.value : static_cast<int32_t>(atol(text));
            done = storeValue(status, blocks, block, &value, sizeof value);
            TRCTrace(HPGLTraceHandle, TRC_DETAIL, " %d", static_cast<int>(value));
            break;
        }
        case 'R': {
            const bool isWhole = isPlain && !plain.minusZero;
            const auto value = isWhole ? static_cast<float>(plain.value) : static_cast<float>(atof(text));
            done = storeValue(status, blocks, block, &value, sizeof value);
            TRCTrace(HPGLTraceHandle, TRC_DETAIL, " %f", static_cast<double>(value));
            break;
        }
        default:
            countParameter(status);  // no signature: there is nothing to store
            break;
    }
    if (status->commandId == CMD_DT && isFirst) status->labelTerminator = text[0];
    return done;
}

int32_t HPGLparseCode(ParseInt* parser, const char* text, int64_t length) {
    Chunk chunk = {parser, parser->status, nullptr, text, length, 0};
    const int32_t result = parseChunk(&chunk);
    if (length > 0) parser->status->lastByte = text[length - 1];
    return result;
}
