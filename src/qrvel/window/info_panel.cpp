#include "qrvel/window/info_panel.h"

#include <QCoreApplication>
#include <QPushButton>

#include "qrvel/base/application.h"
#include "qrvel/base/objects.h"
#include "qrvel/base/own_texts.h"
#include "qrvel/window/child_widget.h"
#include "qrvel/window/help_line.h"
#include "qrvel/window/shell.h"
#include "toolkit/info.h"

namespace qrvel {

namespace {

constexpr int ICON_SIZE = 64;  // logical pixels

QMessageBox* makeBox(ShellWindow& window) {
    auto* box = new QMessageBox(&window);
    box->setWindowTitle(ownText(OwnText::ProductTitle));
    box->setIconPixmap(QApplication::windowIcon().pixmap(QSize(ICON_SIZE, ICON_SIZE), window.devicePixelRatioF()));
    box->setTextFormat(Qt::PlainText);
    box->setText(window.title() + "\n" + ownText(OwnText::ProductVersion).arg(QCoreApplication::applicationVersion()));
    box->setInformativeText(ownText(OwnText::ProductPurpose) + "\n\n" + ownText(OwnText::ProductLicence));
    box->addButton(QMessageBox::Close)->setText(ownText(OwnText::Close));
    box->setEscapeButton(QMessageBox::Close);
    box->setModal(false);
    takeHelpKey(*box);
    return box;
}

void bringToFront(QMessageBox& box) {
    box.setWindowState(box.windowState() & ~Qt::WindowMinimized);
    box.show();
    box.raise();
    box.activateWindow();
}

}  // namespace

}  // namespace qrvel

using namespace qrvel;

WHandle INFOcreate(WHandle container, WHandle shell, uint32_t a, uint32_t b, uint32_t /*c*/, uint32_t /*d*/) {
    const auto* inside = handles().find<Container>(container, __func__);
    const auto* of = handles().find<Shell>(shell, __func__);
    if (inside == nullptr || of == nullptr || of->window == nullptr) return 0;
    auto* panel = handles().findFirst<InfoPanel>([](const InfoPanel&) { return true; });
    if (panel == nullptr) {
        panel = handles().make<InfoPanel>();
        if (panel == nullptr) return 0;
        panel->box = makeBox(*of->window);
        QObject::connect(
            panel->box, &QDialog::finished, panel->box,
            [object = objectOfContainer(container), kind = a, parameter = b] { postAction(object, kind, parameter); });
    }
    bringToFront(*panel->box);
    return panel->handle;
}

void INFOdestroy(WHandle info) {
    handles().destroy<InfoPanel>(info, __func__);
}
