#include "keyed_texts.h"

#include <QFile>

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
    KeyedTexts texts;
    for (const QByteArray& whole : lines.split('\n')) {
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
    if (!file.open(QFile::ReadOnly)) {
        if (reason != nullptr) *reason = file.errorString();
        return std::nullopt;
    }
    return parseKeyedTexts(file.read(MOST_BYTES));
}

}  // namespace qrvel
