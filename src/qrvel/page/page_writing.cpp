#include "qrvel/page/page_writing.h"

#include <QBuffer>
#include <QImageWriter>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <cmath>

#include "qrvel/page/page_image.h"
#include "qrvel/page/page_painter.h"
#include "qrvel/page/placement.h"

namespace qrvel {

namespace {

constexpr char CREATOR[] = "KEL HPGL Display";

constexpr int UNITS_AN_INCH = 1016;  // of a vector format: 0.025 mm, so that coordinates are whole numbers
constexpr double UNITS_A_MILLIMETRE = UNITS_AN_INCH / MILLIMETRES_AN_INCH;

// Of the same image: 0 is small and slow, 100 large. This one takes not much longer than the drawing.
constexpr int PNG_QUALITY = 60;

using Pages = std::span<const Page* const>;

Placement placeOf(const Page& page) {
    return place(page.recording().bounds(), page.sheet());
}

QPageLayout layoutOf(const QSizeF& paper) {
    return {QPageSize(paper, QPageSize::Millimeter, {}, QPageSize::ExactMatch), QPageLayout::Portrait, {}};
}

bool writePdf(QIODevice& device, Pages pages) {
    QPdfWriter writer(&device);
    writer.setCreator(CREATOR);
    writer.setResolution(UNITS_AN_INCH);
    QPainter painter;
    for (const Page* page : pages) {
        const Placement placement = placeOf(*page);
        writer.setPageLayout(layoutOf(placement.paper));
        if (painter.isActive() ? !writer.newPage() : !painter.begin(&writer)) return false;
        paintPage(painter, page->recording(), placement, UNITS_A_MILLIMETRE);
    }
    return painter.end();
}

bool writeSvg(QIODevice& device, const Page& page) {
    constexpr std::size_t TIMES_AS_LARGE = 4;  // the text, which is made in memory
    if (page.recording().bytes() > mostPageBytes() / TIMES_AS_LARGE) return false;
    const Placement placement = placeOf(page);
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
    paintPage(painter, page.recording(), placement, UNITS_A_MILLIMETRE);
    return painter.end();
}

bool writePng(QIODevice& device, int dpi, const Page& page) {
    QImage image = drawImage(page.recording(), page.sheet(), dpi / MILLIMETRES_AN_INCH);
    if (image.isNull()) return false;
    const int dotsAMetre = static_cast<int>(std::lround(dpi * 1000.0 / MILLIMETRES_AN_INCH));
    image.setDotsPerMeterX(dotsAMetre);
    image.setDotsPerMeterY(dotsAMetre);
    QBuffer content;  // libpng would speak of a full disk itself
    QImageWriter writer(&content, "PNG");
    writer.setQuality(PNG_QUALITY);
    return writer.write(image) && device.write(content.data()) == content.size();
}

}  // namespace

bool writePages(QIODevice& device, PageFormat format, int dpi, Pages pages) {
    switch (format) {
        case PageFormat::Pdf:
            return writePdf(device, pages);
        case PageFormat::Svg:
            return writeSvg(device, *pages.front());
        case PageFormat::Png:
            return writePng(device, dpi, *pages.front());
        case PageFormat::None:
            break;
    }
    return false;
}

}  // namespace qrvel
