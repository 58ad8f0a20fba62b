// The socket at which hosts find the viewer.
#pragma once

#include <QByteArray>
#include <QSocketNotifier>
#include <QString>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>

#include "system/file_ids.h"

namespace qrvel {

// A name that only one process at a time may have: a locked file, which the system unlocks when the process is gone.
class NameLock {
  public:
    NameLock() = default;
    ~NameLock() { letGo(); }
    NameLock(const NameLock&) = delete;
    NameLock& operator=(const NameLock&) = delete;

    // False when somebody else has it, or it cannot be had (errno).
    bool take(const QByteArray& path);
    // Whether it has it. Not any more when others have taken the file away.
    bool isHeld() const;

  private:
    void letGo();

    QByteArray path_;
    int file_ = -1;
};

// It removes no file but those that it has made. When others take them away it makes them again, unless another viewer
// has got the name meanwhile; then it waits for it.
class HostServer {
  public:
    // Told of each host, with the descriptor of its connection, which is handed over.
    using Arrived = std::function<void(int descriptor)>;

    // Between its looks whether it can still be found it takes its time.
    HostServer(std::chrono::milliseconds betweenLooks, Arrived arrived);
    ~HostServer() { close(); }
    HostServer(const HostServer&) = delete;
    HostServer& operator=(const HostServer&) = delete;

    // Listens under a name (kelhost::channelPath). False, with a line, when that cannot be. Ends the process, with 1,
    // when another viewer has the name.
    bool listen(const QByteArray& name);

  private:
    // Both answer what is wrong, or nothing.
    QString takeName();
    QString open();
    QString refusal(const QString& problem) const;
    // Whether the path leads to our socket.
    bool isFound() const;
    void close();
    void look();
    void accept();

    Arrived arrived_;
    QByteArray path_;
    QByteArray lockPath_;
    NameLock name_;
    int socket_ = -1;
    kelsystem::FileId file_;  // the socket's, as it was made
    std::unique_ptr<QSocketNotifier> notifier_;
    QTimer looks_;       // whether it can still be found
    QString said_;       // of what is wrong
    bool full_ = false;  // that has been said
};

}  // namespace qrvel
