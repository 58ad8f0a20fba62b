// Window classes, windows and metrics, as the trace window uses them.
#include <QGuiApplication>
#include <QScreen>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/class_window.h"
#include "platform/short_coordinate.h"
#include "platform/windows.h"
#include "platform/x11_notify.h"

namespace {

// Of a window that is not shown yet, pixels.
struct FrameSizes {
    int borderWidth;
    int borderHeight;
    int captionHeight;
};

// The frame is the window manager's own affair; usual sizes stand for one that says nothing.
FrameSizes askForFrameSizes() {
    const bool onX11 = QGuiApplication::instance() != nullptr && QGuiApplication::platformName() == "xcb";
    const std::optional<x11::WindowFrame> frame = onX11 ? x11::windowFrame() : std::nullopt;
    if (!frame) return {.borderWidth = 4, .borderHeight = 4, .captionHeight = 24};
    const double ratio = QGuiApplication::primaryScreen()->devicePixelRatio();
    const auto pixels = [ratio](int native) { return qRound(native / ratio); };
    return {.borderWidth = pixels((frame->left + frame->right) / 2),
            .borderHeight = pixels(frame->bottom),
            .captionHeight = pixels(frame->top) - pixels(frame->bottom)};
}

const FrameSizes& frameSizes() {
    static const FrameSizes sizes = askForFrameSizes();
    return sizes;
}

struct RegisteredClass {
    WNDCLASSA description{};
    std::string menuName;
    ATOM atom = 0;
};

constexpr ATOM FIRST_ATOM = 0xC000;

std::map<std::string, RegisteredClass>& classes() {
    static std::map<std::string, RegisteredClass> registered;
    return registered;
}

const RegisteredClass* findClass(LPCSTR name) {
    const auto found = name != nullptr ? classes().find(name) : classes().end();
    return found != classes().end() ? &found->second : nullptr;
}

// Position and size are those with the frame; a widget wants its inside's size, and none is larger than the screen.
void place(ClassWindow& window, int x, int y, int width, int height) {
    const FrameSizes& frame = frameSizes();
    window.move(shortCoordinate(x), shortCoordinate(y));
    const QSize inside(shortCoordinate(width) - 2 * frame.borderWidth,
                       shortCoordinate(height) - 2 * frame.borderHeight - frame.captionHeight);
    window.resize(inside.boundedTo(QGuiApplication::primaryScreen()->size()));
}

}  // namespace

BOOL GetClassInfoA(HINSTANCE /*instance*/, LPCSTR name, WNDCLASSA* info) {
    const RegisteredClass* found = findClass(name);
    if (found == nullptr) return 0;
    *info = found->description;
    return 1;
}

ATOM RegisterClassA(const WNDCLASSA* windowClass) {
    if (windowClass->lpfnWndProc == nullptr || windowClass->lpszClassName == nullptr) return 0;
    const auto [place, isNew] = classes().try_emplace(windowClass->lpszClassName);
    if (!isNew) return 0;
    RegisteredClass& registered = place->second;
    registered.description = *windowClass;
    registered.description.lpszClassName = place->first.c_str();
    if (windowClass->lpszMenuName != nullptr) {
        registered.menuName = windowClass->lpszMenuName;
        registered.description.lpszMenuName = registered.menuName.c_str();
    }
    registered.atom = static_cast<ATOM>(FIRST_ATOM + classes().size() - 1);
    return registered.atom;
}

// A widget has the arrow by itself; the handle only says that it was found.
HCURSOR LoadCursorA(HINSTANCE /*instance*/, LPCSTR name) {
    return name == IDC_ARROW ? reinterpret_cast<HCURSOR>(const_cast<char*>(name)) : nullptr;
}

HWND CreateWindowExA(DWORD /*extended*/, LPCSTR className, LPCSTR title, DWORD /*style*/, int x, int y, int width,
                     int height, HWND /*parent*/, HMENU /*menu*/, HINSTANCE /*instance*/, void* /*parameter*/) {
    const RegisteredClass* found = findClass(className);
    if (found == nullptr || QGuiApplication::instance() == nullptr) return nullptr;
    auto window = std::make_unique<ClassWindow>(found->description.lpfnWndProc, found->description.cbWndExtra);
    window->setWindowTitle(QString::fromUtf8(title));
    place(*window, x, y, width, height);
    return window.release()->handle();  // goes when it has been closed
}

BOOL ShowWindow(HWND window, int command) {
    ClassWindow* shown = ClassWindow::find(window);
    if (shown == nullptr) return 0;
    const bool wasVisible = shown->isVisible();
    shown->setAttribute(Qt::WA_ShowWithoutActivating, command == SW_SHOWNOACTIVATE);
    shown->show();
    return wasVisible ? 1 : 0;
}

WORD SetWindowWord(HWND window, int index, WORD value) {
    ClassWindow* changed = ClassWindow::find(window);
    return changed != nullptr ? changed->setWord(index, value) : WORD{0};
}

// The widget has done by itself what a window does by default.
LRESULT DefWindowProcA(HWND /*window*/, UINT /*message*/, WPARAM /*wParam*/, LPARAM /*lParam*/) {
    return 0;
}

int GetSystemMetrics(int index) {
    switch (index) {
        case SM_CYSCREEN:
            return QGuiApplication::instance() != nullptr ? QGuiApplication::primaryScreen()->geometry().height() : 0;
        case SM_CYCAPTION:
            return frameSizes().captionHeight;
        case SM_CXFRAME:
            return frameSizes().borderWidth;
        case SM_CYFRAME:
            return frameSizes().borderHeight;
        default:
            return 0;
    }
}
