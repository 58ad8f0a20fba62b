// The W toolkit: the print set-up panel.
#pragma once

#include <cstdint>

#include "toolkit/w.h"

// Its action messages.
enum PSSETUPNotification : uint32_t { PSSETUP_CANCELLED = 9, PSSETUP_GONE = 10, PSSETUP_PRINT = 11 };

// Its values.
enum PSSETUPValue : uint32_t {
    PSSETUP_DESTINATION = 11,  // uint32_t, an OUTDestination once it is translated
    PSSETUP_FORMAT = 12,       // uint32_t
    PSSETUP_NAME = 23,         // text
};

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
