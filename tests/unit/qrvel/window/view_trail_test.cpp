// Views as they follow from strokes. The window is 400 x 300 unless a test says otherwise.
#include "qrvel/window/view_trail.h"

#include <gtest/gtest.h>

namespace qrvel {

namespace {

std::string text(const ViewRect& view) {
    char shown[80];
    std::snprintf(shown, sizeof shown, "%g %g %g %g", view.left, view.bottom, view.width, view.height);
    return shown;
}

std::string text(const std::optional<Stroke>& stroke) {
    if (!stroke) return "none";
    const QPoint a = stroke->press;
    const QPoint b = stroke->release;
    char shown[80];
    std::snprintf(shown, sizeof shown, "%d %d %d %d", a.x(), a.y(), b.x(), b.y());
    return shown;
}

Stroke stroke(int x1, int y1, int x2, int y2) {
    return {.press = {x1, y1}, .release = {x2, y2}};
}

class ViewTrailTest : public testing::Test {
  protected:
    ViewTrailTest() { trail.begin({400, 300}); }
    ViewTrail trail;
};

TEST_F(ViewTrailTest, BeginsWithTheWholePicture) {
    EXPECT_EQ(text(trail.whole()), "0 0 400 300");
    EXPECT_EQ(text(trail.seen()), "0 0 400 300");
    EXPECT_EQ(trail.depth(), 0u);
}

struct OneStroke {
    const char* name;
    Stroke stroke;
    const char* seen;
};

class ViewTrailStrokes : public ViewTrailTest, public testing::WithParamInterface<OneStroke> {};

TEST_P(ViewTrailStrokes, OpenViews) {
    trail.follow(GetParam().stroke);
    EXPECT_EQ(text(trail.seen()), GetParam().seen);
    trail.back();
    EXPECT_EQ(text(trail.seen()), "0 0 400 300");
}

INSTANTIATE_TEST_SUITE_P(ViewTrail, ViewTrailStrokes,
                         testing::Values(OneStroke{"ofTheWindowsShape", stroke(100, 60, 300, 210), "100 60 200 150"},
                                         OneStroke{"tall", stroke(100, 0, 300, 300), "-100 0 400 300"},
                                         OneStroke{"wide", stroke(0, 200, 400, 250), "0 -50 400 300"},
                                         OneStroke{"backwards", stroke(300, 210, 100, 60), "100 60 200 150"},
                                         OneStroke{"largerThanTheWindow", stroke(-200, -150, 600, 450),
                                                   "-200 -150 800 600"},
                                         OneStroke{"moved", stroke(-30, 20, 370, 320), "-30 20 400 300"}),
                         [](const auto& row) { return row.param.name; });

TEST_F(ViewTrailTest, FindsTheStrokeForAView) {
    trail.follow(stroke(100, 60, 300, 210));  // two pixels for one from now on
    EXPECT_EQ(text(trail.stroke(trail.seen(), {150, 60, 100, 75})), "100 0 300 150");
    EXPECT_EQ(text(trail.stroke(trail.before(), {150, 60, 100, 75})), "150 60 250 135");
    EXPECT_EQ(text(trail.stroke(trail.seen(), {150, 60, 0.1, 75})), "none");
    EXPECT_EQ(text(trail.stroke(trail.seen(), {0, 0, 4e9, 3e9})), "none");
}

TEST_F(ViewTrailTest, GoesBothWays) {
    const Stroke first = stroke(100, 60, 300, 210);
    const Stroke second = stroke(0, 0, 40, 30);
    trail.follow(first);
    trail.follow(second);
    EXPECT_EQ(text(trail.forward()), "none");
    trail.back();
    EXPECT_EQ(text(trail.forward()), text(second));
    trail.backToWhole();
    EXPECT_EQ(text(trail.forward()), text(first));
    trail.follow(first);
    EXPECT_EQ(text(trail.forward()), text(second));
    trail.follow(stroke(1, 1, 11, 11));  // another way
    EXPECT_EQ(text(trail.forward()), "none");
    EXPECT_EQ(trail.strokes().size(), 2u);
    trail.back();
    trail.resize({800, 600});
    EXPECT_EQ(text(trail.forward()), "none");
}

TEST_F(ViewTrailTest, KeepsAViewInAnotherWindow) {
    trail.follow(stroke(100, 60, 300, 210));
    trail.resize({800, 300});
    EXPECT_EQ(text(trail.seen()), "-100 60 400 150");
    EXPECT_EQ(text(trail.stroke(trail.seen(), {100, 60, 200, 150})), "400 0 800 300");
    trail.back();
    trail.resize({100, 50});
    EXPECT_EQ(text(trail.whole()), "0 0 100 50");
}

}  // namespace

}  // namespace qrvel
