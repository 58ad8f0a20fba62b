// The calls of the main loop.
#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>
#include <cstdint>
#include <cstdio>

#include "platform/class_window.h"
#include "platform/message_pump.h"
#include "platform/message_queue.h"
#include "platform/x11_notify.h"

namespace {

const QKeyEvent* currentKeyPress() {
    const QEvent* event = MessageQueue::instance().currentEvent();
    return event != nullptr && event->type() == QEvent::KeyPress ? static_cast<const QKeyEvent*>(event) : nullptr;
}

const pump::Accelerator* findAccelerator(const pump::AcceleratorTable& table, const QKeyEvent& key) {
    const auto modifiers = static_cast<int>((key.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier)).toInt());
    for (int i = 0; i < table.count; i++) {
        if (table.rows[i].key == key.key() && table.rows[i].modifiers == modifiers) return &table.rows[i];
    }
    return nullptr;
}

bool isOwnWindow(HWND window) {
    return QCoreApplication::instance() != nullptr && QWidget::find(pump::numberOf(window)) != nullptr;
}

BOOL postToOther(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const bool sent =
        x11::postMessage(pump::numberOf(window), message, static_cast<uint32_t>(wParam), static_cast<uint32_t>(lParam));
    if (!sent) {
        std::fprintf(stderr, "message %u was not sent to window %llu: no such X11 window\n", message,
                     static_cast<unsigned long long>(pump::numberOf(window)));
    }
    return sent ? 1 : 0;
}

// Whoever is told that there is no such window sends nothing; without a server, that is said here.
bool isOthersWindow(HWND window) {
    if (x11::isWindow(pump::numberOf(window))) return true;
    if (!x11::isReachable()) {
        std::fprintf(stderr, "no message is sent to window %llu: no X11 display answers\n",
                     static_cast<unsigned long long>(pump::numberOf(window)));
    }
    return false;
}

}  // namespace

namespace pump {

const QEvent* messageEvent() {
    return MessageQueue::instance().currentEvent();
}

void setInputBlock(bool (*blocked)()) {
    MessageQueue::instance().setInputBlock(blocked);
}

}  // namespace pump

BOOL GetMessageA(MSG* message, HWND /*window*/, UINT /*first*/, UINT /*last*/) {
    *message = MessageQueue::instance().next();
    return message->message != WM_QUIT ? 1 : 0;
}

BOOL TranslateMessage(const MSG* message) {
    if (message->message != WM_KEYDOWN && message->message != WM_SYSKEYDOWN) return 0;
    return MessageQueue::instance().postCharacter() ? 1 : 0;
}

LRESULT DispatchMessageA(const MSG* message) {
    if (message->message == WM_NULL) return 0;
    if (MessageQueue::instance().currentEvent() == nullptr) return callWindowProcedure(*message);
    MessageQueue::instance().handOn(*message);
    return 0;
}

BOOL TranslateMDISysAccel(HWND /*mdiClient*/, MSG* /*message*/) {
    return 0;
}

int TranslateAcceleratorA(HWND window, HACCEL table, MSG* message) {
    const QKeyEvent* key = currentKeyPress();
    if (table == nullptr || key == nullptr || message->hwnd != window) return 0;
    if (message->message != WM_KEYDOWN && message->message != WM_SYSKEYDOWN) return 0;
    const auto& accelerators = *reinterpret_cast<const pump::AcceleratorTable*>(table);
    const pump::Accelerator* found = findAccelerator(accelerators, *key);
    if (found == nullptr) return 0;
    accelerators.send(found->command);
    return 1;
}

BOOL PostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (window != nullptr && !isOwnWindow(window)) return postToOther(window, message, wParam, lParam);
    MSG posted{};
    posted.hwnd = window;
    posted.message = message;
    posted.wParam = wParam;
    posted.lParam = lParam;
    MessageQueue::instance().post(posted);
    return 1;
}

void PostQuitMessage(int status) {
    PostMessageA(nullptr, WM_QUIT, static_cast<WPARAM>(status), 0);
}

BOOL IsWindow(HWND window) {
    if (window == nullptr) return 0;
    return isOwnWindow(window) || isOthersWindow(window) ? 1 : 0;
}
