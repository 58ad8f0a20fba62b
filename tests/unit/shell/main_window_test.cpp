// The main window's messages and the menu's actions on the picture.
#include "shell/main_window.h"

#include "hpgl/list.h"
#include "shell/drawing_window.h"
#include "viewer_run.h"

namespace {

using recorder::script;

class MainWindow : public PictureRun {};

// ---- paint and size -------------------------------------------------------------------------------------------------

TEST_F(MainWindow, PaintsTheDrawingChild) {
    withPicture([] {
        const std::string calls = callsOf([] { paint(TheShell.display.Window); });
        EXPECT_TRUE(calls.starts_with("OUTreset\n")) << calls;
        EXPECT_TRUE(
            calls.ends_with("OUTlinecolour 1\nOUTfillcolour 1\nOUTline 2 2 2 2\nOUTline 2 2 498 498\nOUTendpaint\n"))
            << calls;
    });
}

TEST_F(MainWindow, PaintsNothingElse) {
    withPicture([] {
        EXPECT_EQ(callsOf([] { paint(TheShell.object); }), "");
        EXPECT_EQ(callsOf([] { paint(0); }), "");
    });
}

TEST_F(MainWindow, PaintsNothingBeforeTheFirstPicture) {
    run({[] {
        EXPECT_EQ(callsOf([] { paint(TheShell.display.Window); }), "");
        recorder::sendChunk("PD1,1;", WD_CHUNK_BEGIN);
        EXPECT_EQ(callsOf([] { paint(TheShell.display.Window); }), "");
    }});
}

TEST_F(MainWindow, TracesPaints) {
    withPicture([] {
        const std::string trace = traceOf(3, [] { paint(TheShell.display.Window); });
        EXPECT_TRUE(trace.starts_with("HPGL-KWMsize: InitialDataLoaded: 1\nHPGL-KWMpaint\n")) << trace;
        EXPECT_EQ(traceOf(3, [] { paint(0); }), "HPGL-KWMsize: InitialDataLoaded: 1\n");
        EXPECT_EQ(traceOf(2, [] { paint(TheShell.display.Window); }), "");
    });
    run({[] {
        TheShell.InitialDataLoaded = false;
        EXPECT_EQ(traceOf(3, [] { paint(TheShell.display.Window); }), "HPGL-KWMsize: InitialDataLoaded: 0\n");
    }});
}

TEST_F(MainWindow, RefitsOnSize) {
    withPicture([] {
        script.width = 804;
        script.height = 604;
        recorder::deliver(TheShell.object, W_MSG_SIZE);
        EXPECT_EQ(TheShell.display.DSizeX, 800);
        EXPECT_EQ(TheShell.display.DSize, 600);
    });
}

TEST_F(MainWindow, TakesSizesBeforeTheFirstPicture) {
    run({[] {
        recorder::deliver(TheShell.object, W_MSG_SIZE);
        EXPECT_EQ(TheShell.display.DSizeX, 496);
    }});
}

TEST_F(MainWindow, IgnoresOtherMessages) {
    withPicture([] {
        for (const uint32_t message : {0U, 3U, 4U, 6U, 8U, 99U}) {
            EXPECT_EQ(callsOf([&] { recorder::deliver(TheShell.display.Window, message, 4, 9); }), "") << message;
        }
    });
}

TEST_F(MainWindow, ClearsItsBackground) {
    withPicture(
        [] { EXPECT_EQ(callsOf([] { EXPECT_EQ(HPGLpaintBackground(TheShell.display.Window), 1); }), background()); });
}

// ---- mouse ----------------------------------------------------------------------------------------------------------

TEST_F(MainWindow, ZoomsAndRepaints) {
    withPicture([] {
        mouse(0, 96, 96);
        const std::string calls = callsOf([] { mouse(1, 396, 296); });
        EXPECT_TRUE(calls.ends_with(background())) << calls;
        EXPECT_EQ(view(), "960 960 3960 2960");
        EXPECT_EQ(TheShell.display.MaxX, 3960);
        EXPECT_EQ(TheShell.display.USize, 3000);
    });
}

TEST_F(MainWindow, RefusedZoomDoesNotRepaint) {
    withPicture([] {
        mouse(0, 96, 96);
        EXPECT_EQ(callsOf([] { mouse(1, 96, 296); }).find("Wupdate"), std::string::npos);
        EXPECT_EQ(view(), "0 0 4960 4960");
    });
}

TEST_F(MainWindow, OtherButtonsDoNothing) {
    withPicture([] { EXPECT_EQ(callsOf([] { mouse(3, 96, 96); }), ""); });
}

TEST_F(MainWindow, IgnoresTheMouseBeforeTheFirstPicture) {
    run({[] {
        EXPECT_EQ(traceOf(3, [] { zoom(); }), "");
        EXPECT_EQ(callsOf(zoom), "");
    }});
}

TEST_F(MainWindow, TracesTheMouse) {
    withPicture([] {
        const char* const texts[] = {"HPGL-KWMmouse: HPGL_BUTTON_DOWN\n", "HPGL-KWMmouse: HPGL_BUTTON_UP\n",
                                     "HPGL-KWMmouse: HPGL_BUTTON_DRAG\n"};
        for (const uint32_t button : {0U, 1U, 2U}) {
            EXPECT_TRUE(traceOf(3, [&] { mouse(button, 9, 9); }).starts_with(texts[button]));
            EXPECT_EQ(traceOf(2, [&] { mouse(button, 9, 9); }).find("KWMmouse"), std::string::npos);
        }
        EXPECT_EQ(traceOf(3, [] { mouse(3, 9, 9); }), "");
    });
}

// ---- actions --------------------------------------------------------------------------------------------------------

TEST_F(MainWindow, GoesBackToTheCompletePicture) {
    withPicture([] {
        zoom();
        zoom();
        EXPECT_EQ(callsOf([] { action(4, 9); }), background());
        EXPECT_EQ(view(), "0 0 4960 4960");
        EXPECT_EQ(TheShell.display.USize, 4960);
        EXPECT_EQ(TheShell.display.MaxX, 4960);
    });
}

TEST_F(MainWindow, GoesBackToTheLastZoom) {
    withPicture([] {
        zoom();
        const std::string first = view();
        zoom();
        EXPECT_EQ(callsOf([] { action(3, 10); }), background());
        EXPECT_EQ(view(), first);
        EXPECT_EQ(TheShell.display.USize, 3000);
        action(2, 10);
        action(4, 10);
        EXPECT_EQ(view(), "0 0 4960 4960");
        EXPECT_EQ(TheShell.display.USize, 4960);
    });
}

TEST_F(MainWindow, TurnsThePicture) {
    run({[] { send("SC0,1,0,1;PD;PA0,0,4960,2480;"); },
         [] {
             zoom();
             const std::string calls = callsOf([] { action(4, 11); });
             EXPECT_EQ(TheShell.RotationSign, -1);
             EXPECT_EQ(view(), "-4960 -2480 0 0");
             EXPECT_EQ(HPGLgetListCount(TheShell.zoom->ZoomStack), 1u);
             EXPECT_EQ(TheShell.display.MaxX, 0);
             EXPECT_EQ(namesAmong("WCLRcreate\nOUTsetbackground\nWquerywinsize\nWsetwinpos\nOUTboxr2\nOUTstdcreate\n"),
                       "WCLRcreate\nOUTsetbackground\nWquerywinsize\nWsetwinpos\nOUTboxr2\n");
             EXPECT_TRUE(calls.ends_with(background()));
             action(4, 11);
             EXPECT_EQ(TheShell.RotationSign, 1);
             EXPECT_EQ(view(), "0 0 4960 2480");
         }});
}

TEST_F(MainWindow, TurningKeepsWithTheNextPicture) {
    run({[] { send("SC0,1,0,1;PD1,1;"); }, [] { action(4, 11); },
         [] {
             send("SC0,1,0,1;PD;PA0,0,100,50;");
             EXPECT_EQ(view(), "-100 -50 0 0");
         }});
}

}  // namespace
