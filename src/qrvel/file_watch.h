// Sees when a file has changed and is whole again.
#pragma once

#include <QByteArray>
#include <QFileSystemWatcher>
#include <QTimer>
#include <functional>
#include <map>

namespace qrvel {

class FileWatch {
  public:
    explicit FileWatch(std::function<void(const QByteArray& fileName)> changed);

    void add(const QByteArray& fileName);

  private:
    // What tells one content of a file from another; all 0 while there is no such file.
    struct State {
        qint64 size = 0;
        qint64 time = 0;  // of the last change, nanoseconds
        quint64 inode = 0;
        bool operator==(const State&) const = default;
    };
    struct Watched {
        State reported;  // as it was when its reader was told last
        State seen;      // at the last look
    };

    static State stateOf(const QByteArray& fileName);
    void follow(const QByteArray& fileName);
    void look();

    std::function<void(const QByteArray&)> changed_;
    std::map<QByteArray, Watched> files_;
    QFileSystemWatcher watcher_;
    QTimer looks_;  // runs from a change until nothing changes any more
};

}  // namespace qrvel
