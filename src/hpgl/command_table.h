// The command table: what the parser needs of commands.inl. The row number is the command's id, which is what compact
// code stores and what both passes dispatch on.
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

// Ids by name, in table order; compact code has 8 bits for one.
enum HPGLCommandId : uint8_t {
#define HPGL_COMMAND(name, signature, setup, drawing, action, sure) CMD_##name,
#include "hpgl/commands.inl"
    HPGL_COMMANDS,
};

extern const HPGLCommand HPGLCommandTable[HPGL_COMMANDS];
