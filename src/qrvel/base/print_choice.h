// What is to be printed where: the user's choice in the print set-up, or the command line's.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <cstdint>

#include "qrvel/base/paper.h"
#include "toolkit/out.h"

namespace qrvel {

// The numbers are those that OUTopendevice takes.
enum class Destination : uint8_t { Printer = OUT_TO_PRINTER, File = OUT_TO_FILE, Host = OUT_TO_HOST };
enum class PageFormat : uint8_t { None = 0, Pdf = 1, Svg = 2, Png = 3 };

// "pdf", "svg", "png": what a file's name ends with behind its last dot. Null and None for what is no format.
const char* endingOf(PageFormat format);
PageFormat formatOf(QByteArrayView fileName);

inline constexpr int LEAST_DPI = 10;
inline constexpr int MOST_DPI = 2400;

// Stands for the chosen name where that has no room. It names a folder, so no file is meant by it, nor a printer.
inline constexpr char CHOSEN_FILE[] = "/";

struct PrintChoice {
    Destination destination = Destination::File;
    PageFormat format = PageFormat::Pdf;  // None for a printer
    QString printer;                      // its name
    QByteArray fileName;                  // a path, in the bytes of the file system
    Paper paper;
    bool landscape = false;
    int dpi = 300;  // of a PNG

    // Of what it goes to; of a printer, UTF-8.
    QByteArray name() const { return destination == Destination::Printer ? printer.toUtf8() : fileName; }
};

}  // namespace qrvel
