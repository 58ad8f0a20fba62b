// The socket at which hosts find the viewer.
#pragma once

#include <QLocalServer>
#include <QTimer>
#include <functional>

namespace qrvel {

// A name that only one process at a time may have: a locked file, which the system unlocks when the process is gone.
class NameLock {
  public:
    NameLock() = default;
    ~NameLock();
    NameLock(const NameLock&) = delete;
    NameLock& operator=(const NameLock&) = delete;

    // False when somebody else has it, or it cannot be had (errno).
    bool take(const QByteArray& path);

  private:
    QByteArray path_;
    int file_ = -1;
};

class HostServer : public QLocalServer {
  public:
    // Told of each host, with the descriptor of its connection, which is handed over.
    using Arrived = std::function<void(int descriptor)>;

    explicit HostServer(Arrived arrived);
    ~HostServer() override { close(); }  // while the name is still ours

    // Listens under a name (kelhost::channelPath). False, with a line, when that cannot be. Ends the process, with 1,
    // when another viewer has the name.
    bool listen(const QByteArray& name);

  protected:
    void incomingConnection(quintptr descriptor) override { arrived_(static_cast<int>(descriptor)); }

  private:
    bool listenAtPath();

    Arrived arrived_;
    QString path_;
    NameLock name_;
    QTimer looks_;  // whether it still listens
};

}  // namespace qrvel
