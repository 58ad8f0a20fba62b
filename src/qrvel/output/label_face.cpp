#include "qrvel/output/label_face.h"

#include <QFont>
#include <QFontInfo>
#include <QRawFont>
#include <QTransform>

namespace qrvel {

namespace {

constexpr int MEASURED_SIZE = 1000;  // pixels; outlines are scaled from there

QRawFont openFace() {
    QFont font(QString::fromLatin1(LABEL_FAMILY.data(), static_cast<qsizetype>(LABEL_FAMILY.size())));
    font.setPixelSize(MEASURED_SIZE);
    font.setHintingPreference(QFont::PreferNoHinting);
    if (!QFontInfo(font).exactMatch()) return {};
    return QRawFont::fromFont(font);
}

// Without a QApplication there are no fonts, and asking for one would end the process.
const QRawFont& face() {
    static const auto* const opened = new QRawFont(openFace());
    return *opened;
}

quint32 glyphOf(QChar character) {
    const QList<quint32> glyphs = face().glyphIndexesForString(QString(character));
    return glyphs.isEmpty() ? 0 : glyphs.front();
}

}  // namespace

bool hasLabelFace() {
    return face().isValid();
}

QPainterPath labelOutline(unsigned char character) {
    const quint32 glyph = hasLabelFace() ? glyphOf(QChar::fromLatin1(static_cast<char>(character))) : 0;
    if (glyph == 0) return {};
    const double advance = face().advancesForGlyphIndexes({glyph}).front().x();
    const double capital = face().capHeight();
    return QTransform::fromScale(1.0 / advance, 1.0 / capital).map(face().pathForGlyph(glyph));
}

}  // namespace qrvel
