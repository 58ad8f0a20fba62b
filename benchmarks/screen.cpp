#include "screen.h"

#include <QApplication>
#include <QWidget>

#include "platform/arguments.h"
#include "render/interpreter.h"
#include "shell/drawing_window.h"
#include "shell/picture_setup.h"
#include "shell/shell_state.h"
#include "toolkit/cont.h"
#include "toolkit/out.h"
#include "toolkit/shl.h"
#include "toolkit/wi.h"

namespace {

constexpr int FRAME = 200;  // pixels that the shell is larger on each axis

void ignoreMessage(WHandle /*object*/, uint32_t /*message*/, uint32_t /*first*/, uint32_t /*second*/) {}

void createWindows(int width, int height) {
    static const char* const arguments[] = {"bench", nullptr};
    setPlatformArguments(1, arguments);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    WHandle container = 0;
    const WHandle app = WIinitialise(0, nullptr, 0);
    const WHandle windowClass = Wregisterclass(app, ignoreMessage);
    const WHandle object = Wcreateobject(app, windowClass, 0, 1);
    const WHandle shell = SHLcreate(app, &container, "", 0, 0);
    CONTstdcreate(container, windowClass, 0, 0, 0, 0);
    TheShell.display.Window = Wcreatechild(app, container);
    TheShell.display.Application = app;
    TheShell.display.FontOwner = object;
    TheShell.object = object;
    SHLsetpos(shell, 0, 0, width + FRAME, height + FRAME, SHL_SHOW);
    Wsetwinpos(TheShell.display.Window, 0, 0, width, height);
}

QWidget* widgetOfSize(int width, int height) {
    for (QWidget* widget : QApplication::allWidgets()) {
        if (widget->size() == QSize(width, height)) return widget;
    }
    return nullptr;
}

}  // namespace

Screen::Screen(int width, int height) : width_(width), height_(height) {
    HPGLsetCoordLimits(&TheShell.display);
    createWindows(width, height);
    widget_ = widgetOfSize(width, height);
}

void Screen::show(const Picture& picture) {
    parser_ = picture.get();
    HPGLsetupPicture(parser_, &TheShell.display, 1);
    HPGLqueryDeviceSize(&TheShell.display, &TheShell.display.DSizeX, &TheShell.display.DSizeY);
    const HPGLGlobal* global = parser_->global;
    view(global->MinX, global->MinY, global->MaxX, global->MaxY);
}

void Screen::view(int32_t minX, int32_t minY, int32_t maxX, int32_t maxY) {
    HPGLsetScaling(&TheShell.display, minX, minY, maxX, maxY);
}

void Screen::paint() {
    OUTreset(TheShell.display.Window);
    HPGLinterpretCompactCode(parser_, &TheShell.display, 1);
    OUTendpaint(TheShell.display.Window);
}

QImage Screen::painted() {
    OUTreset(TheShell.display.Window);
    OUTfillcolour(TheShell.display.Window, 0);
    OUTboxr2(TheShell.display.Window, 0, 0, width_, height_);
    paint();
    if (widget_ == nullptr) return {};
    return widget_->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

QImage Screen::empty() const {
    QImage image(width_, height_, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}
