// The store of compact code: blocks, room, records that move whole into the next block.
#include "hpgl/compact_code.h"

#include <algorithm>
#include <cstring>
#include <sstream>

#include "failing_allocator.h"
#include "hpgl/parser.h"
#include "picture_text.h"
#include "recorder/recorder.h"
#include "rows.h"
#include "shell/shell_state.h"

namespace {

class CompactCode : public testing::Test {
  protected:
    void SetUp() override { HPGLinitList(&blocks, "cb"); }
    void TearDown() override { HPGLclearList(&blocks); }
    // Takes n bytes, all `byte`, as written.
    static void write(CBlock* block, int32_t n, char byte) {
        memset(block->actPnt, byte, static_cast<size_t>(n));
        ASSERT_EQ(HPGLCBlockAdvance(block, n), 1);
    }
    const FreshViewer viewer;
    const failing_allocator::Guard allocator;
    CBlockList blocks;
};

std::vector<const CBlock*> blocksOf(CBlockList* list) {
    std::vector<const CBlock*> found;
    for (const HPGLListElement* element = list->first; element != nullptr; element = element->next)
        found.push_back(static_cast<const CBlock*>(element->data));
    return found;
}

std::string occupiedOf(CBlockList* list) {
    std::string text;
    for (const CBlock* block : blocksOf(list)) {
        EXPECT_EQ(block->actPnt, block->Data + block->Occupied);
        text += std::to_string(block->Occupied) + " ";
    }
    return text;
}

// ---- blocks ---------------------------------------------------------------------------------------------------------

TEST_F(CompactCode, BeginsABlock) {
    CBlock* block = GetNewCBlock(&blocks);
    EXPECT_EQ(block, blocks.last->data);
    EXPECT_EQ(block->Size, 30000);
    EXPECT_EQ(block->Occupied, 0);
    EXPECT_EQ(block->actPnt, block->Data);
    EXPECT_EQ(block->commandStart, block->Data);
    EXPECT_EQ(blocks.last->type, 1);
}

TEST_F(CompactCode, MovesTheUnfinishedRecord) {
    CBlock* first = GetNewCBlock(&blocks);
    write(first, 10, 'a');
    HPGLCBlockMarkCommand(first);
    write(first, 5, 'b');
    CBlock* second = GetNewCBlock(&blocks);
    EXPECT_EQ(blocks.Actual, blocks.last);
    EXPECT_EQ(occupiedOf(&blocks), "10 5 ");
    EXPECT_EQ(memcmp(second->Data, "bbbbb", 5), 0);
    EXPECT_EQ(second->commandStart, second->Data);
}

TEST_F(CompactCode, MovesNothingWhenNoRecordIsOpen) {
    CBlock* first = GetNewCBlock(&blocks);
    write(first, 10, 'a');
    HPGLCBlockClearCommand(first);
    GetNewCBlock(&blocks);
    EXPECT_EQ(occupiedOf(&blocks), "10 0 ");
}

TEST_F(CompactCode, MovesNothingOfARecordThatHasNotBegun) {
    CBlock* first = GetNewCBlock(&blocks);
    write(first, 10, 'a');
    HPGLCBlockMarkCommand(first);
    GetNewCBlock(&blocks);
    EXPECT_EQ(occupiedOf(&blocks), "10 0 ");
}

TEST_F(CompactCode, AsksTheLastBlockWhateverTheCursor) {
    for (int i = 0; i < 3; ++i)
        write(GetNewCBlock(&blocks), 1, 'a');
    HPGLCBlockClearCommand(static_cast<CBlock*>(blocks.last->data));
    HPGLgotoFirst(&blocks);
    GetNewCBlock(&blocks);
    EXPECT_EQ(blocks.Actual, blocks.last);
    EXPECT_EQ(blocks.count, 4u);
}

TEST_F(CompactCode, StaysAsItWasWithoutMemory) {
    write(GetNewCBlock(&blocks), 7, 'a');
    EXPECT_EQ(traceOf(1,
                      [&] {
                          failing_allocator::failSize(30000);
                          EXPECT_EQ(GetNewCBlock(&blocks), nullptr);
                          failing_allocator::reset();
                      }),
              "GetNewCBlock: malloc failed for NewCBlock.Data (30000 bytes)\n");
    EXPECT_EQ(occupiedOf(&blocks), "7 ");
}

TEST_F(CompactCode, LosesNothingWhenTheListHasNoMemory) {
    write(GetNewCBlock(&blocks), 7, 'a');
    for (int allocation = 1; allocation < 3; ++allocation) {
        EXPECT_EQ(traceOf(1,
                          [&] {
                              failing_allocator::failAfter(allocation);
                              EXPECT_EQ(GetNewCBlock(&blocks), nullptr);
                              failing_allocator::reset();
                          }),
                  "GetNewCBlock: no memory to append NewCBlock\n");
        EXPECT_EQ(occupiedOf(&blocks), "7 ");
    }
}

TEST_F(CompactCode, PrintsABlock) {
    CBlock* block = GetNewCBlock(&blocks);
    write(block, 7, 'a');
    char expected[200];
    snprintf(expected, sizeof expected, "Size:  30000  Data:  %p  Occupied: 7  actPnt: %p",
             static_cast<void*>(block->Data), static_cast<void*>(block->actPnt));
    EXPECT_EQ(traceOf(3, [&] { HPGLdumpList(&blocks); }), expected);
    EXPECT_EQ(traceOf(2, [&] { HPGLdumpList(&blocks); }), "");
}

// ---- advancing, retracting, room ------------------------------------------------------------------------------------

struct StepRow : NamedRow {
    int32_t occupied;
    int32_t bytes;
    bool possible;
};

// clang-format off
constexpr StepRow ADVANCES[] = {
    {"One",          0,     1,     true},
    {"AlmostAll",    0,     29999, true},
    {"All",          0,     30000, false},
    {"More",         0,     30001, false},
    {"TheLastByte",  29998, 1,     true},
    {"BehindIt",     29999, 1,     false},
    {"None",         29999, 0,     true},
};
constexpr StepRow RETRACTS[] = {
    {"One",          1,     1,     true},
    {"All",          29999, 29999, true},
    {"MoreThanAll",  5,     6,     false},
    {"FromNothing",  0,     1,     false},
    {"None",         0,     0,     true},
};
// clang-format on

class CompactCodeAdvance : public CompactCode, public testing::WithParamInterface<StepRow> {};

TEST_P(CompactCodeAdvance, KeepsTheLastByteFree) {
    const StepRow& row = GetParam();
    CBlock* block = GetNewCBlock(&blocks);
    write(block, row.occupied, 'a');
    EXPECT_EQ(HPGLCBlockAdvance(block, row.bytes), row.possible ? 1 : 0);
    EXPECT_EQ(occupiedOf(&blocks), std::to_string(row.possible ? row.occupied + row.bytes : row.occupied) + " ");
}

// The room check before a write follows the same rule.
TEST_P(CompactCodeAdvance, NeedsANewBlockOtherwise) {
    const StepRow& row = GetParam();
    CBlock* block = GetNewCBlock(&blocks);
    HPGLCBlockClearCommand(block);
    write(block, row.occupied, 'a');
    EXPECT_EQ(HPGLCBlockMakeRoom(&blocks, block, row.bytes) == block, row.possible);
    EXPECT_EQ(blocks.count, row.possible ? 1u : 2u);
}
INSTANTIATE_TEST_SUITE_P(Rows, CompactCodeAdvance, testing::ValuesIn(ADVANCES), byRowName);

class CompactCodeRetract : public CompactCode, public testing::WithParamInterface<StepRow> {};

TEST_P(CompactCodeRetract, GivesBackWhatIsThere) {
    const StepRow& row = GetParam();
    CBlock* block = GetNewCBlock(&blocks);
    write(block, row.occupied, 'a');
    EXPECT_EQ(HPGLCBlockRetract(block, row.bytes), row.possible ? 1 : 0);
    EXPECT_EQ(occupiedOf(&blocks), std::to_string(row.possible ? row.occupied - row.bytes : row.occupied) + " ");
}
INSTANTIATE_TEST_SUITE_P(Rows, CompactCodeRetract, testing::ValuesIn(RETRACTS), byRowName);

TEST_F(CompactCode, MarksAndClearsTheCommand) {
    CBlock* block = GetNewCBlock(&blocks);
    write(block, 3, 'a');
    EXPECT_EQ(HPGLCBlockMarkCommand(block), 1);
    EXPECT_EQ(block->commandStart, block->Data + 3);
    EXPECT_EQ(HPGLCBlockClearCommand(block), 1);
    EXPECT_EQ(block->commandStart, nullptr);
    EXPECT_EQ(HPGLCBlockMarkCommand(nullptr), 0);
    EXPECT_EQ(HPGLCBlockClearCommand(nullptr), 0);
}

// ---- the count ------------------------------------------------------------------------------------------------------

struct CountRow : NamedRow {
    int32_t count;
    int32_t stored;
    const char* trace;
};

#define TOO_MANY(n) "WARNING-setNoOfParameters: NoOfParameters was " #n " but maximum I can handle is 255\n"

// clang-format off
constexpr CountRow COUNTS[] = {
    {"None",    0,   0,   ""},
    {"Some",    7,   7,   ""},
    {"Most",    255, 255, ""},
    {"OneMore", 256, 255, TOO_MANY(256)},
    {"More",    300, 255, TOO_MANY(300)},
};
// clang-format on

class CompactCodeCount : public CompactCode, public testing::WithParamInterface<CountRow> {};

TEST_P(CompactCodeCount, IsOneByte) {
    CBlock* block = GetNewCBlock(&blocks);
    write(block, 3, 'a');
    HPGLCBlockMarkCommand(block);
    write(block, 2, 'b');
    EXPECT_EQ(traceOf(1, [&] { EXPECT_EQ(setNoOfParameters(block, GetParam().count), 1); }), GetParam().trace);
    EXPECT_EQ(block->Data[4], GetParam().stored);
    EXPECT_EQ(memcmp(block->Data, "aaab", 4), 0);
}
INSTANTIATE_TEST_SUITE_P(Rows, CompactCodeCount, testing::ValuesIn(COUNTS), byRowName);

TEST_F(CompactCode, CountsNothingWithoutARecord) {
    CBlock* block = GetNewCBlock(&blocks);
    write(block, 3, 'a');
    HPGLCBlockClearCommand(block);
    EXPECT_EQ(traceOf(3,
                      [&] {
                          EXPECT_EQ(setNoOfParameters(block, 300), 0);
                          EXPECT_EQ(setNoOfParameters(nullptr, 300), 0);
                      }),
              "");
    EXPECT_EQ(memcmp(block->Data, "aaa", 3), 0);
}

// ---- blocks as the parser fills them --------------------------------------------------------------------------------

std::string repeated(std::string_view text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

struct FillRow : NamedRow {
    int pensUp;  // PU records of two bytes in front
    const char* text;
    const char* occupied;
};

// clang-format off
constexpr FillRow FILLS[] = {
    {"Room",                14990, "PA1,2;",     "29990 "},
    {"LastByteTaken",       14998, "LBA\003",    "29999 "},
    {"LabelMoved",          14998, "LBAB\003",   "29996 4 "},
    {"CountMoved",          14999, "PU",         "29998 2 "},
    {"ParameterFits",       14996, "PD1;",       "29998 "},
    {"ParameterMoved",      14997, "PD1;",       "29994 6 "},
    {"SecondMoved",         14995, "PD1,2;",     "29990 10 "},
    {"NextRecordBegins",    14998, "LBA\003PU",  "29999 2 "},
    {"ShortFits",           14997, "SP1;",       "29998 "},
    {"ShortMoved",          14998, "SP1;",       "29996 4 "},
    {"CharactersFit",       14997, "SM+++;",     "29999 "},
    {"CharactersMoved",     14997, "SM++++;",    "29994 6 "},
    {"EncodedPairMoved",    14995, "PE\301\301", "29990 10 "},
    {"EncodedPenMoved",     14998, "PE:\301",    "29996 4 "},
    {"EncodedUpStays",      14995, "PE<\301\301","29992 12 "},
};
// clang-format on

class CompactCodeFill : public CompactCode, public testing::WithParamInterface<FillRow> {};

TEST_P(CompactCodeFill, MovesRecordsWhole) {
    const FillRow& row = GetParam();
    EXPECT_EQ(parseText(repeated("PU", row.pensUp) + row.text), 1);
    EXPECT_EQ(occupiedOf(TheShell.parser->blocks), row.occupied);
    const std::string alone = shortRecords(row.text);
    EXPECT_EQ(shortRecords(repeated("PU", row.pensUp) + row.text), repeated("PU 0\n", row.pensUp) + alone);
}
INSTANTIATE_TEST_SUITE_P(Rows, CompactCodeFill, testing::ValuesIn(FILLS), byRowName);

// 1022 bytes a record: 29 of them fill a block.
TEST_F(CompactCode, FillsBlocksWithTheLongestRecords) {
    std::string text, records, parameters;
    for (int i = 0; i < 255; ++i)
        parameters += std::to_string(i) + ",";
    for (int record = 0; record < 60; ++record)
        text += "PA" + parameters;
    parseText(text);
    EXPECT_EQ(occupiedOf(TheShell.parser->blocks), "29638 29638 2044 ");
    std::string one = "PA 255";
    for (int i = 0; i < 255; ++i)
        one.append(" ").append(std::to_string(i));
    EXPECT_EQ(shortRecords(text), repeated(one + "\n", 60));
}

TEST_F(CompactCode, KeepsWhatWasWrittenWhenMemoryRunsOut) {
    TheShell.parser = HPGLinitParser();
    const std::string text = repeated("PU", 14998) + "PA1,2;PD3,4;";
    EXPECT_EQ(HPGLparseCode(TheShell.parser, text.data(), 2), 1);
    failing_allocator::failSize(30000);
    EXPECT_EQ(HPGLparseCode(TheShell.parser, text.data() + 2, static_cast<int64_t>(text.size()) - 2), 0);
    failing_allocator::reset();
    EXPECT_EQ(blocksOf(TheShell.parser->blocks).size(), 1u);
    EXPECT_EQ(std::ranges::count(recordsText(), '\n'), 14999);
}

// A record that got no block has no count to be written, nor have its parameters a place.
TEST_F(CompactCode, OpensNoRecordWithoutABlock) {
    TheShell.parser = HPGLinitParser();
    const std::string full = "LBx\003" + repeated("PU", 14998);
    EXPECT_EQ(HPGLparseCode(TheShell.parser, full.data(), static_cast<int64_t>(full.size())), 1);
    EXPECT_EQ(occupiedOf(TheShell.parser->blocks), "29999 ");
    failing_allocator::failSize(30000);
    EXPECT_EQ(HPGLparseCode(TheShell.parser, "PA1,2;", 6), 0);
    EXPECT_EQ(HPGLparseCode(TheShell.parser, "", 0), 1);
    failing_allocator::reset();
    EXPECT_EQ(HPGLparseCode(TheShell.parser, "5,6;PD3,4;", 10), 1);
    EXPECT_EQ(occupiedOf(TheShell.parser->blocks), "29999 10 ");
    EXPECT_NE(recordsText().find("rec 0 29997 23 PU 0\nrec 1 0 20 PD 2 3 4\n"), std::string::npos);
}

struct LackRow : NamedRow {
    int pensUp;             // PU records of two bytes in front
    std::string_view text;  // its last value finds no block
    std::string_view next;
    const char* without;  // the records of `text`
    const char* whole;    // those of both, once there is a block again
};

// clang-format off
constexpr LackRow LACKS[] = {
    {"Number",           14993, "PA1,2,3;",   "4;",   "PA 2 1 2\n",   "PA 4 1 2 3 4\n"},
    {"FirstNumber",      14997, "PA7;",       "8;",   "PA 0\n",       "PA 2 7 8\n"},
    {"ShortNumber",      14998, "SP1;",       "PU;",  "SP 0\n",       "SP 1 1\nPU 0\n"},
    {"NumberBeforeName", 14997, "PA7PD8,",    "9;",   "PA 0\n",       "PA 1 7\n"},
    {"NumberBeforeSign", 14997, "PA7-8,",     "9;",   "PA 0\n",       "PA 2 7 9\n"},
    {"RestIsLost",       14997, "PA7,8,9;",   "PD;",  "PA 0\n",       "PA 1 7\nPD 0\n"},
    {"NothingFollows",   14997, "PA7;",       "",     "PA 0\n",       "PA 1 7\n"},
    {"Characters",       14998, "SM++;",      "",     "SM 0\n",       "SM 1 2b\n"},
    {"LabelCharacter",   14998, "LBAB",       "C\003","LB 1 41\n",    "LB 3 414243\n"},
    {"EncodedX",         14997, "PE\301",     ";",    "PR 0\n",       "PR 1 1\nPA 0\n"},
    {"EncodedY",         14995, "PE\301\301", ";",    "PR 1 1\n",     "PR 2 1 1\nPA 0\n"},
    {"EncodedPen",       14998, "PE:\301",    ";",    "SP 0\n",       "SP 1 1\nPA 0\n"},
};
// clang-format on

class CompactCodeLack : public CompactCode, public testing::WithParamInterface<LackRow> {
  protected:
    static int parse(std::string_view text) {
        return HPGLparseCode(TheShell.parser, text.data(), static_cast<int64_t>(text.size()));
    }
    // Name, count and parameters of all but the first n records.
    static std::string recordsBehind(int n) {
        std::istringstream lines(recordsText());
        std::string all;
        for (std::string line; std::getline(lines, line);) {
            if (--n < 0) all += line.substr(line.find_first_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ")) + "\n";
        }
        return all;
    }
    static void expectTheSame() {
        const LackRow& row = GetParam();
        HPGLdestroyParser(TheShell.parser);
        TheShell.parser = HPGLinitParser();
        ASSERT_EQ(parse(repeated("PU", row.pensUp)), 1);
        failing_allocator::failSize(30000);
        EXPECT_EQ(parse(row.text), 0);
        EXPECT_EQ(recordsBehind(row.pensUp), row.without);
        EXPECT_EQ(parse(row.next), 0);
        EXPECT_EQ(recordsBehind(row.pensUp), row.without);
        failing_allocator::reset();
        EXPECT_EQ(parse(row.next), 1);
        EXPECT_EQ(recordsBehind(row.pensUp), row.whole);
    }
};

TEST_P(CompactCodeLack, LosesNoValueAndCountsNoneThatIsMissing) {
    expectTheSame();
}

TEST_P(CompactCodeLack, IsTheSameWhileEverythingIsTraced) {
    const TraceCapture trace(3);
    expectTheSame();
}
INSTANTIATE_TEST_SUITE_P(Rows, CompactCodeLack, testing::ValuesIn(LACKS), byRowName);

TEST_F(CompactCode, ReportsNoFirstBlock) {
    TheShell.parser = HPGLinitParser();
    EXPECT_EQ(traceOf(1,
                      [&] {
                          failing_allocator::failSize(30000);
                          EXPECT_EQ(HPGLparseCode(TheShell.parser, "PA1,2;", 6), 0);
                          EXPECT_EQ(HPGLparseCode(TheShell.parser, "PA1,2;", 6), 0);
                          failing_allocator::reset();
                      })
                  .substr(0, 61),
              "GetNewCBlock: malloc failed for NewCBlock.Data (30000 bytes)\n");
    EXPECT_EQ(recordsText(), "");
}

// ---- flush and destroy ----------------------------------------------------------------------------------------------

TEST_F(CompactCode, BeginsAnewAfterAFlush) {
    parseText("DT#;PR1,1;" + repeated("PU", 15000) + "PA1");
    EXPECT_EQ(HPGLflushCompactCode(TheShell.parser), 1);
    EXPECT_EQ(TheShell.parser->blocks->count, 0u);
    EXPECT_EQ(recordsText(), "");
    EXPECT_EQ(TheShell.parser->status->newParse, 1);
    EXPECT_EQ(TheShell.parser->status->labelTerminator, 3);
    EXPECT_FALSE(TheShell.parser->status->polyline.relative);
    constexpr std::string_view NEXT = "2;LB#\003PE;";
    HPGLparseCode(TheShell.parser, NEXT.data(), static_cast<int64_t>(NEXT.size()));
    EXPECT_EQ(recordsText(), "rec 0 0 44 LB 1 23\nrec 0 3 19 PA 0\n");
}

TEST_F(CompactCode, KeepsThePictureInAFlush) {
    parseText("HPGL_INFO;HPGL_FILE:a.hpg\n");
    HPGLflushCompactCode(TheShell.parser);
    EXPECT_STREQ(TheShell.parser->global->fileName, "a.hpg");
    EXPECT_EQ(TheShell.parser->global->infoRequested, 1);
}

TEST_F(CompactCode, DestroysAParser) {
    parseText("HPGL_FILE:a.hpg\n" + repeated("PU", 16000));
    EXPECT_EQ(HPGLdestroyParser(TheShell.parser), 1);
    TheShell.parser = nullptr;
    EXPECT_EQ(HPGLdestroyParser(nullptr), 0);
}

}  // namespace
