#include "qrvel/window/print_setup.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <algorithm>
#include <cstring>
#include <utility>

#include "qrvel/base/application.h"
#include "qrvel/base/own_texts.h"
#include "qrvel/base/toolkit_trace.h"
#include "qrvel/channel/data_channel.h"
#include "qrvel/page/page.h"
#include "qrvel/page/page_image.h"
#include "qrvel/page/placement.h"
#include "qrvel/window/child_widget.h"
#include "qrvel/window/shell.h"
#include "toolkit/pssetup.h"

namespace qrvel {

namespace {

// The panel counts its choices from 0; what OUTopendevice takes begins at 1, and 0 is the format of a printer.
constexpr uint32_t PANEL_OFFSET = 1;

// A preview is drawn so many times as fine, and made smaller: a line is thinner than its pixels.
constexpr int FINER = 2;

uint32_t panelNumber(Destination destination) {
    return static_cast<uint32_t>(destination) - PANEL_OFFSET;
}

uint32_t panelNumber(PageFormat format) {
    return format == PageFormat::None ? 0 : static_cast<uint32_t>(format) - PANEL_OFFSET;
}

// A name is never cut: the file of a cut one would be another file.
int32_t copyName(const QByteArray& name, uint32_t* size, char* buffer) {
    if (size == nullptr || buffer == nullptr) return 0;
    const QByteArray handed = name.size() > qsizetype{*size} ? QByteArray(CHOSEN_FILE) : name;
    if (handed.size() > qsizetype{*size}) return 0;
    std::memcpy(buffer, handed.constData(), static_cast<std::size_t>(handed.size()) + 1);
    *size = static_cast<uint32_t>(handed.size());
    return 1;
}

int32_t setNumber(uint32_t* value, uint32_t number) {
    if (value == nullptr) return 0;
    *value = number;
    return 1;
}

PrintSetup* findPrintSetup() {
    return handles().findFirst<PrintSetup>([](const PrintSetup&) { return true; });
}

void notify(const PrintSetup& setup, uint32_t notification) {
    postAction(objectOfContainer(setup.container), W_ACTION_PRINT_SETUP, notification);
}

// A file gets the drawing's name, and lies beside it.
QByteArray suggestedName(const DataChannel* channel) {
    const QByteArray source = channel != nullptr ? channel->pictureName() : QByteArray();
    if (!source.isEmpty()) return QFile::encodeName(QFileInfo(QFile::decodeName(source)).absoluteFilePath());
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString folder = QFileInfo(documents).isDir() ? documents : QDir::homePath();
    return QFile::encodeName(folder + '/' + ownText(OwnText::Drawing));
}

// Once, for the picture that is seen: the panel goes at once, and a picture that is coming in is waited for.
void print(PrintSetup& setup) {
    setup.panel->hide();
    application()->printChoice = setup.panel->choice();
    setup.printIsDue = true;
    application()->messages.workIsDue();
}

PrintPanel* makePanel(PrintSetup& setup, QWidget* window) {
    auto* known = &setup;
    auto* panel = new PrintPanel(window, {.printed = [known] { print(*known); },
                                          .cancelled = [known] { notify(*known, PSSETUP_CANCELLED); },
                                          .sheetChanged = printPreviewIsStale});
    // Whoever owns the set-up disconnects this before it takes the panel away itself.
    QObject::connect(panel, &QObject::destroyed, [known] { notify(*known, PSSETUP_GONE); });
    return panel;
}

// The view on a page instead of the surface, as far as the viewer can tell. It gives both back as they were.
void drawOn(Page& page, const Child& child) {
    handles().find<Child>(child.handle)->page = &page;
    sendSizeOfContainer(child.container);
    ToolkitMessages::send(child.handle, W_MSG_PAINT);
    if (auto* still = handles().find<Child>(child.handle)) still->page = nullptr;
    sendSizeOfContainer(child.container);
}

double scaleToFit(const QSizeF& paper, QSize room) {
    return std::min(room.width() / paper.width(), room.height() / paper.height());
}

void refreshPreview(PrintSetup& setup) {
    const auto* child = handles().findFirst<Child>([](const Child&) { return true; });
    if (child == nullptr) return;
    const PrintChoice choice = setup.panel->choice();
    Page page(layOut(choice.paper, choice.landscape));
    drawOn(page, *child);
    const Placement placement = place(page.recording().bounds(), page.sheet());
    const double scale = scaleToFit(placement.paper, setup.panel->previewSize());
    const QImage fine = drawImage(page.recording(), page.sheet(), scale * FINER);
    setup.panel->showPreview(fine.scaled(fine.size() / FINER, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

}  // namespace

PrintSetup::~PrintSetup() {
    if (panel == nullptr) return;
    panel->disconnect();
    delete panel;
}

void printPreviewIsStale() {
    PrintSetup* setup = findPrintSetup();
    if (setup == nullptr || setup->panel == nullptr || !setup->panel->isVisible()) return;
    setup->previewIsStale = true;
    application()->messages.workIsDue();
}

void servePrintSetup() {
    PrintSetup* setup = findPrintSetup();
    if (setup == nullptr || setup->panel == nullptr) return;
    if (std::exchange(setup->printIsDue, false)) notify(*setup, PSSETUP_PRINT);
    if (std::exchange(setup->previewIsStale, false)) refreshPreview(*setup);
}

}  // namespace qrvel

using namespace qrvel;

WHandle PSSETUPcreate(WHandle container, WHandle shell, uint32_t /*a*/, uint32_t /*b*/, uint32_t /*c*/,
                      uint32_t /*d*/) {
    if (handles().find<Shell>(shell, __func__) == nullptr) return 0;
    auto* made = handles().make<PrintSetup>();
    if (made == nullptr) return 0;
    made->shell = shell;
    made->container = container;
    return made->handle;
}

void PSSETUPdestroy(WHandle setup) {
    handles().destroy<PrintSetup>(setup, __func__);
}

int32_t PSSETUPshow(WHandle setup) {
    auto* found = handles().find<PrintSetup>(setup, __func__);
    if (found == nullptr) return 0;
    const auto* shell = handles().find<Shell>(found->shell, __func__);
    if (shell == nullptr || shell->window == nullptr) return 0;
    if (found->panel == nullptr) found->panel = makePanel(*found, shell->window);
    const DataChannel* channel = findDataChannel();
    found->panel->setHostAvailable(channel != nullptr && channel->takesPages());
    found->panel->suggestFileName(suggestedName(channel));
    found->panel->show();
    found->panel->raise();
    found->panel->activateWindow();
    printPreviewIsStale();
    return 1;
}

int32_t PSSETUPhide(WHandle setup) {
    const auto* found = handles().find<PrintSetup>(setup, __func__);
    if (found == nullptr) return 0;
    if (found->panel != nullptr) found->panel->hide();
    return 1;
}

int32_t PSSETUPqueryValue(WHandle setup, uint32_t number, uint32_t* value, char* buffer) {
    const auto* found = handles().find<PrintSetup>(setup, __func__);
    if (found == nullptr) return 0;
    const PrintChoice choice = application() != nullptr ? application()->printChoice : PrintChoice{};
    switch (number) {
        case PSSETUP_DESTINATION:
            return setNumber(value, panelNumber(choice.destination));
        case PSSETUP_FORMAT:
            return setNumber(value, panelNumber(choice.format));
        case PSSETUP_NAME:
            return copyName(choice.name(), value, buffer);
        default:
            traceLine("%s: there is no value %u\n", __func__, number);
            return 0;
    }
}

int32_t PSSETUPtransDestAndFormatValues(uint32_t* destination, uint32_t* format) {
    if (destination == nullptr || format == nullptr) return 0;
    *destination += PANEL_OFFSET;
    const bool printer = *destination == static_cast<uint32_t>(Destination::Printer);
    *format = printer ? static_cast<uint32_t>(PageFormat::None) : *format + PANEL_OFFSET;
    return 1;
}
