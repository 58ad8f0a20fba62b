#include "hpgl/command_table.h"

constexpr HPGLCommand HPGLCommandTable[HPGL_COMMANDS] = {
#define HPGL_COMMAND(name, signature, setup, drawing, action, sure) {CMD_##name, #name, signature},
#include "hpgl/commands.inl"
};
