#include "qrvel/window/shell.h"

#include <QCloseEvent>
#include <QDropEvent>
#include <QFile>
#include <QLayout>
#include <QMimeData>
#include <QUrl>

#include "platform/message_pump.h"
#include "qrvel/base/application.h"
#include "qrvel/base/notices.h"
#include "qrvel/base/own_texts.h"
#include "qrvel/channel/data_channel.h"
#include "qrvel/output/child.h"
#include "toolkit/cont.h"
#include "toolkit/shl.h"

namespace qrvel {

namespace {

// Of the drawing, logical pixels; below, nothing can be seen. The bars want more width.
constexpr int LEAST_WIDTH = 200;
constexpr int LEAST_HEIGHT = 120;

// Paper is white, whatever colours the desktop likes.
void paintWhite(QWidget& widget, bool on) {
    QPalette palette = widget.palette();
    palette.setColor(QPalette::Window, Qt::white);
    widget.setPalette(palette);
    widget.setAutoFillBackground(on);
}

// Gives the window such a size that its inside is as large as the picture asked for.
void fitPicture(ShellWindow& window, QWidget& inside, const Options& options) {
    inside.setFixedSize(options.pictureWidth, options.pictureHeight);
    window.resize(window.sizeHint());
}

QByteArrayList localFiles(const QDropEvent& event) {
    QByteArrayList files;
    for (const QUrl& url : event.mimeData()->urls()) {
        if (url.isLocalFile()) files += QFile::encodeName(url.toLocalFile());
    }
    return files;
}

// Whatever was proposed: a file that was moved to the viewer would be gone.
void acceptCopy(QDropEvent& event) {
    event.setDropAction(Qt::CopyAction);
    event.accept();
}

void postSizeAndPaint(const Container& container) {
    postSizeOfContainer(container.handle);
    const auto* child =
        handles().findFirst<Child>([&](const Child& candidate) { return candidate.container == container.handle; });
    if (child != nullptr) application()->messages.postPaint(child->handle);
}

}  // namespace

ShellWindow::ShellWindow(const QString& title) : title_(title) {
    setWindowTitle(title);
    setAcceptDrops(true);
}

void ShellWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    quitApplication();
}

void ShellWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (!localFiles(*event).isEmpty()) acceptCopy(*event);
}

void ShellWindow::dropEvent(QDropEvent* event) {
    acceptCopy(*event);
    DataChannel* channel = findDataChannel();
    if (channel == nullptr) return;
    for (const QByteArray& file : localFiles(*event)) {
        channel->open(file);
    }
}

ContainerWidget::ContainerWidget(QWidget* parent, WHandle handle) : QWidget(parent), handle_(handle) {
    setMinimumSize(LEAST_WIDTH, LEAST_HEIGHT);
}

void ContainerWidget::resizeEvent(QResizeEvent* /*event*/) {
    postSizeOfContainer(handle_);
}

void showTitle(const ShownPicture& picture) {
    QStringList parts;
    if (!picture.file.isEmpty()) parts << QFileInfo(QString::fromLocal8Bit(picture.file)).fileName();
    if (picture.page.of > 1) parts << ownText(OwnText::PageOf).arg(picture.page.number).arg(picture.page.of);
    handles().forEach<Shell>([&](const Shell& shell) {
        if (shell.window == nullptr) return;
        shell.window->setWindowTitle((parts + QStringList(shell.window->title())).join(" \u2013 "));
    });
}

}  // namespace qrvel

using namespace qrvel;

WHandle SHLcreate(WHandle app, WHandle* container, const char* title, uint32_t /*kind*/, uint32_t /*flags*/) {
    auto* found = handles().find<Application>(app, __func__);
    if (found == nullptr) return 0;
    auto* shell = handles().make<Shell>();
    auto* inside = handles().make<Container>();
    if (shell == nullptr || inside == nullptr) return 0;
    shell->window = new ShellWindow(QString::fromUtf8(title));
    setNoticeWindow(shell->window);
    inside->widget = new ContainerWidget(shell->window, inside->handle);
    shell->window->setCentralWidget(inside->widget);
    shell->container = inside->handle;
    *container = inside->handle;
    // Whether it is set decides on the accelerator table; nothing looks behind it.
    found->variables.mdiClient = inside->widget;
    return shell->handle;
}

void SHLdestroy(WHandle shell) {
    if (handles().find<Shell>(shell, __func__) == nullptr) return;
    if (Application* app = application()) app->variables.mainWindow = app->variables.mdiClient = nullptr;
    handles().destroy<Shell>(shell, __func__);
}

int32_t SHLsetpos(WHandle shell, int32_t x, int32_t y, int32_t width, int32_t height, uint32_t flags) {
    const auto* found = handles().find<Shell>(shell, __func__);
    if (found == nullptr || found->window == nullptr || application() == nullptr) return 0;
    const auto* container = handles().find<Container>(found->container);
    if (application()->options.picture.isEmpty()) {
        found->window->resize(width, height);
    } else if (container != nullptr) {
        fitPicture(*found->window, *container->widget, application()->options);
    }
    found->window->move(x, y);
    if ((flags & SHL_SHOW) == 0) return 1;
    found->window->show();
    // Not before: a window that is native already is moved without its frame.
    application()->variables.mainWindow = pump::handleOf(found->window->winId());
    if (container != nullptr) postSizeAndPaint(*container);
    return 1;
}

WHandle SHLquerywid(WHandle shell, uint32_t part) {
    if (handles().find<Shell>(shell, __func__) == nullptr || (part != SHL_HELP_LINE && part != SHL_ACTION_BAR))
        return 0;
    const auto* known = handles().findFirst<ShellPart>(
        [&](const ShellPart& candidate) { return candidate.shell == shell && candidate.part == part; });
    if (known == nullptr) known = handles().make<ShellPart>(shell, part);
    return known != nullptr ? known->handle : 0;
}

int32_t SHLupdatesizes(WHandle shell) {
    const auto* found = handles().find<Shell>(shell, __func__);
    if (found == nullptr || found->window == nullptr) return 0;
    found->window->layout()->activate();
    return 1;
}

int32_t CONTstdcreate(WHandle container, WHandle windowClass, uint32_t /*a*/, uint32_t /*b*/, uint32_t /*c*/,
                      uint32_t /*d*/) {
    auto* found = handles().find<Container>(container, __func__);
    if (found == nullptr || handles().find<WindowClass>(windowClass, __func__) == nullptr) return 0;
    found->windowClass = windowClass;
    return 1;
}

int32_t CONTdrawbackground(WHandle container, uint32_t on) {
    const auto* found = handles().find<Container>(container, __func__);
    if (found == nullptr || found->widget == nullptr) return 0;
    paintWhite(*found->widget, on != 0);
    return 1;
}

void CONTdestroy(WHandle container) {
    handles().destroy<Container>(container, __func__);
}
