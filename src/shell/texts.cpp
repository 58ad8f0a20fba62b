#include "shell/texts.h"

namespace {

struct Text {
    const char* key;
    const char* defaultText;
};

// '~' stands before the mnemonic letter.
// clang-format off
constexpr Text TEXTS[] = {
    {"HTIT1",  "KEL HPGL Display"},
    {"ABTX01", "~Graphic"},
    {"ABTX02", "~Edit"},
    {"ABTX03", "~Goto"},
    {"ABTX04", "~Settings"},
    {"ABTX05", "~Help"},
    {"ABTX06", "~Print"},
    {"ABTX07", "~Save"},
    {"ABTX08", "~Exit"},
    {"ABTX15", "C~ancel"},
    {"ABTX16", "~Back"},
    {"ABTX17", "~Complete picture"},
    {"ABTX18", "~Last Zoom"},
    {"ABTX24", "~Rotate 180 degrees"},
    {"ABTX19", "~Help"},
    {"ABTX20", "~Info..."},
    {"ABTX21", "~Function keys..."},
    {"ABTX22", "~Glossary"},
    {"ABTX23", "~Product Information..."},
    {"HLTX01", "F1=Help"},
    {"HLTX02", "F3=Back"},
    {"HLTX03", "F11=Save"},
    {"HLTX04", "F12=Quit"},
    {"HLTX05", "F15=Exit"},
    {"LOAD01", "Information"},
    {"LOAD02", "Load data from TOLK/4 program"},
};
// clang-format on

static_assert(sizeof TEXTS / sizeof TEXTS[0] == HPGL_TEXTS);
static_assert(HPGL_TITLE_TEXTS + HPGL_ACTION_BAR_TEXTS + HPGL_HELP_LINE_TEXTS + HPGL_LOAD_PANEL_TEXTS == HPGL_TEXTS);

}  // namespace

void HPGLloadTexts(WHandle app, char* buffer, HPGLTexts* texts) {
    const char* keys[HPGL_TEXTS];
    for (int32_t i = 0; i < HPGL_TEXTS; ++i) {
        keys[i] = TEXTS[i].key;
        texts->all[i] = nullptr;
    }
    if (buffer == nullptr) {
        Wfatalerror(app, "Kein Speicher fuer Textbuffer vorhanden\n");
    } else if (Wloadtxt(app, "HPGL", keys, texts->all, HPGL_TEXTS, buffer, HPGL_TEXT_BUFFER_SIZE) == 0) {
        Wfatalerror(app, "Unable to open language file");
    }
    for (int32_t i = 0; i < HPGL_TEXTS; ++i) {
        if (texts->all[i] == nullptr) texts->all[i] = TEXTS[i].defaultText;
    }
    texts->title = texts->all;
    texts->actionBar = texts->title + HPGL_TITLE_TEXTS;
    texts->helpLine = texts->actionBar + HPGL_ACTION_BAR_TEXTS;
    texts->loadPanel = texts->helpLine + HPGL_HELP_LINE_TEXTS;
}
