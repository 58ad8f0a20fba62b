#include "page_delivery.h"

#include <cups/cups.h>

#include <QBuffer>
#include <QPrinter>
#include <QPrinterInfo>
#include <QSaveFile>

#include "data_channel.h"
#include "own_texts.h"
#include "page_format.h"
#include "page_painter.h"
#include "placement.h"

namespace qrvel {

namespace {

// What a device says of the error that stopped the writing, if it was one.
QString reasonOf(const QFileDevice& file) {
    return file.error() == QFileDevice::NoError ? ownText(OwnText::PageTooLarge) : file.errorString();
}

QString writeFile(const Page& page, const PageGoal& goal) {
    QSaveFile file(goal.name);
    const bool written = file.open(QFile::WriteOnly) &&
                         writePage(file, goal.format, goal.dpi, page.recording(), page.sheet()) && file.commit();
    return written ? QString() : ownText(OwnText::CannotWrite).arg(goal.name, reasonOf(file));
}

QString sendToHost(const Page& page, const PageGoal& goal) {
    QBuffer buffer;
    buffer.open(QBuffer::WriteOnly);
    if (!writePage(buffer, goal.format, goal.dpi, page.recording(), page.sheet()))
        return ownText(OwnText::PageTooLarge);
    DataChannel* channel = findDataChannel();
    const bool sent =
        channel != nullptr &&
        channel->sendPage(endingOf(goal.format),
                          std::string_view(buffer.data().constData(), static_cast<std::size_t>(buffer.data().size())));
    return sent ? QString() : ownText(OwnText::NoHost);
}

// A sheet lies in the printer as it came from the factory: upright.
void setPaper(QPrinter& printer, const QSizeF& paper) {
    const bool landscape = paper.width() > paper.height();
    const QSizeF upright = landscape ? paper.transposed() : paper;
    printer.setPageLayout(QPageLayout(QPageSize(upright, QPageSize::Millimeter),
                                      landscape ? QPageLayout::Landscape : QPageLayout::Portrait, {}));
    printer.setFullPage(true);
}

QString print(const Page& page, const PageGoal& goal) {
    const auto cannot = [&](const QString& reason) { return ownText(OwnText::CannotPrint).arg(goal.name, reason); };
    const QPrinterInfo info = QPrinterInfo::printerInfo(goal.name);
    if (info.isNull()) return cannot(ownText(OwnText::NoSuchPrinter));
    const Placement placement = place(page.recording().bounds(), page.sheet());
    QPrinter printer(info, QPrinter::HighResolution);
    printer.setDocName("KEL HPGL Display");
    printer.setColorMode(QPrinter::Color);  // a printer without colours knows best what to do with them
    setPaper(printer, placement.paper);
    QPainter painter;
    if (!painter.begin(&printer)) return cannot(ownText(OwnText::PrinterRefuses));
    paintPage(painter, page.recording(), placement, printer.resolution() / MILLIMETRES_AN_INCH);
    painter.end();
    // The job was handed over with the painter's end, which does not say whether it was taken.
    return cupsLastError() < IPP_STATUS_ERROR_BAD_REQUEST ? QString()
                                                          : cannot(QString::fromUtf8(cupsLastErrorString()));
}

}  // namespace

QString deliverPage(const Page& page, const PageGoal& goal) {
    if (page.isTooLarge()) return ownText(OwnText::CannotWrite).arg(goal.name, ownText(OwnText::PageTooLarge));
    switch (goal.destination) {
        case Destination::Printer:
            return print(page, goal);
        case Destination::File:
            return writeFile(page, goal);
        case Destination::Host:
            return sendToHost(page, goal);
    }
    return ownText(OwnText::NoDestination);
}

}  // namespace qrvel
