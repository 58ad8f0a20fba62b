// The W toolkit: the print set-up panel. Its action messages are of kind 5: 9 cancelled, 10 gone, 11 print.
#pragma once

#include <cstdint>

#include "w.h"

inline constexpr uint32_t PSSETUP_DESTINATION = 11;  // uint32_t; 3 is the host's data channel
inline constexpr uint32_t PSSETUP_FORMAT = 12;       // uint32_t
inline constexpr uint32_t PSSETUP_NAME = 23;         // text

extern "C" {

WHandle PSSETUPcreate(WHandle container, WHandle shell, uint32_t a, uint32_t b, uint32_t c, uint32_t d);
void PSSETUPdestroy(WHandle setup);
int32_t PSSETUPshow(WHandle setup);
int32_t PSSETUPhide(WHandle setup);
// Reads a value: numbers into *value with a null buffer; a text into `buffer`, *value giving its room and
// receiving its length.
int32_t PSSETUPqueryValue(WHandle setup, uint32_t number, uint32_t* value, char* buffer);
// Turns the panel's choices into what OUTopendevice takes.
int32_t PSSETUPtransDestAndFormatValues(uint32_t* destination, uint32_t* format);
}
