// The action bar and the help line: what they are made of, and how new data brings them up to date.
#include "shell/menus.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <iterator>
#include <sstream>

#include "shell/texts.h"
#include "viewer_run.h"

namespace {

using recorder::script;

// Handles as the recorder gives them out at set-up: object 3, shell 5, action bar 7, help line 9.
#define BAR_TEXTS                                                                                           \
    " \"~Graphic\" \"~Edit\" \"~Goto\" \"~Settings\" \"~Help\" \"~Print\" \"~Save\" \"~Exit\" \"C~ancel\" " \
    "\"~Back\" \"~Complete picture\" \"~Last Zoom\" \"~Rotate 180 degrees\" \"~Help\" \"~Info...\" "        \
    "\"~Function keys...\" \"~Glossary\" \"~Product Information...\"\n"

class Bars : public ViewerRun {
  protected:
    // The first line of that call, without its name and its first `skipped` arguments.
    static std::istringstream argumentsOf(const std::string& operation, int skipped) {
        const size_t start = recorder::calls.find("\n" + operation + " ") + 1;
        std::istringstream line(recorder::calls.substr(start, recorder::calls.find('\n', start) - start));
        std::string word;
        for (int i = 0; i <= skipped; ++i) {
            line >> word;
        }
        return line;
    }
    static std::string nextWords(std::istringstream& line, int count) {
        std::string words, word;
        for (int i = 0; i < count && line >> word; ++i) {
            words += (i == 0 ? "" : " ") + word;
        }
        return words;
    }
    static bool has(const std::string& part) { return recorder::calls.find(part) != std::string::npos; }
};

// ---- the action bar -------------------------------------------------------------------------------------------------

struct BarRow {
    const char* text;
    const char* row;  // pull-down, position in the bar, 0, action id, enabled, class
};

// clang-format off
constexpr BarRow BAR_ROWS[] = {
    {"~Graphic",                "0 1 0 0 1 M"},
    {"~Edit",                   "0 2 0 1 1 M"},
    {"~Goto",                   "0 3 0 2 1 M"},
    {"~Settings",               "0 4 0 3 1 M"},
    {"~Help",                   "0 5 0 4 1 L"},
    {"~Print",                  "1 0 0 5 1 M"},
    {"~Save",                   "1 0 0 6 0 M"},
    {"~Exit",                   "1 0 0 7 1 M"},
    {"C~ancel",                 "2 0 0 8 1 M"},
    {"~Back",                   "3 0 0 12 1 M"},
    {"~Complete picture",       "4 0 0 9 1 M"},
    {"~Last Zoom",              "4 0 0 10 1 M"},
    {"~Rotate 180 degrees",     "4 0 0 11 1 M"},
    {"~Help",                   "5 0 0 13 0 L"},
    {"~Info...",                "5 0 0 13 0 L"},
    {"~Function keys...",       "5 0 0 13 0 L"},
    {"~Glossary",               "5 0 0 13 0 L"},
    {"~Product Information...", "5 0 0 14 1 L"},
};
// clang-format on

TEST_F(Bars, OfferTheMenu) {
    run({});
    std::istringstream rows = argumentsOf("ACTBARcreate", 2);
    EXPECT_EQ(nextWords(rows, 1), std::to_string(std::size(BAR_ROWS)));
    for (size_t i = 0; i < std::size(BAR_ROWS); ++i) {
        EXPECT_EQ(nextWords(rows, 6), BAR_ROWS[i].row) << BAR_ROWS[i].text;
        EXPECT_STREQ(TheShell.texts.actionBar[i], BAR_ROWS[i].text);
    }
    EXPECT_EQ(nextWords(rows, 1), "");
}

TEST_F(Bars, ActionBarIsMadeInItsOrder) {
    run({});
    EXPECT_TRUE(has("SHLquerywid 5 7\nACTBARcreate 6 3 18 "));
    EXPECT_TRUE(has("L\nACTBARsetmp1 7 4 3 2 0\nACTBARset 7 3" BAR_TEXTS "ACTBARreset 7\n"));
}

TEST_F(Bars, ShowTheLanguagesTexts) {
    script.texts = {{"HTIT1", "Titel"}, {"ABTX17", "Ganzes ~Bild"}, {"HLTX05", "F15=Ende"}};
    run({});
    EXPECT_TRUE(has("SHLcreate 1 \"Titel\" 0 3728\n"));
    EXPECT_TRUE(has(" \"~Back\" \"Ganzes ~Bild\" \"~Last Zoom\" "));
    EXPECT_TRUE(has(" \"F12=Quit\" \"F15=Ende\" "));
}

// ---- the help line --------------------------------------------------------------------------------------------------

struct KeyRow {
    const char* key;  // its kind and number
    const char* button;
    const char* action;
};

// clang-format off
constexpr KeyRow KEY_ROWS[] = {
    {"2 1",  "\"1\" \"1\"", "ACTappend 9 0 \"M\" \"1\" \"2\"\n"},
    {"2 15", "\"1\" \"2\"", "ACTappend 9 0 \"M\" \"2\" \"3\"\n"},
    {"2 11", "\"0\" \"3\"", "ACTappend 9 0 \"M\" \"3\" \"0\"\n"},
    {"2 3",  "\"1\" \"4\"", "ACTappend 9 0 \"M\" \"4\" \"4\"\n"},
    {"2 12", "\"1\" \"5\"", "ACTappend 9 0 \"M\" \"5\" \"1\"\n"},
};
// clang-format on

TEST_F(Bars, HelpLinePairsKeysAndButtons) {
    run({});
    std::istringstream line = argumentsOf("HELPLinit", 3 + 5);  // behind the texts
    for (const KeyRow& row : KEY_ROWS) {
        EXPECT_EQ(nextWords(line, 2), row.key);
    }
    for (const KeyRow& row : KEY_ROWS) {
        EXPECT_EQ(nextWords(line, 2), row.button) << row.key;
    }
    EXPECT_EQ(nextWords(line, 1), "");
}

TEST_F(Bars, HelpLineIsMadeInItsOrder) {
    run({});
    std::string actions;
    for (const KeyRow& row : KEY_ROWS) {
        actions += row.action;
    }
    EXPECT_TRUE(
        has("SHLquerywid 5 4\nHELPLcreate 5 8 0 1\n"
            "HELPLinit 9 0 5 \"F1=Help\" \"F3=Back\" \"F11=Save\" \"F12=Quit\" \"F15=Exit\" 2 1 "));
    EXPECT_TRUE(has("\"5\"\nHELPLset_buttons 9 0\nHELPLmake_hlpl 9 3 0\n" + actions + "CONTstdcreate "));
}

// ---- after new data -------------------------------------------------------------------------------------------------

constexpr char REFRESH[] = "ACTBARchanges 7 5 3" BAR_TEXTS "ACTBARsetflag 7 1 4 4\nHELPLmake_hlpl 9 3 0\n";
constexpr char REFRESH_NAMES[] = "ACTBARchanges\nACTBARset\nSHLupdatesizes\nACTBARsetflag\nHELPLmake_hlpl\n";
constexpr char UNCHANGED[] = "ACTBARchanges\nACTBARsetflag\nHELPLmake_hlpl\n";

TEST_F(Bars, AreRefreshedAtTheEndOfTheData) {
    run({[] {
        EXPECT_EQ(callsOf([] { recorder::sendChunk("PD1,1;", WD_CHUNK_BEGIN); }), "");
        EXPECT_EQ(callsOf([] { recorder::sendChunk("PD2,2;", WD_CHUNK_FURTHER); }), "");
        const std::string calls = callsOf([] { recorder::sendChunk("PD3,3;", WD_CHUNK_END); });
        EXPECT_TRUE(calls.starts_with(std::string(REFRESH) + "WCLRcreate ")) << calls;
    }});
}

TEST_F(Bars, AreRefreshedByEveryTransmission) {
    run({[] { send("PD1,1;"); },
         [] {
             recorder::calls.clear();
             send("PD2,2;");
             EXPECT_EQ(namesAmong(REFRESH_NAMES), UNCHANGED);
             recorder::sendChunk("", WD_CHUNK_END);
             EXPECT_EQ(namesAmong(REFRESH_NAMES), std::string(UNCHANGED) + UNCHANGED);
         }});
}

TEST_F(Bars, AreSetAnewWhenTheirTextsHaveChanged) {
    run({[] {
        TheShell.texts.actionBar[2] = "~Hin";
        std::string changed = BAR_TEXTS;
        changed.replace(changed.find("~Goto"), 5, "~Hin");
        const std::string calls = callsOf([] { send("PD1,1;"); });
        EXPECT_TRUE(calls.starts_with("ACTBARchanges 7 5 3" + changed + "ACTBARset 7 3" + changed +
                                      "SHLupdatesizes 5\nACTBARsetflag 7 1 4 4\nHELPLmake_hlpl 9 3 0\nWCLRcreate "))
            << calls;
        recorder::calls.clear();
        send("PD1,1;");
        EXPECT_EQ(namesAmong(REFRESH_NAMES), UNCHANGED);
    }});
}

// A file's bytes as they are at any time, terminated, as long as they are few.
class EchoInMemory {
  public:
    explicit EchoInMemory(const char* name) : file_(open(name, O_RDONLY)) {
        memory_ = mmap(nullptr, SIZE, PROT_READ, MAP_SHARED, file_, 0);
    }
    ~EchoInMemory() {
        munmap(memory_, SIZE);
        close(file_);
    }
    EchoInMemory(const EchoInMemory&) = delete;
    EchoInMemory& operator=(const EchoInMemory&) = delete;
    const char* text() const { return static_cast<const char*>(memory_); }

  private:
    static constexpr size_t SIZE = 64;
    int file_;
    void* memory_;
};

// The trace's lines are calls too, so the parser's show when it begins.
TEST_F(Bars, AreRefreshedBeforeTheLastChunkIsParsed) {
    run({[] {
        recorder::sendChunk("", WD_CHUNK_BEGIN);
        traceOf(3, [] {
            const std::string calls = callsOf([] { recorder::sendChunk("PD1,1;", WD_CHUNK_END); });
            EXPECT_TRUE(calls.starts_with(REFRESH)) << calls;
            EXPECT_NE(calls.find("PD(=20)"), std::string::npos) << calls;
        });
    }});
}

// The bar's first text is the echo file itself, so that the call shows what has been echoed by then.
TEST_F(Bars, AreRefreshedAfterTheLastChunkIsEchoed) {
    script.configuration["LOGF"] = "echo";
    run({[] {
        recorder::sendChunk("IN;", WD_CHUNK_BEGIN);
        const EchoInMemory echo("echo__00.log");
        TheShell.texts.actionBar[0] = echo.text();
        const std::string calls = callsOf([] { recorder::sendChunk("SP1;", WD_CHUNK_END); });
        EXPECT_TRUE(calls.starts_with("ACTBARchanges 7 5 3 \"IN;SP1;\" ")) << calls;
    }});
}

}  // namespace
