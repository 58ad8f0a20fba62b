#include "plotter/file_bytes.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <bit>
#include <string>

#include "plotter/plotter.h"

namespace plotter {
namespace {

using namespace std::string_literals;

std::string nuls(std::size_t count) {
    std::string text;
    text.resize(count);
    return text;
}

const std::string PLOT = "IN;SP1;PU0,0;PD1000,0,1000,1000;PU;LBA label.\x03SP0;\r\n";

std::string packed(const std::string& bytes) {
    z_stream stream = {};
    EXPECT_EQ(deflateInit2(&stream, 9, Z_DEFLATED, MAX_WBITS + 16, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string out(deflateBound(&stream, bytes.size()) + 64, '\0');
    std::string in = bytes;
    stream.next_in = reinterpret_cast<Bytef*>(in.data());
    stream.avail_in = static_cast<uInt>(in.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    out.resize(out.size() - stream.avail_out);
    deflateEnd(&stream);
    return out;
}

std::string wide(const std::string& bytes, bool lowFirst) {
    std::string out = lowFirst ? "\xff\xfe" : "\xfe\xff";
    for (const char c : bytes) {
        out += lowFirst ? c : '\0';
        out += lowFirst ? '\0' : c;
    }
    return out;
}

std::string withParity(const std::string& bytes, int odd) {
    std::string out = bytes;
    for (char& c : out) {
        if ((std::popcount(static_cast<unsigned char>(c)) & 1) != odd) {
            c = static_cast<char>(c | 0x80);
        }
    }
    return out;
}

struct Row {
    std::string name;
    std::string file;
    std::string expected;
    bool copies;
};

class Prepared : public testing::TestWithParam<Row> {};

TEST_P(Prepared, GivesThePlot) {
    const PreparedBytes prepared = prepareBytes(GetParam().file);
    EXPECT_EQ(prepared.bytes, GetParam().expected);
    EXPECT_EQ(prepared.owned != nullptr, GetParam().copies);
    EXPECT_EQ(prepared.remark, "");
}

const std::string ENCODED = "IN;LB\xc3\xbc\x03PE<=\xe8\x56\xc0;LB\xc3\x80\x03";

// clang-format off
const Row ROWS[] = {
    {"Plain",            PLOT,                                       PLOT,                            false},
    {"Empty",            "",                                         "",                              false},
    {"ByteOrderMark",    "\xef\xbb\xbf" + PLOT,                      PLOT,                            false},
    {"LeadingNuls",      nuls(131072) + PLOT,           PLOT,                            false},
    {"OnlyNuls",         std::string(5, '\0'),                       "",                              false},
    {"NulsInside",       "IN;"s + '\0' + "PU;",                      "IN;"s + '\0' + "PU;",           false},
    {"WideLowFirst",     wide(PLOT, true),                           PLOT,                            true},
    {"WideHighFirst",    wide(PLOT, false),                          PLOT,                            true},
    {"EvenParity",       withParity(PLOT, 0),                        PLOT,                            true},
    {"OddParity",        withParity(PLOT, 1),                        PLOT,                            true},
    {"TooShortToTell",   withParity("IN;PU;", 0),                    withParity("IN;PU;", 0),         false},
    {"LatinLabels",      PLOT + "LB\xe4\xf6\xfc\x03",                PLOT + "LB\xe4\xf6\xfc\x03",     false},
    {"Packed",           packed(PLOT),                               PLOT,                            true},
    {"PackedTwice",      packed("IN;") + packed("PU;"),              "IN;PU;",                        true},
    {"PackedWide",       packed(wide(PLOT, true)),                   PLOT,                            true},
    {"RawEncodedLine",   "PE<=\xe8\x56\xc0;",                        "PE<=\xe8\x56\xc0;",             false},
    {"SplitEncodedLine", "IN;LB\xc3\xbc\x03PE<=\xc3\xa8V\xc3\x80;LB\xc3\x80\x03", ENCODED,            true},
    {"SplitFlags",       "PE\xc2\xbc\xc2\xbd\xc3\x80\xc3\x81;",      "PE\xbc\xbd\xc0\xc1;",           true},
    {"PairThatIsRaw",    "PE<=\xc3\xbf\xc3\xbf;",                    "PE<=\xc3\xbf\xc3\xbf;",         false},
    {"Utf8LabelsAlone",  "LB\xc3\xbc\x03PE<=AB;",                    "LB\xc3\xbc\x03PE<=AB;",         false},
    {"OtherTerminator",  "DT#LBPE\xc3\xa8;#PE\xc3\xa8;",             "DT#LBPE\xc3\xa8;#PE\xe8;",      true},
    {"NotAllUtf8",       "LB\xfc\x03PE\xc3\xa8;",                    "LB\xfc\x03PE\xc3\xa8;",         false},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(All, Prepared, testing::ValuesIn(ROWS), [](const auto& row) { return row.param.name; });

TEST(PackedFile, IsUnpackedToABound) {
    const std::string file = packed("IN;" + nuls(20'000'000));
    const std::size_t most = file.size() * MOST_UNPACKED_TO_ONE;
    ASSERT_LT(most, 20'000'000u);
    const PreparedBytes prepared = prepareBytes(file);
    EXPECT_EQ(prepared.bytes.size(), most);
    EXPECT_NE(prepared.remark.find("left out"), std::string::npos);
}

TEST(PackedFile, IsShownAsFarAsItGoes) {
    const std::string file = packed(PLOT);
    const PreparedBytes prepared = prepareBytes(std::string_view(file).substr(0, file.size() - 12));
    EXPECT_TRUE(PLOT.starts_with(prepared.bytes));
    EXPECT_NE(prepared.remark.find("damaged"), std::string::npos);
    EXPECT_EQ(prepareBytes("\x1f\x8b\x08garbage").bytes, "");
}

struct Kind {
    std::string name;
    std::string file;
    std::string kind;
};

class ForeignKind : public testing::TestWithParam<Kind> {};

TEST_P(ForeignKind, IsNamed) {
    EXPECT_EQ(foreignKind(GetParam().file), GetParam().kind);
}

// clang-format off
const Kind KINDS[] = {
    {"PostScript",        "%!PS-Adobe-3.0\n",                                      "PostScript"},
    {"PostScriptCtrlD",   "\x04%!PS\n",                                            "PostScript"},
    {"Pdf",               "%PDF-1.4\n",                                            "PDF"},
    {"Png",               "\x89PNG\r\n\x1a\n",                                     "PNG image"},
    {"Jpeg",              "\xff\xd8\xff\xe0",                                      "JPEG image"},
    {"Gif",               "GIF89a",                                                "GIF image"},
    {"Tiff",              "II*\0x"s,                                               "TIFF image"},
    {"Bmp",               "BM\x36\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\1\0\0\0\1\0\0\0\1"s, "BMP image"},
    {"Zip",               "PK\x03\x04x",                                           "ZIP archive"},
    {"Svg",               "<?xml version='1.0'?>\n<svg xmlns=''>",                 "SVG"},
    {"Xml",               "<?xml version='1.0'?>\n<a>",                            "XML"},
    {"Html",              "  <!DOCTYPE html>\n",                                   "HTML"},
    {"Dxf",               "  0\r\nSECTION\r\n  2\r\nHEADER\r\n",                   "DXF"},
    {"DxfComment",        "999\nmade by\n0\nSECTION\n",                            "DXF"},
    {"Gerber",            "G04 layer*\n%FSLAX24Y24*%\n",                           "Gerber"},
    {"Dmpl",              ";:H A L0 EC1 U0,0 D10,10",                              "DMPL"},
    {"EscP",              "\x1b@text",                                             "ESC/P"},
    {"PclXl",             "\x1b%-12345X@PJL ENTER LANGUAGE=PCLXL\n) HP-PCL XL;1",  "PCL XL"},
    {"PclXlBare",         ") HP-PCL XL;2;0",                                       "PCL XL"},
    {"PostScriptInJob",   "\x1b%-12345X@PJL enter language = postscript\n%!PS",    "PostScript"},
    {"Plot",              PLOT,                                                    ""},
    {"PlotInJob",         "\x1b%-12345X@PJL ENTER LANGUAGE=HPGL2\nIN;",            ""},
    {"PclInJob",          "\x1b%-12345X@PJL ENTER LANGUAGE=PCL\n\x1b" "E",         ""},
    {"Printer",           "\x1b" "E\x1b%0BIN;",                                    ""},
    {"LabelOfPostScript", "IN;LB%!PS\x03",                                         ""},
    {"Empty",             "",                                                      ""},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(All, ForeignKind, testing::ValuesIn(KINDS), [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace plotter
