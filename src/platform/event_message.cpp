#include "platform/event_message.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <cmath>

namespace {

// Buttons beyond the third; the viewer knows them only as part of the mouse messages' range.
constexpr UINT SIDE_BUTTON_DOWN = 0x020B;
constexpr UINT SIDE_BUTTON_UP = 0x020C;
constexpr UINT SIDE_BUTTON_DOUBLE_CLICK = 0x020D;
constexpr UINT RIGHT_DOUBLE_CLICK = 0x0206;
constexpr UINT MIDDLE_DOUBLE_CLICK = 0x0209;

// ---- keys -----------------------------------------------------------------------------------------------------------

struct VirtualKey {
    int key;
    WPARAM code;
};

// clang-format off
constexpr VirtualKey VIRTUAL_KEYS[] = {
    {Qt::Key_Backspace, 0x08}, {Qt::Key_Tab,      0x09}, {Qt::Key_Backtab,    0x09}, {Qt::Key_Clear,  0x0C},
    {Qt::Key_Return,    0x0D}, {Qt::Key_Enter,    0x0D}, {Qt::Key_Shift,      0x10}, {Qt::Key_Control,0x11},
    {Qt::Key_Alt,       0x12}, {Qt::Key_AltGr,    0x12}, {Qt::Key_Pause,      0x13}, {Qt::Key_CapsLock,0x14},
    {Qt::Key_Escape,    0x1B}, {Qt::Key_Space,    0x20}, {Qt::Key_PageUp,     0x21}, {Qt::Key_PageDown,0x22},
    {Qt::Key_End,       0x23}, {Qt::Key_Home,     0x24}, {Qt::Key_Left,       0x25}, {Qt::Key_Up,     0x26},
    {Qt::Key_Right,     0x27}, {Qt::Key_Down,     0x28}, {Qt::Key_Print,      0x2C}, {Qt::Key_Insert, 0x2D},
    {Qt::Key_Delete,    0x2E}, {Qt::Key_Help,     0x2F}, {Qt::Key_Menu,       0x5D}, {Qt::Key_NumLock,0x90},
    {Qt::Key_ScrollLock,0x91}, {Qt::Key_Plus,     0xBB}, {Qt::Key_Comma,      0xBC}, {Qt::Key_Minus,  0xBD},
    {Qt::Key_Period,    0xBE},
};
// clang-format on

WPARAM virtualKey(int key) {
    if ((key >= Qt::Key_0 && key <= Qt::Key_9) || (key >= Qt::Key_A && key <= Qt::Key_Z)) {
        return static_cast<WPARAM>(key);
    }
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24) return static_cast<WPARAM>(0x70 + key - Qt::Key_F1);
    for (const VirtualKey& row : VIRTUAL_KEYS) {
        if (row.key == key) return row.code;
    }
    return 0;
}

bool isWithAlt(const QKeyEvent& key) {
    return key.key() == Qt::Key_Alt || (key.modifiers() & (Qt::AltModifier | Qt::ControlModifier)) == Qt::AltModifier;
}

UINT keyMessage(const QKeyEvent& key) {
    const bool down = key.type() == QEvent::KeyPress;
    if (isWithAlt(key)) return down ? WM_SYSKEYDOWN : WM_SYSKEYUP;
    return down ? WM_KEYDOWN : WM_KEYUP;
}

void describeKey(MSG& message, const QKeyEvent& key) {
    constexpr LPARAM heldBefore = LPARAM{1} << 30;
    message.message = keyMessage(key);
    message.wParam = virtualKey(key.key());
    message.lParam = 1 | (key.isAutoRepeat() ? heldBefore : 0);
}

// ---- mouse ----------------------------------------------------------------------------------------------------------

struct ButtonMessages {
    UINT down, up, doubleClick;
};

ButtonMessages messagesOf(Qt::MouseButton button) {
    switch (button) {
        case Qt::LeftButton:
            return {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK};
        case Qt::RightButton:
            return {WM_RBUTTONDOWN, WM_RBUTTONUP, RIGHT_DOUBLE_CLICK};
        case Qt::MiddleButton:
            return {WM_MBUTTONDOWN, WM_MBUTTONUP, MIDDLE_DOUBLE_CLICK};
        default:
            return {SIDE_BUTTON_DOWN, SIDE_BUTTON_UP, SIDE_BUTTON_DOUBLE_CLICK};
    }
}

UINT mouseMessage(const QMouseEvent& mouse) {
    const ButtonMessages messages = messagesOf(mouse.button());
    switch (mouse.type()) {
        case QEvent::MouseButtonPress:
            return messages.down;
        case QEvent::MouseButtonRelease:
            return messages.up;
        case QEvent::MouseButtonDblClick:
            return messages.doubleClick;
        default:
            return WM_MOUSEMOVE;
    }
}

// What is held down during a mouse message, as Windows numbers it.
WPARAM heldDown(const QSinglePointEvent& event) {
    const Qt::MouseButtons buttons = event.buttons();
    const Qt::KeyboardModifiers modifiers = event.modifiers();
    WPARAM held = 0;
    if (buttons & Qt::LeftButton) held |= 0x01;
    if (buttons & Qt::RightButton) held |= 0x02;
    if (modifiers & Qt::ShiftModifier) held |= 0x04;
    if (modifiers & Qt::ControlModifier) held |= 0x08;
    if (buttons & Qt::MiddleButton) held |= 0x10;
    return held;
}

// Two 16-bit halves in one parameter.
uintptr_t packed(int low, int high) {
    return static_cast<uint16_t>(low) | static_cast<uintptr_t>(static_cast<uint16_t>(high)) << 16;
}

void describePoint(MSG& message, const QSinglePointEvent& event) {
    const QPoint position = event.position().toPoint();
    const QPoint onScreen = event.globalPosition().toPoint();
    message.wParam = heldDown(event);
    message.lParam = static_cast<LPARAM>(packed(position.x(), position.y()));
    message.pt = {onScreen.x(), onScreen.y()};
}

void describeWheel(MSG& message, const QWheelEvent& wheel) {
    const QPoint turned = wheel.angleDelta();
    const bool sideways = std::abs(turned.x()) > std::abs(turned.y());
    describePoint(message, wheel);
    message.message = sideways ? WM_MOUSEHWHEEL : WM_MOUSEWHEEL;
    message.wParam |= packed(0, sideways ? turned.x() : turned.y());
    message.lParam = static_cast<LPARAM>(packed(message.pt.x, message.pt.y));  // Windows': on the screen
}

bool isKey(const QEvent& event) {
    return event.type() == QEvent::KeyPress || event.type() == QEvent::KeyRelease;
}

bool isMouse(const QEvent& event) {
    return event.type() == QEvent::MouseButtonPress || event.type() == QEvent::MouseButtonRelease ||
           event.type() == QEvent::MouseButtonDblClick || event.type() == QEvent::MouseMove;
}

}  // namespace

bool isInputEvent(const QEvent& event) {
    return isKey(event) || isMouse(event) || event.type() == QEvent::Wheel;
}

MSG messageOf(const QEvent& event, HWND window) {
    MSG message{};
    message.hwnd = window;
    message.time = static_cast<DWORD>(static_cast<const QInputEvent&>(event).timestamp());
    if (isKey(event)) {
        describeKey(message, static_cast<const QKeyEvent&>(event));
    } else if (isMouse(event)) {
        describePoint(message, static_cast<const QMouseEvent&>(event));
        message.message = mouseMessage(static_cast<const QMouseEvent&>(event));
    } else {
        describeWheel(message, static_cast<const QWheelEvent&>(event));
    }
    return message;
}

MSG characterOf(const QEvent& event, const MSG& keyMessage) {
    MSG message = keyMessage;
    message.message = WM_NULL;
    if (event.type() != QEvent::KeyPress) return message;
    const QString text = static_cast<const QKeyEvent&>(event).text();
    if (text.isEmpty()) return message;
    message.message = keyMessage.message == WM_SYSKEYDOWN ? WM_SYSCHAR : WM_CHAR;
    message.wParam = text.front().unicode();
    return message;
}
