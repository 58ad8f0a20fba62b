#include <cstdlib>

#include "hpgl/parser_internal.h"
#include "trace/trace.h"

namespace {

struct Colour {
    int32_t red, green, blue;
};

// Pen k takes entry (k - 1) mod 15.
constexpr Colour DEFAULT_COLOURS[] = {
    {0, 0, 0},     {0, 0, 255},   {255, 255, 0},   {0, 255, 0},     {255, 0, 255},
    {255, 0, 0},   {0, 255, 255}, {128, 128, 128}, {192, 192, 192}, {0, 0, 128},
    {128, 128, 0}, {0, 128, 0},   {128, 0, 128},   {128, 0, 0},     {0, 128, 128},
};
constexpr int32_t DEFAULT_COLOUR_COUNT = 15;
static_assert(sizeof DEFAULT_COLOURS == DEFAULT_COLOUR_COUNT * sizeof(Colour));

void initPens(HPGLPen* pens) {
    pens[0] = {255, 255, 255, 0, 1, 0};
    for (int32_t k = 1; k < HPGL_PENS; ++k) {
        const Colour& colour = DEFAULT_COLOURS[(k - 1) % DEFAULT_COLOUR_COUNT];
        pens[k] = {colour.red, colour.green, colour.blue, 0, k == 1 ? 1 : 0, 0};
    }
}

// Zeroed memory, or null and the named part's error line.
void* allocate(size_t bytes, const char* part) {
    void* memory = calloc(1, bytes);
    if (memory == nullptr) {
        TRCTraceError(HPGLTraceHandle, "HPGLinitParser: malloc for %s failed (%d bytes)\n", part,
                      static_cast<int>(bytes));
    }
    return memory;
}

HashTable* createCommands() {
    HashTable* commands = HPGLcreateCommandHashTable();
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "\n---------- Begin command lookup table ------------\n\n");
    HPGLhashStatistics(commands);
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "---------- Ende command lookup table -------------\n\n");
    return commands;
}

// In this order; false at the first that memory is lacking for.
bool allocateParts(ParseInt* parser) {
    parser->blocks = static_cast<CBlockList*>(allocate(sizeof(CBlockList), "CBlockList"));
    if (parser->blocks == nullptr) return false;
    HPGLinitList(parser->blocks, "cb");
    parser->commands = createCommands();
    parser->status = static_cast<IStatus*>(allocate(sizeof(IStatus), "IStatus"));
    if (parser->status == nullptr) return false;
    HPGLresetStatus(parser->status);
    parser->PStatus = static_cast<HPGLPen*>(allocate(HPGL_PENS * sizeof(HPGLPen), "PStatus"));
    if (parser->PStatus == nullptr) return false;
    initPens(parser->PStatus);
    parser->global = static_cast<HPGLGlobal*>(allocate(sizeof(HPGLGlobal), "HPGLGlobal"));
    if (parser->global == nullptr) return false;
    *parser->global = {nullptr, 0, HPGL_EMPTY_MIN, HPGL_EMPTY_MIN, HPGL_EMPTY_MAX, HPGL_EMPTY_MAX, 0};
    return true;
}

}  // namespace

void HPGLresetStatus(IStatus* status) {
    *status = {};
    status->labelTerminator = HPGL_ETX;
    status->newParse = 1;
    status->bufferPointer = status->numberBuffer;
}

ParseInt* HPGLinitParser() {
    auto* parser = static_cast<ParseInt*>(allocate(sizeof(ParseInt), "ParseInt"));
    if (parser == nullptr) return nullptr;
    if (allocateParts(parser)) return parser;
    HPGLdestroyParser(parser);
    return nullptr;
}

int32_t HPGLflushCompactCode(ParseInt* parser) {
    HPGLclearList(parser->blocks);
    HPGLresetStatus(parser->status);
    return 1;
}

int32_t HPGLdestroyParser(ParseInt* parser) {
    if (parser == nullptr) return 0;
    HPGLdestroyHashTable(parser->commands);
    HPGLclearList(parser->blocks);
    if (parser->global != nullptr) free(parser->global->fileName);
    free(parser->global);
    free(parser->PStatus);
    free(parser->status);
    free(parser->blocks);
    free(parser);
    return 1;
}
