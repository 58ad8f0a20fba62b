#include "qrvel/page/page_delivery.h"

#include <cups/cups.h>

#include <QPrinter>
#include <QPrinterInfo>
#include <QTemporaryFile>
#include <algorithm>
#include <new>

#include "qrvel/base/application.h"
#include "qrvel/base/own_texts.h"
#include "qrvel/page/file_device.h"
#include "qrvel/page/page_painter.h"
#include "qrvel/page/page_writing.h"
#include "qrvel/page/placement.h"
#include "system/whole_file.h"

namespace qrvel {

namespace {

QString cannotWrite(const PageGoal& goal, const QString& reason) {
    return ownText(OwnText::CannotWrite).arg(goal.shownName(), reason);
}

QString cannotPrint(const PageGoal& goal, const QString& reason) {
    return ownText(OwnText::CannotPrint).arg(goal.shownName(), reason);
}

using Pages = std::span<const Page* const>;

// Straight into the file, for it may be many times as large as the drawing. Answers what went wrong, or nothing.
QString draw(int descriptor, Pages pages, const PageGoal& goal) {
    FileDevice device(descriptor);
    const bool drawn = writePages(device, goal.format, goal.dpi, pages);
    const QString problem = device.finish();
    return drawn || !problem.isEmpty() ? problem : ownText(OwnText::PageTooLarge);
}

QString writeFile(Pages pages, const PageGoal& goal) {
    kelsystem::WholeFile whole(goal.name.toStdString());
    if (!whole.problem().empty()) return cannotWrite(goal, QString::fromStdString(whole.problem()));
    if (const QString problem = draw(whole.descriptor(), pages, goal); !problem.isEmpty()) {
        return cannotWrite(goal, problem);
    }
    return whole.finish() ? QString() : cannotWrite(goal, QString::fromStdString(whole.problem()));
}

QString sendToHost(Pages pages, const PageGoal& goal) {
    Run* run = application() != nullptr ? application()->run.get() : nullptr;
    if (run == nullptr || !run->takesPages()) return ownText(OwnText::NoHost);
    QTemporaryFile file;
    const QString problem = file.open() ? draw(file.handle(), pages, goal) : file.errorString();
    if (!problem.isEmpty()) return cannotWrite(goal, problem);
    const uchar* const content = file.map(0, file.size());
    if (content == nullptr) return cannotWrite(goal, file.errorString());
    run->sendPage(endingOf(goal.format),
                  {reinterpret_cast<const char*>(content), static_cast<std::size_t>(file.size())});
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
