#include "qrvel/channel/neighbour_files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>

namespace qrvel {

namespace {

// What plot files are called; any other file is passed by in a folder.
const QStringList PLOT_NAMES = {"*.plt", "*.hpgl", "*.hpg", "*.hgl", "*.hpgl2", "*.gl"};

// Numbers by their value, letters without regard to case. A session without a language has no collation that could.
QString sortable(const QString& name) {
    constexpr int LONGEST_NUMBER = 20;
    QString key;
    QString number;
    for (const QChar sign : name.toCaseFolded() + QChar(0)) {
        if (sign.isDigit()) {
            number += sign;
            continue;
        }
        if (!number.isEmpty()) key += number.rightJustified(LONGEST_NUMBER, '0');
        number.clear();
        key += sign;
    }
    return key;
}

// With the file itself, whatever it is called.
std::vector<QByteArray> plotsBeside(const QByteArray& file) {
    const QFileInfo info(QFile::decodeName(file));
    QStringList names = info.dir().entryList(PLOT_NAMES, QDir::Files);
    if (!names.contains(info.fileName())) names << info.fileName();
    std::sort(names.begin(), names.end(), [](const QString& a, const QString& b) { return sortable(a) < sortable(b); });
    std::vector<QByteArray> files;
    for (const QString& name : names) {
        files.push_back(QFile::encodeName(info.dir().filePath(name)));
    }
    return files;
}

}  // namespace

QByteArray neighbourOf(const QByteArray& file, const std::vector<QByteArray>& named, int by) {
    if (file.isEmpty()) return {};
    const std::vector<QByteArray> files = named.size() > 1 ? named : plotsBeside(file);
    const auto same = [path = QFileInfo(QFile::decodeName(file)).absoluteFilePath()](const QByteArray& other) {
        return QFileInfo(QFile::decodeName(other)).absoluteFilePath() == path;
    };
    const auto found = std::find_if(files.begin(), files.end(), same);
    if (found == files.end()) return {};
    const auto place = found - files.begin() + by;
    if (place < 0 || place >= static_cast<std::ptrdiff_t>(files.size())) return {};
    return files[static_cast<std::size_t>(place)];
}

}  // namespace qrvel
