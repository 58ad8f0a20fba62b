#include "qrvel/channel/delivery.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/protocol.h"
#include "rows.h"

namespace qrvel {
namespace {

using Form = Transmission::Form;

constexpr std::size_t ROOM = 256;  // in the viewer's receive buffer
constexpr auto AT_ONCE = std::chrono::steady_clock::time_point::min();
constexpr auto AT_LEISURE = std::chrono::steady_clock::time_point::max();

// A piece as "B(bytes)" of a begin, "F" of a further and "E" of an end chunk. A run of a byte: x{300}.
std::string described(std::string_view bytes, uint32_t kind) {
    std::string text = std::string(1, "FBE"[kind]) + '(';
    while (!bytes.empty()) {
        const std::size_t run = std::min(bytes.find_first_not_of(bytes.front()), bytes.size());
        text += bytes.front();
        if (run > 3) text += '{' + std::to_string(run) + '}';
        bytes.remove_prefix(run > 3 ? run : 1);
    }
    return text + ')';
}

std::string got;  // by the callback

void take(const char* data, uint64_t length, uint32_t kind) {
    EXPECT_LE(length, ROOM);
    got += described({data, length}, kind);
}

std::unique_ptr<Transmission> transmissionOf(const std::string& bytes, Form form) {
    auto spool = std::make_unique<Spool>();
    spool->append(bytes.data(), static_cast<qint64>(bytes.size()));
    spool->finish();
    return std::make_unique<Transmission>(std::move(spool), form);
}

class Handing {
  public:
    // begun: the viewer has had a begin chunk before.
    Handing(const std::string& bytes, Form form, bool begun = true)
        : receiver_{buffer_, take, begun, begun}, delivery(receiver_, transmissionOf(bytes, form)) {
        got.clear();
    }

    std::string all() {
        while (!delivery.isOver()) {
            delivery.run(AT_LEISURE);
        }
        return got;
    }

  private:
    char buffer_[ROOM];
    Receiver receiver_;

  public:
    Delivery delivery;
};

std::string frame(kelhost::FrameKind kind, const std::string& bytes) {
    const auto header =
        kelhost::encodeHeader({.kind = static_cast<uint8_t>(kind), .length = static_cast<uint32_t>(bytes.size())});
    return std::string(header.begin(), header.end()) + bytes;
}

std::string begin(const std::string& bytes = "") {
    return frame(kelhost::FrameKind::Begin, bytes);
}

std::string further(const std::string& bytes = "") {
    return frame(kelhost::FrameKind::Further, bytes);
}

std::string end(const std::string& bytes = "") {
    return frame(kelhost::FrameKind::End, bytes);
}

std::string x(std::size_t count) {
    return std::string(count, 'x');
}

struct Row : NamedRow {
    std::string bytes;
    const char* pieces;
};

// clang-format off
const Row PLAIN[] = {
    {"Empty",                 "",                                    "B()E()"},
    {"Short",                 "IN;SP1;",                             "B()F(IN;SP1;)E()"},
    {"FillsAPiece",           x(256),                                "B()F(x{256})E()"},
    {"OneByteMore",           x(257),                                "B()F(x{256})F(x)E()"},
    {"ColonAlone",            ":",                                   "B(:)E()"},
    {"Colon",                 ":IN;",                                "B(:)F(:IN;)E()"},
    {"ColonOfItsOwn",         "::IN;",                               "B(:)F(::IN;)E()"},
    {"ColonAndPieces",        ':' + x(510),                          "B(:)F(:x{255})F(:x{255})E()"},
    {"ColonLater",            "IN;:PU;",                             "B()F(IN;:PU;)E()"},
    {"NameNearTheCut",        x(250) + "HPGL_FILE:a\nPU;",           "B()F(x{250})F(HPGL_FILE:a\nPU;)E()"},
    {"NameUpToTheCut",        x(240) + "HPGL_FILE:abcdef\nPU;",      "B()F(x{240}HPGL_FILE:abcdef)F(\nPU;)E()"},
    {"NameWithColonInFront",  ':' + x(240) + "HPGL_FILE:abcdef\n",   "B(:)F(:x{240})F(:HPGL_FILE:abcdef\n)E()"},
    {"NameFillsAPiece",       "IN;HPGL_FILE" + x(247) + "\n",        "B()F(IN;)F(HPGL_FILEx{247})F(\n)E()"},
};

const Row FRAMED[] = {
    {"Empty",                 begin() + further() + end(),                           "B()F()E()"},
    {"EndAlone",              end(),                                                 "E()"},
    {"EndWithData",           end("IN;"),                                            "E(IN;)"},
    {"AllWithData",           begin("IN;") + further("SP1;") + end("PU;"),           "B(IN;)F(SP1;)E(PU;)"},
    {"NoBegin",               further("PD;") + end(),                                "F(PD;)E()"},
    {"BeginAgain",            begin("IN;") + begin("SP1;") + end(),                  "B(IN;)B(SP1;)E()"},
    {"LongBegin",             begin(x(600)) + end(),                                 "B(x{256})F(x{256})F(x{88})E()"},
    {"LongFurther",           further(x(257)) + end(),                               "F(x{256})F(x)E()"},
    {"LongEnd",               end(x(600)),                                           "F(x{256})F(x{256})E(x{88})"},
    {"EndFillsAPiece",        end(x(256)),                                           "E(x{256})"},
    {"NameNearTheCut",        end(x(250) + "HPGL_FILE:a\nPU;"),                      "F(x{250})E(HPGL_FILE:a\nPU;)"},
    {"ColonAlone",            begin(":") + end(),                                    "B(:)E()"},
    {"HostsColonsStay",       begin(":IN;") + further(":SP1;") + end(":PU;"),        "B(:IN;)F(:SP1;)E(:PU;)"},
    {"HostsColonsMayLack",    begin(":IN;") + further("SP1;") + further() + end(),   "B(:IN;)F(SP1;)F()E()"},
    {"ColonAndLongBegin",     begin(':' + x(300)) + end(),                           "B(:x{255})F(:x{45})E()"},
    {"ColonAndLongFurther",   begin(":") + further(':' + x(300)) + end(),            "B(:)F(:x{255})F(:x{45})E()"},
    {"ColonAndPiecesWithout", begin(":") + further(x(300)) + end(x(300)),            "B(:)F(x{256})F(:x{44})F(x{256})E(:x{44})"},
    {"ColonsPiecesOwn",       begin(":") + further(x(256) + ":PU;") + end(),         "B(:)F(x{256})F(::PU;)E()"},
    {"ColonLater",            begin("IN;") + further(':' + x(300)) + end(),          "B(IN;)F(:x{255})F(x{45})E()"},
    {"EmptyBeginNoColon",     begin() + further(':' + x(300)) + end(),               "B()F(:x{255})F(x{45})E()"},
    {"ColonUntilBeginAgain",  begin(":") + begin("IN;") + further(x(257)) + end(),   "B(:)B(IN;)F(x{256})F(x)E()"},
};
// clang-format on

class PlainDelivery : public testing::TestWithParam<Row> {};

TEST_P(PlainDelivery, HasPieces) {
    EXPECT_EQ(Handing(GetParam().bytes, Form::Plain).all(), GetParam().pieces);
}

INSTANTIATE_TEST_SUITE_P(Rows, PlainDelivery, testing::ValuesIn(PLAIN), byRowName);

class FramedDelivery : public testing::TestWithParam<Row> {};

TEST_P(FramedDelivery, HasPieces) {
    EXPECT_EQ(Handing(GetParam().bytes, Form::Framed).all(), GetParam().pieces);
}

INSTANTIATE_TEST_SUITE_P(Rows, FramedDelivery, testing::ValuesIn(FRAMED), byRowName);

// Whether every chunk that has the word, has the whole name behind it, whatever stands in front.
bool isWhole(const std::string& front, std::size_t length) {
    const std::string name = "HPGL_FILE:" + std::string(length, 'n');
    const std::string pieces = Handing(begin(front) + further("IN;" + name + "\nPU;") + end(), Form::Framed).all();
    return pieces.find("HPGL_FILE:n{" + std::to_string(length) + '}') != std::string::npos;
}

// The number that hosts are told holds for all of them.
TEST(Delivery, KeepsNamesOf245BytesWhole) {
    EXPECT_TRUE(isWhole("", 245));
    EXPECT_TRUE(isWhole(":", 245));
    EXPECT_TRUE(isWhole("", 246));  // no byte is needed for a colon
    EXPECT_FALSE(isWhole(":", 246));
    EXPECT_FALSE(isWhole("", 247));
}

TEST(Delivery, OfAnEndAlone) {
    char buffer[ROOM];
    Receiver receiver{buffer, take};
    got.clear();
    Delivery delivery(receiver, Transmission::endAlone());
    delivery.run(AT_LEISURE);
    EXPECT_TRUE(delivery.isOver());
    EXPECT_EQ(got, "E()");
}

// Until the viewer has had a begin chunk, what would be lost without one gets an empty one. An end chunk that is handed
// over whole does not: the viewer makes a new picture of it.
const Row FIRST[] = {
    {"EndAlone", end(), "E()"},
    {"EndWithData", end("IN;"), "E(IN;)"},
    {"EndFillsAPiece", end(x(256)), "E(x{256})"},
    {"LongEnd", end(x(300)), "B()F(x{256})E(x{44})"},
    {"Further", further() + further("IN;") + further("PU;") + end(), "F()B()F(IN;)F(PU;)E()"},
    {"EmptyFurther", further() + end("IN;"), "F()E(IN;)"},
    {"FurtherAndLongEnd", further("IN;") + end(x(300)), "B()F(IN;)F(x{256})E(x{44})"},
    {"Begin", begin() + further("IN;") + end(), "B()F(IN;)E()"},
};

class FirstDelivery : public testing::TestWithParam<Row> {};

TEST_P(FirstDelivery, Begins) {
    EXPECT_EQ(Handing(GetParam().bytes, Form::Framed, false).all(), GetParam().pieces);
}

INSTANTIATE_TEST_SUITE_P(Rows, FirstDelivery, testing::ValuesIn(FIRST), byRowName);

// One transmission behind the other to a viewer that is new: "E" makes a new picture as long as it has had no "B".
struct Several : NamedRow {
    std::vector<std::string> transmissions;
    const char* pieces;
};

const Several SEVERAL[] = {
    {"EndsAlone", {end("IN;"), end("PU;"), end()}, "E(IN;)E(PU;)E()"},
    {"BehindALongEnd", {end(x(300)), end("PU;"), end()}, "B()F(x{256})E(x{44})B()E(PU;)B()E()"},
    {"LongEnds", {end(x(300)), end(x(257))}, "B()F(x{256})E(x{44})B()F(x{256})E(x)"},
    {"BehindABegin", {begin("IN;") + end(), end("PU;"), end(x(300))}, "B(IN;)E()E(PU;)F(x{256})E(x{44})"},
    {"BehindAFurther", {further("IN;") + end(), end("PU;")}, "B()F(IN;)E()E(PU;)"},
    {"FurtherBehindAnEnd", {end("IN;"), further("PU;") + end(), end("PD;")}, "E(IN;)B()F(PU;)E()E(PD;)"},
    {"FurtherBehindALongEnd",
     {end(x(300)), further("PU;") + end(), end("PD;")},
     "B()F(x{256})E(x{44})B()F(PU;)E()E(PD;)"},
};

class NewViewer : public testing::TestWithParam<Several> {};

TEST_P(NewViewer, Gets) {
    char buffer[ROOM];
    Receiver receiver{buffer, take};
    got.clear();
    for (const std::string& bytes : GetParam().transmissions) {
        Delivery delivery(receiver, transmissionOf(bytes, Form::Framed));
        while (!delivery.isOver()) {
            delivery.run(AT_LEISURE);
        }
    }
    EXPECT_EQ(got, GetParam().pieces);
}

INSTANTIATE_TEST_SUITE_P(Rows, NewViewer, testing::ValuesIn(SEVERAL), byRowName);

TEST(Delivery, GoesOnPieceByPieceWhenThereIsNoTime) {
    Handing handing(begin("IN;") + further("SP1;") + end("PU;"), Form::Framed);
    EXPECT_FALSE(handing.delivery.hasBegun());
    handing.delivery.run(AT_ONCE);
    EXPECT_TRUE(handing.delivery.hasBegun());
    EXPECT_FALSE(got.empty());
    EXPECT_EQ(handing.all(), "B(IN;)F(SP1;)E(PU;)");
}

TEST(Delivery, HandsAnEmptyEndOverByItself) {
    Handing handing(x(400), Form::Plain);
    handing.delivery.run(AT_LEISURE);
    EXPECT_EQ(got, "B()F(x{256})F(x{144})");
    EXPECT_FALSE(handing.delivery.isOver());
    handing.delivery.run(AT_LEISURE);
    EXPECT_TRUE(handing.delivery.isOver());
    EXPECT_EQ(handing.delivery.done(), 400U);
    EXPECT_EQ(handing.delivery.size(), 400U);
}

TEST(Delivery, CutShortBeforeItBeginsIsNone) {
    Handing handing(begin("IN;") + end(), Form::Framed);
    handing.delivery.cutShort();
    EXPECT_TRUE(handing.delivery.isOver());
    EXPECT_EQ(handing.all(), "");
}

TEST(Delivery, CutShortLaterHasItsEnd) {
    Handing handing(begin(x(256 * 40)) + end(x(256 * 40)), Form::Framed);
    handing.delivery.run(AT_ONCE);
    handing.delivery.cutShort();
    EXPECT_TRUE(handing.delivery.isOver());
    EXPECT_TRUE(got.starts_with("B(x{256})F("));
    EXPECT_TRUE(handing.all().ends_with("F(x{256})E()"));
}

}  // namespace
}  // namespace qrvel
