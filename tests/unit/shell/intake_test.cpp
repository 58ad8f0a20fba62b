// The host's data: chunks, colon prefix, echo, files named by the data.
#include "shell/intake.h"

#include <sys/stat.h>

#include <filesystem>

#include "geometry/zoom.h"
#include "hpgl/list.h"
#include "viewer_run.h"

namespace {

using recorder::script;
using recorder::sendChunk;

class Channel : public ViewerRun {
  protected:
    // The records that the chunks become.
    static std::string recordsOf(const std::vector<std::pair<uint32_t, std::string>>& chunks) {
        std::string records;
        run({[&] {
            for (const auto& [kind, bytes] : chunks) {
                sendChunk(bytes, kind);
            }
            records = recordsText();
        }});
        return records;
    }
    static std::string extents() {
        const HPGLGlobal& global = *TheShell.parser->global;
        return std::to_string(global.MinX) + ' ' + std::to_string(global.MinY) + ' ' + std::to_string(global.MaxX) +
               ' ' + std::to_string(global.MaxY);
    }
    // One transmission with tracing on; answers the trace.
    std::string traceOfPicture(int level, const std::string& text) {
        std::string trace;
        run({[&] { trace = traceOf(level, [&] { send(text); }); }});
        return trace;
    }
    static bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }
};

constexpr uint32_t BEGIN = WD_CHUNK_BEGIN, FURTHER = WD_CHUNK_FURTHER, END = WD_CHUNK_END;

const std::string INSP = "rec 0 0 5 IN 0\nrec 0 2 61 SP 1 1\n";

// ---- chunks ---------------------------------------------------------------------------------------------------------

TEST_F(Channel, ParsesChunks) {
    EXPECT_EQ(recordsOf({{BEGIN, "IN;"}, {FURTHER, "SP"}, {END, "1;"}}), INSP);
}

TEST_F(Channel, OtherKindsAreIgnored) {
    EXPECT_EQ(recordsOf({{BEGIN, "IN;"}, {3, "PU;"}, {99, "PU;"}, {END, "SP1;"}}), INSP);
}

TEST_F(Channel, ColonPrefixIsTakenFromEveryChunk) {
    EXPECT_EQ(recordsOf({{BEGIN, ":IN;"}, {FURTHER, ":SP"}, {FURTHER, "1"}, {END, ":;"}}), INSP);
}

TEST_F(Channel, OnlyOneColonIsTaken) {
    EXPECT_EQ(recordsOf({{BEGIN, ":IN;LB:"}, {FURTHER, "::x"}, {END, ":\003"}}),
              "rec 0 0 5 IN 0\nrec 0 2 44 LB 3 3a3a78\n");
}

TEST_F(Channel, ColonsStayWithoutPrefix) {
    EXPECT_EQ(recordsOf({{BEGIN, "IN;LB"}, {FURTHER, ":x"}, {END, ":\003"}}),
              "rec 0 0 5 IN 0\nrec 0 2 44 LB 3 3a783a\n");
}

TEST_F(Channel, PrefixEndsWithTheTransmission) {
    EXPECT_EQ(recordsOf({{BEGIN, ":IN;"}, {END, ""}, {FURTHER, "LB:"}, {FURTHER, ":\003"}}),
              "rec 0 0 5 IN 0\nrec 0 2 44 LB 2 3a3a\n");
}

TEST_F(Channel, EmptyChunksAreFine) {
    EXPECT_EQ(recordsOf({{BEGIN, ""}, {FURTHER, ""}, {END, ""}}), "");
    EXPECT_EQ(recordsOf({{BEGIN, ":"}, {FURTHER, ":"}, {END, ":"}}), "");
}

TEST_F(Channel, BeginDiscardsThePicture) {
    EXPECT_EQ(recordsOf({{BEGIN, "PU;PD1,1;"}, {END, ""}, {BEGIN, "IN;"}, {END, "SP1;"}}), INSP);
}

// A sender that skips the begin appends; once any begin has been seen, an end resets nothing.
TEST_F(Channel, EndAppendsToThePicture) {
    EXPECT_EQ(recordsOf({{BEGIN, "IN;"}, {END, ""}, {END, "SP1;"}}), INSP);
}

void loneEnds() {
    std::string commandLine;
    script.turns.emplace_back([] {
        sendChunk("PD5,5;", WD_CHUNK_END);
        sendChunk("IN;SP1;", WD_CHUNK_END);
        std::fputs(recordsText().c_str(), stderr);
        std::exit(TheShell.InitialDataLoaded ? 7 : 8);
    });
    WinMain(nullptr, nullptr, commandLine.data(), 0);
}

TEST(ChannelOfAFreshProcess, EndAloneIsATransmission) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const FreshViewer viewer;
    EXPECT_EXIT(loneEnds(), testing::ExitedWithCode(7), "^rec 0 0 5 IN 0\nrec 0 2 61 SP 1 1\n$");
}

// ---- the end of a transmission --------------------------------------------------------------------------------------

TEST_F(Channel, FirstPictureShowsTheWindow) {
    run({[] {
        recorder::calls.clear();
        EXPECT_FALSE(TheShell.InitialDataLoaded);
        send("PD;PA0,0,100,100;");
        EXPECT_TRUE(TheShell.InitialDataLoaded);
        EXPECT_EQ(namesAmong("SHLsetpos\nWquerywinsize\nWCLRcreate\nOUTstdcreate\n"),
                  "WCLRcreate\nOUTstdcreate\nSHLsetpos\n");
        EXPECT_TRUE(recorder::calls.ends_with(" 50 50 500 500 128\n")) << recorder::calls;
        EXPECT_EQ(extents(), "0 0 100 100");
        EXPECT_EQ(HPGLgetListCount(TheShell.zoom->ZoomStack), 1u);
    }});
}

TEST_F(Channel, LaterPicturesRefitTheWindow) {
    run({[] { send("PD;PA0,0,100,100;"); },
         [] {
             recorder::calls.clear();
             send("PD;PA0,0,100,200;");
             EXPECT_EQ(namesAmong("SHLsetpos\nWquerywinsize\nWsetwinpos\nWCLRdestroy\nWCLRcreate\nOUTreset\n"),
                       "WCLRdestroy\nWCLRcreate\nOUTreset\nWquerywinsize\nWsetwinpos\n");
             EXPECT_EQ(TheShell.display.USize, 200);
             EXPECT_EQ(TheShell.display.DSize, 496);
         }});
}

TEST_F(Channel, EmptyEndStillMakesAPicture) {
    run({[] {
        sendChunk("PD3,4;", BEGIN);
        EXPECT_EQ(TheShell.zoom, nullptr);
        sendChunk("", END);
        EXPECT_EQ(extents(), "0 0 3 4");
        ASSERT_NE(TheShell.zoom, nullptr);
    }});
}

TEST_F(Channel, ANewPictureForgetsTheZoom) {
    run({[] { send("PD;PA0,0,100,100;"); }, zoom,
         [] {
             send("PD;PA0,0,100,100;");
             EXPECT_EQ(HPGLgetListCount(TheShell.zoom->ZoomStack), 1u);
         }});
}

TEST_F(Channel, TracesTheEnd) {
    const std::string trace = traceOfPicture(3, "PD7,8;");
    EXPECT_TRUE(has(trace, "HPGL-WDCeodata: 0 0 7 8\nHPGL-WDCeodata: vor SHLsetpos\n")) << trace;
    EXPECT_FALSE(has(traceOfPicture(2, "PD7,8;"), "WDCeodata"));
}

// ---- opening and closing --------------------------------------------------------------------------------------------

TEST_F(Channel, OpensAgainWhenAskedAgain) {
    char buffer[256];
    EXPECT_TRUE(initTolk(1, buffer, 8, CallbackData, 1));
    EXPECT_TRUE(initTolk(1, buffer, 8, CallbackData, 1));
    EXPECT_EQ(namesAmong("WDstdopen\n"), "WDstdopen\nWDstdopen\n");
    closeTolk();
}

TEST_F(Channel, CannotBeOpened) {
    char buffer[256];
    script.failing = {"WDstdopen"};
    EXPECT_FALSE(initTolk(1, buffer, 8, CallbackData, 1));
}

TEST_F(Channel, LacksMemory) {
    char buffer[256];
    EXPECT_EQ(traceOf(1,
                      [&] {
                          failing_allocator::failSize(512);
                          EXPECT_FALSE(initTolk(1, buffer, 8, CallbackData, 1));
                      }),
              "initTolk: malloc: nicht genuegend Speicher\nBytesToAllocate:  512l\n");
    failing_allocator::reset();
    closeTolk();
}

// ---- echo -----------------------------------------------------------------------------------------------------------

TEST_F(Channel, EchoesWhatIsParsed) {
    script.configuration["LOGF"] = "echo.txt";
    const std::string bytes = std::string(":IN;\xff\0\n", 7);
    recordsOf({{BEGIN, bytes}, {FURTHER, ":SP1;"}, {END, ":PU;"}});
    EXPECT_EQ(folder.read("echo__00.log"), std::string("IN;\xff\0\n", 6) + "SP1;PU;");
}

TEST_F(Channel, EchoIsTruncatedAtEveryBegin) {
    script.configuration["LOGF"] = "protocolfile";
    recordsOf({{BEGIN, "PU;PU;PU;"}, {END, ""}, {BEGIN, "IN;"}, {END, ""}});
    EXPECT_EQ(folder.read("protoc00.log"), "IN;");
}

TEST_F(Channel, EchoIsFlushedAfterEveryChunk) {
    script.configuration["LOGF"] = "echo";
    run({[this] {
        sendChunk("IN;", BEGIN);
        EXPECT_EQ(folder.read("echo__00.log"), "IN;");
        sendChunk("", END);
    }});
}

TEST_F(Channel, ChunksAfterTheEndAreNotEchoed) {
    script.configuration["LOGF"] = "echo";
    recordsOf({{BEGIN, "IN;"}, {END, ""}, {FURTHER, "SP1;"}, {END, "PU;"}});
    EXPECT_EQ(folder.read("echo__00.log"), "IN;");
}

TEST_F(Channel, EchoesIntoNoLinkAndNoLetter) {
    script.configuration["LOGF"] = "echo";
    folder.write("letter", "kept");
    for (int number = 0; number < 10; ++number) {
        std::filesystem::create_symlink("letter", "echo__0" + std::to_string(number) + ".log");
    }
    recordsOf({{BEGIN, "IN;"}, {END, ""}});
    EXPECT_EQ(folder.read("letter"), "kept");
    std::filesystem::rename("letter", "echo__00.log");
    recordsOf({{BEGIN, "IN;"}, {END, ""}});
    EXPECT_EQ(folder.read("echo__00.log"), "kept");
}

TEST_F(Channel, AFifoForAnEchoDoesNotHoldItUp) {
    script.configuration["LOGF"] = "echo";
    for (int number = 0; number < 10; ++number) {
        ASSERT_EQ(mkfifo(("echo__0" + std::to_string(number) + ".log").c_str(), 0600), 0);
    }
    EXPECT_EQ(recordsOf({{BEGIN, "IN;"}, {END, "SP1;"}}), INSP);
}

TEST_F(Channel, AnEchoThatCannotBeIsSaidOnce) {
    script.configuration["LOGF"] = "echo";
    folder.write("echo__00.log", "a letter");
    recordsOf({{BEGIN, "IN;"}, {END, ""}, {BEGIN, "IN;"}, {END, ""}});
    const size_t said = recorder::calls.find("OutputDebugStringA \"echo__00.log\"");
    EXPECT_NE(said, std::string::npos);
    EXPECT_EQ(recorder::calls.find("OutputDebugStringA \"echo__00.log\"", said + 1), std::string::npos);
}

// ---- files named by the data ----------------------------------------------------------------------------------------

TEST_F(Channel, ReadsTheNamedFile) {
    folder.write("a.plt", "IN;SP1;");
    EXPECT_EQ(recordsOf({{BEGIN, "PU;PD9,9;HPGL_FILEa.plt"}, {END, ""}}), INSP);
    EXPECT_EQ(recordsOf({{BEGIN, "HPGL_FILE:a.plt\nPU;"}, {END, ""}}), INSP);
}

TEST_F(Channel, ANamedFileNamesTheNext) {
    folder.write("a.plt", "IN;HPGL_FILEb.plt\nSP1;");
    folder.write("b.plt", "PU;");
    EXPECT_EQ(recordsOf({{BEGIN, "HPGL_FILEa.plt"}, {END, ""}}), INSP);
    EXPECT_EQ(recordsOf({{BEGIN, "HPGL_FILEa.plt"}, {END, ""}, {END, ""}}), recordsOf({{BEGIN, "PU;"}, {END, ""}}));
    EXPECT_EQ(recordsOf({{BEGIN, "HPGL_FILEa.plt"},
                         {END, ""},
                         {FURTHER, "HPGL_FILEa.plt\nPD;"},
                         {FURTHER, "\nHPGL_FILEb.plt"},
                         {END, ""}}),
              recordsOf({{BEGIN, "PU;"}, {END, ""}}));
    run({[] {
        send("HPGL_FILEa.plt");
        EXPECT_STREQ(TheShell.parser->global->fileName, "b.plt");
    }});
}

TEST_F(Channel, ReadsItAcrossPieces) {
    std::string text = "IN;PD";
    while (text.size() < 20000) {
        text += "1,1,2,2,";
    }
    folder.write("a.plt", text + "SP1;");
    run({[] {
        send("HPGL_FILEa.plt");
        EXPECT_EQ(extents(), "0 0 2 2");
    }});
}

TEST_F(Channel, TracesTheEndOfTheFile) {
    folder.write("a.plt", "IN;");
    folder.write("exact.plt", std::string(8192, ' '));
    folder.write("twice.plt", std::string(16384, ' '));
    const std::string end = "HPGL readFromFile: end of file reached\n";
    for (const char* name : {"a.plt", "exact.plt", "twice.plt"}) {
        const std::string text = std::string("HPGL_FILE").append(name);
        const std::string trace = traceOfPicture(2, text);
        EXPECT_TRUE(has(trace, end)) << name;
        EXPECT_EQ(trace.find(end), trace.rfind(end)) << name;
        EXPECT_FALSE(has(traceOfPicture(1, text), end)) << name;
    }
}

TEST_F(Channel, ExactPiecesAreReadWhole) {
    std::string text = "PD9,9;";
    text.resize(8192 - 6, ' ');
    folder.write("a.plt", text + "PA5,7;");
    run({[] {
        send("HPGL_FILEa.plt");
        EXPECT_EQ(extents(), "0 0 9 9");
        EXPECT_TRUE(has(recordsText(), "PA 2 5 7\n"));
    }});
}

TEST_F(Channel, SaysWhatItCannotOpen) {
    std::filesystem::create_directory("folder");
    ASSERT_EQ(mkfifo("fifo", 0600), 0);
    for (const char* name : {"missing.plt", "folder", "fifo", "/dev/null"}) {
        std::string trace;
        run({[&] {
            trace = traceOf(1, [&] { send(std::string("HPGL_FILE").append(name)); });
            EXPECT_EQ(extents(), "1073741823 1073741823 -1073741823 -1073741823");
            EXPECT_NE(TheShell.zoom, nullptr);
        }});
        EXPECT_EQ(trace, "HPGL readFromFile: problems open " + std::string(name) + "\n");
    }
}

// The compact code is given up before the file is opened.
// The names of the plots that the process has open.
std::string openPlots() {
    std::string names;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        const auto name = std::filesystem::read_symlink(entry, gone).filename();
        if (name.extension() == ".plt") names += name.string() + " ";
    }
    return names;
}

TEST_F(Channel, ANamedFileStaysOpenUntilTheNext) {
    ScratchFolder::write("a.plt", "IN;");
    ScratchFolder::write("b.plt", "SP1;");
    std::string afterFirst, afterSecond, afterMissing;
    run({[&] {
        send("HPGL_FILEa.plt");
        afterFirst = openPlots();
        send("HPGL_FILEb.plt");
        afterSecond = openPlots();
        send("HPGL_FILEmissing.plt");
        afterMissing = openPlots();
    }});
    EXPECT_EQ(afterFirst, "a.plt ");
    EXPECT_EQ(afterSecond, "b.plt ");
    EXPECT_EQ(afterMissing, "b.plt ");
    EXPECT_EQ(openPlots(), "");
}

TEST_F(Channel, AMissingFileLeavesNothing) {
    EXPECT_EQ(recordsOf({{BEGIN, "PU;PD9,9;HPGL_FILEmissing.plt"}, {END, ""}}), "");
}

TEST_F(Channel, SaysThatItLacksMemoryForTheFile) {
    folder.write("a.plt", "IN;");
    failing_allocator::failSize(8193);
    EXPECT_EQ(traceOfPicture(1, "HPGL_FILEa.plt"),
              "HPGL readFromFile: problems allocating 8192 bytes for HPGLBuffer\n");
}

TEST_F(Channel, ReadingAnswersWhetherItWorked) {
    folder.write("a.plt", "IN;SP1;");
    parseText("");
    EXPECT_EQ(readFromFile(TheShell.parser, "a.plt"), 1);
    EXPECT_EQ(readFromFile(TheShell.parser, "missing.plt"), 0);
    failing_allocator::failSize(8193);
    EXPECT_EQ(readFromFile(TheShell.parser, "a.plt"), 0);
    closeTolk();  // the file that was read last stays open until then
}

}  // namespace
