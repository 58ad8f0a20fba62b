// The command table: one row a command. The row number is the command's id, which is what compact code stores and what
// both passes dispatch on.
#pragma once

#include <cstdint>

// Signature letters say how a parameter's text is converted and stored; the signature repeats over the parameters:
//   L  atol  32-bit signed integer, 4 bytes       R  atof  32-bit IEEE float, 4 bytes
//   I  atoi  16-bit signed integer, 2 bytes       C  none  the characters as they stand, no terminator, no length
// A command without a signature counts its parameters and stores none.
struct HPGLCommand {
    int64_t id;
    const char* name;       // upper case
    const char* signature;  // possibly empty
};

inline constexpr int32_t HPGL_COMMANDS = 93;

// Row number equals id; compact code has 8 bits for it.
extern const HPGLCommand HPGLCommandTable[HPGL_COMMANDS];

// Ids by name, in table order.
// clang-format off
enum HPGLCommandId : uint8_t {
    CMD_HPGL_DATA, CMD_HPGL_FILE, CMD_HPGL_INFO, CMD_CO, CMD_DF, CMD_IN, CMD_IP, CMD_IR, CMD_IW, CMD_PG,
    CMD_RO, CMD_RP, CMD_SC, CMD_AA, CMD_AR, CMD_AT, CMD_BR, CMD_BZ, CMD_CI, CMD_PA, CMD_PD, CMD_PE, CMD_PR,
    CMD_PU, CMD_RT, CMD_EA, CMD_EP, CMD_ER, CMD_EW, CMD_FP, CMD_PM, CMD_RA, CMD_RR, CMD_WG, CMD_AD, CMD_CF,
    CMD_CP, CMD_DI, CMD_DR, CMD_DT, CMD_DV, CMD_ES, CMD_FI, CMD_FN, CMD_LB, CMD_LO, CMD_SA, CMD_SB, CMD_SD,
    CMD_SI, CMD_SL, CMD_SR, CMD_SS, CMD_TD, CMD_AC, CMD_FT, CMD_LA, CMD_LT, CMD_PW, CMD_RF, CMD_SM, CMD_SP,
    CMD_SV, CMD_TR, CMD_UL, CMD_WU, CMD_BP, CMD_MC, CMD_NP, CMD_PC, CMD_CS, CMD_AS, CMD_FS, CMD_VS, CMD_PT,
    CMD_CT, CMD_DL, CMD_EC, CMD_FR, CMD_MG, CMD_MT, CMD_OH, CMD_OI, CMD_OP, CMD_OS, CMD_PS, CMD_QL, CMD_ST,
    CMD_VR, CMD_CR, CMD_DC, CMD_DP, CMD_OD,
};
// clang-format on
