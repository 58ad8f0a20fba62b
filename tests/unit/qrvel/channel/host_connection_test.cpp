// A host's frames, and what it is answered.
#include "qrvel/channel/host_connection.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "host/protocol.h"
#include "rows.h"
#include "toolkit_fixture.h"

namespace qrvel {
namespace {

using kelhost::FrameKind;
using namespace std::chrono_literals;

std::string frame(int kind, const std::string& bytes = {}) {
    const auto header =
        kelhost::encodeHeader({.kind = static_cast<uint8_t>(kind), .length = static_cast<uint32_t>(bytes.size())});
    return std::string(header.data(), header.size()) + bytes;
}

class Hosts : public ToolkitFixture {
  protected:
    Hosts() {
        start();
        openChannel();
        runChannel();
        channel()->pictureIsOut();
        log.clear();
    }
    ~Hosts() override {
        if (host >= 0) close(host);
    }

    void connect(const HostPatience& patience = {}) {
        int ends[2] = {};
        ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
        host = ends[0];
        channel()->addHost(ends[1], ends[1], patience);
    }
    void say(const std::string& bytes) const {
        ASSERT_EQ(write(host, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
        runChannel();
        channel()->pictureIsOut();
        runChannel();
    }
    // Kinds and texts of the answers that are there, and "gone" when the viewer has hung up.
    std::string answers() const {
        std::string said;
        pollfd there = {.fd = host, .events = POLLIN, .revents = 0};
        while (poll(&there, 1, 0) > 0) {
            char header[kelhost::FRAME_HEADER_SIZE];
            if (recv(host, header, sizeof header, MSG_WAITALL) != sizeof header) return said + "gone";
            const kelhost::FrameHeader read = kelhost::decodeHeader(header);
            std::string text(read.length, '\0');
            if (!text.empty()) recv(host, text.data(), text.size(), MSG_WAITALL);
            said += std::to_string(read.kind) + (text.empty() ? "" : " " + text) + ";";
        }
        return said;
    }

    int host = -1;
};

struct FramesRow : NamedRow {
    std::string frames;
    const char* chunks;
    const char* answers;
};

class Frames : public Hosts, public testing::WithParamInterface<FramesRow> {};

TEST_P(Frames, AreAnswered) {
    connect();
    say(GetParam().frames);
    EXPECT_EQ(log, GetParam().chunks);
    EXPECT_EQ(answers(), GetParam().answers);
}

const FramesRow FRAMES_ROWS[] = {
    {"Picture", frame(1, "IN;") + frame(0, "SP1;") + frame(2), "chunk 1 IN;\nchunk 0 SP1;\nchunk 2 \ndelivered\n",
     "16;18;"},
    {"EndAlone", frame(2, "IN;"), "chunk 2 IN;\ndelivered\n", "16;18;"},
    {"NotYetWhole", frame(1, "IN;") + frame(0, "SP1;"), "", ""},
    {"HalfAHeader", frame(1, "IN;").substr(0, 3), "", ""},
    {"UnknownKind", frame(9, "IN;"), "", "17 a frame of an unknown kind;gone"},
};

INSTANTIATE_TEST_SUITE_P(Rows, Frames, testing::ValuesIn(FRAMES_ROWS), byRowName);

TEST_F(Hosts, HaveOnePictureAfterAnother) {
    connect();
    say(frame(1, "IN;") + frame(2));
    EXPECT_EQ(answers(), "16;18;");
    say(frame(1, "DF;") + frame(2));
    EXPECT_EQ(answers(), "16;18;");
}

TEST_F(Hosts, ThatLeaveInsideATransmissionLeaveThePicture) {
    connect();
    say(frame(1, "IN;"));
    close(std::exchange(host, -1));
    runChannel();
    EXPECT_EQ(log, "");
    EXPECT_EQ(HostConnection::number(), 0);
}

// The first is slow; the other has a picture, and waits for its turn.
class SlowHosts : public Hosts {
  protected:
    ~SlowHosts() override { close(slow); }

    void connectBoth(const HostPatience& patience) {
        connect(patience);
        slow = host;
        connect();
        sendAs(slow, frame(1, "DF;"));
        runChannel();
        sendAs(host, frame(2, "IN;"));
    }
    static void sendAs(int speaker, const std::string& bytes) {
        ASSERT_EQ(write(speaker, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    // Whether the one who waits has its picture.
    bool otherIsServed() {
        channel()->run();
        return log == "chunk 2 IN;\ndelivered\n";
    }
    std::string answersToSlow() {
        std::swap(slow, host);
        std::string said = answers();
        std::swap(slow, host);
        return said;
    }

    int slow = -1;
};

TEST_F(SlowHosts, AreDroppedWhenTheyStallWhileAnotherWaits) {
    connectBoth({.silence = 20ms, .betweenLooks = 1ms});
    EXPECT_TRUE(comes([this] { return otherIsServed(); }));
    EXPECT_EQ(answersToSlow(), "17 the host has stalled while another waits;");
}

TEST_F(SlowHosts, AreDroppedWhenTheyTakeTooLongWhileAnotherWaits) {
    connectBoth({.duration = 20ms, .betweenLooks = 1ms});
    EXPECT_TRUE(comes([this] {
        sendAs(slow, frame(0, "PU;"));
        return otherIsServed();
    }));
    EXPECT_EQ(answersToSlow(), "17 the host has taken too long while another waits;");
}

// Hosts that are connected and say nothing do not count, nor one that comes and goes.
TEST_F(SlowHosts, MayPauseWhenNobodyWaits) {
    connect();
    slow = host;
    connect();
    close(host);
    connect({.silence = 1ms, .duration = 1ms, .betweenLooks = 1ms});
    say(frame(1, "IN;"));
    QElapsedTimer pause;
    for (pause.start(); !pause.hasExpired(20);) {
        runChannel();
    }
    EXPECT_EQ(answers(), "");
    say(frame(2));
    EXPECT_EQ(answers(), "16;18;");
}

TEST_F(Hosts, BeyondTheLimitAreTurnedAway) {
    std::vector<int> others;
    for (int i = 0; i < MOST_HOSTS; ++i) {
        connect();
        others.push_back(host);
    }
    connect();
    EXPECT_EQ(answers(), "17 too many hosts;gone");
    for (const int other : others) {
        close(other);
    }
}

}  // namespace
}  // namespace qrvel
