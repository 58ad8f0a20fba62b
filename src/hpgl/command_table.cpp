#include "command_table.h"

// The first three rows are the host channel's pseudo-commands: plotter data follows, a file name follows, and a request
// for information. CO is the comment instruction; the rest are HP-GL and HP-GL/2 instructions.
// clang-format off
constexpr HPGLCommand HPGLCommandTable[HPGL_COMMANDS] = {
    { 0, "HPGL_DATA", ""},
    { 1, "HPGL_FILE", "C"},
    { 2, "HPGL_INFO", ""},
    { 3, "CO",       ""},
    { 4, "DF",       ""},
    { 5, "IN",       ""},
    { 6, "IP",       "LLLL"},
    { 7, "IR",       "RRRR"},
    { 8, "IW",       "LLLL"},
    { 9, "PG",       ""},
    {10, "RO",       "I"},
    {11, "RP",       ""},
    {12, "SC",       "RRRRIRR"},
    {13, "AA",       "LLRR"},
    {14, "AR",       "LLRR"},
    {15, "AT",       "LLLLR"},
    {16, "BR",       "LLLLLL"},
    {17, "BZ",       "LLLLLL"},
    {18, "CI",       "LR"},
    {19, "PA",       "LL"},
    {20, "PD",       "LL"},
    {21, "PE",       "CCC"},
    {22, "PR",       "LL"},
    {23, "PU",       "LL"},
    {24, "RT",       "LLLLR"},
    {25, "EA",       "LL"},
    {26, "EP",       ""},
    {27, "ER",       "LL"},
    {28, "EW",       "LRRR"},
    {29, "FP",       "I"},
    {30, "PM",       "I"},
    {31, "RA",       "LL"},
    {32, "RR",       "LL"},
    {33, "WG",       "LRRR"},
    {34, "AD",       "IRIRIRIRIRIRIR"},
    {35, "CF",       "IL"},
    {36, "CP",       "RR"},
    {37, "DI",       "RR"},
    {38, "DR",       "RR"},
    {39, "DT",       "CI"},
    {40, "DV",       "II"},
    {41, "ES",       "RR"},
    {42, "FI",       "I"},
    {43, "FN",       "I"},
    {44, "LB",       "C"},
    {45, "LO",       "I"},
    {46, "SA",       ""},
    {47, "SB",       "I"},
    {48, "SD",       "IRIRIRIRIRIRIR"},
    {49, "SI",       "RR"},
    {50, "SL",       "R"},
    {51, "SR",       "RR"},
    {52, "SS",       ""},
    {53, "TD",       "I"},
    {54, "AC",       "LL"},
    {55, "FT",       "IRR"},
    {56, "LA",       "IIIIIR"},
    {57, "LT",       "IRI"},
    {58, "PW",       "RI"},
    {59, "RF",       "IIII"},
    {60, "SM",       "C"},
    {61, "SP",       "I"},
    {62, "SV",       "III"},
    {63, "TR",       "I"},
    {64, "UL",       "IRRRRRRRRRRRRRRRRRR"},
    {65, "WU",       "I"},
    {66, "BP",       ""},
    {67, "MC",       "I"},
    {68, "NP",       "I"},
    {69, "PC",       "IIII"},
    {70, "CS",       ""},
    {71, "AS",       ""},
    {72, "FS",       ""},
    {73, "VS",       ""},
    {74, "PT",       ""},
    {75, "CT",       ""},
    {76, "DL",       ""},
    {77, "EC",       ""},
    {78, "FR",       ""},
    {79, "MG",       ""},
    {80, "MT",       ""},
    {81, "OH",       ""},
    {82, "OI",       ""},
    {83, "OP",       ""},
    {84, "OS",       ""},
    {85, "PS",       ""},
    {86, "QL",       ""},
    {87, "ST",       ""},
    {88, "VR",       ""},
    {89, "CR",       ""},
    {90, "DC",       ""},
    {91, "DP",       ""},
    {92, "OD",       ""},
};
// clang-format on

namespace {

constexpr bool idsAreRowNumbers() {
    for (int32_t i = 0; i < HPGL_COMMANDS; ++i) {
        if (HPGLCommandTable[i].id != i) return false;
    }
    return true;
}

constexpr bool same(const char* a, const char* b) {
    while (*a != '\0' && *a == *b) {
        ++a;
        ++b;
    }
    return *a == *b;
}

constexpr bool namesDiffer() {
    for (int32_t i = 0; i < HPGL_COMMANDS; ++i) {
        for (int32_t k = 0; k < i; ++k) {
            if (same(HPGLCommandTable[i].name, HPGLCommandTable[k].name)) return false;
        }
    }
    return true;
}

static_assert(idsAreRowNumbers());
static_assert(namesDiffer());
static_assert(CMD_OD == HPGL_COMMANDS - 1 && HPGL_COMMANDS <= 256);
static_assert(same(HPGLCommandTable[CMD_PC].name, "PC") && same(HPGLCommandTable[CMD_SC].name, "SC"));

}  // namespace
