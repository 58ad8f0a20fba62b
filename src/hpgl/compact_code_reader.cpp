#include "hpgl/compact_code_reader.h"

#include <algorithm>

namespace {

// How the bytes behind a record's count are stepped over.
enum class Form : uint8_t {
    Signature,  // count parameters by the signature, repeated
    Nothing,
    Moves,      // count L: pairs, an odd one is stepped over too
    Curves,     // count L: groups of three pairs, and what is left of one
    Circle,     // radius, and a chord angle when there are 2
    Rectangle,  // one pair
    Wedge,      // radius, two angles, and a chord angle when there are 4
    Arc,        // centre, sweep, and a chord angle when there are 4
    Scale,      // SC
    Pen,        // SP: one I, if any
    Colour,     // PC: pen and three values
    FontPairs,  // AD, SD: whole pairs of I and R, also of an odd count
    Size,       // SI, SR: two R, if any
    Width,      // PW: an R, and an I if there is a second
};

struct Steps {
    Form setup, drawing;
};

constexpr Steps STEPS[] = {
#define HPGL_COMMAND(name, signature, setup, drawing, action, sure) {Form::setup, Form::drawing},
#include "hpgl/commands.inl"
};

int32_t signatureBytes(const char* signature, int32_t count) {
    if (*signature == '\0') return 0;
    int32_t bytes = 0;
    const char* letter = signature;
    for (; count > 0; --count) {
        bytes += HPGLletterBytes(*letter++);
        if (*letter == '\0') letter = signature;
    }
    return bytes;
}

int32_t formBytes(Form form, uint8_t id, int32_t count) {
    switch (form) {
        case Form::Signature:
            return signatureBytes(HPGLCommandTable[id].signature, count);
        case Form::Nothing:
            return 0;
        case Form::Moves:
        case Form::Curves:
            return count * 4;
        case Form::Circle:
            return count == 2 ? 8 : 4;
        case Form::Rectangle:
            return 8;
        case Form::Wedge:
        case Form::Arc:
            return count == 4 ? 16 : 12;
        case Form::Scale:
            return HPGLscParameterBytes(count);
        case Form::Pen:
            return count > 0 ? 2 : 0;
        case Form::Colour:
            return 8;
        case Form::FontPairs:
            return (count + 1) / 2 * 6;
        case Form::Size:
            return count > 0 ? 8 : 0;
        case Form::Width:
            return count > 1 ? 6 : 4;
    }
    return 0;
}

// SC with an unsupported count is looked at, yet not stepped over.
int32_t bytesLookedAt(uint8_t id, int32_t count) {
    if (id != CMD_SC || count == 0) return 0;
    return count >= 5 ? 18 : 16;
}

}  // namespace

int32_t HPGLletterBytes(char letter) {
    switch (letter) {
        case 'L':
        case 'R':
            return 4;
        case 'I':
            return 2;
        case 'C':
            return 1;
        default:
            return 0;
    }
}

int32_t HPGLscParameterBytes(int32_t count) {
    switch (count) {
        case 4:
            return 16;
        case 5:
            return 18;
        case 7:
            return 26;
        default:
            return 0;
    }
}

int32_t HPGLparameterBytes(uint8_t id, uint8_t count, CompactCodePass pass) {
    return formBytes(pass == CompactCodePass::Setup ? STEPS[id].setup : STEPS[id].drawing, id, count);
}

CompactCodeReader HPGLreadBlock(const CBlock* block, CompactCodePass pass) {
    return {pass, block->Data, block->Data + block->Occupied};
}

bool HPGLreadRecord(CompactCodeReader* reader, CompactCodeRecord* record) {
    while (reader->at < reader->end && *reader->at >= HPGL_COMMANDS) {
        ++reader->at;
    }
    if (reader->end - reader->at < 2) return false;
    *record = {reader->at[0], reader->at[1], reader->at, reader->at + 2};
    const int32_t bytes = HPGLparameterBytes(record->id, record->count, reader->pass);
    if (reader->end - record->params < std::max(bytes, bytesLookedAt(record->id, record->count))) return false;
    reader->at = record->params + bytes;
    return true;
}
