#include "qrvel/base/print_choice.h"

namespace qrvel {

namespace {

struct FormatRow {
    PageFormat format;
    const char* ending;
};

constexpr FormatRow FORMATS[] = {{PageFormat::Pdf, "pdf"}, {PageFormat::Svg, "svg"}, {PageFormat::Png, "png"}};

}  // namespace

const char* endingOf(PageFormat format) {
    for (const FormatRow& row : FORMATS) {
        if (row.format == format) return row.ending;
    }
    return nullptr;
}

PageFormat formatOf(QByteArrayView fileName) {
    const QByteArray name = fileName.toByteArray().toLower();
    for (const FormatRow& row : FORMATS) {
        if (name.endsWith(QByteArray(".") + row.ending)) return row.format;
    }
    return PageFormat::None;
}

}  // namespace qrvel
