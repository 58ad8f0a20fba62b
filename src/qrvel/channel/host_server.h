// The socket at which hosts find the viewer.
#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <functional>
#include <memory>

namespace qrvel {

class HostServer : public QLocalServer {
  public:
    // Told of each host, with the descriptor of its connection, which is handed over.
    using Arrived = std::function<void(int descriptor)>;

    explicit HostServer(Arrived arrived) : arrived_(std::move(arrived)) {}

    // Listens under a name (kelhost::channelPath). False, with a line, when that cannot be. Ends the process, with 1,
    // when another viewer has the name.
    bool listen(const QByteArray& name);

  protected:
    void incomingConnection(quintptr descriptor) override { arrived_(static_cast<int>(descriptor)); }

  private:
    Arrived arrived_;
    std::unique_ptr<QLockFile> lock_;  // the name is ours as long as we hold it
};

}  // namespace qrvel
