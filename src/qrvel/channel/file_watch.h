// Sees when a file has changed and is whole again.
//
// It looks by itself instead of being told by the system: that knows nothing of what others do to a network's files, of
// a folder that is not there yet, or of a name that leads to another file now.
#pragma once

#include <QByteArray>
#include <QTimer>
#include <chrono>
#include <functional>
#include <map>

namespace qrvel {

class FileWatch {
  public:
    // A file that has stayed the same from one look to the next is taken for whole.
    FileWatch(std::chrono::milliseconds betweenLooks, std::function<void(const QByteArray& fileName)> changed);

    void add(const QByteArray& fileName);

  private:
    // What tells one content of a file from another; all 0 while there is no such file, or nothing in it.
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
    void look();

    std::function<void(const QByteArray&)> changed_;
    std::map<QByteArray, Watched> files_;
    QTimer looks_;
};

}  // namespace qrvel
