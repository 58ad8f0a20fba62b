// The interpreter: what each command draws.
#include "render/interpreter.h"

#include "picture_text.h"
#include "recorder/recorder.h"
#include "render/interpreter_state.h"
#include "rows.h"
#include "shell/shell_state.h"

namespace {

// A device pixel is a plotter unit here, and each pen's colour its number.
struct DrawRow : NamedRow {
    const char* text;
    const char* calls;
    int rotationSign = 1;
};

// clang-format off
constexpr DrawRow MOVES[] = {
    {"Down",              "PD10,20;",                       "OUTline 0 0 10 20\n"},
    {"StartsUp",          "PA10,20;",                       ""},
    {"OneParameter",      "PD7;PA10,20;",                   "OUTline 0 0 10 20\n"},
    {"UpMoves",           "PU10,10;PD20,20;PU5,5;PA6,6;",   "OUTline 10 10 20 20\n"},
    {"Segments",          "PD10,0,10,10,0,10;",             "OUTline 0 0 10 0\nOUTline 10 0 10 10\nOUTline 10 10 0 10\n"},
    {"OddParameter",      "PD10,0,5;PA0,5;",                "OUTline 0 0 10 0\nOUTline 10 0 0 5\n"},
    {"Relative",          "PU10,10;PR;PD5,5,-3,1;PA0,0;",   "OUTline 10 10 15 15\nOUTline 15 15 12 16\nOUTline 12 16 0 0\n"},
    {"RelativeWraps",     "PU2147483647,5;PD;PR2147483647,0;", "OUTline 2147483647 5 -2 5\n"},
    {"Above24Bits",       "PD16777217,16777219;",           "OUTline 0 0 16777216 16777220\n"},
};

constexpr DrawRow SCALES[] = {
    {"Turned",            "SC0,1,0,1;PD10,20;",             "OUTline 0 0 -10 -20\n", -1},
    {"TurnedTwice",       "SC0,1,0,1;SC0,1,0,1;PD10,20;",   "OUTline 0 0 10 20\n",   -1},
    {"NotTurned",         "PD10,20;",                       "OUTline 0 0 10 20\n",   -1},
    {"LaterRecordsOnly",  "PD10,20;SC1,0,0,1;PD30,40;",     "OUTline 0 0 10 20\nOUTline 10 20 -30 40\n"},
    {"TruncatesToZero",   "SC0,.5,0,.5,2;PD-7,7;",          "OUTline 0 0 -3 3\n"},
    {"SinglePrecision",   "SC0,.7,0,.7,2;PD10,-10;",        "OUTline 0 0 7 -7\n"},
    {"SevenParameters",   "SC1,0,0,1,1,5,5;PD10,20;",       "OUTline 0 0 -10 20\n"},
    {"UnsupportedCount",  "SC0,0,0;PD10,20;",               "OUTline 0 0 10 20\n"},
};

constexpr DrawRow BOXES[] = {
    {"AbsoluteAddsOne",   "EA100,100;",                     "OUTboxr0 0 0 101 101\n"},
    {"Relative",          "ER100,100;",                     "OUTboxr0 0 0 100 100\n"},
    {"FilledAddsOne",     "RA100,50;",                      "OUTboxr1 0 0 101 51\n"},
    {"FilledRelative",    "RR100,50;",                      "OUTboxr1 0 0 100 50\n"},
    {"ToTheLowerLeft",    "PU10,20;EA5,5;",                 "OUTboxr0 10 20 -4 -14\n"},
    {"MovesNoPen",        "PU1,2;EA9,9;RR5,5;PD5,5;",       "OUTboxr0 1 2 9 8\nOUTboxr1 1 2 5 5\nOUTline 1 2 5 5\n"},
    {"Scaled",            "SC0,2,0,3,2;ER10,10;",           "OUTboxr0 0 0 20 30\n"},
    {"Wide",              "PW.35;ER10,20;",                 "OUTgeomline 14 5 0 0 10 0 10 20 0 20 0 0\n"},
    {"FilledWide",        "PW.35;RR10,20;",                 "OUTboxr1 0 0 10 20\n"},
    {"SizeWraps",         "PU-2147483647,0;EA2147483647,0;", "OUTboxr0 -2147483648 0 0 1\n"},
};

constexpr DrawRow CIRCLES[] = {
    {"Coarse",            "CI100,120;",                     "OUTgeomline 0 5 100 0 -49 86 -50 -86 99 0 100 0\n"},
    // With all of pi the quarters would be whole thousands.
    {"RadiansConstant",   "CI1000,90;",                     "OUTgeomline 0 6 1000 0 0 999 -999 0 0 -999 999 0 1000 0\n"},
    {"ChordAbove360",     "CI100,400;",                     "OUTgeomline 0 1 100 0\n"},
    {"ChordOf360",        "CI100,360;",                     "OUTgeomline 0 3 100 0 99 0 100 0\n"},
    {"NegativeRadius",    "CI-100,90;",                     "OUTgeomline 0 6 -100 0 0 -99 99 0 0 99 -99 0 -100 0\n"},
    // Single precision would give a radius of 7.
    {"RadiusInDouble",    "SC0,.7,0,.7,2;CI10,90;",         "OUTgeomline 0 5 6 0 0 6 -6 0 0 -6 6 0\n"},
    {"Scaled",            "SC0,2,0,3,2;PU10,20;CI100,90;",  "OUTgeomline 0 6 220 60 20 359 -179 60 20 -239 219 60 220 60\n"},
    {"MovesNoPen",        "CI1,400;PD5,5;",                 "OUTgeomline 0 1 1 0\nOUTline 0 0 5 5\n"},
    {"UsesTheWidth",      "PW1;CI1,400;",                   "OUTgeomline 40 1 1 0\n"},
};

constexpr DrawRow ARCS[] = {
    {"Absolute",          "PU100,0;AA0,0,90,30;",           "OUTgeomline 0 6 100 0 100 0 86 49 50 86 0 99 0 99\n"},
    {"Backwards",         "PU100,0;AA0,0,-90,30;",          "OUTgeomline 0 6 100 0 100 0 86 -49 50 -86 0 -99 0 -99\n"},
    {"EndsBetweenSteps",  "PU100,0;AA0,0,100,30;",          "OUTgeomline 0 6 100 0 100 0 86 49 50 86 0 99 -17 98\n"},
    {"Relative",          "PU10,20;AR-100,0,90,45;",        "OUTgeomline 0 5 10 20 10 20 -20 90 -90 119 -90 119\n"},
    {"DegreesConstant",   "PU0,1;AA0,0,10,20;",             "OUTgeomline 0 3 0 1 0 1 0 0\n"},  // with all of pi 0 0 in the middle
    {"NoRadius",          "PU10,10;AA10,10,20;",            "OUTgeomline 0 7 10 10 10 10 10 10 10 10 10 10 10 10 10 10\n"},
    {"NoSweep",           "AR100,0,0;",                     "OUTgeomline 0 3 0 0 0 0 0 0\n"},
    {"CentreUnscaled",    "SC0,2,0,2,2;PU100,0;AA50,0,90,90;", "OUTgeomline 0 4 200 0 350 0 50 299 50 299\n"},
    {"EndMovesThePen",    "PU100,0;AA0,0,90,90;PD0,0;",     "OUTgeomline 0 4 100 0 100 0 0 99 0 99\nOUTline 0 99 0 0\n"},
};

constexpr DrawRow WEDGES[] = {
    {"Outline",           "EW1000,0,90,45;",                "OUTgeomline 0 5 0 0 1000 0 707 707 0 999 0 0\n"},
    {"NoPointAtTheEnd",   "EW1000,0,90,60;",                "OUTgeomline 0 4 0 0 1000 0 500 866 0 0\n"},
    {"Filled",            "WG1000,0,90,60;",                "OUTwinsolidpolygons 1 5 0 0 1000 0 500 866 0 0 0 0\n"},
    {"NegativeRadius",    "EW-1000,0,90,45;",               "OUTgeomline 0 5 0 0 -999 0 -707 -707 0 -999 0 0\n"},
    {"Backwards",         "EW1000,0,-90,45;",               "OUTgeomline 0 5 0 0 1000 0 707 -707 0 -999 0 0\n"},
    {"AnglesInDouble",    "EW1000,16777216,1,1;",           "OUTgeomline 0 4 0 0 -675 737 -688 725 0 0\n"},
    {"MovesNoPen",        "PU5,5;EW10,0,0;PD6,6;",          "OUTgeomline 0 3 5 5 15 5 5 5\nOUTline 5 5 6 6\n"},
    {"SmallestRadius",    "EW-2147483648,0,0;",             "OUTgeomline 0 3 0 0 -2147483647 1403 0 0\n"},
};

#define CURVE "13 2 25 5 36 9 46 14 54 19 61 25 66 32 70 39 73 46 74 53 74 60 73 67 70 74 66 80 61 85 54 90 46 94 36 97 25 99 13 100 0"

constexpr DrawRow BEZIERS[] = {
    {"Absolute",          "BZ0,100,100,100,100,0;",         "OUTgeomline 0 22 0 0 0 " CURVE "\n"},
    {"Relative",          "BR0,100,100,100,100,0;",         "OUTgeomline 0 22 0 0 0 " CURVE "\n"},
    {"EndMovesThePen",    "BZ0,0,0,0,0,0;BZ1,2;PD7,7;",
     "OUTgeomline 0 22 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0\n"
     "OUTgeomline 0 1 0 0\nOUTline 0 0 7 7\n"},
    {"TripleWraps",       "BZ1000000000,0,0,0,0,0;",
     "OUTgeomline 0 22 0 0 -55932071 0 -100957389 0 -135914934 0 -161643687 0 -178982630 0 -188770742 0 -191847006 0 "
     "-189050403 0 -181219913 0 -169194517 0 -153813197 0 -135914934 0 -116338709 0 -95923503 0 -75508297 0 "
     "-55932071 0 -38033808 0 -22652489 0 -10627093 0 -2796603 0 0 0\n"},
    {"Incomplete",        "BZ1,2,3,4,5;PD7,7;",             "OUTgeomline 0 1 0 0\nOUTline 0 0 7 7\n"},
};

constexpr DrawRow POLYGONS[] = {
    {"Outline",           "PU5,5;PM0;PD15,5,15,15;PM2;EP;", "OUTgeomline 0 4 5 5 15 5 15 15 5 5\n"},
    {"WithoutParameter",  "PM;PA10,0;PM2;EP;",              "OUTgeomline 0 3 0 0 10 0 0 0\n"},
    {"PenUpPointsToo",    "PM0;PU10,10;PM2;EP;",            "OUTgeomline 0 3 0 0 10 10 0 0\n"},
    {"Wide",              "PW1;PM0;PA10,0;PM2;EP;",         "OUTgeomline 40 3 0 0 10 0 0 0\n"},
    {"EndDrawsNothing",   "PM0;PD10,0,10,10;PM2;",          ""},
    {"Filled",            "PM0;PD10,0,10,10;PM2;FP1;PD1,1;", "OUTwinsolidpolygons 1 5 0 0 10 0 10 10 0 0 0 0\nOUTline 0 0 1 1\n"},
    {"FilledUnclosed",    "PM0;PD10,0,10,10;FP;",           "OUTwinsolidpolygons 1 4 0 0 10 0 10 10 0 0\n"},
    {"TwoSubPolygons",    "PM0;PD10,0,10,10;PM1;PU20,20,30,20;PM2;FP;",
     "OUTwinsolidpolygons 2 5 4 0 0 10 0 10 10 0 0 0 0 20 20 30 20 20 20 20 20\n"},
    {"EmptySubPolygon",   "PM0;PD10,0;PM1;PM2;EP;FP;",
     "OUTgeomline 0 3 0 0 10 0 0 0\nOUTgeomline 0 0\nOUTwinsolidpolygons 1 4 0 0 10 0 0 0 0 0\n"},
    {"NothingBegun",      "EP;FP;",                         "OUTwinsolidpolygons 0\n"},
    {"DrawnTwice",        "PM0;PD10,0;PM2;EP;EP;",          "OUTgeomline 0 3 0 0 10 0 0 0\nOUTgeomline 0 3 0 0 10 0 0 0\n"},
    {"BegunAnew",         "PM0;PD10,0;PM0;PD20,0;PM2;EP;",  "OUTgeomline 0 3 10 0 20 0 10 0\n"},
    {"CloseMovesThePen",  "PU5,5;PM0;PA15,5,15,15;PM2;PD7,7;", "OUTline 5 5 7 7\n"},
    {"NextKeepsThePen",   "PU5,5;PM0;PA15,5;PM1;PR1,1;PM2;EP;", "OUTgeomline 0 3 5 5 15 5 5 5\nOUTgeomline 0 1 16 6\n"},
    {"FailedNextMoves",   "PU5,5;PM0;PA15,5;PM2;PU50,50;PM1;PD7,7;", "OUTline 5 5 7 7\n"},
    {"FailedCloseMoves",  "PU5,5;PM0;PA15,5;PM2;PU50,50;PM2;PD7,7;", "OUTline 5 5 7 7\n"},
    {"OtherValues",       "PM3;PM-1;PM256;PD7,7;",          "OUTline 0 0 7 7\n"},
    {"Rectangle",         "PM0;ER10,20;PM2;EP;",            "OUTgeomline 0 6 0 0 0 0 10 0 10 20 0 20 0 0\n"},
    {"FilledRectangle",   "PM0;RA10,20;PM2;EP;",            "OUTgeomline 0 6 0 0 0 0 11 0 11 21 0 21 0 0\n"},
    {"Circle",            "PM0;CI100,90;PM2;EP;",           "OUTgeomline 0 8 0 0 100 0 0 99 -99 0 0 -99 99 0 100 0 0 0\n"},
    {"Wedge",             "PM0;WG1000,0,90,90;PM2;EP;",     "OUTgeomline 0 5 0 0 0 0 1000 0 0 999 0 0\n"},
    {"Arc",               "PU100,0;PM0;AA0,0,90,90;PM2;EP;", "OUTgeomline 0 6 100 0 100 0 100 0 0 99 0 99 100 0\n"},
    {"Bezier",            "PM0;BZ0,100,100,100,100,0;PM2;EP;", "OUTgeomline 0 24 0 0 0 0 0 " CURVE " 0 0\n"},
    {"NotEnded",          "PM0;PD10,0;",                    ""},
};

constexpr DrawRow PENS[] = {
    {"Selected",          "SP3;",                           "OUTlinecolour 3\nOUTfillcolour 3\n"},
    {"WithoutParameter",  "SP;",                            "OUTlinecolour 0\nOUTfillcolour 0\n"},
    {"MinusOne",          "SP-1;",                          "OUTlinecolour 0\nOUTfillcolour 0\n"},
    {"Last",              "SP254;",                         "OUTlinecolour 254\nOUTfillcolour 254\n"},
    {"FirstAbove",        "SP255;",                         "OUTlinecolour 1\nOUTfillcolour 1\n"},
    {"SecondAbove",       "SP256;",                         "OUTlinecolour 2\nOUTfillcolour 2\n"},
    {"Largest",           "SP32767;",                       "OUTlinecolour 1\nOUTfillcolour 1\n"},
    {"Below",             "SP-2;",                          "OUTlinecolour 0\nOUTfillcolour 0\n"},
    {"Width",             "PW.35;PD10,0;",                  "OUTgeomline 14 2 0 0 10 0\n"},  // in double precision 13
    {"WidthOfAnother",    "PW1,3;PD10,0;SP3;PD20,0;",       "OUTline 0 0 10 0\nOUTlinecolour 3\nOUTfillcolour 3\nOUTgeomline 40 2 10 0 20 0\n"},
    {"WidthOfPenZero",    "SP;PW1;PD10,0;",                 "OUTlinecolour 0\nOUTfillcolour 0\nOUTgeomline 40 2 0 0 10 0\n"},
    {"WidestOfAll",       "PW819.18;PD10,0;",               "OUTgeomline 32767 2 0 0 10 0\n"},
    {"WiderThanThat",     "PW819.21;PD10,0;",               "OUTline 0 0 10 0\n"},
    {"WidthCutTo16Bits",  "PW1639;PD10,0;",                 "OUTgeomline 24 2 0 0 10 0\n"},
    {"WidthCutNegative",  "PW1000;PD10,0;",                 "OUTline 0 0 10 0\n"},
    {"WidthNotANumber",   "PWnan;PD10,0;",                  "OUTline 0 0 10 0\n"},
    {"WidthOfNoPen",      "PW1,255;PW1,-1;PW1,-2;PW1,32767;PD10,0;", "OUTline 0 0 10 0\n"},
    {"WidthOfOneUnit",    "PW.03;PD10,0;",                  "OUTline 0 0 10 0\n"},
};

#define TEXT_SIZE(width, height) "OUTsettext 0 0 " #width " " #height " 0 0\nOUTchars_len 0 0 1 41\n"

constexpr DrawRow LABELS[] = {
    {"Default",           "LBHi\003",                       "OUTsettext 0 0 226 162 0 0\nOUTchars_len 0 0 2 4869\n"},
    {"Empty",             "LB\003",                         "OUTsettext 0 0 0 162 0 0\nOUTchars_len 0 0 0\n"},
    {"MovesNoPen",        "PU5,6;LBA\003PD9,9;",            "OUTsettext 0 0 113 162 0 0\nOUTchars_len 5 6 1 41\nOUTline 5 6 9 9\n"},
    {"StandardFont",      "SD3,10,4,36;LBA\003",            TEXT_SIZE(101, 508)},
    {"PitchInSingle",     "SD3,.8;LBA\003",                 TEXT_SIZE(1270, 162)},  // in double precision 1269
    {"PitchOfZero",       "SD3,0;LBA\003",                  TEXT_SIZE(2147483647, 162)},
    {"HeightTruncates",   "SD4,12;LBA\003",                 TEXT_SIZE(113, 169)},
    {"HeightInDouble",    "SD4,.9212598;LBA\003",          TEXT_SIZE(113, 12)},  // in single precision 13
    {"OtherKinds",        "SD1,21,2,1,5,1,6,3,7,5,0,9,8,9;LBA\003", TEXT_SIZE(113, 162)},
    {"FontReset",         "SD3,10,4,36;SD;LBA\003",         TEXT_SIZE(113, 162)},
    {"AlternateNotYet",   "AD3,10,4,36;LBA\003",            TEXT_SIZE(113, 162)},
    {"SsTakesAlternate",  "AD3,10,4,36;SS;LBA\003",         TEXT_SIZE(101, 508)},
    {"SaTakesAlternate",  "AD3,10,4,36;SA;LBA\003",         TEXT_SIZE(101, 508)},
    {"NoWayBack",         "AD3,10;SA;SS;SD3,20;LBA\003",    TEXT_SIZE(101, 162)},
    {"AlternateReset",    "AD3,10;SA;AD;LBA\003",           TEXT_SIZE(113, 162)},
    {"SizeInSingle",      "SI.5,.7;LBA\003",                TEXT_SIZE(200, 280)},  // in double precision 279
    {"WidthInSingle",     "SI.7,.5;LBA\003",                TEXT_SIZE(280, 200)},
    {"SizeOff",           "SI.5,.7;SI;LBA\003",             TEXT_SIZE(113, 162)},
    {"SizeOffBySr",       "SI.5,.7;SR;LBA\003",             TEXT_SIZE(113, 162)},
    {"SizeHalfSet",       "SI0,.7;LBA\003",                 TEXT_SIZE(113, 280)},
    {"SizeNegative",      "SI-.5,.7;LBA\003",               TEXT_SIZE(-200, 280)},
    {"SizeBeforeFont",    "SI.5,.5;AD3,10;SS;LBA\003",      TEXT_SIZE(200, 200)},
    {"HeightZero",        "SD4,0;LBA\003PD7,7;",            "OUTline 0 0 7 7\n"},
};

constexpr DrawRow OTHERS[] = {
    {"Ignored",           "DF;IN;PG1;RP2;BP;NP8;PC3,1,2,3;RO90;PD7,7;",   "OUTline 0 0 7 7\n"},
    {"NotHandled",        "IP0,0,1,1;LT2,.5,1,3;SM*;DT#;CP1,2;CS5;UL1,2;PD7,7;", "OUTline 0 0 7 7\n"},
    {"EncodedPolyline",   "PE<=\xdd\xdd\xc7\xc7;PD7,7;",    "OUTline 15 15 19 19\nOUTline 19 19 7 7\n"},
};
// clang-format on

class Interpreter : public testing::TestWithParam<DrawRow> {};

TEST_P(Interpreter, Draws) {
    const FreshViewer viewer;
    EXPECT_EQ(plainCalls(GetParam().text, GetParam().rotationSign), GetParam().calls);
}

INSTANTIATE_TEST_SUITE_P(Moves, Interpreter, testing::ValuesIn(MOVES), byRowName);
INSTANTIATE_TEST_SUITE_P(Scales, Interpreter, testing::ValuesIn(SCALES), byRowName);
INSTANTIATE_TEST_SUITE_P(Boxes, Interpreter, testing::ValuesIn(BOXES), byRowName);
INSTANTIATE_TEST_SUITE_P(Circles, Interpreter, testing::ValuesIn(CIRCLES), byRowName);
INSTANTIATE_TEST_SUITE_P(Arcs, Interpreter, testing::ValuesIn(ARCS), byRowName);
INSTANTIATE_TEST_SUITE_P(Wedges, Interpreter, testing::ValuesIn(WEDGES), byRowName);
INSTANTIATE_TEST_SUITE_P(Beziers, Interpreter, testing::ValuesIn(BEZIERS), byRowName);
INSTANTIATE_TEST_SUITE_P(Polygons, Interpreter, testing::ValuesIn(POLYGONS), byRowName);
INSTANTIATE_TEST_SUITE_P(Pens, Interpreter, testing::ValuesIn(PENS), byRowName);
INSTANTIATE_TEST_SUITE_P(Labels, Interpreter, testing::ValuesIn(LABELS), byRowName);
INSTANTIATE_TEST_SUITE_P(Others, Interpreter, testing::ValuesIn(OTHERS), byRowName);

// ---- the pass as a whole --------------------------------------------------------------------------------------------

class Pass : public testing::Test {
  protected:
    FreshViewer viewer;
};

TEST_F(Pass, StepsByFiveDegrees) {
    const std::string circle = plainCalls("CI100;");
    EXPECT_TRUE(circle.starts_with("OUTgeomline 0 74 100 0 99 8 98 17 ")) << circle;
    EXPECT_TRUE(circle.ends_with(" 99 -8 99 0 100 0\n")) << circle;
}

// A chord of .3 is a little more in single precision, so that the last of its steps lies beyond 360 degrees.
TEST_F(Pass, WidensTheChordBeforeItIsSummed) {
    EXPECT_TRUE(plainCalls("CI1000,.3;").starts_with("OUTgeomline 0 1201 1000 0 "));
}

TEST_F(Pass, PreparesLabelsBeforeTheFirstColour) {
    parseText("PD7,7;");
    TheShell.parser->PStatus[1].paletteIndex = 5;
    recorder::script.families = {{"Sans", TRUETYPE_FONTTYPE, 1}};
    recorder::script.fontsAccepted = 0;
    recorder::calls.clear();
    EXPECT_EQ(HPGLinterpretCompactCode(TheShell.parser, &TheShell.display, 1), 1);
    EXPECT_EQ(recorder::calls,
              "GetDC 0\nEnumFontFamiliesA 1 null\n"
              "GetDC 0\nEnumFontFamiliesA 2 \"Sans\"\nWFcreate 5 \"Sans,A, 2\"\nReleaseDC 0 2\n"
              "ReleaseDC 0 1\n"
              "OUTlinecolour 5\nOUTfillcolour 5\nOUTline 2 2 2 2\n");
    EXPECT_EQ(TheShell.display.DevicePoints, nullptr);
    EXPECT_EQ(TheShell.display.DeviceCounts, nullptr);
}

TEST_F(Pass, StartsAfreshEachTime) {
    parseText("PD1,0;PU9,9;SC1,0,1,0;PR;PW1;SI1,1;AD3,10;SS;SP3;PM0;");
    const std::string first = plainPass();
    EXPECT_EQ(plainPass(), first);
    EXPECT_TRUE(first.starts_with("OUTline 0 0 1 0\n")) << first;
}

TEST_F(Pass, ResetsEveryWidth) {
    parseText("PD10,0;");
    for (int32_t pen = 0; pen < HPGL_PENS; ++pen) {
        TheShell.parser->PStatus[pen].width = 50;
        TheShell.parser->PStatus[pen].red = 77;
    }
    EXPECT_EQ(plainPass(), "OUTline 0 0 10 0\n");
    for (int32_t pen = 0; pen < HPGL_PENS; ++pen) {
        EXPECT_EQ(TheShell.parser->PStatus[pen].width, 0);
        EXPECT_EQ(TheShell.parser->PStatus[pen].red, 77);
    }
}

TEST_F(Pass, WalksEveryBlock) {
    const std::string first = codeOf("PU5,5;PD6,6;");
    const std::string second = codeOf("PR1,1;");
    setBlocks({first, "", second});
    EXPECT_EQ(plainPass(), "OUTline 5 5 6 6\nOUTline 6 6 7 7\n");
}

TEST_F(Pass, DrawsNothingOfNothing) {
    EXPECT_EQ(plainCalls(""), "");
    setBlocks({});
    EXPECT_EQ(plainPass(), "");
}

// Relative sizes are of the picture's extents, in single precision.
TEST_F(Pass, TakesRelativeSizesFromTheExtents) {
    parseText("SR29,50;LBA\003");
    TheShell.parser->global->MinX = 50;
    TheShell.parser->global->MaxX = 150;
    TheShell.parser->global->MinY = -100;
    TheShell.parser->global->MaxY = 300;
    EXPECT_EQ(plainPass(), TEXT_SIZE(29, 200));  // in double precision 28
    parseText("SR53,53;LBA\003");
    TheShell.parser->global->MinX = TheShell.parser->global->MinY = 0;
    TheShell.parser->global->MaxX = 100;
    TheShell.parser->global->MaxY = 200;
    EXPECT_EQ(plainPass(), TEXT_SIZE(52, 105));  // multiplied first, or in double precision, 53 and 106
}

TEST_F(Pass, FitsThePictureIntoTheWindow) {
    EXPECT_EQ(drawingCalls("PD;PA0,0,8000,4000;", 804, 604),
              "OUTlinecolour 1\nOUTfillcolour 1\n"
              "OUTline 2 202 2 202\nOUTline 2 202 802 602\n");
}

TEST_F(Pass, TurnsThePicture) {
    EXPECT_EQ(drawingCalls("SC0,1,0,1;PD;PA0,0,8000,4000;", 804, 604, -1),
              "OUTlinecolour 1\nOUTfillcolour 1\nOUTline 802 602 802 602\nOUTline 802 602 2 202\n");
}

// ---- the curve ------------------------------------------------------------------------------------------------------

TEST_F(Pass, CurveHasOnePointMoreThanSegments) {
    HPGLPBuf* buf = HPGLPBufcreate(1);
    const HPGLPoint* points = nullptr;
    int32_t count = 0;
    HPGLPBufBegin(buf, 0, 0);
    HPGLaddBezierPoints(buf, {0, 0}, {0, 0}, {300, -300}, {300, -300}, 2);
    HPGLPBufGetActual(buf, &points, &count);
    ASSERT_EQ(count, 4);
    EXPECT_EQ(points[1].x, 77);
    EXPECT_EQ(points[1].y, -77);
    EXPECT_EQ(points[2].x, 222);
    EXPECT_EQ(points[3].x, 300);
    HPGLPBufDestroy(buf);
}

}  // namespace
