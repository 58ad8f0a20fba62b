#include "qrvel/base/recent_files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>
#include <filesystem>
#include <system_error>

namespace qrvel {

namespace {

// A line a file; what a name may hold beside is written as in an address.
constexpr qint64 MOST_BYTES = qint64{256} * 1024;

QString stateFile() {
    QString folder = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(folder)) folder = QDir::homePath() + "/.local/state";
    return folder + "/kelhpgl/recent";
}

}  // namespace

std::vector<QByteArray> recentFiles() {
    std::vector<QByteArray> files;
    QFile kept(stateFile());
    if (!kept.open(QIODevice::ReadOnly)) return files;
    for (const QByteArray& line : kept.read(MOST_BYTES).split('\n')) {
        const QByteArray file = QByteArray::fromPercentEncoding(line);
        if (file.startsWith('/') && files.size() < MOST_RECENT_FILES) files.push_back(file);
    }
    return files;
}

void keepRecentFile(const QByteArray& file) {
    std::error_code problem;  // byte by byte: a name need not be text
    const auto path =
        QByteArray::fromStdString(std::filesystem::absolute(file.toStdString(), problem).lexically_normal());
    if (problem) return;
    std::vector<QByteArray> files = recentFiles();
    if (!files.empty() && files.front() == path) return;
    std::erase(files, path);
    files.insert(files.begin(), path);
    files.resize(std::min(files.size(), MOST_RECENT_FILES));
    QByteArray text;
    for (const QByteArray& one : files) {
        text += one.toPercentEncoding("/") + '\n';
    }
    const QString name = stateFile();
    QDir().mkpath(QFileInfo(name).path());
    QSaveFile kept(name);
    if (kept.open(QIODevice::WriteOnly) && kept.write(text) == text.size()) kept.commit();
}

}  // namespace qrvel
