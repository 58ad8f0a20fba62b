#include "page_format.h"

#include <QImageWriter>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <cmath>

#include "page_image.h"
#include "page_painter.h"
#include "placement.h"

namespace qrvel {

namespace {

constexpr char CREATOR[] = "KEL HPGL Display";

constexpr int UNITS_AN_INCH = 1016;  // of a vector format: 0.025 mm, so that coordinates are whole numbers
constexpr double UNITS_A_MILLIMETRE = UNITS_AN_INCH / MILLIMETRES_AN_INCH;

// Of the same image: 0 is small and slow, 100 large. This one takes not much longer than the drawing.
constexpr int PNG_QUALITY = 60;

bool writePdf(QIODevice& device, int /*dpi*/, const Recording& recording, const Sheet& sheet) {
    const Placement placement = place(recording.bounds(), sheet);
    QPdfWriter writer(&device);
    writer.setCreator(CREATOR);
    writer.setResolution(UNITS_AN_INCH);
    writer.setPageLayout(QPageLayout(QPageSize(placement.paper, QPageSize::Millimeter, {}, QPageSize::ExactMatch),
                                     QPageLayout::Portrait, {}));
    QPainter painter;
    if (!painter.begin(&writer)) return false;
    paintPage(painter, recording, placement, UNITS_A_MILLIMETRE);
    return painter.end();
}

bool writeSvg(QIODevice& device, int /*dpi*/, const Recording& recording, const Sheet& sheet) {
    const Placement placement = place(recording.bounds(), sheet);
    const QSizeF units = placement.paper * UNITS_A_MILLIMETRE;
    QSvgGenerator generator;
    generator.setOutputDevice(&device);
    generator.setTitle(CREATOR);
    generator.setDescription({});
    generator.setResolution(UNITS_AN_INCH);
    generator.setSize(units.toSize());
    generator.setViewBox(QRectF({}, units));
    QPainter painter;
    if (!painter.begin(&generator)) return false;
    paintPage(painter, recording, placement, UNITS_A_MILLIMETRE);
    return painter.end();
}

bool writePng(QIODevice& device, int dpi, const Recording& recording, const Sheet& sheet) {
    QImage image = drawImage(recording, sheet, dpi / MILLIMETRES_AN_INCH);
    if (image.isNull()) return false;
    const int dotsAMetre = static_cast<int>(std::lround(dpi * 1000.0 / MILLIMETRES_AN_INCH));
    image.setDotsPerMeterX(dotsAMetre);
    image.setDotsPerMeterY(dotsAMetre);
    QImageWriter writer(&device, "PNG");
    writer.setQuality(PNG_QUALITY);
    return writer.write(image);
}

struct Row {
    PageFormat format;
    const char* ending;
    bool (*write)(QIODevice& device, int dpi, const Recording& recording, const Sheet& sheet);
};

constexpr Row ROWS[] = {
    {PageFormat::Pdf, "pdf", writePdf},
    {PageFormat::Svg, "svg", writeSvg},
    {PageFormat::Png, "png", writePng},
};

}  // namespace

const char* endingOf(PageFormat format) {
    for (const Row& row : ROWS) {
        if (row.format == format) return row.ending;
    }
    return nullptr;
}

PageFormat formatOf(QByteArrayView fileName) {
    const QByteArray name = fileName.toByteArray().toLower();
    for (const Row& row : ROWS) {
        if (name.endsWith(QByteArray(".") + row.ending)) return row.format;
    }
    return PageFormat::None;
}

bool writePage(QIODevice& device, PageFormat format, int dpi, const Recording& recording, const Sheet& sheet) {
    for (const Row& row : ROWS) {
        if (row.format == format) return row.write(device, dpi, recording, sheet);
    }
    return false;
}

}  // namespace qrvel
