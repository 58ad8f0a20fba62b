// The texts that the toolkit shows by itself: English built in, other languages from the same file as the viewer's.
#pragma once

#include <QString>

namespace qrvel {

// clang-format off
enum class OwnText {
    CannotRead,       // %1 a name, %2 the reason
    CannotWrite,      // %1 a name, %2 the reason
    CannotListen,     // %1 a path, %2 the reason
    TooLong,          // %1 a key of the configuration
    NoDrawing,        // %1 a name
    OtherKind,        // %1 a name, %2 the kind of file
    NoSuchPage,       // %1 a name, %2 the number, %3 of the last page
    NotDrawn,         // %1 an instruction
    KindsNotDrawn,    // %1 how many, %2 instructions
    MetBound,         // %1 limits
    PenOneDrew, EmptyDrawing, EndsInPolygon, EndsInLabel, EndsInEncodedLine, EndsInBinary,
    PageOf,           // %1 the number, %2 of how many
    FirstPage,        // the same; told when there are others
    CannotPrint,      // %1 a printer, %2 the reason
    NoSuchPrinter, PrinterRefuses, PageTooLarge, WrittenAlready, IsSource, NamesOutside,
    NoPicture,  // reasons
    NoHost, NoDestination, PageForHost,
    EmptyPage,        // %1 a name
    Drawing,          // what a screen reader calls the picture
    Back, Contents, Close, GiveUp,
    ProductTitle, ProductPurpose, ProductVersion /* %1 */, ProductLicence,
    PrintTitle, PrintPaper, PrintFit, PrintDirection, PrintLandscape, PrintPortrait,
    PrintTo, PrintToPaper, PrintToFile, PrintToHost,
    PrintPrinter, PrintFormat, PrintDpi, PrintFileName, PrintChoose, PrintNow, PrintCancel,
    PrintPixels,      // %1 width, %2 height
    PrintLongSide,    // %1 pixels
    NoPrinter,
    PrintNoName, PrintTooFine,
    PrintNoFolder, PrintIsFolder, PrintExists,  // %1 a path
    PrintPreview,     // what a screen reader calls it
    PrintPreparing, Replace,
    OpenFile, RecentFiles, ReadAgain, FileBefore, FileAfter, PageBefore, PageAfter, NextView, FullScreen, CopyPicture,
    DropHere,         // in an empty window; %1 the key for OpenFile
};
// clang-format on

// In the language that Wloadtxt has found, else in English.
QString ownText(OwnText text);

}  // namespace qrvel
