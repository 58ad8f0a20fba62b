#include "qrvel/channel/named_files.h"

#include <QEventLoop>
#include <QTimer>
#include <filesystem>
#include <string>
#include <utility>

#include "qrvel/base/application.h"
#include "qrvel/base/own_texts.h"
#include "qrvel/channel/spool.h"

namespace qrvel {

namespace {

namespace fs = std::filesystem;

constexpr auto OTHERS_WAIT = std::chrono::milliseconds(20);  // at most, for a piece more

bool liesIn(const fs::path& file, const QByteArray& folder) {
    std::error_code missing;
    const fs::path root = fs::canonical(folder.toStdString(), missing);
    if (missing) return false;
    const fs::path relative = file.lexically_relative(root);
    return !relative.empty() && *relative.begin() != "..";
}

// In a loop of its own: what the user presses would wait for the viewer otherwise.
void letOthersRun() {
    QEventLoop loop;
    QTimer::singleShot(0, &loop, &QEventLoop::quit);
    loop.exec();
}

}  // namespace

void NamedFiles::begin(std::optional<QByteArray> folder) {
    folder_ = std::move(folder);
    bytes_ = bytesRead_ = 0;
    problem_.clear();
}

void NamedFiles::breakOff() {
    problem_ = "given up by the user";
}

bool NamedFiles::mayOpen(const char* name, int descriptor, uint64_t bytes) {
    application()->filesRead.add(descriptor);
    std::error_code unknown;
    const fs::path file = fs::read_symlink("/proc/self/fd/" + std::to_string(descriptor), unknown);
    if (folder_ && !liesIn(file, *folder_)) {
        problem_ = ownText(OwnText::NamesOutside).arg(QString::fromLocal8Bit(name));
    } else if (bytes > static_cast<uint64_t>(Spool::mostBytes())) {
        problem_ = Spool::tooMuch();
    } else {
        bytes_ = static_cast<qint64>(bytes);
        seenToOthers_ = std::chrono::steady_clock::now();
    }
    return problem_.isEmpty();
}

bool NamedFiles::mayGoOn(uint64_t bytesRead) {
    bytesRead_ = static_cast<qint64>(bytesRead);
    if (bytesRead_ > Spool::mostBytes()) problem_ = Spool::tooMuch();  // it has grown
    if (std::chrono::steady_clock::now() - seenToOthers_ >= OTHERS_WAIT) {
        letOthersRun();
        seenToOthers_ = std::chrono::steady_clock::now();
    }
    return problem_.isEmpty() && application()->state.quit == 0;
}

}  // namespace qrvel
