// The language texts: 26 of them, by key, each with a default that is used where the language file has none.
#pragma once

#include <cstdint>

#include "toolkit/w.h"

inline constexpr int32_t HPGL_TEXTS = 26;
inline constexpr int32_t HPGL_TITLE_TEXTS = 1;
inline constexpr int32_t HPGL_ACTION_BAR_TEXTS = 18;
inline constexpr int32_t HPGL_HELP_LINE_TEXTS = 5;
inline constexpr int32_t HPGL_LOAD_PANEL_TEXTS = 2;
inline constexpr int32_t HPGL_TEXT_BUFFER_SIZE = 2000;

// A group is a pointer to its first text; all point into one array, in this order, and so no copy is made of the
// record.
struct HPGLTexts {
    const char* all[HPGL_TEXTS] = {};
    const char** title = nullptr;
    const char** actionBar = nullptr;
    const char** helpLine = nullptr;
    const char** loadPanel = nullptr;
};

// Loads the texts into `buffer` (HPGL_TEXT_BUFFER_SIZE bytes, which must live as long as they). Ends the program
// through Wfatalerror when there is no buffer or no language file.
void HPGLloadTexts(WHandle app, char* buffer, HPGLTexts* texts);
