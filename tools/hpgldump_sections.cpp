#include "hpgldump_sections.h"

#include <cstdio>

#include "hpgl/compact_code_reader.h"
#include "recorder/recorder.h"
#include "shell/shell_state.h"

namespace {

template <class Use>
void forEachBlock(Use use) {
    void* data = nullptr;
    int index = 0;
    if (TheShell.parser == nullptr || !HPGLgotoFirst(TheShell.parser->blocks)) return;
    for (bool more = HPGLgetActualListData(TheShell.parser->blocks, &data, nullptr, nullptr); more;
         more = HPGLgetNextListData(TheShell.parser->blocks, &data, nullptr, nullptr)) {
        use(index++, *static_cast<const CBlock*>(data));
    }
}

void printHex(FILE* to, const uint8_t* bytes, int32_t count) {
    for (int32_t i = 0; i < count; ++i) {
        std::fprintf(to, "%02x", bytes[i]);
    }
}

void printNumber(FILE* to, char letter, const uint8_t* at) {
    switch (letter) {
        case 'L':
            std::fprintf(to, " %d", HPGLreadL(at));
            break;
        case 'I':
            std::fprintf(to, " %d", HPGLreadI(at));
            break;
        default:
            std::fprintf(to, " %.9g", static_cast<double>(HPGLreadR(at)));
            break;
    }
}

// `bytes` bytes of parameters by signature; characters that follow one another are one word.
void printParameters(FILE* to, const char* signature, const uint8_t* at, int32_t bytes) {
    const char* letter = signature;
    bool inCharacters = false;
    for (const uint8_t* end = at + bytes; at < end; at += HPGLletterBytes(*letter++)) {
        if (*letter == '\0') letter = signature;
        if (*letter == 'C') {
            std::fprintf(to, inCharacters ? "%02x" : " %02x", *at);
        } else {
            printNumber(to, *letter, at);
        }
        inCharacters = *letter == 'C';
    }
}

void printCodesAbove(FILE* to, int index, const uint8_t* data, const uint8_t* from, const uint8_t* end) {
    for (; from < end; ++from) {
        std::fprintf(to, "rec %d %td %d ?\n", index, from - data, *from);
    }
}

void printRecord(FILE* to, int index, const uint8_t* data, const CompactCodeRecord& record) {
    const HPGLCommand& row = HPGLCommandTable[record.id];
    std::fprintf(to, "rec %d %td %d %s %d", index, record.start - data, record.id, row.name, record.count);
    printParameters(to, row.signature, record.params,
                    HPGLparameterBytes(record.id, record.count, CompactCodePass::Setup));
    std::fprintf(to, "\n");
}

// Codes above 92 lie between the record before and the one read, or at the block's end.
const uint8_t* endOfCodesAbove(const CompactCodeReader& reader) {
    const uint8_t* at = reader.at;
    while (at < reader.end && *at >= HPGL_COMMANDS) {
        ++at;
    }
    return at;
}

}  // namespace

void dumpHex(FILE* to) {
    forEachBlock([to](int index, const CBlock& block) {
        std::fprintf(to, "block %d %d\nhex", index, block.Occupied);
        if (block.Occupied > 0) std::fprintf(to, " ");
        printHex(to, block.Data, block.Occupied);
        std::fprintf(to, "\n");
    });
}

void dumpPicture(FILE* to) {
    if (TheShell.parser == nullptr) return;
    const HPGLGlobal& global = *TheShell.parser->global;
    std::fprintf(to, "file %s\n", global.fileName != nullptr ? global.fileName : "-");
    std::fprintf(to, "info %d\n", global.infoRequested);
    std::fprintf(to, "extents %d %d %d %d\n", global.MinX, global.MinY, global.MaxX, global.MaxY);
    int index = 0;
    for (const WColour& entry : recorder::palette) {
        std::fprintf(to, "palette %d %d %d %d\n", index++, entry.red, entry.green, entry.blue);
    }
    for (int32_t i = 0; i < HPGL_PENS; ++i) {
        const HPGLPen& pen = TheShell.parser->PStatus[i];
        if (pen.used != 0) {
            std::fprintf(to, "pen %d %d %d %d %d\n", i, pen.red, pen.green, pen.blue, pen.paletteIndex);
        }
    }
}

void dumpScaling(FILE* to) {
    const HPGLDisplay& display = TheShell.display;
    std::fprintf(to, "scaling %d %d %d %d %d %d\n", display.DSizeX, display.DSizeY, display.DSize, display.USize,
                 display.MaxX, display.MaxY);
}

void dumpRecords(FILE* to) {
    forEachBlock([to](int index, const CBlock& block) {
        CompactCodeReader reader = HPGLreadBlock(&block, CompactCodePass::Setup);
        CompactCodeRecord record;
        bool more = true;
        while (more) {
            const uint8_t* from = reader.at;
            const uint8_t* end = endOfCodesAbove(reader);
            more = HPGLreadRecord(&reader, &record);
            printCodesAbove(to, index, block.Data, from, end);
            if (more) printRecord(to, index, block.Data, record);
        }
    });
}
