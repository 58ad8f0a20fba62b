// The viewer's texts: its own, and those of a language file.
#include "shell/texts.h"

#include <array>

#include "toolkit/wi.h"
#include "viewer_run.h"

namespace {

using recorder::script;

constexpr const char* DEFAULTS[] = {"KEL HPGL Display",
                                    "~Graphic",
                                    "~Edit",
                                    "~Goto",
                                    "~Settings",
                                    "~Help",
                                    "~Print",
                                    "~Save",
                                    "~Exit",
                                    "C~ancel",
                                    "~Back",
                                    "~Complete picture",
                                    "~Last Zoom",
                                    "~Rotate 180 degrees",
                                    "~Help",
                                    "~Info...",
                                    "~Function keys...",
                                    "~Glossary",
                                    "~Product Information...",
                                    "F1=Help",
                                    "F3=Back",
                                    "F11=Save",
                                    "F12=Quit",
                                    "F15=Exit",
                                    "Information",
                                    "Load data from TOLK/4 program"};

constexpr const char* KEYS[] = {"HTIT1",  "ABTX01", "ABTX02", "ABTX03", "ABTX04", "ABTX05", "ABTX06",
                                "ABTX07", "ABTX08", "ABTX15", "ABTX16", "ABTX17", "ABTX18", "ABTX24",
                                "ABTX19", "ABTX20", "ABTX21", "ABTX22", "ABTX23", "HLTX01", "HLTX02",
                                "HLTX03", "HLTX04", "HLTX05", "LOAD01", "LOAD02"};
static_assert(std::size(KEYS) == std::size(DEFAULTS));

class Texts : public testing::Test {
  protected:
    // By position: title, action bar, help line, load panel.
    std::vector<std::string> load() {
        HPGLloadTexts(1, buffer_.data(), &loaded);
        std::vector<std::string> texts(loaded.title, loaded.title + HPGL_TITLE_TEXTS);
        texts.insert(texts.end(), loaded.actionBar, loaded.actionBar + HPGL_ACTION_BAR_TEXTS);
        texts.insert(texts.end(), loaded.helpLine, loaded.helpLine + HPGL_HELP_LINE_TEXTS);
        texts.insert(texts.end(), loaded.loadPanel, loaded.loadPanel + HPGL_LOAD_PANEL_TEXTS);
        return texts;
    }
    static std::vector<std::string> defaults() { return {std::begin(DEFAULTS), std::end(DEFAULTS)}; }

    HPGLTexts loaded;

  private:
    FreshViewer viewer_;
    std::array<char, HPGL_TEXT_BUFFER_SIZE> buffer_{};
};

TEST_F(Texts, HaveDefaults) {
    EXPECT_EQ(load(), defaults());
    EXPECT_EQ(loaded.actionBar - loaded.title, 1);
    EXPECT_EQ(loaded.helpLine - loaded.actionBar, 18);
    EXPECT_EQ(loaded.loadPanel - loaded.helpLine, 5);
}

TEST_F(Texts, AreReplacedOneByOne) {
    for (size_t i = 0; i < std::size(KEYS); ++i) {
        script.texts = {{KEYS[i], "ein Text"}};
        std::vector<std::string> expected = defaults();
        expected[i] = "ein Text";
        EXPECT_EQ(load(), expected) << KEYS[i];
    }
}

TEST_F(Texts, AreReplacedAltogether) {
    for (const char* key : KEYS) {
        script.texts[key] = std::string("ein Text: ") + key;
    }
    const std::vector<std::string> texts = load();
    ASSERT_EQ(texts.size(), std::size(KEYS));
    for (size_t i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(texts[i], std::string("ein Text: ") + KEYS[i]);
    }
}

TEST_F(Texts, AreDefaultsWhereTheBufferIsFull) {
    script.texts = {{"HTIT1", std::string(1990, 't')}, {"ABTX01", "~Grafik, lang"}, {"LOAD01", "kurz"}};
    std::vector<std::string> expected = defaults();
    expected[0] = std::string(1990, 't');
    expected[24] = "kurz";
    EXPECT_EQ(load(), expected);
}

// Of a toolkit whose Wfatalerror comes back.
TEST_F(Texts, AreDefaultsWithoutALanguageFile) {
    script.quiet = true;
    script.failing = {"Wloadtxt", "Wfatalerror"};
    EXPECT_EQ(load(), defaults());
    EXPECT_EQ(recorder::messageBoxes, std::vector<std::string>{"Wfatalerror: Unable to open language file"});
}

TEST_F(Texts, AreNotLoadedWithoutABuffer) {
    script.quiet = true;
    script.failing = {"Wfatalerror"};
    HPGLloadTexts(1, nullptr, &loaded);
    EXPECT_EQ(recorder::calls, "Wfatalerror 1 \"Kein Speicher fuer Textbuffer vorhanden\\n\"\n");
    EXPECT_STREQ(loaded.title[25], "Load data from TOLK/4 program");
}

}  // namespace
