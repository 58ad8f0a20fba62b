// A picture is the same however the host cuts its text into chunks.
#include <set>

#include "plots.h"
#include "viewer_run.h"

namespace {

using Cuts = std::set<std::size_t>;  // each in front of the byte of that index

// Every cut inside `text`, a part of the plot that comes once in it, shows.
struct VisibleCuts {
    const char* plot;
    std::string_view text;
};

// clang-format off
const VisibleCuts VISIBLE_CUTS[] = {
    // A file's name ends with its chunk; the rest of it is read as commands.
    {"pseudo/missing_file.plt",          ":/nonexistent/plot.plt"},
    {"commands/HPGL_FILE.plt",           ":HPGL_FILE.named"},
    // A pen's number that was cut is stored in 32 bits instead of 16.
    {"encoded/pen_number_cut.plt",       ":\200\305"},
    {"encoded/seven_bit.plt",            ":a"},
    {"commands/PE.plt",                  ":c"},
    {"commands/PE.plt",                  ":k"},
    // What is lost behind a pseudo-command's name that fails, here at the X, ends with the chunk.
    {"pseudo/broken_name.plt",           "XE;PD3,4;"},
    {"pseudo/broken_name_in_chunks.plt", "XE;PD3,4;PD5,6;"},
    // Before a colon in a transmission that begins with one: no plot here does.
};
// clang-format on

Cuts visibleCuts(const Plot& plot) {
    Cuts cuts;
    for (const VisibleCuts& row : VISIBLE_CUTS) {
        if (plot.name != row.plot) continue;
        const std::size_t begin = plot.text.find(row.text);
        EXPECT_EQ(begin, plot.text.rfind(row.text)) << plot.name;
        EXPECT_NE(begin, std::string::npos) << plot.name;
        for (std::size_t i = 1; i < row.text.size(); ++i) {
            cuts.insert(begin + i);
        }
    }
    return cuts;
}

Cuts invisibleCuts(const Plot& plot) {
    const Cuts visible = visibleCuts(plot);
    Cuts cuts;
    for (std::size_t at = 0; at <= plot.text.size(); ++at) {
        if (!visible.contains(at)) cuts.insert(at);
    }
    return cuts;
}

// What the viewer makes of a transmission of several chunks.
std::string pictureOf(std::string_view text, const Cuts& cuts) {
    uint32_t kind = WD_CHUNK_BEGIN;
    std::size_t from = 0;
    for (const std::size_t cut : cuts) {
        recorder::sendChunk(text.substr(from, cut - from), kind);
        kind = WD_CHUNK_FURTHER;
        from = cut;
    }
    recorder::sendChunk(text.substr(from), kind);
    recorder::sendChunk({}, WD_CHUNK_END);
    return recordsText() + hexText() + pictureText();
}

std::string list(const Cuts& cuts) {
    std::string text;
    for (const std::size_t cut : cuts) {
        text += " " + std::to_string(cut);
    }
    return text;
}

class ChunkCuts : public ViewerRun {
  protected:
    template <class Check>
    static void forEach(const std::vector<Plot>& plots, Check check) {
        const auto turn = [&] {
            recorder::recording = false;
            for (const Plot& plot : plots) {
                SCOPED_TRACE(plot.name);
                std::filesystem::current_path(plot.folder);
                check(plot, pictureOf(plot.text, {}));
            }
        };
        run({turn});
        EXPECT_FALSE(plots.empty());
    }

    static void tryAtRandom(const Plot& plot, const std::string& whole, unsigned seed, int cuts) {
        const Cuts among = invisibleCuts(plot);
        const std::vector<std::size_t> places(among.begin(), among.end());
        Chance chance(seed);
        Cuts chosen;
        for (int i = chance.number(2, cuts); i > 0; --i) {
            chosen.insert(chance.oneOf(places));
        }
        ASSERT_EQ(difference(whole, pictureOf(plot.text, chosen)), "") << "seed " << seed << ", cuts" << list(chosen);
    }
};

TEST_F(ChunkCuts, InTwoAtEveryByteAreInvisible) {
    forEach(goldenPlots(), [](const Plot& plot, const std::string& whole) {
        for (const std::size_t cut : invisibleCuts(plot)) {
            ASSERT_EQ(pictureOf(plot.text, {cut}), whole) << "cut at " << cut;
        }
    });
}

TEST_F(ChunkCuts, InPiecesAtRandomAreInvisible) {
    forEach(goldenPlots(), [](const Plot& plot, const std::string& whole) {
        for (unsigned seed = 0; seed < 1000 && !HasFatalFailure(); ++seed) {
            tryAtRandom(plot, whole, seed, 12);
        }
    });
}

// Their records fill several blocks.
TEST_F(ChunkCuts, OfLongPlotsAreInvisible) {
    forEach(plotsBelow(EXAMPLES_FOLDER), [](const Plot& plot, const std::string& whole) {
        for (unsigned seed = 0; seed < 4 && !HasFatalFailure(); ++seed) {
            tryAtRandom(plot, whole, seed, 2000);
        }
    });
}

// So that no more cuts are left out than must be.
TEST_F(ChunkCuts, NamedAsVisibleAreSo) {
    forEach(goldenPlots(), [](const Plot& plot, const std::string& whole) {
        for (const std::size_t cut : visibleCuts(plot)) {
            EXPECT_NE(pictureOf(plot.text, {cut}), whole) << "cut at " << cut;
        }
    });
}

}  // namespace
