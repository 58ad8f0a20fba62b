// Chunks: a picture is the same however its text is cut, but for the exceptions at the end.
#include <string>

#include "hpgl/parser.h"
#include "picture_text.h"
#include "rows.h"
#include "shell/shell_state.h"
#include "trace/trace.h"

namespace {

using namespace std::string_literals;

struct PlotRow : NamedRow {
    std::string text;
};

std::string polygon(int points) {
    std::string text = "PU0,0;PM0;PD";
    for (int i = 0; i < points; ++i)
        text += std::to_string(i * 7) + "," + std::to_string(-i * 13) + (i % 3 == 0 ? " " : ",");
    return text + "PM2;EPFP1;";
}

// clang-format off
const PlotRow PLOTS[] = {
    {"Pens",      "IN;SP1;PU10,-20;PD30.5 40,50+60-70;PR1,2PA\r\nPUPDSP;PC2,255,128,0;PW.35,2;"},
    {"Arcs",      "PA100,100;CI50,5;AA0,0,90;AR10,10,-45,2.5;EW40,0,90;WG40,30,60,1;EA5,6RA7,8ER9,10RR11,12"},
    {"Labels",    "SI.2,.3;DT#;LBone#PU1,1LBtwo\rPU2,2;LB\200CP0,-1LB" + std::string(300, 'x') + "#SA;SSPU"},
    {"Curves",    "BZ1,2,3,4,5,6,7,8BR1,2,3,4,5,6;SC0,100,0,100;SC0,1,0,1,2;IP;RO90"},
    {"Unknown",   "ab12ZZPA1,2xyQQ3HPG"},
    {"Comments",  "PU1,2CO\"PD3,4;\"5PDCO x\"\"PU7;CO never ends PA1,2"},
    {"Encoded",   "PR;PE<=\301\302GG\301\277>\303\301\3017Ge_a5;PA1,2PE7?5_<ab;PU"},
    {"Pseudo",    "HPGL_INFO;PA1,2HPGL_DATA3,4;PD5HPGL_INFOPU"},
    {"Numbers",   "PA12345678901234567890,1234567890123456PD-1--2+3;SI1e2,.5,nan,1E-3;SMabcdefghijklmnopqrst;DT!,1PU"},
    {"Controls",  "P\nA1\r2,\t3;\0P\001D4\200""5;LB\003P\377U6"s},
    {"Signatures","UL1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21;PG1,2;AD1,2,3,4.5;CF1,2,3,4;LA1,2,3,4,5,6,7"},
    {"Polygon",   polygon(300)},
};
// clang-format on

class PlotInChunks : public testing::TestWithParam<PlotRow> {
  protected:
    static std::string whatCame(const std::vector<std::string_view>& chunks) {
        const int result = parseChunks(chunks);
        return std::to_string(result) + "\n" + hexText() + recordsText() + picture();
    }
    // Everything of the picture: the section names only the used pens.
    static std::string picture() {
        std::string pens;
        for (int i = 0; i < HPGL_PENS; ++i) {
            const HPGLPen& pen = TheShell.parser->PStatus[i];
            for (const int32_t value : {pen.red, pen.green, pen.blue, pen.paletteIndex, pen.used, pen.width})
                pens += std::to_string(value) + " ";
        }
        return pictureText() + pens;
    }
    const FreshViewer viewer;
};

TEST_P(PlotInChunks, IsTheSameCutInTwo) {
    const std::string_view text = GetParam().text;
    const std::string whole = whatCame({text});
    EXPECT_EQ(whole[0], '1');
    for (size_t cut = 0; cut <= text.size(); ++cut) {
        SCOPED_TRACE(cut);
        ASSERT_EQ(whatCame({text.substr(0, cut), text.substr(cut)}), whole);
    }
}

TEST_P(PlotInChunks, IsTheSameInPieces) {
    const std::string_view text = GetParam().text;
    const std::string whole = whatCame({text});
    for (const size_t size : std::initializer_list<size_t>{1, 2, 3, 7}) {
        SCOPED_TRACE(size);
        std::vector<std::string_view> chunks;
        for (size_t at = 0; at < text.size(); at += size) {
            chunks.push_back(text.substr(at, size));
            chunks.emplace_back();  // nothing at all is a chunk too
        }
        ASSERT_EQ(whatCame(chunks), whole);
    }
}
// Traced numbers go another way than others.
TEST_P(PlotInChunks, IsTheSameWhileItIsTraced) {
    const std::string whole = whatCame({GetParam().text});
    const TraceCapture trace(TRC_DETAIL);
    EXPECT_EQ(whatCame({GetParam().text}), whole);
}
INSTANTIATE_TEST_SUITE_P(Rows, PlotInChunks, testing::ValuesIn(PLOTS), byRowName);

// ---- a record grows over chunks -------------------------------------------------------------------------------------

TEST(Chunks, WriteTheCountAgain) {
    const FreshViewer viewer;
    TheShell.parser = HPGLinitParser();
    HPGLparseCode(TheShell.parser, "PA1,2,", 6);
    EXPECT_EQ(recordsText(), "rec 0 0 19 PA 2 1 2\n");
    HPGLparseCode(TheShell.parser, "3,4", 3);  // the last number may go on
    EXPECT_EQ(recordsText(), "rec 0 0 19 PA 3 1 2 3\n");
    HPGLparseCode(TheShell.parser, "5", 1);
    HPGLparseCode(TheShell.parser, ";", 1);
    EXPECT_EQ(recordsText(), "rec 0 0 19 PA 4 1 2 3 45\n");
    EXPECT_EQ(TheShell.parser->blocks->count, 1u);
}

TEST(Chunks, WarnOfALongRecordEachTime) {
    const FreshViewer viewer;
    constexpr std::string_view WARNING =
        "WARNING-setNoOfParameters: NoOfParameters was 256 but maximum I can handle is 255\n";
    const std::string label = "LB" + std::string(256, 'x') + "\003";
    EXPECT_EQ(traceOf(1,
                      [&] {
                          parseChunks({label, ";", "PU"});
                      }),
              std::string(WARNING) + std::string(WARNING) + std::string(WARNING));
}

// ---- the exceptions -------------------------------------------------------------------------------------------------

struct ExceptionRow : NamedRow {
    std::vector<std::string_view> chunks;
    int result;  // of the last chunk
    const char* file;
    const char* records;
};

// clang-format off
const ExceptionRow EXCEPTIONS[] = {
    // A file's name ends with its chunk; the rest of it is read as commands.
    {"FileNameCut",          {"HPGL_FILE:PU", "PD1.hpg\nPA1,2;"},  1, "PU", "rec 0 0 20 PD 1 1\nrec 0 6 19 PA 2 1 2\n"},
    {"FileNameCutHarmless",  {"HPGL_FILE:ab", "c.hpg\nPA1,2;"},    1, "ab", "rec 0 0 19 PA 2 1 2\n"},
    {"FileNameBehindColon",  {"HPGL_FILE:", "PU;"},                1, "",   "rec 0 0 23 PU 0\n"},
    {"FileNameInNextChunk",  {"HPGL_FILE", ":a.hpg\nPU;"},         1, "a.hpg", "rec 0 0 23 PU 0\n"},
    // A cut pen number has 32 bits, of which the walk takes two bytes for the number and the others for a record.
    {"PenNumberCut",         {"PE:", "\303;"},                     1, nullptr,
                             "rec 0 0 61 SP 1 2\nrec 0 4 0 HPGL_DATA 0\nrec 0 6 19 PA 0\n"},
    // What is lost behind a name that fails ends with the chunk in which that shows.
    {"FailureInFirst",       {"PU;HPGL_X;PD", ";PA1;"},            1, nullptr,
                             "rec 0 0 23 PU 1 0\nrec 0 6 19 PA 1 1\n"},
    {"FailureInSecond",      {"PU;HPGL", "X;PD", ";PA1;"},         1, nullptr,
                             "rec 0 0 23 PU 1 0\nrec 0 6 19 PA 1 1\n"},
    {"FailureAtTheEnd",      {"PU;HPGL", "X;PD"},                  0, nullptr, "rec 0 0 23 PU 0\n"},
    {"FailureWithNothingOpen",{"HPXX;PU", "PA1;"},                 1, nullptr, "rec 0 0 19 PA 1 1\n"},
    {"ControlBetweenChunks", {"PU;H\n", "PGL_INFO;"},              0, nullptr, "rec 0 0 23 PU 0\n"},
    {"ControlInNextChunk",   {"PU;H", "\nPGL_INFO;"},              0, nullptr, "rec 0 0 23 PU 0\n"},
    {"NothingBetweenChunks", {"PU;H", "", "PGL_INFO;"},            1, nullptr, "rec 0 0 23 PU 0\n"},
};
// clang-format on

class ChunkException : public testing::TestWithParam<ExceptionRow> {
  protected:
    const FreshViewer viewer;
};

TEST_P(ChunkException, IsAsSaid) {
    const ExceptionRow& row = GetParam();
    EXPECT_EQ(parseChunks(row.chunks), row.result);
    EXPECT_STREQ(TheShell.parser->global->fileName, row.file);
    EXPECT_EQ(recordsText(), row.records);
}
INSTANTIATE_TEST_SUITE_P(Rows, ChunkException, testing::ValuesIn(EXCEPTIONS), byRowName);

}  // namespace
