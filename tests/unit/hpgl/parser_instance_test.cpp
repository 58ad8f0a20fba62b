// A parser instance: what it holds at the start, and what happens without memory.
#include <array>
#include <string>

#include "failing_allocator.h"
#include "hpgl/parser_internal.h"
#include "picture_text.h"
#include "rows.h"
#include "shell/shell_state.h"

namespace {

class ParserInstance : public testing::Test {
  protected:
    const FreshViewer viewer;
    const failing_allocator::Guard allocator;
};

TEST_F(ParserInstance, BeginsEmpty) {
    TheShell.parser = HPGLinitParser();
    ASSERT_NE(TheShell.parser, nullptr);
    EXPECT_STREQ(TheShell.parser->blocks->name, "cb");
    EXPECT_EQ(TheShell.parser->blocks->count, 0u);
    EXPECT_EQ(TheShell.parser->commands->size, 114);
    const HPGLGlobal& global = *TheShell.parser->global;
    EXPECT_EQ(global.fileName, nullptr);
    EXPECT_EQ(global.infoRequested, 0);
    EXPECT_EQ(global.MinX, 1073741823);
    EXPECT_EQ(global.MinY, 1073741823);
    EXPECT_EQ(global.MaxX, -1073741823);
    EXPECT_EQ(global.MaxY, -1073741823);
    EXPECT_EQ(global.spare, 0);
    const IStatus& status = *TheShell.parser->status;
    EXPECT_EQ(status.labelTerminator, 3);
    EXPECT_EQ(status.newParse, 1);
    EXPECT_EQ(status.signatureStart, nullptr);
    EXPECT_EQ(status.stringMode + status.controlsAllowed + status.pending + status.commandId, 0);
    EXPECT_FALSE(status.polyline.relative);
}

TEST_F(ParserInstance, HasDefaultPens) {
    constexpr std::array<std::array<int32_t, 3>, 15> COLOURS = {{
        {0, 0, 0},
        {0, 0, 255},
        {255, 255, 0},
        {0, 255, 0},
        {255, 0, 255},
        {255, 0, 0},
        {0, 255, 255},
        {128, 128, 128},
        {192, 192, 192},
        {0, 0, 128},
        {128, 128, 0},
        {0, 128, 0},
        {128, 0, 128},
        {128, 0, 0},
        {0, 128, 128},
    }};
    TheShell.parser = HPGLinitParser();
    for (size_t k = 0; k < 255; ++k) {
        SCOPED_TRACE(k);
        const HPGLPen& pen = TheShell.parser->PStatus[k];
        const std::array<int32_t, 3> expected = k == 0 ? std::array{255, 255, 255} : COLOURS[(k - 1) % 15];
        EXPECT_EQ((std::array{pen.red, pen.green, pen.blue}), expected);
        EXPECT_EQ(pen.used, k < 2 ? 1 : 0);
        EXPECT_EQ(pen.paletteIndex, 0);
        EXPECT_EQ(pen.width, 0);
    }
}

TEST_F(ParserInstance, DumpsTheCommandTable) {
    const std::string lines = traceOf(3, [] { TheShell.parser = HPGLinitParser(); });
    EXPECT_TRUE(lines.starts_with("\n---------- Begin command lookup table ------------\n\n0.Bucket: Count:  "));
    EXPECT_TRUE(
        lines.ends_with("TotalNoOfElements:  93\n\n\n"
                        "---------- Ende command lookup table -------------\n\n"));
    EXPECT_EQ(traceOf(2, [] { HPGLdestroyParser(HPGLinitParser()); }), "");
}

// ---- no memory ------------------------------------------------------------------------------------------------------

std::string failedLine(const char* part, size_t bytes) {
    return std::string("HPGLinitParser: malloc for ") + part + " failed (" + std::to_string(bytes) + " bytes)\n";
}

// What is written, and whether there is an instance, when the n-th allocation fails.
std::string expectedLine(int n, int all) {
    const std::string table = "createHashTable: Cant allocate ";
    if (n == 0) return failedLine("ParseInt", sizeof(ParseInt));
    if (n == 1) return failedLine("CBlockList", sizeof(CBlockList));
    if (n == 2) return table + std::to_string(sizeof(HashTable)) + " bytes for Hashtable\n";
    if (n == 3) return table + std::to_string(114 * sizeof(HashBucket)) + " bytes for Hashtable entries\n";
    if (n == all - 3) return failedLine("IStatus", sizeof(IStatus));
    if (n == all - 2) return failedLine("PStatus", 255 * sizeof(HPGLPen));
    if (n == all - 1) return failedLine("HPGLGlobal", sizeof(HPGLGlobal));
    return "";  // a command that is absent
}

TEST_F(ParserInstance, ReportsEachAllocationThatFails) {
    failing_allocator::reset();
    HPGLdestroyParser(HPGLinitParser());
    const int all = failing_allocator::count();
    ASSERT_EQ(all, 4 + 2 * 93 + 3);
    for (int n = 0; n < all; ++n) {
        SCOPED_TRACE(n);
        ParseInt* parser = nullptr;
        EXPECT_EQ(traceOf(1,
                          [&] {
                              failing_allocator::failAfter(n);
                              parser = HPGLinitParser();
                              failing_allocator::reset();
                          }),
                  expectedLine(n, all));
        EXPECT_EQ(parser != nullptr, n > 1 && n < all - 3);
        HPGLdestroyParser(parser);
    }
}

TEST_F(ParserInstance, KnowsNoCommandsWithoutATable) {
    failing_allocator::failAfter(2);
    TheShell.parser = HPGLinitParser();
    failing_allocator::reset();
    ASSERT_NE(TheShell.parser, nullptr);
    EXPECT_EQ(TheShell.parser->commands, nullptr);
    EXPECT_EQ(HPGLparseCode(TheShell.parser, "PA1,2;HPGL_DATA", 15), 1);
    EXPECT_EQ(recordsText(), "");
}

TEST_F(ParserInstance, ReportsAFileNameThatMemoryIsLackingFor) {
    TheShell.parser = HPGLinitParser();
    constexpr std::string_view TEXT = "PA1,2;HPGL_FILE:a.hpg\nPD";  // nine bytes from the colon on
    EXPECT_EQ(HPGLparseCode(TheShell.parser, TEXT.data(), 2), 1);   // has its block
    EXPECT_EQ(traceOf(1,
                      [&] {
                          failing_allocator::failAfter(0);
                          EXPECT_EQ(HPGLparseCode(TheShell.parser, TEXT.data() + 2, TEXT.size() - 2), 0);
                          failing_allocator::reset();
                      }),
              "HPGLparseCode: malloc failed for FileName (number of bytes = 9)\n");
    EXPECT_EQ(TheShell.parser->global->fileName, nullptr);
    EXPECT_EQ(recordsText(), "rec 0 0 19 PA 2 1 2\n");
}

}  // namespace
