// A host's end of the connection, against a viewer that the test plays on the other half of a socket pair.
#include "host/client.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string>
#include <thread>
#include <utility>

#include "played_viewer.h"
#include "scratch_folder.h"

namespace kelhost {
namespace {

TEST_F(ClientTest, SendsFrames) {
    EXPECT_EQ(client.send(FrameKind::Begin, "IN;", SOON), Status::Ok);
    EXPECT_EQ(client.send(FrameKind::Further, {}, SOON), Status::Ok);
    EXPECT_EQ(client.send(FrameKind::End, "PD5,5;", SOON), Status::Ok);
    const std::string expected = frame(1, "IN;") + frame(0) + frame(2, "PD5,5;");
    EXPECT_EQ(viewerHears(expected.size()), expected);
}

TEST_F(ClientTest, SendsAPictureInPieces) {
    const std::string text(2 * PIECE_BYTES + 1, 'x');
    const std::string expected = frame(1) + frame(0, text.substr(0, PIECE_BYTES)) +
                                 frame(0, text.substr(0, PIECE_BYTES)) + frame(0, "x") + frame(2);
    std::string heard;
    std::thread other([&] { heard = viewerHears(expected.size()); });
    EXPECT_EQ(client.sendPicture(text, SOON), Status::Ok);
    other.join();
    EXPECT_TRUE(heard == expected);
}

TEST_F(ClientTest, SendsAnEmptyPicture) {
    EXPECT_EQ(client.sendPicture({}, SOON), Status::Ok);
    EXPECT_EQ(viewerHears(10), frame(1) + frame(2));
}

TEST_F(ClientTest, SendsTheLargestFrameAndNoLarger) {
    const std::string text(MOST_FRAME_BYTES + 1, 'x');
    EXPECT_EQ(client.send(FrameKind::Further, text, SOON), Status::Failed);
    EXPECT_TRUE(client.isConnected());
    const std::string largest = text.substr(1);
    std::string heard;
    std::thread other([&] { heard = viewerHears(FRAME_HEADER_SIZE + largest.size()); });
    EXPECT_EQ(client.send(FrameKind::Further, largest, SOON), Status::Ok);
    other.join();
    EXPECT_TRUE(heard == frame(0, largest));
}

TEST_F(ClientTest, ReadsRepliesInOrder) {
    viewerSays(frame(16) + frame(18) + frame(16) + frame(17, "zu gro\xC3\x9F"));
    EXPECT_EQ(next(), "Accepted");
    EXPECT_EQ(next(), "Shown");
    EXPECT_EQ(next(), "Accepted");
    EXPECT_EQ(next(), "Refused: zu gro\xC3\x9F");
    EXPECT_EQ(next(SHORT), "TimedOut");
}

TEST_F(ClientTest, ReadsARepliesEveryByteByItself) {
    for (const char byte : frame(17, "no")) {
        EXPECT_EQ(next(0ms), "TimedOut");
        viewerSays({byte});
    }
    EXPECT_EQ(next(), "Refused: no");
}

TEST_F(ClientTest, ReadsTheLongestReason) {
    const std::string reason(MOST_FRAME_BYTES, 'r');
    std::thread other([&] { viewerSays(frame(17, reason)); });
    EXPECT_TRUE(next() == "Refused: " + reason);
    other.join();
}

TEST_F(ClientTest, WaitsForTheLimit) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(next(SHORT), "TimedOut");
    EXPECT_GE(std::chrono::steady_clock::now() - start, SHORT);
    EXPECT_TRUE(client.isConnected());
    viewerSays(frame(16));
    EXPECT_EQ(next(), "Accepted");
}

TEST_F(ClientTest, NoticesAViewerThatCloses) {
    viewerSays(frame(17, "too many hosts"));
    endViewer();
    EXPECT_EQ(next(), "Refused: too many hosts");
    EXPECT_EQ(next(), "Ended");
    EXPECT_FALSE(client.isConnected());
    EXPECT_EQ(client.problem(), "the viewer has closed the connection");
    EXPECT_EQ(client.send(FrameKind::Begin, {}, SOON), Status::Ended);
    EXPECT_EQ(next(), "Ended");
}

TEST_F(ClientTest, NoticesAViewerThatClosesInsideAReply) {
    viewerSays(frame(16) + frame(17, "reason").substr(0, 8));
    endViewer();
    EXPECT_EQ(next(), "Accepted");
    EXPECT_EQ(next(), "Ended");
    EXPECT_EQ(next(), "Ended");
}

TEST_F(ClientTest, ReadsWhyItCannotWriteAnyMore) {
    EXPECT_EQ(client.send(FrameKind::Begin, "IN;", SOON), Status::Ok);  // unread when the viewer closes
    viewerSays(frame(17, "unknown kind"));
    endViewer();
    EXPECT_EQ(client.send(FrameKind::End, {}, SOON), Status::Ended);
    EXPECT_EQ(next(), "Refused: unknown kind");
    EXPECT_EQ(next(), "Ended");
}

TEST_F(ClientTest, GivesUpAViewerThatDoesNotRead) {
    viewerSays(frame(16));
    const std::string text(MOST_FRAME_BYTES, 'x');
    EXPECT_EQ(client.send(FrameKind::Further, text, SHORT), Status::TimedOut);
    EXPECT_FALSE(client.isConnected());
    EXPECT_EQ(client.problem(), "the viewer takes nothing");
    EXPECT_EQ(next(), "Accepted");
    EXPECT_EQ(next(), "Ended");
}

// Patience is for each bit of progress, not for the whole.
TEST_F(ClientTest, HasPatienceWithASlowViewer) {
    const auto start = std::chrono::steady_clock::now();
    const std::string text(2 * 1024 * 1024, 'x');
    std::thread other([&] {
        for (std::size_t left = frame(0, text).size(); left > 0;) {
            std::this_thread::sleep_for(40ms);
            left -= viewerHears(std::min<std::size_t>(left, 100000)).size();
        }
    });
    EXPECT_EQ(client.send(FrameKind::Further, text, 500ms), Status::Ok);
    EXPECT_GT(std::chrono::steady_clock::now() - start, 500ms);
    other.join();
}

// Both talk more than the sockets hold, and the viewer listens only when it has said everything.
TEST_F(ClientTest, ReadsWhileItWrites) {
    const std::string text(4 * 1024 * 1024, 'x');
    constexpr int REPLIES = 200000;
    std::thread other([&] {
        std::string replies;
        for (int i = 0; i < REPLIES; ++i)
            replies += frame(16);
        viewerSays(replies);
        viewerHears(frame(0, text).size());
    });
    EXPECT_EQ(client.send(FrameKind::Further, text, SOON), Status::Ok);
    other.join();
    for (int i = 0; i < REPLIES; ++i)
        ASSERT_EQ(next(0ms), "Accepted");
    EXPECT_EQ(next(0ms), "TimedOut");
}

// What nobody reads does not fill the memory: the client stops to take it.
TEST_F(ClientTest, KeepsAtMostOneLargestFrame) {
    std::atomic<std::size_t> said = 0;
    std::thread other([&] {
        const std::string some(65536, 16);
        while (true) {
            const ssize_t count = ::send(viewer, some.data(), some.size(), MSG_NOSIGNAL);
            if (count <= 0) break;
            said += static_cast<std::size_t>(count);
        }
    });
    const std::string text(MOST_FRAME_BYTES, 'x');
    EXPECT_EQ(client.send(FrameKind::Further, text, 500ms), Status::TimedOut);
    other.join();
    EXPECT_LT(said, 2 * MOST_FRAME_BYTES);
}

TEST_F(ClientTest, PassesOverKindsOfANewerViewer) {
    viewerSays(frame(22, "more") + frame(255) + frame(18));
    EXPECT_EQ(next(), "Shown");
    viewerSays(frame(22));
    EXPECT_EQ(next(SHORT), "TimedOut");
}

TEST_F(ClientTest, IsNotHeldByAViewerThatNeverReplies) {
    std::thread other([&] {
        const std::string some = frame(22, std::string(1000, 'x'));
        while (::send(viewer, some.data(), some.size(), MSG_NOSIGNAL) > 0) {
        }
    });
    EXPECT_EQ(next(SHORT), "TimedOut");
    client.close();
    other.join();
}

TEST_F(ClientTest, RefusesWhatIsNoReply) {
    for (const int kind : {0, 1, 2, 15}) {
        connect();
        viewerSays(frame(16) + frame(kind) + frame(18));
        EXPECT_EQ(next(), "Accepted");
        EXPECT_EQ(next(), "Broken") << kind;
        EXPECT_FALSE(client.isConnected());
        EXPECT_EQ(next(), "Ended");
        endViewer();
    }
}

TEST_F(ClientTest, RefusesReasonsOfFourGigabytes) {
    for (const char* length : {"\xFF\xFF\xFF\xFF", "\x01\x00\x00\x01"}) {
        connect();
        viewerSays('\x11' + std::string(length, 4));
        EXPECT_EQ(next(), "Broken");
        endViewer();
    }
}

TEST_F(ClientTest, MovesWithItsReplies) {
    viewerSays(frame(16) + frame(18));
    EXPECT_EQ(next(), "Accepted");
    Client other(std::move(client));
    Reply reply{};
    EXPECT_EQ(other.nextReply(reply, SOON), Status::Ok);
    EXPECT_EQ(reply.kind, FrameKind::Shown);
    client = std::move(other);
    viewerSays(frame(16));
    EXPECT_EQ(next(), "Accepted");
}

TEST_F(ClientTest, ClosesWhatItHeld) {
    client = Client();
    EXPECT_EQ(viewerHears(1), "");
    EXPECT_EQ(next(), "Ended");
}

void pass(int /*number*/) {}

// Signals that are handled come again and again while it waits and writes.
TEST_F(ClientTest, GoesOnAfterSignals) {
    struct sigaction handled = {};
    struct sigaction before = {};
    handled.sa_handler = pass;
    ASSERT_EQ(sigaction(SIGUSR1, &handled, &before), 0);
    const pthread_t self = pthread_self();
    const std::string text(4 * 1024 * 1024, 'x');
    std::thread other([&] {
        for (int i = 0; i < 20; ++i) {
            std::this_thread::sleep_for(2ms);
            pthread_kill(self, SIGUSR1);
        }
        EXPECT_TRUE(viewerHears(frame(0, text).size()) == frame(0, text));
        for (int i = 0; i < 20; ++i) {
            std::this_thread::sleep_for(2ms);
            pthread_kill(self, SIGUSR1);
        }
        viewerSays(frame(18));
    });
    EXPECT_EQ(client.send(FrameKind::Further, text, SOON), Status::Ok);
    EXPECT_EQ(next(), "Shown");
    other.join();
    sigaction(SIGUSR1, &before, nullptr);
}

// ---- By a channel's name --------------------------------------------------------------------------------------------

class Channel : public testing::Test {
  protected:
    void SetUp() override { setenv("XDG_RUNTIME_DIR", std::filesystem::current_path().c_str(), 1); }
    void TearDown() override { unsetenv("XDG_RUNTIME_DIR"); }

    // A socket at that place; answers it listening, or only bound.
    static int viewerAt(const std::string& name, bool listens) {
        sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
        channelPath(name).copy(address.sun_path, sizeof address.sun_path - 1);
        const int viewer = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        EXPECT_EQ(bind(viewer, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        EXPECT_TRUE(!listens || listen(viewer, 0) == 0);
        return viewer;
    }

    ScratchFolder folder;
    Client client;
};

TEST_F(Channel, ReachesTheViewer) {
    const int viewer = viewerAt("orders", true);
    EXPECT_EQ(client.connect("orders", 0ms), Status::Ok);
    EXPECT_TRUE(client.isConnected());
    close(viewer);
}

TEST_F(Channel, WaitsUntilTheViewerListens) {
    const int viewer = viewerAt("orders", false);
    std::thread other([&] {
        std::this_thread::sleep_for(5ms);
        listen(viewer, 1);
    });
    EXPECT_EQ(client.connect("orders", SOON), Status::Ok);
    other.join();
    close(viewer);
}

TEST_F(Channel, GivesUpWhenTheLimitIsOver) {
    EXPECT_EQ(client.connect("orders", SHORT), Status::NoViewer);
    const int viewer = viewerAt("orders", false);
    EXPECT_EQ(client.connect("orders", 0ms), Status::NoViewer);
    close(viewer);
    EXPECT_EQ(client.connect("orders", 0ms), Status::NoViewer);  // as after a crash
    EXPECT_FALSE(client.isConnected());
}

// A viewer that is too busy to let anybody in.
TEST_F(Channel, DoesNotWaitAtAFullDoor) {
    const int viewer = viewerAt("orders", true);
    Client before;
    EXPECT_EQ(before.connect("orders", 0ms), Status::Ok);
    EXPECT_EQ(client.connect("orders", SHORT), Status::NoViewer);
    close(viewer);
}

TEST_F(Channel, ForgetsTheConnectionBefore) {
    const int viewer = viewerAt("orders", true);
    EXPECT_EQ(client.connect("orders", 0ms), Status::Ok);
    EXPECT_EQ(client.connect("others", 0ms), Status::NoViewer);
    Reply reply{};
    EXPECT_EQ(client.nextReply(reply, SHORT), Status::Ended);
    close(viewer);
}

TEST_F(Channel, RefusesNamesThatAreNone) {
    EXPECT_EQ(client.connect("", SHORT), Status::Failed);
    EXPECT_EQ(client.connect("../a", SHORT), Status::Failed);
    EXPECT_EQ(client.problem(), "no name of a channel: ../a");
    setenv("XDG_RUNTIME_DIR", ("/" + std::string(90, 'x')).c_str(), 1);
    EXPECT_EQ(client.connect("a-rather-long-name", SHORT), Status::Failed);
    EXPECT_EQ(client.problem().find("a path too long for a socket: "), 0U);
}

TEST_F(Channel, SaysWhatElseIsInTheWay) {
    setenv("XDG_RUNTIME_DIR", "/dev/null", 1);
    EXPECT_EQ(client.connect("orders", SHORT), Status::Failed);
    EXPECT_EQ(client.problem(), "/dev/null/kelhpgl.orders: Not a directory");
}

}  // namespace
}  // namespace kelhost
