#include "qrvel/base/own_texts.h"

#include <iterator>

#include "qrvel/base/application.h"

namespace qrvel {

namespace {

struct Row {
    OwnText text;
    const char* key;
    const char* english;
};

// clang-format off
constexpr Row ROWS[] = {
    {OwnText::CannotRead,     "W_CANNOT_READ",     "cannot read %1: %2"},
    {OwnText::CannotWrite,    "W_CANNOT_WRITE",    "cannot write %1: %2"},
    {OwnText::CannotListen,   "W_CANNOT_LISTEN",   "cannot listen at %1: %2"},
    {OwnText::TooLong,        "W_TOO_LONG",        "the values of the configuration are too long: %1 is left out"},
    {OwnText::NoDrawing,      "W_NO_DRAWING",      "%1 holds no HP-GL drawing"},
    {OwnText::OtherKind,      "W_OTHER_KIND",      "%1 holds no HP-GL drawing (%2)"},
    {OwnText::NoSuchPage,     "W_NO_SUCH_PAGE",    "%1 has no page %2, the last is %3"},
    {OwnText::NotDrawn,       "W_NOT_DRAWN",       "1 kind of instruction was not drawn: %1"},
    {OwnText::KindsNotDrawn,  "W_KINDS_NOT_DRAWN", "%1 kinds of instructions were not drawn: %2"},
    {OwnText::MetBound,       "W_MET_BOUND",       "a bound was met: %1"},
    {OwnText::PenOneDrew,     "W_PEN_ONE_DREW",    "it selects no pen: drawn with pen 1"},
    {OwnText::EmptyDrawing,   "W_EMPTY_DRAWING",   "this drawing is empty"},
    {OwnText::EndsInPolygon,  "W_ENDS_IN_POLYGON", "incomplete: the file ends inside a polygon"},
    {OwnText::EndsInLabel,    "W_ENDS_IN_LABEL",   "incomplete: the file ends inside a label"},
    {OwnText::EndsInEncodedLine, "W_ENDS_IN_LINE", "incomplete: the file ends inside an encoded line"},
    {OwnText::EndsInBinary,   "W_ENDS_IN_BINARY",  "incomplete: the file ends inside binary data"},
    {OwnText::PageOf,         "W_PAGE_OF",         "%1 of %2"},
    {OwnText::FirstPage,      "W_FIRST_PAGE",      "page %1 of %2 (Page Up, Page Down)"},
    {OwnText::CannotPrint,    "W_CANNOT_PRINT",    "cannot print on %1: %2"},
    {OwnText::NoSuchPrinter,  "W_NO_SUCH_PRINTER", "there is no such printer"},
    {OwnText::PrinterRefuses, "W_PRINTER_REFUSES", "the printer does not take it"},
    {OwnText::PageTooLarge,   "W_PAGE_TOO_LARGE",  "the page is too large"},
    {OwnText::WrittenAlready, "W_WRITTEN_ALREADY", "another drawing has been written there just now"},
    {OwnText::IsSource,       "W_IS_SOURCE",       "it is one of the drawings"},
    {OwnText::NamesOutside,   "W_NAMES_OUTSIDE",   "it names %1, which does not lie in its folder"},
    {OwnText::NoPicture,      "W_NO_PICTURE",      "there is no picture"},
    {OwnText::NoHost,         "W_NO_HOST",         "The program that sent the drawing is not there any more, or does not take the page."},
    {OwnText::NoDestination,  "W_NO_DESTINATION",  "There is no such destination or format."},
    {OwnText::PageForHost,    "W_PAGE_FOR_HOST",   "the page for the program that sent the drawing"},
    {OwnText::EmptyPage,      "W_EMPTY_PAGE",      "%1: the drawing is empty, the page is white"},
    {OwnText::Drawing,        "W_DRAWING",         "Drawing"},
    {OwnText::Back,           "W_BACK",            "&Back"},
    {OwnText::Contents,       "W_CONTENTS",        "&Contents"},
    {OwnText::Close,          "W_CLOSE",           "C&lose"},
    {OwnText::GiveUp,         "W_GIVE_UP",         "&Give up"},
    {OwnText::ProductTitle,   "W_PRODUCT_TITLE",   "Product Information"},
    {OwnText::ProductPurpose, "W_PRODUCT_PURPOSE", "Shows plotter drawings written in HP\u2011GL and HP\u2011GL/2."},
    {OwnText::ProductVersion, "W_PRODUCT_VERSION", "Version %1"},
    {OwnText::ProductLicence, "W_PRODUCT_LICENCE", "Free software under the MIT licence, without any warranty."},
    {OwnText::PrintTitle,     "W_PRINT_TITLE",     "Print"},
    {OwnText::PrintPaper,     "W_PRINT_PAPER",     "P&aper:"},
    {OwnText::PrintFit,       "W_PRINT_FIT",       "Fit to the drawing"},
    {OwnText::PrintDirection, "W_PRINT_DIRECTION", "Orientation:"},
    {OwnText::PrintLandscape, "W_PRINT_LANDSCAPE", "&Landscape"},
    {OwnText::PrintPortrait,  "W_PRINT_PORTRAIT",  "Po&rtrait"},
    {OwnText::PrintTo,        "W_PRINT_TO",        "Print to:"},
    {OwnText::PrintToPaper,   "W_PRINT_TO_PAPER",  "Pr&inter"},
    {OwnText::PrintToFile,    "W_PRINT_TO_FILE",   "&File"},
    {OwnText::PrintToHost,    "W_PRINT_TO_HOST",   "The program that &sent the drawing"},
    {OwnText::PrintPrinter,   "W_PRINT_PRINTER",   "Prin&ter:"},
    {OwnText::PrintFormat,    "W_PRINT_FORMAT",    "F&ormat:"},
    {OwnText::PrintDpi,       "W_PRINT_DPI",       "R&esolution:"},
    {OwnText::PrintFileName,  "W_PRINT_FILE_NAME", "File &name:"},
    {OwnText::PrintChoose,    "W_PRINT_CHOOSE",    "C&hoose..."},
    {OwnText::PrintNow,       "W_PRINT_NOW",       "&Print"},
    {OwnText::PrintCancel,    "W_PRINT_CANCEL",    "&Cancel"},
    {OwnText::PrintPixels,    "W_PRINT_PIXELS",    "%1 \u00d7 %2 pixels"},
    {OwnText::PrintLongSide,  "W_PRINT_LONG_SIDE", "%1 pixels, the longer side"},
    {OwnText::NoPrinter,      "W_NO_PRINTER",      "No printer is set up on this computer. Choose another destination."},
    {OwnText::PrintNoName,    "W_PRINT_NO_NAME",   "The file needs a name."},
    {OwnText::PrintTooFine,   "W_PRINT_TOO_FINE",  "These are too many pixels. Choose a lower resolution or another paper."},
    {OwnText::PrintNoFolder,  "W_PRINT_NO_FOLDER", "There is no folder %1"},
    {OwnText::PrintIsFolder,  "W_PRINT_IS_FOLDER", "%1 is a folder"},
    {OwnText::PrintExists,    "W_PRINT_EXISTS",    "%1 exists. Replace it?"},
    {OwnText::PrintPreview,   "W_PRINT_PREVIEW",   "Preview"},
    {OwnText::PrintPreparing, "W_PRINT_PREPARING", "The preview is on its way"},
    {OwnText::Replace,        "W_REPLACE",         "&Replace"},
    {OwnText::OpenFile,       "W_OPEN_FILE",       "&Open..."},
    {OwnText::RecentFiles,    "W_RECENT_FILES",    "Open r&ecent"},
    {OwnText::ReadAgain,      "W_READ_AGAIN",      "Read a&gain"},
    {OwnText::FileBefore,     "W_FILE_BEFORE",     "Previous f&ile"},
    {OwnText::FileAfter,      "W_FILE_AFTER",      "Next &file"},
    {OwnText::PageBefore,     "W_PAGE_BEFORE",     "Pre&vious page"},
    {OwnText::PageAfter,      "W_PAGE_AFTER",      "&Next page"},
    {OwnText::NextView,       "W_NEXT_VIEW",       "Ne&xt zoom"},
    {OwnText::FullScreen,     "W_FULL_SCREEN",     "F&ull screen"},
    {OwnText::CopyPicture,    "W_COPY_PICTURE",    "Cop&y as picture"},
    {OwnText::DropHere,       "W_DROP_HERE",       "Drop a plot file here, or press %1"},
};
// clang-format on

constexpr bool isInOrder() {
    for (std::size_t i = 0; i < std::size(ROWS); ++i) {
        if (static_cast<std::size_t>(ROWS[i].text) != i) return false;
    }
    return true;
}
static_assert(isInOrder());

}  // namespace

QString ownText(OwnText text) {
    const Row& row = ROWS[static_cast<std::size_t>(text)];
    const Application* app = application();
    const QByteArray own = app != nullptr ? app->language.texts.value(row.key) : QByteArray();
    return QString::fromUtf8(own.isEmpty() ? QByteArray(row.english) : own);
}

}  // namespace qrvel
