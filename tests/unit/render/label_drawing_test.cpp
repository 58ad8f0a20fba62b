// Labels and fonts.
#include "render/label_drawing.h"

#include <gtest/gtest.h>

#include "picture_text.h"
#include "recorder/recorder.h"
#include "shell/shell_state.h"

namespace {

using recorder::calls;
using recorder::script;

constexpr char SIZES[][3] = {" 2", " 4", " 6", " 8", "10", "13", "16", "19", "22", "27",
                             "32", "37", "42", "47", "52", "62", "72", "82", "92"};

std::string callsOf(std::string_view operation) {
    std::string result;
    for (size_t at = 0; at < calls.size();) {
        const size_t end = calls.find('\n', at) + 1;
        const std::string line = calls.substr(at, end - at);
        if (line.starts_with(operation)) result += line;
        at = end;
    }
    return result;
}

std::string descriptions(const std::string& family, size_t sizes) {
    std::string result;
    for (size_t i = 0; i < sizes; ++i) {
        result.append("WFcreate 5 \"").append(family).append(",A,").append(SIZES[i]).append("\"\n");
    }
    return result;
}

class Fonts : public testing::Test {
  protected:
    FreshViewer viewer;
};

TEST_F(Fonts, AreRegisteredInEverySize) {
    script.families = {{"Sans Bold", TRUETYPE_FONTTYPE, 1}};
    EXPECT_EQ(HPGLinitFonts(&TheShell.display), 1);
    EXPECT_EQ(callsOf("WFcreate"), descriptions("Sans Bold", 19));
}

TEST_F(Fonts, NotTrueTypeContributeNothing) {
    script.families = {{"Fixed", RASTER_FONTTYPE, 1}, {"Printer", DEVICE_FONTTYPE, 1}, {"Sans", TRUETYPE_FONTTYPE, 1}};
    HPGLinitFonts(&TheShell.display);
    EXPECT_EQ(callsOf("WFcreate"), descriptions("Sans", 19));
}

TEST_F(Fonts, OneFaceAFamily) {
    script.families = {{"Sans", TRUETYPE_FONTTYPE, 4}, {"Serif", TRUETYPE_FONTTYPE, 2}};
    HPGLinitFonts(&TheShell.display);
    EXPECT_EQ(callsOf("WFcreate"), descriptions("Sans", 19) + descriptions("Serif", 19));
}

TEST_F(Fonts, FirstFailureEndsTheSeries) {
    script.families = {{"Sans", TRUETYPE_FONTTYPE, 1}, {"Serif", TRUETYPE_FONTTYPE, 1}};
    script.fontsAccepted = 2;
    HPGLinitFonts(&TheShell.display);
    EXPECT_EQ(callsOf("WFcreate"), descriptions("Sans", 3) + descriptions("Serif", 1));
}

TEST_F(Fonts, LongNamesStayWhole) {
    const std::string name(63, 'n');
    script.families = {{name, TRUETYPE_FONTTYPE, 1}};
    HPGLinitFonts(&TheShell.display);
    EXPECT_EQ(callsOf("WFcreate"), descriptions(name, 19));
}

// Every family is asked for by its full name in a context of its own, inside the enumeration of them all.
TEST_F(Fonts, TakeAContextEach) {
    script.families = {{"Sans", TRUETYPE_FONTTYPE, 1}};
    script.fontsAccepted = 0;
    HPGLinitFonts(&TheShell.display);
    EXPECT_EQ(callsOf("EnumFontFamiliesA"), "EnumFontFamiliesA 1 null\nEnumFontFamiliesA 2 \"Sans\"\n");
    EXPECT_EQ(callsOf("GetDC"), "GetDC 0\nGetDC 0\n");
    EXPECT_EQ(callsOf("ReleaseDC"), "ReleaseDC 0 2\nReleaseDC 0 1\n");
}

TEST_F(Fonts, NoFamiliesAreFine) {
    EXPECT_EQ(HPGLinitFonts(&TheShell.display), 1);
    EXPECT_EQ(calls, "GetDC 0\nEnumFontFamiliesA 1 null\nReleaseDC 0 1\n");
}

// ---- labels ---------------------------------------------------------------------------------------------------------

// Two plotter units a pixel; (0, 0) lies at pixel (2, 2).
class Labels : public testing::Test {
  protected:
    Labels() {
        TheShell.display.DSize = 1;
        TheShell.display.USize = 2;
    }
    static std::string draw(std::string_view text, int32_t width, int32_t height) {
        std::string drawn;
        const int32_t x = 10, y = -20;
        recorder::drawingSink = [&](std::string_view line) { drawn += line; };
        EXPECT_EQ(
            HPGLdrawLabel(&TheShell.display, &x, &y, text.data(), static_cast<int32_t>(text.size()), width, height), 1);
        recorder::drawingSink = nullptr;
        EXPECT_EQ(x, 10);
        EXPECT_EQ(y, -20);
        return drawn;
    }
    FreshViewer viewer;
};

TEST_F(Labels, AreMappedAndStretched) {
    EXPECT_EQ(draw("Abc", 21, 31), "OUTsettext 0 0 30 15 0 0\nOUTchars_len 7 -8 3 416263\n");
}

TEST_F(Labels, WithoutCharactersAreStillDrawn) {
    EXPECT_EQ(draw("", 20, 30), "OUTsettext 0 0 0 15 0 0\nOUTchars_len 7 -8 0\n");
}

TEST_F(Labels, NeedAFontThatFits) {
    script.fontSizes = {20, 10, 30};
    EXPECT_EQ(draw("A", 20, 20), "OUTsettext 0 0 10 10 0 0\nOUTchars_len 7 -8 1 41\n");
    EXPECT_EQ(traceOf(3, [] { EXPECT_EQ(draw("A", 20, 19), ""); }), "");
    EXPECT_EQ(draw("A", 20, 0), "");
    EXPECT_EQ(draw("A", 20, -50), "");
}

TEST_F(Labels, FontsOfSizeZeroDoNotFit) {
    script.fontSizes = {0, -3};
    EXPECT_EQ(draw("A", 20, 20), "");
}

TEST_F(Labels, TextSizeSaysWhetherItWasSet) {
    script.fontSizes = {10};
    EXPECT_EQ(HPGLsetLabelFont(7, 99, 10), 1);
    EXPECT_EQ(callsOf("OUTsettext"), "OUTsettext 0 0 99 10 0 0\n");
    EXPECT_EQ(HPGLsetLabelFont(7, 99, 9), 0);
}

TEST_F(Labels, AskForAllFontsWhenTheDeviceHasNone) {
    script.fontSizes.clear();
    EXPECT_EQ(HPGLsetLabelFont(7, 99, 50), 0);
    EXPECT_EQ(calls, "OUTquery 2\nWFqueryfontval 0 5\n");
}

TEST_F(Labels, DoNotTrustAMissingList) {
    script.failing = {"OUTquery"};
    script.allFonts = 3;
    EXPECT_EQ(HPGLsetLabelFont(7, 99, 50), 0);
}

TEST_F(Labels, WidthWraps) {
    TheShell.display.USize = 1;
    EXPECT_EQ(draw("AAA", 1000000000, 50), "OUTsettext 0 0 -1294967296 50 0 0\nOUTchars_len 12 -18 3 414141\n");
}

}  // namespace
