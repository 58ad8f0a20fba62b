// Files of KEY=text lines: configuration and language texts.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <optional>

namespace qrvel {

using KeyedTexts = QHash<QByteArray, QByteArray>;

// A text is all that stands behind the first equals sign, as it stands. Lines that begin with '#', ';' or '[' and lines
// without a key are passed over; of the same key twice the last counts.
KeyedTexts parseKeyedTexts(const QByteArray& lines);

// The texts of a file; nothing when it cannot be read, and then why in *reason.
std::optional<KeyedTexts> readKeyedTexts(const QString& fileName, QString* reason = nullptr);

}  // namespace qrvel
