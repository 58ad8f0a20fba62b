// The print set-up: what is to be printed where, chosen in its panel or, with --print-to, on the command line.
#pragma once

#include "handles.h"
#include "print_choice.h"

namespace qrvel {

struct PrintSetup : Object {
    static constexpr Kind KIND = Kind::PrintSetup;

    WHandle container = 0;  // of the window that it belongs to
    PrintChoice choice() const;
};

// Its action messages.
inline constexpr uint32_t PRINT_SETUP_KIND = 5;
inline constexpr uint32_t PRINT_CANCELLED = 9;
inline constexpr uint32_t PRINT_SETUP_GONE = 10;
inline constexpr uint32_t PRINT = 11;

// What is chosen now.
PrintChoice currentPrintChoice();

// Stands for the name of the chosen file where that has no room. It names a folder, so no file is meant by it.
inline constexpr char CHOSEN_FILE[] = "/";

}  // namespace qrvel
