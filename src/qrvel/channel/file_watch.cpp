#include "qrvel/channel/file_watch.h"

#include <sys/stat.h>

#include <utility>

namespace qrvel {

FileWatch::FileWatch(std::chrono::milliseconds betweenLooks, std::function<void(const QByteArray&)> changed)
    : changed_(std::move(changed)) {
    QObject::connect(&looks_, &QTimer::timeout, [this] { look(); });
    looks_.setInterval(betweenLooks);
}

FileWatch::State FileWatch::stateOf(const QByteArray& fileName) {
    struct stat about = {};
    // A pipe changes when it is read; what is opened for writing is empty until something is written.
    if (stat(fileName.constData(), &about) != 0 || !S_ISREG(about.st_mode) || about.st_size == 0) return {};
    return {.size = about.st_size,
            .time = about.st_mtim.tv_sec * qint64{1000000000} + about.st_mtim.tv_nsec,
            .inode = about.st_ino};
}

void FileWatch::add(const QByteArray& fileName) {
    const State state = stateOf(fileName);
    files_[fileName] = {.reported = state, .seen = state};
    if (!looks_.isActive()) looks_.start();
}

void FileWatch::look() {
    for (auto& [name, file] : files_) {
        const State state = stateOf(name);
        const bool settled = state == std::exchange(file.seen, state);
        if (!settled || state == State{} || state == file.reported) continue;
        file.reported = state;
        changed_(name);
    }
}

}  // namespace qrvel
