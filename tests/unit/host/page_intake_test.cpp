// Pages that the user prints to the host, among the viewer's replies.
#include "host/page_intake.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <utility>

#include "played_viewer.h"
#include "rows.h"

namespace kelhost {
namespace {

using namespace std::string_literals;

std::string begin(const std::string& format) {
    return frame(19, format);
}

std::string data(const std::string& bytes) {
    return frame(20, bytes);
}

const std::string END = frame(21);
const std::string ACCEPTED = frame(16);
const std::string SHOWN = frame(18);
const std::string MORE = frame(22, "more") + frame(255);  // that only a newer viewer says
const std::string REFUSED = frame(17, "no");

std::string page(const std::string& format, const std::string& bytes) {
    return begin(format) + data(bytes) + END;
}

// ---- All that a viewer says, and what comes of it -------------------------------------------------------------------

constexpr std::size_t MOST = 16;  // bytes of a page, its format among them

struct PageRow : NamedRow {
    std::string said;  // then the viewer closes
    std::string pages;
    std::string replies;
};

// clang-format off
const PageRow PAGES[] = {
    {{"Whole"},           begin("pdf") + data("%PDF") + END,                "pdf %PDF|",     ""},
    {{"InPieces"},        begin("svg") + data("a") + data("") + data("bc") + END, "svg abc|", ""},
    {{"AnyBytes"},        page("png", "\0\x89\n\xFF\x15\0"s),               "png \0\x89\n\xFF\x15\0|"s, ""},
    {{"WithoutData"},     begin("pdf") + END,                               "pdf |",         ""},
    {{"NewFormat"},       page("dxf", "a"),                                 "dxf a|",        ""},
    {{"BehindReplies"},   ACCEPTED + SHOWN + page("pdf", "a"),              "pdf a|",        "Accepted|Shown|"},
    {{"BeforeReplies"},   page("pdf", "a") + ACCEPTED + SHOWN,              "pdf a|",        "Accepted|Shown|"},
    {{"AroundReplies"},   begin("pdf") + ACCEPTED + data("a") + SHOWN + data("b") + REFUSED + END,
                                                                            "pdf ab|",       "Accepted|Shown|Refused: no|"},
    {{"AroundMore"},      begin("pdf") + MORE + data("a") + MORE + END,     "pdf a|",        ""},
    {{"TheLastCounts"},   page("pdf", "a") + SHOWN + page("svg", "b"),      "svg b|",        "Shown|"},
    {{"ThenABrokenOne"},  page("pdf", "a") + begin("svg") + data("b"),      "pdf a|",        ""},
    {{"WithoutBegin"},    data("a") + SHOWN + END,                          "",              "Shown|"},
    {{"WithoutEnd"},      begin("pdf") + data("a") + SHOWN,                 "",              "Shown|"},
    {{"BegunTwice"},      begin("pdf") + data("a") + page("svg", "b"),      "svg b|",        ""},
    {{"EndedTwice"},      page("pdf", "a") + data("b") + END,               "pdf a|",        ""},
    {{"Largest"},         page("pdf", "0123456789abc"),                     "pdf 0123456789abc|", ""},
    {{"OneMore"},         page("pdf", "0123456789abcd") + SHOWN,            "Failed|",       "Shown|"},
    {{"OneMoreInPieces"}, begin("pdf") + data("0123456789") + data("abcd") + data("e") + END, "Failed|", ""},
    {{"FormatTooLarge"},  page("0123456789abcdefg", "a"),                   "Failed|",       ""},
    {{"LargeThenGood"},   page("pdf", "0123456789abcd") + page("svg", "b"), "svg b|",        ""},
    {{"GoodThenLarge"},   page("svg", "b") + page("pdf", "0123456789abcd"), "svg b|Failed|", ""},
    {{"LargeThenBroken"}, page("pdf", "0123456789abcd") + begin("svg"),     "Failed|",       ""},
};
// clang-format on

class PageStream : public ClientTest, public testing::WithParamInterface<PageRow> {
  protected:
    std::string restOf(std::string (ClientTest::*ask)(milliseconds)) {
        std::string all;
        for (std::string one = (this->*ask)(SOON); one != "Ended"; one = (this->*ask)(SOON))
            all += one + "|";
        return all;
    }
    std::string allPages() { return restOf(&PageStream::nextPage); }
    std::string allReplies() { return restOf(&PageStream::next); }
    void hearAll() {
        replies_ += allReplies();
        EXPECT_EQ(replies_, GetParam().replies);
        EXPECT_EQ(allPages(), GetParam().pages);
    }
    // Only what is here already.
    void hearReplies() {
        for (std::string one = next(0ms); one != "TimedOut"; one = next(0ms))
            replies_ += one + "|";
    }
    void connectAnew() {
        endViewer();
        connect();
        client.keepPages(MOST);
        replies_.clear();
    }

    std::string replies_;
};

// Replies are kept while a page is waited for.
TEST_P(PageStream, IsUnderstoodPagesFirst) {
    connectAnew();
    viewerSays(GetParam().said);
    endViewer();
    EXPECT_EQ(allPages(), GetParam().pages);
    EXPECT_EQ(allReplies(), GetParam().replies);
}

// And pages while replies are.
TEST_P(PageStream, IsUnderstoodInTwoPieces) {
    const std::string& said = GetParam().said;
    for (std::size_t cut = 0; cut <= said.size(); ++cut) {
        SCOPED_TRACE(cut);
        connectAnew();
        viewerSays(said.substr(0, cut));
        hearReplies();
        viewerSays(said.substr(cut));
        endViewer();
        hearAll();
    }
}

TEST_P(PageStream, IsUnderstoodByteByByte) {
    connectAnew();
    for (const char byte : GetParam().said) {
        viewerSays({byte});
        hearReplies();
    }
    endViewer();
    hearAll();
}

// Wherever the connection ends, there is a whole page or none.
TEST_P(PageStream, MayEndAnywhere) {
    const std::string& said = GetParam().said;
    const std::string good = GetParam().pages + "pdf a|" + "Failed|";
    for (std::size_t cut = 0; cut < said.size(); ++cut) {
        connectAnew();
        viewerSays(said.substr(0, cut));
        endViewer();
        EXPECT_NE(good.find(allPages()), std::string::npos) << cut;
    }
}

TEST_P(PageStream, HarmsNoHostThatWantsNoPages) {
    viewerSays(GetParam().said);
    endViewer();
    EXPECT_EQ(allReplies(), GetParam().replies);
    EXPECT_EQ(nextPage(), "Failed");
    EXPECT_EQ(client.problem(), "pages are not kept");
}

INSTANTIATE_TEST_SUITE_P(, PageStream, testing::ValuesIn(PAGES), byRowName);

// ---- Waiting, closing, moving ---------------------------------------------------------------------------------------

class PageTest : public ClientTest {
  protected:
    void SetUp() override {
        connect();
        client.keepPages();
    }
};

TEST_F(PageTest, IsWaitedForToTheLimit) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(nextPage(SHORT), "TimedOut");
    EXPECT_GE(std::chrono::steady_clock::now() - start, SHORT);
    viewerSays(begin("pdf") + data("a"));
    EXPECT_EQ(nextPage(SHORT), "TimedOut");
    EXPECT_EQ(nextPage(0ms), "TimedOut");
    EXPECT_EQ(client.problem(), "the viewer says nothing");
    viewerSays(data("b") + END);
    EXPECT_EQ(nextPage(), "pdf ab");
    EXPECT_EQ(nextPage(0ms), "TimedOut");
}

TEST_F(PageTest, IsWaitedForAsLongAsItTakes) {
    std::thread other([&] {
        for (const char byte : ACCEPTED + page("pdf", "a")) {
            std::this_thread::sleep_for(2ms);
            viewerSays({byte});
        }
    });
    EXPECT_EQ(nextPage(FOREVER), "pdf a");
    other.join();
    EXPECT_EQ(next(0ms), "Accepted");
}

TEST_F(PageTest, MayBeTooLarge) {
    client.keepPages(100);
    viewerSays(page("svg", std::string(98, 'x')) + page("pdf", std::string(97, 'x')));
    EXPECT_EQ(nextPage(), "pdf " + std::string(97, 'x'));
    viewerSays(page("svg", std::string(98, 'x')));
    EXPECT_EQ(nextPage(), "Failed");
    EXPECT_EQ(client.problem(), "a page of more than 100 bytes");
    EXPECT_EQ(nextPage(SHORT), "TimedOut");
}

// Both talk more than the sockets hold, and the viewer listens only when it has said everything.
TEST_F(PageTest, IsReadWhileTheHostWrites) {
    const std::string text(4 * 1024 * 1024, 'x');
    const std::string largest(MOST_FRAME_BYTES, 'p');
    std::thread other([&] {
        viewerSays(begin("svg") + data(largest) + ACCEPTED + data(largest) + data("end"));
        viewerSays(END);
        viewerHears(frame(0, text).size());
    });
    EXPECT_EQ(client.send(FrameKind::Further, text, SOON), Status::Ok);
    other.join();
    EXPECT_TRUE(nextPage() == "svg " + largest + largest + "end");
    EXPECT_EQ(next(0ms), "Accepted");
}

// Replies that nobody reads do not fill the memory.
TEST_F(PageTest, IsNotWaitedForAmongTooManyReplies) {
    std::thread other([&] {
        std::string some;
        while (some.size() < 65536)
            some += frame(16);
        while (::send(viewer, some.data(), some.size(), MSG_NOSIGNAL) > 0) {
        }
    });
    EXPECT_EQ(nextPage(), "Failed");
    EXPECT_EQ(client.problem(), "too many replies are unread");
    EXPECT_EQ(next(0ms), "Accepted");
    EXPECT_TRUE(client.isConnected());
    client.close();
    other.join();
}

// What came before it is good.
TEST_F(PageTest, StandsBeforeWhatMakesNoSense) {
    const std::string nonsense = frame(15) + page("svg", "b");
    viewerSays(SHOWN + page("pdf", "a") + begin("svg") + nonsense);
    EXPECT_EQ(nextPage(), "pdf a");
    EXPECT_EQ(nextPage(), "Broken");
    EXPECT_FALSE(client.isConnected());
    EXPECT_EQ(nextPage(), "Ended");
    EXPECT_EQ(next(), "Shown");
    EXPECT_EQ(next(), "Ended");
}

TEST_F(PageTest, OutlivesTheConnection) {
    viewerSays(SHOWN + page("pdf", "a") + begin("svg") + data("b"));
    EXPECT_EQ(next(), "Shown");
    client.close();
    EXPECT_EQ(nextPage(), "pdf a");
    EXPECT_EQ(nextPage(), "Ended");
}

TEST_F(PageTest, IsForgottenByTheNextConnection) {
    viewerSays(page("pdf", "a") + begin("svg") + data("b") + SHOWN);
    EXPECT_EQ(next(), "Shown");
    endViewer();
    connect();  // pages are kept as before
    viewerSays(data("c") + END + page("png", "d"));
    EXPECT_EQ(nextPage(), "png d");
}

TEST_F(PageTest, IsForgottenWhenOthersAreWanted) {
    viewerSays(page("pdf", "a") + SHOWN);
    EXPECT_EQ(next(), "Shown");
    client.keepPages(1000);
    EXPECT_EQ(nextPage(0ms), "TimedOut");
    client.keepPages(0);
    EXPECT_EQ(nextPage(0ms), "Failed");
}

TEST_F(PageTest, MovesWithTheClient) {
    viewerSays(SHOWN + begin("pdf") + data("a") + ACCEPTED);
    EXPECT_EQ(next(), "Shown");
    Client other(std::move(client));
    client = std::move(other);
    viewerSays(data("b") + END);
    EXPECT_EQ(nextPage(), "pdf ab");
    EXPECT_EQ(next(0ms), "Accepted");
}

}  // namespace
}  // namespace kelhost
