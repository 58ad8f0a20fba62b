// The user's way to a view and back: what is drawn at its end is what was drawn before.
#include "geometry/zoom.h"
#include "hpgl/list.h"
#include "plots.h"
#include "shell/menus.h"
#include "viewer_run.h"

namespace {

constexpr int ZOOMS = 10;
constexpr int ATTEMPTS = 1000;  // a few are enough
constexpr unsigned SEEDS = 3;

class Views : public ViewerRun {
  protected:
    template <class Check>
    static void forEachPlot(const std::vector<Plot>& plots, Check check) {
        const auto turn = [&] {
            recorder::recording = false;
            for (const Plot& plot : plots) {
                SCOPED_TRACE(plot.name);
                std::filesystem::current_path(plot.folder);
                send(plot.text);
                check(painted());
            }
        };
        run({[] { send(""); }, turn});  // the window's size is known in the second turn
        EXPECT_FALSE(plots.empty());
    }

    template <class Check>
    static void forEachSeed(const std::vector<Plot>& plots, Check check) {
        forEachPlot(plots, [&](const std::string& before) {
            for (unsigned seed = 0; seed < SEEDS; ++seed) {
                SCOPED_TRACE("seed " + std::to_string(seed));
                Chance chance(seed);
                check(before, chance);
            }
        });
    }

    // The output calls of one paint.
    static std::string painted() {
        std::string calls;
        recorder::recording = true;
        recorder::drawingSink = [&](std::string_view line) { calls += line; };
        recorder::deliver(TheShell.display.Window, W_MSG_PAINT);
        recorder::drawingSink = nullptr;
        recorder::recording = false;
        return calls;
    }

    static void menu(uint32_t item, int times = 1) {
        for (int i = 0; i < times; ++i) {
            action(W_ACTION_MENU, item);
        }
    }

    static uint32_t views() { return HPGLgetListCount(TheShell.zoom->ZoomStack); }

    // The button goes down and up somewhere in the window or a little outside.
    static void dragSomewhere(Chance& chance) {
        for (const uint32_t button : {W_MOUSE_PRESS, W_MOUSE_RELEASE}) {
            const int x = chance.number(-100, recorder::script.width + 100);
            const int y = chance.number(-100, recorder::script.height + 100);
            mouse(button, x, y);
        }
    }

    // Drags until one is not refused. Into a picture without extents there is no way.
    static void zoomSomewhere(Chance& chance) {
        const uint32_t before = views();
        for (int i = 0; i < ATTEMPTS && views() == before; ++i) {
            dragSomewhere(chance);
        }
        ASSERT_EQ(views(), TheShell.display.USize != 0 ? before + 1 : before);
    }
    static void zoomTenTimes(Chance& chance) {
        for (int i = 0; i < ZOOMS; ++i) {
            zoomSomewhere(chance);
        }
    }

    static void resize(int32_t width, int32_t height) {
        recorder::script.width = width;
        recorder::script.height = height;
        recorder::deliver(TheShell.object, W_MSG_SIZE);
    }
    static void resizeThereAndBack(Chance& chance) {
        const int32_t width = recorder::script.width;
        const int32_t height = recorder::script.height;
        resize(chance.number(0, 4000), chance.number(0, 4000));
        painted();
        resize(width, height);
    }
};

TEST_F(Views, RotatedTwiceAreTheSame) {
    forEachPlot(everyPlot(), [](const std::string& before) {
        menu(HPGL_MENU_ROTATE);
        painted();
        menu(HPGL_MENU_ROTATE);
        EXPECT_EQ(difference(before, painted()), "");
    });
}

TEST_F(Views, ZoomedAndLeftOneByOneAreTheSame) {
    forEachSeed(goldenPlots(), [](const std::string& before, Chance& chance) {
        std::vector<std::string> seen = {before};
        for (int i = 0; i < ZOOMS; ++i) {
            zoomSomewhere(chance);
            seen.push_back(painted());
        }
        for (int i = ZOOMS; i > 0; --i) {
            menu(HPGL_MENU_LAST_ZOOM);
            EXPECT_EQ(difference(seen[static_cast<std::size_t>(i - 1)], painted()), "") << "view " << i - 1;
        }
    });
}

TEST_F(Views, ZoomedAndLeftAtOnceAreTheSame) {
    forEachSeed(everyPlot(), [](const std::string& before, Chance& chance) {
        zoomTenTimes(chance);
        menu(HPGL_MENU_COMPLETE_PICTURE);
        EXPECT_EQ(difference(before, painted()), "");
        EXPECT_EQ(views(), 1u);
    });
}

TEST_F(Views, ZoomedInAWindowThatChangesAreTheSame) {
    forEachSeed(everyPlot(), [](const std::string& before, Chance& chance) {
        zoomTenTimes(chance);
        const std::string zoomed = painted();
        resizeThereAndBack(chance);
        EXPECT_EQ(difference(zoomed, painted()), "");
        menu(HPGL_MENU_LAST_ZOOM, ZOOMS);
        EXPECT_EQ(difference(before, painted()), "");
    });
}

}  // namespace
