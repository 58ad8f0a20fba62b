#include "qrvel/base/keyed_texts.h"

#include <QFile>
#include <QFileInfo>

namespace qrvel {

namespace {

constexpr qint64 MOST_BYTES = 1 << 20;  // of a file; what is longer is no such file

QByteArray withoutLineEnd(QByteArray line) {
    while (line.endsWith('\n') || line.endsWith('\r')) {
        line.chop(1);
    }
    return line;
}

}  // namespace

KeyedTexts parseKeyedTexts(const QByteArray& lines) {
    constexpr char BYTE_ORDER_MARK[] = "\xEF\xBB\xBF";
    KeyedTexts texts;
    const QByteArray all = lines.startsWith(BYTE_ORDER_MARK) ? lines.mid(3) : lines;
    for (const QByteArray& whole : all.split('\n')) {
        const QByteArray line = withoutLineEnd(whole);
        const qsizetype equals = line.indexOf('=');
        const bool remark = line.startsWith('#') || line.startsWith(';') || line.startsWith('[');
        const QByteArray key = line.left(equals).trimmed();
        if (equals > 0 && !key.isEmpty() && !remark) texts.insert(key, line.mid(equals + 1));
    }
    return texts;
}

std::optional<KeyedTexts> readKeyedTexts(const QString& fileName, QString* reason) {
    QFile file(fileName);
    if (!QFileInfo(fileName).isFile()) {  // opening a pipe would wait for its other end
        if (reason != nullptr) *reason = "no ordinary file";
        return std::nullopt;
    }
    if (!file.open(QFile::ReadOnly)) {
        if (reason != nullptr) *reason = file.errorString();
        return std::nullopt;
    }
    return parseKeyedTexts(file.read(MOST_BYTES));
}

}  // namespace qrvel
