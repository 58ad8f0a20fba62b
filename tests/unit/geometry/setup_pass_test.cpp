// The set-up pass: what each command adds to the picture's extents.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>

#include "geometry/ellipse.h"
#include "geometry/setup_pass.h"
#include "geometry/step_loop.h"
#include "picture_text.h"
#include "recorder/recorder.h"
#include "rows.h"
#include "shell/shell_state.h"

namespace {

constexpr char NOTHING[] = "1073741823 1073741823 -1073741823 -1073741823";

// Of TheShell.parser.
std::string extents(int32_t rotationSign = 1) {
    HPGLfindExtents(TheShell.parser, rotationSign);
    const HPGLGlobal& global = *TheShell.parser->global;
    return std::to_string(global.MinX) + ' ' + std::to_string(global.MinY) + ' ' + std::to_string(global.MaxX) + ' ' +
           std::to_string(global.MaxY);
}

struct ExtentsRow : NamedRow {
    const char* text;
    const char* extents;
    int32_t rotationSign = 1;
};

// clang-format off
constexpr ExtentsRow MOVES[] = {
    {"Empty",               "IN;",                               NOTHING},
    {"OnlyMoves",           "PU0,0;PU500,500;PA7,7;",            NOTHING},
    {"Line",                "PD;PA0,0,100,100;",                 "0 0 100 100"},
    {"AfterAMove",          "PU;PA500,500;PD;PA600,600;",        "500 500 600 600"},
    {"FromTheOrigin",       "PD100,50;",                         "0 0 100 50"},
    {"NoParameters",        "PD;",                               NOTHING},
    {"OneParameter",        "PU9,9;PD7;PA10,20;",                "9 9 10 20"},
    {"OddParameter",        "PU9,9;PD10,20,30;PA40,50;",         "9 9 40 50"},
    {"Relative",            "PA100,100;PD;PR10,20,-30,5;",       "80 100 110 125"},
    {"RelativeKeepsPen",    "PD;PR10,10;PU;PR50,50;PD5,5;",      "0 0 65 65"},
    {"AbsoluteAgain",       "PR10,10;PD;PA30,30;",               "10 10 30 30"},
    {"PenUpAgain",          "PD1,1;PU9,9;",                      "0 0 1 1"},
    {"EncodedPolyline",     "PE<=\xdd\xdd\xc7\xc7;",         "15 15 19 19"},
};

constexpr ExtentsRow SHAPES[] = {
    {"Circle",              "PA1000,1000;CI100;",                "900 900 1100 1100"},
    {"CircleWithChord",     "PA1000,1000;CI100,30;PD1500,1000;", "900 900 1500 1100"},
    {"CircleMovesNoPen",    "PA50,50;CI10;PD60,60;",             "40 40 60 60"},
    {"CircleNegative",      "PA1000,1000;CI-100;",               "1100 1100 900 900"},
    {"CircleInSingle",      "SC0,.7,0,.7,2;CI10;",               "-7 -7 7 7"},
    {"CircleMirrored",      "SC1,0,0,1;CI10;",                   "10 -10 -10 10"},
    {"Rectangle",           "PA9,9;EA100,50;",                   "100 50 100 50"},
    {"FilledRectangle",     "PA9,9;RA100,50;",                   "100 50 100 50"},
    {"RelativeRectangle",   "PA10,10;ER5,6;",                    "15 16 15 16"},
    {"RelativeFilled",      "PA10,10;RR5,6;RR7,8;",              "15 16 17 18"},
    {"Bezier",              "PA10,10;BZ20,0,30,90,40,10;",       "20 0 40 90"},
    {"BezierMovesThePen",   "PA10,10;BZ20,0,30,90,40,10;PD;PA50,10;", "20 0 50 90"},
    {"BezierRelative",      "PA10,10;BR10,-10,20,80,30,0;PD40,0;", "20 0 40 90"},
    {"BezierTwoSegments",   "BR1,1,2,2,100,100,1,1,2,2,100,100;", "1 1 200 200"},
    {"BezierIncomplete",    "BZ1,2,3,4,5,6,70,80;PD9,9;",        "1 2 9 9"},
    {"BezierOnlyIncomplete","BZ1,2,3;PU7,7;PD9,9;",              "7 7 9 9"},
    // The end angle is added even though the steps miss it; the constant short of two pi gives 999, not 1000.
    {"Wedge",               "EW1000,0,90,60;",                   "0 0 1000 999"},
    {"WedgeFilled",         "WG1000,0,90,60;",                   "0 0 1000 999"},
    {"WedgeDefaultChord",   "EW1000,0,90;",                      "0 0 1000 999"},
    {"WedgeBackwards",      "EW1000,0,-90,60;",                  "0 -999 1000 0"},
    {"WedgeNegativeRadius", "EW-1000,0,90,60;",                  "-999 -999 0 0"},
    {"WedgeWithoutCentre",  "EW1000,10,20,90;",                  "866 173 984 499"},
    {"WedgeWideAngles",     "EW1000,16777216,1,1;",              "-688 725 -675 737"},
    {"WedgeWhole",          "EW1000,0,360,90;",                  "-999 -999 1000 999"},
    // The point at 400 degrees lies between others, yet it alone comes near the largest number without wrapping.
    {"WedgeWraps",          "PU2147483520,0;EW160,0,720,100;",   "-2147483626 -138 2147483642 157"},
    {"WedgeRadiusInDouble", "SC0,.7,0,.7,2;EW10,0,90,90;",       "0 0 6 6"},  // in single precision 7
    {"WedgeMovesNoPen",     "PA5,5;EW1000,0,90,60;PD6,6;",       "5 5 1005 1004"},
    // The start angle, in degrees, is added to both coordinates of every point of an arc.
    {"ArcAddsStartAngle",   "PA0,1000;AA0,0,90,30;",             "-909 90 90 1090"},
    {"ArcMovesThePen",      "PA0,1000;AA0,0,90,30;PD;PA-2000,90;", "-2000 90 90 1090"},
    {"ArcAddsToThePenToo",  "PA0,1000;AA0,0,90,30;PU;PR0,-500;PD;PR0,0;", "-909 -410 90 1090"},
    {"ArcFromAngleZero",    "PA100,0;AA0,0,90,30;",              "0 0 100 99"},
    {"ArcDegreesConstant",  "PA0,1;AA0,0,10,20;",                "89 90 90 91"},  // with all of pi the upper y is 90
    {"ArcRelative",         "PA10,20;AR-100,0,90,45;",           "-90 20 10 119"},
    {"ArcCentreUnscaled",   "SC0,2,0,2,2;PA100,0;AA50,0,90,90;", "50 0 350 299"},
    // It is within 32 bits, but for the added angle.
    {"ArcWraps",            "PU2147483392,240;AA2147483392,0,1000,61;", "-2147483633 -149 2147483544 330"},
    {"ArcNoRadius",         "PA10,10;AA10,10,20;",               "10 10 10 10"},
};

constexpr ExtentsRow SCALES[] = {
    {"Turned",              "SC0,1,0,1;PD;PA100,50;",            "-100 -50 0 0", -1},
    {"TurnedTwice",         "SC0,1,0,1;SC0,1,0,1;PD;PA100,50;",  "0 0 100 50",   -1},
    {"NotTurnedWithoutSc",  "PD;PA100,50;",                      "0 0 100 50",   -1},
    {"TurnedWithoutBounds", "SC;PD;PA100,50;",                   "-100 -50 0 0", -1},
    {"MirroredForGood",     "SC1,0,0,1;SC0,1,0,1;PD100,50;",     "-100 0 0 50"},
    {"Reset",               "SC1,0,1,0;SC;PD100,50;",            "0 0 100 50"},
    {"SevenParameters",     "SC1,0,0,1,1,5,5;PD100,50;",         "-100 0 0 50"},
    {"SinglePrecision",     "SC0,.7,0,.7,2;PU-10,-10;PD10,10;",  "-7 -7 7 7"},
    {"Above24Bits",         "PU16777217,0;PD16777219,0;",        "16777216 0 16777220 0"},
    {"FarthestCorner",      "PU1073741760,5;PD1073741760,6;",    "1073741760 5 1073741760 6"},
    {"BeyondTheFarthest",   "PU1073741824,5;PD1073741824,6;",    "1073741823 5 1073741824 6"},
    {"RelativeWraps",       "PU2147483647,5;PD;PR2147483647,0;", "-2 5 2147483647 5"},
    // Three zeros, passed over as six records of the host's data command.
    {"UnsupportedCount",    "SC0,0,0;PD;PA100,100;",             "0 0 100 100"},
};

constexpr ExtentsRow OTHERS[] = {
    {"InputWindow",         "IP0,0,5000,5000;IR0,0,100,100;IW0,0,9000,9000;RO90;PU7,7;PD8,8;", "7 7 8 8"},
    {"LabelStepped",        "PU7,7;LB\x15\x01 a label\x03PD8,8;", "7 7 8 8"},
    {"PensStepped",         "SP;SP3;PC3,1,2,3;PW.35,3;PU7,7;PD8,8;", "7 7 8 8"},
    {"FontsStepped",        "SD1,21,4,12;AD1,8;SI.2,.3;SR1,2;SA;SS;PU7,7;PD8,8;", "7 7 8 8"},
    {"SignatureCycles",     "LT2,.5,1,3,.5,1;UL1,2,3;FT1,2,3,4;PU7,7;PD8,8;", "7 7 8 8"},
    {"CharactersStepped",   "SM*;DT#;PU7,7;PD8,8;",              "7 7 8 8"},
    {"NoSignatureNoBytes",  "PG1,2;IN9;PU7,7;PD8,8;",            "7 7 8 8"},
    {"PolygonModeIgnored",  "PM0;PD5,5;PM2;FP1;EP;",             "0 0 5 5"},
};
// clang-format on

class Extents : public testing::TestWithParam<ExtentsRow> {};

TEST_P(Extents, HoldWhatIsDrawn) {
    const FreshViewer viewer;
    parseText(GetParam().text);
    EXPECT_EQ(extents(GetParam().rotationSign), GetParam().extents);
}

INSTANTIATE_TEST_SUITE_P(Moves, Extents, testing::ValuesIn(MOVES), byRowName);
INSTANTIATE_TEST_SUITE_P(Shapes, Extents, testing::ValuesIn(SHAPES), byRowName);
INSTANTIATE_TEST_SUITE_P(Scales, Extents, testing::ValuesIn(SCALES), byRowName);
INSTANTIATE_TEST_SUITE_P(Others, Extents, testing::ValuesIn(OTHERS), byRowName);

// Every point of a wedge about the origin, one after the other.
std::string extentsOfWedge(int32_t radius, double start, double sweep, double chord) {
    const double reach = std::abs(radius);
    const HPGLEllipse ellipse = {reach, reach, 0};
    const double first = radius < 0 ? start + 180.0 : start;
    const double last = first + sweep;
    std::vector<int32_t> x, y;
    const auto add = [&](double angle) {
        const EllipseOffset point = HPGLonEllipse(ellipse, angle);
        x.push_back(point.x);
        y.push_back(point.y);
    };
    StepAllowance allowance;
    HPGLforEachStep(&allowance, "", first, sweep > 0 ? chord : -chord, last, add);
    add(last);
    const auto [minX, maxX] = std::ranges::minmax(x);
    const auto [minY, maxY] = std::ranges::minmax(y);
    return std::to_string(minX) + ' ' + std::to_string(minY) + ' ' + std::to_string(maxX) + ' ' + std::to_string(maxY);
}

// In nine digits, which single precision keeps; a number has no plus sign.
std::string textOfWedge(int32_t radius, double start, double sweep, double chord) {
    char line[128];
    std::snprintf(line, sizeof line, "EW%d,%.9g,%.9g,%.9g;", radius, start, sweep, chord);
    std::string text = line;
    std::erase(text, '+');
    return text;
}

// The pass computes but a few of the points.
TEST(SetupPass, FindsTheFarthestPointsOfEverySweep) {
    constexpr float CHORDS[] = {5, 0.36F, 89.9999F, 90.00001F, 120, 179.9999F, 180, 360, 1e6F, 1e20F};
    const FreshViewer viewer;
    std::mt19937_64 random(3);
    const auto any = [&random](double least, double most) {
        const double value = std::pow(10.0, std::uniform_real_distribution<double>(least, most)(random));
        return static_cast<float>(random() % 2 == 0 ? value : -value);
    };
    for (int round = 0; round < 2000; ++round) {
        const auto radius = static_cast<int32_t>(any(0, 9));
        const float start = random() % 3 == 0 ? 0.0F : any(-2, 9);
        const float chord = random() % 4 == 0 ? std::abs(any(-1, 12)) : CHORDS[random() % std::size(CHORDS)];
        const float sweep = any(0, 3) * chord;
        const std::string text = textOfWedge(radius, start, sweep, chord);
        parseText(text);
        ASSERT_EQ(extents(), extentsOfWedge(radius, start, sweep, chord)) << text;
    }
}

TEST(SetupPass, StartsAfreshEachTime) {
    const FreshViewer viewer;
    parseText("PR;PD10,20;SC1,0,1,0;");
    const std::string first = extents();
    TheShell.parser->global->spare = 9;
    EXPECT_EQ(extents(), first);
    EXPECT_EQ(TheShell.parser->global->spare, 0);
}

TEST(SetupPass, TracesNothingOfAPlainPicture) {
    const FreshViewer viewer;
    parseText("IN;SP1;SC0,1,0,1;PU1,1;PD2,2;CI5;AA0,0,90;EW5,0,90;");
    EXPECT_EQ(traceOf(3, [] { extents(); }), "");
}

// ---- blocks by hand -------------------------------------------------------------------------------------------------

const std::string& line() {
    static const std::string code = codeOf("PU7,7;PD8,8;");
    return code;
}

TEST(SetupPass, PassesOverCodesAbove92AsOneByte) {
    const FreshViewer viewer;
    const std::string& code = line();
    for (const char above : {'\x5d', '\x80', '\xff'}) {
        setBlocks({std::string(3, above) + code});
        EXPECT_EQ(extents(), "7 7 8 8");
    }
}

struct FixedRow {
    const char* name;
    std::string code;
    const char* extents;
};

std::string bytes(std::initializer_list<int> values) {
    std::string result;
    for (const int value : values) {
        result += static_cast<char>(value);
    }
    return result;
}

// Read in their fixed form, whatever the count: what lies behind is the line from (7, 7) to (8, 8).
std::vector<FixedRow> fixedRows() {
    const std::string point = bytes({5, 0, 0, 0, 6, 0, 0, 0});
    const std::string zeros(4, '\0');
    return {
        {"EaWithoutParameters", bytes({25, 0}) + point, "5 6 8 8"},
        {"ErWithOne", bytes({27, 1}) + point, "5 6 8 8"},
        {"RaWithThree", bytes({31, 3}) + point, "5 6 8 8"},
        {"CiWithoutParameters", bytes({18, 0, 3, 0, 0, 0}), "-3 -3 8 8"},
        {"CiWithThree", bytes({18, 3, 3, 0, 0, 0}), "-3 -3 8 8"},
        {"EwWithoutParameters", bytes({28, 0, 3, 0, 0, 0}) + zeros + zeros, "3 0 8 8"},
        {"WgWithFive", bytes({33, 5, 3, 0, 0, 0}) + zeros + zeros, "3 0 8 8"},
        {"AaWithTwo", bytes({13, 2, 0, 0, 0, 0}) + zeros + zeros, "0 0 8 8"},
        {"SpWithTwo", bytes({61, 2, 3, 0}), "7 7 8 8"},
        {"PcWithOne", bytes({69, 1, 3, 0, 1, 0, 2, 0, 3, 0}), "7 7 8 8"},
    };
}

TEST(SetupPass, ReadsFixedFormsWhateverTheCount) {
    const FreshViewer viewer;
    const std::string& code = line();
    for (const FixedRow& row : fixedRows()) {
        setBlocks({row.code + code});
        EXPECT_EQ(extents(), row.extents) << row.name;
    }
}

TEST(SetupPass, WalksEveryBlock) {
    const FreshViewer viewer;
    setBlocks({codeOf("PU7,7;PD8,8;"), "", codeOf("PR;PD1,1;")});
    EXPECT_EQ(extents(), "7 7 9 9");
}

TEST(SetupPass, LeavesABlockAtACutRecord) {
    const FreshViewer viewer;
    for (const char* text :
         {"PD1,1;",     "PD1;",       "CI5;",         "CI5,5;",           "BZ1,1,1,1,1,1;", "EA1,1;",      "ER1,1;",
          "RA1,1;",     "RR1,1;",     "EW1,0,90;",    "WG1,0,90,5;",      "AA0,1,90;",      "AR0,1,90,5;", "SP3;",
          "PC3,1,2,3;", "SC1,0,0,1;", "SC1,0,0,1,0;", "SC1,0,0,1,0,1,1;", "LBx\x03",        "SI1,1;",      "IN;"}) {
        const std::string whole = codeOf(text);
        const std::string& next = line();
        setBlocks({whole.substr(0, whole.size() - 1), next});
        EXPECT_EQ(extents(), "7 7 8 8") << text;
        EXPECT_EQ(TheShell.parser->PStatus[3].used, 0) << text;
    }
}

TEST(SetupPass, NeedsSixteenBytesForAShortSc) {
    const FreshViewer viewer;
    // One reversed bound; the rest of the sixteen bytes are codes that do nothing.
    const std::string reversed = bytes({12, 2, 0, 0, 0x80, 0x3f, 0, 0, 0, 0});
    const std::string& move = line();
    setBlocks({reversed + std::string(7, '\0'), move});
    EXPECT_EQ(extents(), "7 7 8 8");
    setBlocks({reversed + std::string(8, '\0'), move});
    EXPECT_EQ(extents(), "-8 7 -7 8");
}

}  // namespace
