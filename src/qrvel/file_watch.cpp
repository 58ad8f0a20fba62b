#include "file_watch.h"

#include <sys/stat.h>

#include <QFile>
#include <QFileInfo>
#include <chrono>
#include <utility>

namespace qrvel {

namespace {

// A file that has stayed the same from one look to the next is taken for whole.
constexpr auto BETWEEN_LOOKS = std::chrono::milliseconds(250);

}  // namespace

FileWatch::FileWatch(std::function<void(const QByteArray&)> changed) : changed_(std::move(changed)) {
    QObject::connect(&watcher_, &QFileSystemWatcher::fileChanged, [this] { looks_.start(); });
    QObject::connect(&watcher_, &QFileSystemWatcher::directoryChanged, [this] { looks_.start(); });
    QObject::connect(&looks_, &QTimer::timeout, [this] { look(); });
    looks_.setInterval(BETWEEN_LOOKS);
}

FileWatch::State FileWatch::stateOf(const QByteArray& fileName) {
    struct stat about = {};
    if (stat(fileName.constData(), &about) != 0) return {};
    return {.size = about.st_size,
            .time = about.st_mtim.tv_sec * qint64{1000000000} + about.st_mtim.tv_nsec,
            .inode = about.st_ino};
}

// A file that is replaced is another one: the watcher loses it, and its folder tells of the new one.
void FileWatch::follow(const QByteArray& fileName) {
    const QString name = QFile::decodeName(fileName);
    if (!watcher_.files().contains(name)) watcher_.addPath(name);
}

void FileWatch::add(const QByteArray& fileName) {
    const State state = stateOf(fileName);
    files_[fileName] = {.reported = state, .seen = state};
    follow(fileName);
    watcher_.addPath(QFileInfo(QFile::decodeName(fileName)).absolutePath());
}

void FileWatch::look() {
    bool settled = true;
    for (auto& [name, file] : files_) {
        const State state = stateOf(name);
        follow(name);
        if (state != std::exchange(file.seen, state)) {
            settled = false;
        } else if (state != State{} && state != file.reported) {
            file.reported = state;
            changed_(name);
        }
    }
    if (settled) looks_.stop();
}

}  // namespace qrvel
