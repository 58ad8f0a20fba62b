#include "qrvel/channel/frame_reader.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "rows.h"

namespace qrvel {
namespace {

constexpr uint32_t MOST = 16777216;  // 16 MiB

std::string header(uint8_t kind, uint32_t length) {
    const auto bytes = kelhost::encodeHeader({.kind = kind, .length = length});
    return {bytes.begin(), bytes.end()};
}

std::string frame(uint8_t kind, const std::string& bytes) {
    return header(kind, static_cast<uint32_t>(bytes.size())) + bytes;
}

// What a reader says of bytes that come one piece after another: each transmission's length, and how it ends.
class Reading {
  public:
    void take(std::string_view piece) {
        while (!piece.empty() && !broken_) {
            const FrameReader::Result result = reader_.take(piece);
            EXPECT_GT(result.taken, 0U);
            length_ += result.taken;
            piece.remove_prefix(result.taken);
            note(result.event);
        }
    }

    std::string text() const { return broken_ || !reader_.isInside() ? text_ : text_ + "inside"; }

  private:
    void note(FrameReader::Event event) {
        if (event == FrameReader::Event::NeedsMore) return;
        EXPECT_FALSE(reader_.isInside());
        broken_ = event != FrameReader::Event::Whole;
        if (event == FrameReader::Event::Whole) text_ += std::to_string(length_) + ' ';
        if (event == FrameReader::Event::UnknownKind) text_ += "unknown";
        if (event == FrameReader::Event::TooLong) text_ += "long";
        length_ = 0;
    }

    FrameReader reader_;
    std::string text_;
    std::size_t length_ = 0;
    bool broken_ = false;
};

struct Row : NamedRow {
    std::string bytes;
    const char* events;
};

// clang-format off
const Row ROWS[] = {
    {"Nothing",              "",                                                              ""},
    {"PartOfAHeader",        header(1, 7).substr(0, 4),                                       "inside"},
    {"PartOfAFrame",         header(2, 7) + "IN;",                                            "inside"},
    {"BeginAlone",           frame(1, "IN;"),                                                 "inside"},
    {"EmptyEndAlone",        frame(2, ""),                                                    "5 "},
    {"EndAlone",             frame(2, "IN;"),                                                 "8 "},
    {"OneByte",              frame(2, ";"),                                                   "6 "},
    {"AllKinds",             frame(1, "IN;") + frame(0, "SP1;") + frame(2, "PU;"),            "25 "},
    {"EmptyFrames",          frame(1, "") + frame(0, "") + frame(0, "") + frame(2, ""),       "20 "},
    {"BytesLikeHeaders",     frame(1, frame(2, "") + header(9, ~0U)) + frame(2, frame(2, "")), "25 "},
    {"ThreeTransmissions",   frame(2, "") + frame(1, "IN;") + frame(2, "") + frame(2, "PU"),  "5 13 7 "},
    {"TransmissionAndMore",  frame(2, "") + frame(1, ""),                                     "5 inside"},
    {"UnknownKind",          frame(3, "IN;"),                                                 "unknown"},
    {"AnswerInsteadOfFrame", frame(16, ""),                                                   "unknown"},
    {"HighestKind",          frame(255, ""),                                                  "unknown"},
    {"UnknownKindLater",     frame(2, "") + frame(1, "IN;") + frame(9, ""),                   "5 unknown"},
    {"WordsInsteadOfFrames", "GET / HTTP/1.1\r\n\r\n",                                        "unknown"},
    {"JustTheLimit",         header(2, MOST),                                                 "inside"},
    {"OneMore",              header(2, MOST + 1),                                             "long"},
    {"FourGigabytes",        header(0, std::numeric_limits<uint32_t>::max()),                 "long"},
    {"LongLater",            frame(1, "IN;") + header(2, 0x80000000),                         "long"},
    {"UnknownAndLong",       header(77, MOST + 1),                                            "unknown"},
};
// clang-format on

class Frames : public testing::TestWithParam<Row> {};

TEST_P(Frames, AreReadInOnePiece) {
    Reading reading;
    reading.take(GetParam().bytes);
    EXPECT_EQ(reading.text(), GetParam().events);
}

TEST_P(Frames, AreReadByteByByte) {
    Reading reading;
    for (const char byte : GetParam().bytes) {
        reading.take({&byte, 1});
    }
    EXPECT_EQ(reading.text(), GetParam().events);
}

TEST_P(Frames, AreReadInThreePieces) {
    const std::string_view bytes = GetParam().bytes;
    for (std::size_t second = 0; second <= bytes.size(); ++second) {
        for (std::size_t first = 0; first <= second; ++first) {
            Reading reading;
            reading.take(bytes.substr(0, first));
            reading.take(bytes.substr(first, second - first));
            reading.take(bytes.substr(second));
            EXPECT_EQ(reading.text(), GetParam().events) << first << ", " << second;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, Frames, testing::ValuesIn(ROWS), byRowName);

TEST(Frame, MayHoldSixteenMebibytes) {
    Reading reading;
    reading.take(frame(1, "") + frame(2, std::string(MOST, 'x')));
    EXPECT_EQ(reading.text(), "16777226 ");
}

TEST(Frame, IsTakenOffWhatWasRead) {
    const std::string all = frame(1, "IN;") + frame(0, "") + frame(2, "PU");
    std::string_view bytes = all;
    std::string text;
    while (!bytes.empty()) {
        const HostFrame taken = takeFrame(bytes);
        text += std::to_string(taken.kind) + '(' + std::string(taken.bytes) + ')';
    }
    EXPECT_EQ(text, "1(IN;)0()2(PU)");
}

// None that a reader lets through is so; all the same nothing is read behind its end.
TEST(Frame, ThatIsCutEndsTheTransmission) {
    const std::string all = header(1, 9) + "IN;";
    std::string_view bytes = all;
    EXPECT_EQ(takeFrame(bytes).bytes, "IN;");
    EXPECT_TRUE(bytes.empty());
    bytes = "\1\1\1\1";
    EXPECT_EQ(takeFrame(bytes).kind, 2U);
    EXPECT_TRUE(bytes.empty());
}

}  // namespace
}  // namespace qrvel
