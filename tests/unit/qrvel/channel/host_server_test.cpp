// The socket under whose name hosts find the viewer.
#include "qrvel/channel/host_server.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "host/protocol.h"
#include "toolkit_fixture.h"

namespace qrvel {
namespace {

class Server : public ToolkitFixture {
  protected:
    Server() {
        qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(std::filesystem::current_path().string()));
        std::filesystem::permissions(".", std::filesystem::perms::owner_all);
        start();
        path = kelhost::channelPath("tried");
    }
    ~Server() override {
        qunsetenv("XDG_RUNTIME_DIR");
        for (const int descriptor : arrived) {
            close(descriptor);
        }
    }

    std::unique_ptr<HostServer> make() {
        return std::make_unique<HostServer>(std::chrono::milliseconds(1),
                                            [this](int descriptor) { arrived.push_back(descriptor); });
    }
    bool connects() const {
        const int host = socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        const bool is = connect(host, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
        QCoreApplication::processEvents();
        close(host);
        return is;
    }

    std::string path;
    std::vector<int> arrived;
};

TEST_F(Server, TellsOfHostsAndLetsOnlyItsUserIn) {
    const auto server = make();
    ASSERT_TRUE(server->listen("tried"));
    EXPECT_TRUE(connects());
    EXPECT_EQ(arrived.size(), 1U);
    struct stat about = {};
    ASSERT_EQ(stat(path.c_str(), &about), 0);
    EXPECT_EQ(about.st_mode & 0777, 0600U);
}

TEST_F(Server, TakesItsSocketWithIt) {
    make()->listen("tried");
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_FALSE(connects());
}

TEST_F(Server, LeavesTheSocketOfAnother) {
    auto server = make();
    ASSERT_TRUE(server->listen("tried"));
    std::filesystem::remove(path);
    ScratchFolder::write(path, "another's");
    server.reset();
    EXPECT_EQ(ScratchFolder::read(path), "another's");
}

TEST_F(Server, ComesBackWhenItsSocketIsTakenAway) {
    const auto server = make();
    ASSERT_TRUE(server->listen("tried"));
    std::filesystem::remove(path);
    EXPECT_FALSE(connects());
    EXPECT_TRUE(comes([this] { return std::filesystem::exists(path); }));
    EXPECT_TRUE(connects());
    EXPECT_EQ(arrived.size(), 1U);
}

TEST_F(Server, TakesAFolderThatOthersMayWriteToForUnsafe) {
    std::filesystem::permissions(".", std::filesystem::perms::all);
    EXPECT_FALSE(make()->listen("tried"));
}

}  // namespace
}  // namespace qrvel
