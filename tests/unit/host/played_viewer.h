// A host's client, and a viewer that the test plays on the other half of a socket pair.
#pragma once

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <string>

#include "host/client.h"

namespace kelhost {

inline std::ostream& operator<<(std::ostream& to, Status status) {
    constexpr const char* NAMES[] = {"Ok", "NoViewer", "TimedOut", "Ended", "Broken", "Failed"};
    return to << NAMES[static_cast<int>(status)];
}

using namespace std::chrono_literals;
using std::chrono::milliseconds;

inline constexpr milliseconds SOON{10000};  // what comes must come before; a loaded machine is slow
inline constexpr milliseconds SHORT{30};    // what does not come does not come before either

inline std::string frame(int kind, const std::string& bytes = {}) {
    const auto header = encodeHeader({static_cast<uint8_t>(kind), static_cast<uint32_t>(bytes.size())});
    return std::string(header.data(), header.size()) + bytes;
}

class ClientTest : public testing::Test {
  protected:
    void SetUp() override { connect(); }
    void TearDown() override { endViewer(); }

    void connect() {
        int ends[2];
        ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        client.adopt(ends[0]);
        viewer = ends[1];
    }
    void viewerSays(const std::string& bytes) const {
        EXPECT_EQ(::send(viewer, bytes.data(), bytes.size(), MSG_NOSIGNAL), static_cast<ssize_t>(bytes.size()));
    }
    // Up to that many bytes, fewer when the host has closed.
    std::string viewerHears(std::size_t count) const {
        std::string bytes(count, 0);
        const ssize_t got = recv(viewer, bytes.data(), count, MSG_WAITALL);
        bytes.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
        return bytes;
    }
    void endViewer() {
        if (viewer >= 0) close(viewer);
        viewer = -1;
    }

    // "Accepted", "Refused: reason", "Shown" or what the call answered instead.
    std::string next(milliseconds limit = SOON) {
        Reply reply{};
        const Status status = client.nextReply(reply, limit);
        if (status != Status::Ok) return testing::PrintToString(status);
        switch (reply.kind) {
            case FrameKind::Accepted:
                return "Accepted";
            case FrameKind::Shown:
                return "Shown";
            default:
                return "Refused: " + reply.reason;
        }
    }

    // "format bytes", or what the call answered instead.
    std::string nextPage(milliseconds limit = SOON) {
        ReceivedPage page;
        const Status status = client.nextPage(page, limit);
        return status == Status::Ok ? page.format + " " + page.bytes : testing::PrintToString(status);
    }

    Client client;
    int viewer = -1;
};

}  // namespace kelhost
