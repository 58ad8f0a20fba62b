// The walk over compact code: how far each pass steps, and where a block is left.
#include "hpgl/compact_code_reader.h"

#include "picture_text.h"
#include "rows.h"

namespace {

constexpr auto SETUP = CompactCodePass::Setup;
constexpr auto DRAWING = CompactCodePass::Drawing;

// ---- steps ----------------------------------------------------------------------------------------------------------

struct StepRow : NamedRow {
    HPGLCommandId id;
    uint8_t count;
    int32_t setup;
    int32_t drawing;
};

// clang-format off
constexpr StepRow STEPS[] = {
    {"DataWithCount",  CMD_HPGL_DATA, 3, 0,  0},   {"FileWithCount",  CMD_HPGL_FILE, 3, 3,  0},
    {"InfoWithCount",  CMD_HPGL_INFO, 3, 0,  0},   {"IN",             CMD_IN, 2,   0,  0},
    {"CO",             CMD_CO, 2,    0,  0},       {"PE",             CMD_PE, 3,   3,  3},
    {"IP",             CMD_IP, 4,   16, 16},       {"IPOverFour",     CMD_IP, 5,  20, 20},
    {"RO",             CMD_RO, 1,    2,  2},       {"ROTwo",          CMD_RO, 2,   4,  4},
    {"SCNone",         CMD_SC, 0,    0,  0},       {"SCOne",          CMD_SC, 1,   0,  0},
    {"SCFour",         CMD_SC, 4,   16, 16},       {"SCFive",         CMD_SC, 5,  18, 18},
    {"SCSix",          CMD_SC, 6,    0,  0},       {"SCSeven",        CMD_SC, 7,  26, 26},
    {"SCEight",        CMD_SC, 8,    0,  0},       {"ATCycle",        CMD_AT, 6,  24, 24},
    {"PANone",         CMD_PA, 0,    0,  0},       {"PAOdd",          CMD_PA, 3,  12, 12},
    {"PDOne",          CMD_PD, 1,    4,  4},       {"PUMost",         CMD_PU, 255, 1020, 1020},
    {"PR",             CMD_PR, 2,    8,  8},       {"BZIncomplete",   CMD_BZ, 8,  32, 32},
    {"BR",             CMD_BR, 6,   24, 24},       {"CINone",         CMD_CI, 0,   4,  4},
    {"CI",             CMD_CI, 1,    4,  4},       {"CIChord",        CMD_CI, 2,   8,  8},
    {"CIThree",        CMD_CI, 3,    4,  4},       {"EANone",         CMD_EA, 0,   8,  8},
    {"ERThree",        CMD_ER, 3,    8,  8},       {"RA",             CMD_RA, 2,   8,  8},
    {"RROne",          CMD_RR, 1,    8,  8},       {"EWNone",         CMD_EW, 0,  12, 12},
    {"WG",             CMD_WG, 3,   12, 12},       {"WGChord",        CMD_WG, 4,  16, 16},
    {"EWFive",         CMD_EW, 5,   12, 12},       {"AA",             CMD_AA, 3,  12, 12},
    {"ARChord",        CMD_AR, 4,   16, 16},       {"AANone",         CMD_AA, 0,  12, 12},
    {"EP",             CMD_EP, 2,    0,  0},       {"FPThree",        CMD_FP, 3,   6,  6},
    {"PMNone",         CMD_PM, 0,    0,  0},       {"PM",             CMD_PM, 1,   2,  2},
    {"ADOne",          CMD_AD, 1,    2,  6},       {"ADTwo",          CMD_AD, 2,   6,  6},
    {"SDThree",        CMD_SD, 3,    8, 12},       {"SDCycle",        CMD_SD, 14, 42, 42},
    {"SINone",         CMD_SI, 0,    0,  0},       {"SIOne",          CMD_SI, 1,   4,  8},
    {"SI",             CMD_SI, 2,    8,  8},       {"SRThree",        CMD_SR, 3,  12,  8},
    {"PWOne",          CMD_PW, 1,    4,  4},       {"PW",             CMD_PW, 2,   6,  6},
    {"PWNone",         CMD_PW, 0,    0,  4},       {"PWThree",        CMD_PW, 3,  10,  6},
    {"SPNone",         CMD_SP, 0,    0,  0},       {"SP",             CMD_SP, 1,   2,  2},
    {"SPTwo",          CMD_SP, 2,    2,  2},       {"PCNone",         CMD_PC, 0,   8,  0},
    {"PC",             CMD_PC, 4,    8,  8},       {"PCFive",         CMD_PC, 5,   8, 10},
    {"NP",             CMD_NP, 2,    4,  4},       {"LB",             CMD_LB, 255, 255, 255},
    {"LBNone",         CMD_LB, 0,    0,  0},       {"SM",             CMD_SM, 2,   2,  2},
    {"DT",             CMD_DT, 2,    3,  3},       {"UL",             CMD_UL, 20, 76, 76},
    {"LA",             CMD_LA, 6,   14, 14},       {"OD",             CMD_OD, 9,   0,  0},
};
// clang-format on

class CompactCodeStep : public testing::TestWithParam<StepRow> {};

TEST_P(CompactCodeStep, DependsOnThePass) {
    const StepRow& row = GetParam();
    EXPECT_EQ(HPGLparameterBytes(row.id, row.count, SETUP), row.setup);
    EXPECT_EQ(HPGLparameterBytes(row.id, row.count, DRAWING), row.drawing);
}
INSTANTIATE_TEST_SUITE_P(Rows, CompactCodeStep, testing::ValuesIn(STEPS), byRowName);

// ---- records at a block's end ---------------------------------------------------------------------------------------

struct WalkRow : NamedRow {
    std::string bytes;
    const char* setup;  // "ID@OFFSET " of the records found
    const char* drawing;
};

std::string record(HPGLCommandId id, int count, int parameterBytes) {
    return std::string{static_cast<char>(id), static_cast<char>(count)} +
           std::string(static_cast<size_t>(parameterBytes), '\0');
}

// clang-format off
const WalkRow WALKS[] = {
    {"Nothing",            "",                                                   "",           ""},
    {"TwoRecords",         record(CMD_PU, 0, 0) + record(CMD_PA, 2, 8),          "23@0 19@2 ", "23@0 19@2 "},
    {"OnlyAnId",           record(CMD_PU, 0, 0) + "\x05",                        "23@0 ",      "23@0 "},
    {"CutParameter",       record(CMD_PU, 0, 0) + record(CMD_PA, 2, 7),          "23@0 ",      "23@0 "},
    {"CutLabel",           record(CMD_LB, 3, 2),                                 "",           ""},
    {"WholeLabel",         record(CMD_LB, 3, 3),                                 "44@0 ",      "44@0 "},
    {"CodesAbove",         "\x5D\xFF" + record(CMD_PU, 0, 0),                    "23@2 ",      "23@2 "},
    {"CountTakenAsCode",   "\x5D\x17" + std::string(1, '\0'),                    "23@1 ",      "23@1 "},
    {"OnlyCodesAbove",     "\x5D\x5E\xFF",                                       "",           ""},
    {"ScaleOfNothing",     record(CMD_SC, 0, 0),                                 "12@0 ",      "12@0 "},
    {"ScaleOfOneNeeds16",  record(CMD_SC, 1, 15),                                "",           ""},
    {"ScaleOfOneHas16",    record(CMD_SC, 1, 0) + std::string(16, '\xFF'),       "12@0 ",      "12@0 "},
    {"ScaleOfFour",        record(CMD_SC, 4, 16),                                "12@0 ",      "12@0 "},
    {"ScaleOfSixNeeds18",  record(CMD_SC, 6, 17),                                "",           ""},
    {"ScaleOfSixHas18",    record(CMD_SC, 6, 0) + std::string(18, '\xFF'),       "12@0 ",      "12@0 "},
    {"ScaleOfEightNeeds18",record(CMD_SC, 8, 17),                                "",           ""},
    {"ScaleOfSevenCut",    record(CMD_SC, 7, 25),                                "",           ""},
    {"CircleWithoutRadius",record(CMD_CI, 0, 3),                                 "",           ""},
    {"ColourOfOne",        record(CMD_PC, 1, 2) + record(CMD_PU, 0, 0),          "",           "69@0 23@4 "},
    {"FontOfOne",          record(CMD_SD, 1, 2),                                 "48@0 ",      ""},
    {"SizeOfOne",          record(CMD_SI, 1, 4),                                 "49@0 ",      ""},
    {"FileName",           record(CMD_HPGL_FILE, 2, 0),                          "",           "1@0 "},
};
// clang-format on

class CompactCodeWalk : public testing::TestWithParam<WalkRow> {};

std::string walk(const std::string& bytes, CompactCodePass pass) {
    // Of exactly the bytes, so that a sanitizer sees whoever reads behind them.
    std::vector<uint8_t> data(bytes.begin(), bytes.end());
    data.shrink_to_fit();
    const auto occupied = static_cast<int32_t>(data.size());
    const CBlock block = {HPGL_BLOCK_SIZE, occupied, data.data(), data.data() + occupied, nullptr};
    CompactCodeReader reader = HPGLreadBlock(&block, pass);
    CompactCodeRecord found;
    std::string text;
    while (HPGLreadRecord(&reader, &found)) {
        EXPECT_EQ(found.params, found.start + 2);
        EXPECT_EQ(found.count, found.start[1]);
        text += std::to_string(found.id) + "@" + std::to_string(found.start - data.data()) + " ";
    }
    return text;
}

TEST_P(CompactCodeWalk, LeavesTheBlockAtARecordThatReachesBeyond) {
    EXPECT_EQ(walk(GetParam().bytes, SETUP), GetParam().setup);
    EXPECT_EQ(walk(GetParam().bytes, DRAWING), GetParam().drawing);
}
INSTANTIATE_TEST_SUITE_P(Rows, CompactCodeWalk, testing::ValuesIn(WALKS), byRowName);

TEST(CompactCodeValues, AreUnalignedAndLittleEndian) {
    const uint8_t bytes[] = {0, 0x78, 0x56, 0x34, 0xF2, 0, 0, 0xC0, 0x3F};
    EXPECT_EQ(HPGLreadL(bytes + 1), static_cast<int32_t>(0xF2345678));
    EXPECT_EQ(HPGLreadI(bytes + 3), static_cast<int16_t>(0xF234));
    EXPECT_EQ(HPGLreadR(bytes + 5), 1.5F);
}

}  // namespace
