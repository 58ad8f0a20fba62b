// What the print set-up panel says, and the printing of the view.
#include "shell/printing.h"

#include "rows.h"
#include "toolkit/out.h"
#include "viewer_run.h"

namespace {

using recorder::script;

// Handles as the recorder gives them out at set-up: drawing child 12, data channel 13, print set-up 14.
constexpr char READ_CHOICE[] = "PSSETUPqueryValue 14 11\nPSSETUPqueryValue 14 12\nPSSETUPqueryValue 14 23\n";

class PrintSetup : public PictureRun {
  protected:
    static void notify(uint32_t notification) { action(5, notification); }
    static std::string printCalls() {
        return withoutFonts(callsOf([] { notify(11); }));
    }
    // What printing must call: `transform` and `device` are what the two operations between panel and page are given,
    // and the page gets what a paint message draws.
    static std::string printed(const std::string& transform, const std::string& device) {
        return READ_CHOICE + ("PSSETUPhide 14\nPSSETUPtransDestAndFormatValues " + transform + "\nOUTopendevice 12 ") +
               device + "\n" + paintCalls() + "OUTclosedevice 12\n";
    }
};

// ---- notifications --------------------------------------------------------------------------------------------------

TEST_F(PrintSetup, IsHiddenWhenCancelled) {
    withPicture([] { EXPECT_EQ(callsOf([] { notify(9); }), "PSSETUPhide 14\n"); });
}

TEST_F(PrintSetup, SaysNothingElse) {
    withPicture([] {
        for (const uint32_t notification : {0U, 1U, 5U, 7U, 8U, 12U, 14U, 23U, 0xffffffffU}) {
            EXPECT_EQ(callsOf([=] { notify(notification); }), "") << notification;
        }
    });
}

// The panel is not made anew; whatever is asked of its handle later is the toolkit's affair.
TEST_F(PrintSetup, KeepsItsHandleWhenItHasGone) {
    withPicture([] {
        EXPECT_EQ(callsOf([] { notify(10); }), "PSSETUPdestroy 14\n");
        EXPECT_EQ(callsOf([] { action(4, 5); }), "PSSETUPshow 14\n");
        EXPECT_EQ(callsOf([] { notify(9); }), "PSSETUPhide 14\n");
        EXPECT_EQ(printCalls(), printed("1 1", "1 1 \"plot.pdf\""));
        recorder::calls.clear();
    });
    EXPECT_EQ(namesAmong("PSSETUPcreate\nPSSETUPdestroy\n"), "PSSETUPdestroy\n");
}

// ---- printing -------------------------------------------------------------------------------------------------------

struct DestinationRow : NamedRow {
    uint32_t destination;
    const char* device;  // what opens it: destination, format, name or channel
};

// clang-format off
constexpr DestinationRow DESTINATION_ROWS[] = {
    {"Zero",  0, "0 7 \"a b.svg\""},
    {"One",   1, "1 7 \"a b.svg\""},
    {"Two",   2, "2 7 \"a b.svg\""},
    {"Host",  3, "3 7 13"},
    {"Four",  4, "4 7 \"a b.svg\""},
};
// clang-format on

class Destination : public PrintSetup, public testing::WithParamInterface<DestinationRow> {};

TEST_P(Destination, GetsThePicture) {
    script.printDestination = GetParam().destination;
    script.printFormat = 7;
    script.printName = "a b.svg";
    withPicture([] {
        const std::string transform = std::to_string(GetParam().destination) + " 7";
        EXPECT_EQ(printCalls(), printed(transform, GetParam().device));
    });
}

INSTANTIATE_TEST_SUITE_P(Rows, Destination, testing::ValuesIn(DESTINATION_ROWS), byRowName);

TEST_F(PrintSetup, PrintsTheView) {
    withPicture([] {
        const std::string whole = paintCalls();
        zoom();
        EXPECT_NE(paintCalls(), whole);
        EXPECT_EQ(printCalls(), printed("1 1", "1 1 \"plot.pdf\""));
    });
}

TEST_F(PrintSetup, PrintsThePictureAsItIsTurned) {
    run({[] { send("SC0,1,0,1;PD;PA0,0,4960,2480;"); },
         [] {
             const std::string upright = paintCalls();
             action(4, 11);
             EXPECT_NE(paintCalls(), upright);
             EXPECT_EQ(printCalls(), printed("1 1", "1 1 \"plot.pdf\""));
         }});
}

// The toolkit is told of room for 127 characters, the terminator among them.
TEST_F(PrintSetup, TellsTheRoomForAName) {
    script.printName = std::string(200, 'n');
    withPicture([] { EXPECT_EQ(printCalls(), printed("1 1", "1 1 \"" + std::string(126, 'n') + "\"")); });
}

TEST_F(PrintSetup, GoesOnWhenThePanelGivesNoValues) {
    script.failing = {"PSSETUPqueryValue", "PSSETUPhide", "PSSETUPtransDestAndFormatValues", "OUTopendevice"};
    withPicture([] { EXPECT_EQ(printCalls(), printed("0 0", "0 0 \"\"")); });
}

TEST_F(PrintSetup, OpeningADeviceAlwaysAnswersOne) {
    script.failing = {"OUTopendevice"};
    EXPECT_EQ(HPGLopenOutputDevice(12, 1, 1, "a.pdf"), 1);
    TheShell.channel = 99;
    EXPECT_EQ(HPGLopenOutputDevice(12, 3, 1, "a.pdf"), 1);
    EXPECT_EQ(recorder::calls, "OUTopendevice 12 1 1 \"a.pdf\"\nOUTopendevice 12 3 1 99\n");
}

}  // namespace
