// A finished page goes where it belongs.
#pragma once

#include <QByteArray>
#include <QString>
#include <span>
#include <utility>

#include "qrvel/base/print_choice.h"
#include "qrvel/page/page.h"

namespace qrvel {

// Where to: what OUTopendevice is given, and the choices that it is not given.
struct PageGoal {
    Destination destination;
    PageFormat format;
    QByteArray name;  // of the file, in the bytes of the file system; of the printer, UTF-8
    int dpi;

    // For the user.
    QString shownName() const;
};

struct PrintedPage {
    PrintedPage(const SheetLayout& sheet, PageGoal to, std::size_t mostBytes)
        : page(sheet, mostBytes), goal(std::move(to)) {}

    Page page;
    PageGoal goal;
};

// Prints a page on a printer, writes it into a file, or sends it to the host. Answers nothing, or what went wrong, for
// the user. A file is complete or absent: it appears under its name when all of it is written.
QString deliverPage(const Page& page, const PageGoal& goal);

// The same with several, one at least: they become the pages of one PDF file. Elsewhere only the first counts.
QString deliverPages(std::span<const Page* const> pages, const PageGoal& goal);

}  // namespace qrvel
