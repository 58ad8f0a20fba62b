#include "page_delivery.h"

#include <cups/cups.h>

#include <QBuffer>
#include <QPrinter>
#include <QPrinterInfo>
#include <algorithm>
#include <new>

#include "data_channel.h"
#include "own_texts.h"
#include "page_format.h"
#include "page_painter.h"
#include "placement.h"
#include "whole_file.h"

namespace qrvel {

namespace {

QString cannotWrite(const PageGoal& goal, const QString& reason) {
    return ownText(OwnText::CannotWrite).arg(goal.shownName(), reason);
}

QString cannotPrint(const PageGoal& goal, const QString& reason) {
    return ownText(OwnText::CannotPrint).arg(goal.shownName(), reason);
}

using Pages = std::span<const Page* const>;

// The whole file in memory, so that what stands in the way of writing it is known at once, and where from. Empty when
// a page is too large.
QByteArray contentOf(Pages pages, const PageGoal& goal) {
    QBuffer content;
    content.open(QBuffer::WriteOnly);
    const bool drawn = writePages(content, goal.format, goal.dpi, pages);
    return drawn ? content.data() : QByteArray();
}

std::string_view viewOf(const QByteArray& bytes) {
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

QString writeFile(Pages pages, const PageGoal& goal) {
    const std::string name = goal.name.toStdString();
    std::string problem = kelfiles::obstacleTo(name);
    if (problem.empty()) {
        const QByteArray content = contentOf(pages, goal);
        if (content.isEmpty()) return cannotWrite(goal, ownText(OwnText::PageTooLarge));
        problem = kelfiles::writeWhole(name, viewOf(content));
    }
    return problem.empty() ? QString() : cannotWrite(goal, QString::fromStdString(problem));
}

QString sendToHost(Pages pages, const PageGoal& goal) {
    DataChannel* channel = findDataChannel();
    if (channel == nullptr || !channel->takesPages()) return ownText(OwnText::NoHost);
    const QByteArray content = contentOf(pages, goal);
    if (content.isEmpty()) return cannotWrite(goal, ownText(OwnText::PageTooLarge));
    channel->sendPage(endingOf(goal.format), viewOf(content));
    return {};
}

// A sheet lies in the printer as it came from the factory: upright.
void setPaper(QPrinter& printer, const QSizeF& paper) {
    const bool landscape = paper.width() > paper.height();
    const QSizeF upright = landscape ? paper.transposed() : paper;
    printer.setPageLayout(QPageLayout(QPageSize(upright, QPageSize::Millimeter, {}, QPageSize::ExactMatch),
                                      landscape ? QPageLayout::Landscape : QPageLayout::Portrait, {}));
    printer.setFullPage(true);
}

QString print(const Page& page, const PageGoal& goal) {
    const QPrinterInfo info = QPrinterInfo::printerInfo(goal.shownName());
    if (info.isNull()) return cannotPrint(goal, ownText(OwnText::NoSuchPrinter));
    const Placement placement = place(page.recording().bounds(), page.sheet());
    QPrinter printer(info, QPrinter::HighResolution);
    printer.setDocName("KEL HPGL Display");
    printer.setColorMode(QPrinter::Color);  // a printer without colours knows best what to do with them
    setPaper(printer, placement.paper);
    QPainter painter;
    if (!painter.begin(&printer)) return cannotPrint(goal, ownText(OwnText::PrinterRefuses));
    paintPage(painter, page.recording(), placement, printer.resolution() / MILLIMETRES_AN_INCH);
    painter.end();
    // The job was handed over with the painter's end, which does not say whether it was taken.
    return cupsLastError() < IPP_STATUS_ERROR_BAD_REQUEST ? QString()
                                                          : cannotPrint(goal, QString::fromUtf8(cupsLastErrorString()));
}

}  // namespace

QString PageGoal::shownName() const {
    return destination == Destination::Host ? ownText(OwnText::PageForHost) : QString::fromLocal8Bit(name);
}

QString deliverPage(const Page& page, const PageGoal& goal) {
    const Page* const alone = &page;
    return deliverPages({&alone, 1}, goal);
}

QString deliverPages(Pages pages, const PageGoal& goal) {
    const bool toPrinter = goal.destination == Destination::Printer;
    if (!toPrinter && endingOf(goal.format) == nullptr) return ownText(OwnText::NoDestination);
    try {
        if (std::any_of(pages.begin(), pages.end(), [](const Page* page) { return page->isTooLarge(); })) {
            throw std::bad_alloc();
        }
        switch (goal.destination) {
            case Destination::Printer:
                return print(*pages.front(), goal);
            case Destination::File:
                return writeFile(pages, goal);
            case Destination::Host:
                return sendToHost(pages, goal);
        }
    } catch (const std::bad_alloc&) {
        const QString reason = ownText(OwnText::PageTooLarge);
        return toPrinter ? cannotPrint(goal, reason) : cannotWrite(goal, reason);
    }
    return ownText(OwnText::NoDestination);
}

}  // namespace qrvel
