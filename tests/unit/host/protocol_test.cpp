#include "host/protocol.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string>

#include "rows.h"

namespace kelhost {
namespace {

using namespace std::string_literals;

struct HeaderRow : NamedRow {
    FrameHeader header;
    std::array<unsigned char, FRAME_HEADER_SIZE> bytes;
};

// clang-format off
constexpr HeaderRow HEADERS[] = {
    {{"Nothing"},      {0, 0},          {0,   0,    0,    0,    0}},
    {{"One"},          {1, 1},          {1,   1,    0,    0,    0}},
    {{"OneByte"},      {2, 255},        {2,   0xFF, 0,    0,    0}},
    {{"TwoBytes"},     {16, 256},       {16,  0,    1,    0,    0}},
    {{"Piece"},        {0, 65536},      {0,   0,    0,    1,    0}},
    {{"Largest"},      {0, 16777216},   {0,   0,    0,    0,    1}},
    {{"EachByte"},     {18, 0x12345678}, {18, 0x78, 0x56, 0x34, 0x12}},
    {{"LastKind"},     {255, 0xFFFFFFFF}, {255, 0xFF, 0xFF, 0xFF, 0xFF}},
    {{"HighestBit"},   {128, 0x80000000}, {128, 0, 0,   0,    0x80}},
};
// clang-format on

class Header : public testing::TestWithParam<HeaderRow> {};

TEST_P(Header, IsEncoded) {
    const std::array<char, FRAME_HEADER_SIZE> bytes = encodeHeader(GetParam().header);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        EXPECT_EQ(static_cast<unsigned char>(bytes[i]), GetParam().bytes[i]) << i;
    }
}

TEST_P(Header, IsDecoded) {
    const FrameHeader header = decodeHeader(reinterpret_cast<const char*>(GetParam().bytes.data()));
    EXPECT_EQ(header.kind, GetParam().header.kind);
    EXPECT_EQ(header.length, GetParam().header.length);
}

INSTANTIATE_TEST_SUITE_P(, Header, testing::ValuesIn(HEADERS), byRowName);

struct NameRow : NamedRow {
    std::string channel;
    bool good;
};

const NameRow NAMES[] = {
    {{"Word"}, "orders", true},
    {{"EveryKind"}, "aZ09.-_", true},
    {{"OneLetter"}, "a", true},
    {{"DotInside"}, "a.b", true},
    {{"MinusInFront"}, "-a", true},
    {{"Longest"}, std::string(64, 'x'), true},
    {{"TooLong"}, std::string(65, 'x'), false},
    {{"Empty"}, "", false},
    {{"Dot"}, ".", false},
    {{"DotInFront"}, ".a", false},
    {{"Slash"}, "a/b", false},
    {{"Blank"}, "a b", false},
    {{"Umlaut"}, "\xC3\xA4", false},
    {{"Zero"}, "a\0b"s, false},
};

// The variable as a test wants it, and as it was afterwards.
class Runtime {
  public:
    explicit Runtime(const char* folder) {
        const char* before = std::getenv(NAME);
        if (before != nullptr) before_ = before;
        folder != nullptr ? setenv(NAME, folder, 1) : unsetenv(NAME);
    }
    ~Runtime() { before_.empty() ? unsetenv(NAME) : setenv(NAME, before_.c_str(), 1); }
    Runtime(const Runtime&) = delete;
    Runtime& operator=(const Runtime&) = delete;

  private:
    static constexpr char NAME[] = "XDG_RUNTIME_DIR";
    std::string before_;
};

class ChannelName : public testing::TestWithParam<NameRow> {};

TEST_P(ChannelName, HasAPath) {
    const Runtime runtime("/run/user/5");
    EXPECT_EQ(channelPath(GetParam().channel),
              GetParam().good ? "/run/user/5/kelhpgl." + GetParam().channel : std::string());
}

INSTANTIATE_TEST_SUITE_P(, ChannelName, testing::ValuesIn(NAMES), byRowName);

struct FolderRow : NamedRow {
    const char* runtime;  // null: not set
    bool used;
};

constexpr FolderRow FOLDERS[] = {
    {{"Absolute"}, "/run/user/5", true},
    {{"Relative"}, "run", false},
    {{"Empty"}, "", false},
    {{"Unset"}, nullptr, false},
};

class ChannelFolder : public testing::TestWithParam<FolderRow> {};

TEST_P(ChannelFolder, IsTheRuntimeFolderOrOneInTmp) {
    const Runtime runtime(GetParam().runtime);
    const std::string folder = GetParam().used ? GetParam().runtime : "/tmp/kelhpgl-" + std::to_string(getuid());
    EXPECT_EQ(channelPath("a"), folder + "/kelhpgl.a");
}

INSTANTIATE_TEST_SUITE_P(, ChannelFolder, testing::ValuesIn(FOLDERS), byRowName);

}  // namespace
}  // namespace kelhost
