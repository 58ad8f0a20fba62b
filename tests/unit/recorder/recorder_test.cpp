// The recorder itself: the form of its lines, and the answers that the other tests rely on.
#include "recorder/recorder.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdio>

#include "toolkit/actbar.h"
#include "toolkit/helpl.h"
#include "toolkit/out.h"
#include "toolkit/pssetup.h"
#include "toolkit/shl.h"
#include "toolkit/wf.h"

namespace {

using recorder::calls;
using recorder::script;

std::string delivered;

void writeDown(WHandle object, uint32_t message, uint32_t first, uint32_t second) {
    delivered += std::to_string(object) + ' ' + std::to_string(message) + ' ' + std::to_string(first) + ' ' +
                 std::to_string(second) + '\n';
}

class Recorder : public testing::Test {
  protected:
    void SetUp() override {
        recorder::reset();
        delivered.clear();
        script.quiet = true;
    }
    void TearDown() override { recorder::reset(); }
};

void drawOneOfEach(WHandle child) {
    const std::array<OUTPoint, 5> points = {{{1, 2}, {-3, 4}, {5, 6}, {7, 8}, {9, 10}}};
    const std::array<int32_t, 2> counts = {3, 2};
    OUTlinecolour(child, 1);
    OUTfillcolour(child, 2);
    OUTline(child, 0, -1, INT32_MAX, INT32_MIN);
    OUTgeomline(child, points.data(), 2, 3);
    OUTgeomline(child, nullptr, 0, 4);
    OUTboxr0(child, 1, 2, 3, 4);
    OUTboxr1(child, 5, 6, 7, 8);
    OUTwinsolidpolygons(child, points.data(), counts.data(), 2);
    OUTsettext(child, 0, 0, 30, 10, 0, 0);
    OUTchars_len(child, 7, 8, 3, "a\xff\n", 0);
    OUTchars_len(child, 7, 8, 0, nullptr, 0);
}

constexpr std::string_view ONE_OF_EACH =
    "OUTlinecolour 1\n"
    "OUTfillcolour 2\n"
    "OUTline 0 -1 2147483647 -2147483648\n"
    "OUTgeomline 3 2 1 2 -3 4\n"
    "OUTgeomline 4 0\n"
    "OUTboxr0 1 2 3 4\n"
    "OUTboxr1 5 6 7 8\n"
    "OUTwinsolidpolygons 2 3 2 1 2 -3 4 5 6 7 8 9 10\n"
    "OUTsettext 0 0 30 10 0 0\n"
    "OUTchars_len 7 8 3 61ff0a\n"
    "OUTchars_len 7 8 0\n";

// ---- lines ----------------------------------------------------------------------------------------------------------

TEST_F(Recorder, WritesDrawingWithoutTheChild) {
    drawOneOfEach(7);
    EXPECT_EQ(calls, ONE_OF_EACH);
}

TEST_F(Recorder, HandsDrawingToTheSinkOnly) {
    std::string sunk;
    recorder::drawingSink = [&](std::string_view line) { sunk += line; };
    OUTreset(7);
    drawOneOfEach(7);
    OUTboxr2(7, 0, 0, 500, 500);
    OUTendpaint(7);
    EXPECT_EQ(sunk, ONE_OF_EACH);
    EXPECT_EQ(calls, "");
}

TEST_F(Recorder, WritesNothingWhileOff) {
    recorder::drawingSink = [](std::string_view line) { ADD_FAILURE() << line; };
    recorder::recording = false;
    drawOneOfEach(7);
    EXPECT_EQ(Wcreateobject(0, 0, 0, 1), 1u);
    EXPECT_EQ(calls, "");
}

TEST_F(Recorder, QuotesStringsOnOneLine) {
    Wtrace(1, "%s\n\"%d\"\x01", "a\\b", 5);
    Werrorbox(1, "No Help available", 4);
    EnumFontFamiliesA(nullptr, nullptr, nullptr, 0);
    EXPECT_EQ(calls,
              "Wtrace 1 \"a\\\\b\\n\\\"5\\\"\\x01\"\n"
              "Werrorbox 1 \"No Help available\" 4\n"
              "EnumFontFamiliesA 0 null\n");
}

TEST_F(Recorder, WritesArraysLast) {
    const std::array<const char*, 2> texts = {"F1=Help", "F3=Back"};
    const std::array<HELPLKey, 2> keys = {{{2, 1}, {2, 3}}};
    const std::array<HELPLButton, 2> buttons = {{{"1", "1"}, {"0", "2"}}};
    const std::array<WColour, 2> colours = {{{255, 254, 253, 0}, {0, 255, 0, 0}}};
    std::array<ACTBARRow, 1> rows = {{{nullptr, 0, 1, 0, 5, 1, 'M'}}};
    HELPLinit(9, 0, texts.data(), keys.data(), buttons.data(), 2);
    WCLRcreate(1, colours.data(), 2);
    ACTBARcreate(3, 4, rows.data(), 1);
    ACTBARset(2, 4, texts.data());
    EXPECT_EQ(calls,
              "HELPLinit 9 0 2 \"F1=Help\" \"F3=Back\" 2 1 2 3 \"1\" \"1\" \"0\" \"2\"\n"
              "WCLRcreate 1 2 255 254 253 0 255 0\n"
              "ACTBARcreate 3 4 1 0 1 0 5 1 M\n"
              "ACTBARset 2 4 \"F1=Help\"\n");
    EXPECT_EQ(recorder::palette.size(), 2u);
    EXPECT_STREQ(rows[0].text, "F1=Help");
}

// ---- handles and failures -------------------------------------------------------------------------------------------

TEST_F(Recorder, AnswersNewHandles) {
    WHandle container = 0;
    const WHandle shell = SHLcreate(1, &container, "title", 0, 3728);
    const WHandle child = Wcreatechild(1, container);
    EXPECT_EQ((std::set<WHandle>{0, container, shell, child}).size(), 4u);
    EXPECT_EQ(recorder::handleOf("container"), container);
    EXPECT_EQ(recorder::handleOf("SHLcreate"), shell);
    EXPECT_EQ(recorder::handleOf("Wcreatechild"), child);
    EXPECT_EQ(recorder::handleOf("INFOcreate"), 0u);
}

TEST_F(Recorder, FailsWhatTheScriptNames) {
    script.failing = {"Wcreatechild", "OUTquerysize", "OpenFile a00.log", "_lwrite", "Wquit"};
    int32_t width = -1, height = -1;
    OFSTRUCT info{};
    EXPECT_EQ(Wcreatechild(1, 2), 0u);
    EXPECT_EQ(OUTquerysize(1, &width, &height), 0);
    EXPECT_EQ(width, -1);
    EXPECT_EQ(OpenFile("a00.log", &info, OF_CREATE | OF_WRITE), HFILE_ERROR);
    EXPECT_EQ(_lwrite(5, "ab", 2), static_cast<UINT>(HFILE_ERROR));
    Wquit(1);
    EXPECT_EQ(static_cast<WState*>(WIgetvar(1, 0))->quit, 0);
    EXPECT_EQ(calls,
              "Wcreatechild 1 2\n"
              "OUTquerysize\n"
              "OpenFile \"a00.log\" 4097\n"
              "_lwrite 5 2 \"ab\"\n"
              "Wquit 1\n"
              "WIgetvar 1 0\n");
}

TEST_F(Recorder, EndsTheProcess) {
    static const auto exitProcedure = [](WHandle app, int32_t status) {
        std::fprintf(stderr, "exit %u %d;", app, status);
    };
    script.quiet = false;
    Wregexitproc(3, exitProcedure);
    EXPECT_EXIT(Wfatalerror(3, "no texts"), testing::ExitedWithCode(1), "Wfatalerror: no texts\nexit 3 1;");

    script.atExit = [] { std::fputs(calls.c_str(), stderr); };
    EXPECT_EXIT(ExitProcess(111), testing::ExitedWithCode(111), "^Wregexitproc 3\nExitProcess 111\n$");
}

TEST_F(Recorder, LetsAFatalErrorReturn) {
    script.failing = {"Wfatalerror"};
    Wfatalerror(0, "no texts");
    EXPECT_EQ(recorder::messageBoxes, std::vector<std::string>{"Wfatalerror: no texts"});
}

// ---- messages -------------------------------------------------------------------------------------------------------

TEST_F(Recorder, DeliversSizeBeforePaintOnce) {
    const auto* state = static_cast<const WState*>(WIgetvar(1, 0));
    Wregisterclass(1, writeDown);
    const WHandle object = Wcreateobject(1, 1, 0, 1);
    const WHandle child = Wcreatechild(1, 2);
    script.deliverPaint = true;
    Wupdate(child, 1);
    SHLsetpos(4, 50, 50, 500, 500, SHL_SHOW);
    Wupdate(child, 1);
    EXPECT_EQ(state->messagesPending, 1);
    EXPECT_EQ(delivered, "");
    WIsendmsgs(1);
    EXPECT_EQ(state->messagesPending, 0);
    EXPECT_EQ(delivered, std::to_string(object) + " 1 0 0\n" + std::to_string(child) + " 2 0 0\n");
}

TEST_F(Recorder, QueuesNothingUnlessAsked) {
    SHLsetpos(4, 50, 50, 500, 500, 0);
    Wsetwinpos(5, 0, 0, 500, 500);
    Wupdate(5, 1);
    EXPECT_EQ(static_cast<WState*>(WIgetvar(1, 0))->messagesPending, 0);
}

TEST_F(Recorder, GivesMessagesThenTurnsThenTheEnd) {
    MSG message{};
    script.turns.emplace_back([] { delivered += "turn\n"; });
    script.messages = {{nullptr, WM_KEYDOWN, 65, 0, 0, {0, 0}}};
    EXPECT_NE(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.message, WM_KEYDOWN);
    EXPECT_EQ(delivered, "");
    EXPECT_NE(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.message, WM_NULL);
    EXPECT_EQ(delivered, "turn\n");
    EXPECT_EQ(GetMessageA(&message, nullptr, 0, 0), 0);
}

TEST_F(Recorder, EndsTheLoopAfterPostQuitMessage) {
    MSG message{};
    script.turns.emplace_back([] { PostQuitMessage(0); });
    script.turns.emplace_back([] { ADD_FAILURE(); });
    EXPECT_NE(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(GetMessageA(&message, nullptr, 0, 0), 0);
}

TEST_F(Recorder, SendsChunksToAnOpenChannel) {
    static const auto callback = [](const char* data, uint64_t length, uint32_t kind) {
        delivered += std::string(data, length) + '/' + std::to_string(kind);
    };
    EXPECT_FALSE(recorder::sendChunk("IN;", WD_CHUNK_BEGIN));
    const WHandle channel = WDstdopen(1, nullptr, 8, callback, 1);
    EXPECT_TRUE(recorder::sendChunk("IN;", WD_CHUNK_BEGIN));
    EXPECT_EQ(delivered, "IN;/1");
    WDstdclose(channel);
    EXPECT_FALSE(recorder::sendChunk("SP1;", WD_CHUNK_FURTHER));
}

// ---- the world's answers --------------------------------------------------------------------------------------------

TEST_F(Recorder, TakesTheNotificationFromTheArguments) {
    std::array<char, 8> program = {"viewer"}, id = {"-i=12"}, window = {"-P=345"}, empty = {"-I="};
    std::array<char*, 4> arguments = {program.data(), id.data(), window.data(), empty.data()};
    const WHandle app = WIinitialise(4, arguments.data(), 1);
    const auto* variables = static_cast<const WVariables*>(WIgetvar(app, 1));
    EXPECT_EQ(variables->notifyId, 12u);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(variables->notifyWindow), 345u);
    EXPECT_EQ(variables->mdiClient, nullptr);
    EXPECT_EQ(calls.substr(0, calls.find('\n')), "WIinitialise 4 1 \"-i=12\" \"-P=345\" \"-I=\"");
}

TEST_F(Recorder, LeavesValuesThatDoNotFitOut) {
    const std::array<const char*, 3> keys = {"LANG", "LOGF", "INST"};
    std::array<const char*, 3> values{};
    std::array<char, 6> buffer{};
    script.configuration = {{"LANG", "german"}, {"LOGF", "ab"}, {"INST", "cd"}};
    EXPECT_NE(WIstdinit_cfg(1, "HPGL", keys.data(), values.data(), 3, buffer.data(), 6), 0);
    EXPECT_EQ(values[0], nullptr);
    EXPECT_STREQ(values[1], "ab");
    EXPECT_STREQ(values[2], "cd");
}

TEST_F(Recorder, ReportsTheDeviceFonts) {
    script.fontSizes = {4, 16};
    script.allFonts = 9;
    ASSERT_EQ(OUTquery(1, 2), 2u);
    const auto* fonts = std::bit_cast<const WHandle*>(OUTquery(1, 3));
    EXPECT_EQ(WFqueryfontval(fonts[0], 0), 4);
    EXPECT_EQ(WFqueryfontval(fonts[1], 0), 16);
    EXPECT_EQ(WFqueryfontval(0, 5), 9);
}

TEST_F(Recorder, AcceptsFontsUpToTheLimit) {
    script.fontsAccepted = 1;
    const WHandle font = WFcreate(1, "Sans,A, 2");
    EXPECT_NE(font, 0u);
    EXPECT_EQ(WFcreate(1, "Sans,A, 2"), font);
    EXPECT_EQ(WFcreate(1, "Sans,A, 4"), 0u);
}

int writeFace(const LOGFONTA* font, const TEXTMETRICA*, DWORD type, LPARAM goOn) {
    const auto* full = reinterpret_cast<const ENUMLOGFONTA*>(font);
    delivered += std::string(reinterpret_cast<const char*>(full->elfFullName)) + ' ' + std::to_string(type) + '\n';
    return static_cast<int>(goOn);
}

TEST_F(Recorder, EnumeratesFamiliesAndFaces) {
    script.families = {{"Sans", TRUETYPE_FONTTYPE, 3}, {"Fixed", RASTER_FONTTYPE, 1}};
    EXPECT_EQ(EnumFontFamiliesA(nullptr, nullptr, writeFace, 1), 1);
    EXPECT_EQ(delivered, "Sans 4\nFixed 1\n");
    delivered.clear();
    EXPECT_EQ(EnumFontFamiliesA(nullptr, "Sans", writeFace, 1), 1);
    EXPECT_EQ(delivered, "Sans 4\nSans 4\nSans 4\n");
    delivered.clear();
    EXPECT_EQ(EnumFontFamiliesA(nullptr, nullptr, writeFace, 0), 0);
    EXPECT_EQ(delivered, "Sans 4\n");
}

TEST_F(Recorder, ShowsTheToolkitToTheVersionCheck) {
    script.version = 7;
    ASSERT_NE(GetModuleHandleA("QRVEL"), nullptr);
    EXPECT_EQ(GetModuleHandleA("OTHER"), nullptr);
    const HMODULE module = LoadLibraryA("QRVEL");
    const FARPROC entry = GetProcAddress(module, "Wqueryversion");
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(reinterpret_cast<uint64_t (*)(uint32_t)>(reinterpret_cast<void (*)()>(entry))(0), 7u);
    EXPECT_EQ(GetProcAddress(module, "Wquit"), nullptr);
    script.moduleLoaded = false;
    script.moduleHandle = 0;
    EXPECT_EQ(GetModuleHandleA("QRVEL"), nullptr);
    EXPECT_EQ(LoadLibraryA("QRVEL"), nullptr);
}

TEST_F(Recorder, PutsItsEnvironmentInFront) {
    std::array<char, 4> value = {"???"};
    script.environment = {{"DPTRACE", "3"}, {"PATH", ""}, {"DGTRACE", "1234"}};
    EXPECT_EQ(GetEnvironmentVariableA("DPTRACE", value.data(), 4), 1u);
    EXPECT_STREQ(value.data(), "3");
    EXPECT_EQ(GetEnvironmentVariableA("PATH", value.data(), 4), 0u);
    EXPECT_EQ(GetEnvironmentVariableA("DGTRACE", value.data(), 4), 5u);
    EXPECT_STREQ(value.data(), "3");
}

TEST_F(Recorder, InventsAProfile) {
    std::array<char, 8> value{};
    script.inventProfile = true;
    EXPECT_EQ(GetProfileStringA("intl", "sCountry", "", value.data(), 8), 7u);
    EXPECT_STREQ(value.data(), "United ");
    EXPECT_EQ(GetProfileStringA("intl", "sNone", "x", value.data(), 8), 1u);
    EXPECT_STREQ(value.data(), "x");
    EXPECT_EQ(GetProfileIntA("intl", "iCountry", 0), 1u);
    EXPECT_EQ(GetProfileIntA("other", "iCountry", 5), 5u);
}

TEST_F(Recorder, GivesActionsByButton) {
    char letter = ' ';
    ACTappend(1, 0, "M", "2", "3");
    EXPECT_STREQ(ACThandleaction(1, 2, &letter), "3");
    EXPECT_EQ(letter, 'M');
    EXPECT_STREQ(ACThandleaction(1, 9, &letter), "");
    EXPECT_EQ(letter, 'S');
}

TEST_F(Recorder, AnswersWhatTheUserChoseToPrint) {
    uint32_t destination = 0, room = 5;
    std::array<char, 5> name{};
    script.printDestination = 3;
    PSSETUPqueryValue(1, PSSETUP_DESTINATION, &destination, nullptr);
    PSSETUPqueryValue(1, PSSETUP_NAME, &room, name.data());
    EXPECT_EQ(destination, 3u);
    EXPECT_STREQ(name.data(), "plot");
    EXPECT_EQ(room, 4u);
}

}  // namespace
