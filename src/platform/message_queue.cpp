#include "platform/message_queue.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QMouseEvent>
#include <QPointingDevice>
#include <QThread>
#include <algorithm>
#include <utility>

#include "platform/event_message.h"
#include "platform/message_pump.h"

namespace {

// Qt keeps one point for each pointing device, shares it with the device's last event and writes the next event's
// position into it. Another event of the same values makes it let go of that point, so that a clone keeps its own.
void detachPoint(const QSinglePointEvent& event) {
    const QEvent::Type type = event.type() == QEvent::Wheel ? QEvent::MouseMove : event.type();
    const QMouseEvent same(type, event.position(), event.scenePosition(), event.globalPosition(), event.button(),
                           event.buttons(), event.modifiers(), event.pointingDevice());
}

std::unique_ptr<QEvent> cloneOf(const QEvent& event) {
    std::unique_ptr<QEvent> clone(event.clone());
    if (event.isSinglePointEvent()) detachPoint(static_cast<const QSinglePointEvent&>(event));
    return clone;
}

// A modifier by itself means nothing to the viewer, and must not come late: Alt closes the menu that Alt and a letter
// have opened, which Qt sees to at once.
bool isModifier(const QEvent& event) {
    if (event.type() != QEvent::KeyPress && event.type() != QEvent::KeyRelease) return false;
    const int key = static_cast<const QKeyEvent&>(event).key();
    return (key >= Qt::Key_Shift && key <= Qt::Key_Alt) || key == Qt::Key_AltGr;
}

// Answered when there is nothing to wait for.
MSG quitMessage() {
    MSG message{};
    message.message = WM_QUIT;
    return message;
}

}  // namespace

// Never destroyed: messages may be posted until the process is gone.
MessageQueue& MessageQueue::instance() {
    static MessageQueue* const queue = new MessageQueue;
    return *queue;
}

MSG MessageQueue::next() {
    current_.reset();
    watchApplication();
    if (watched_ == nullptr) return quitMessage();
    // One turn of Qt's loop even when a message waits already, so that timers and paints are not starved by messages.
    // Deferred deletes are asked for: Qt sends them by itself only out of its own event loop.
    do {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents(waiting_.empty() ? QEventLoop::WaitForMoreEvents : QEventLoop::AllEvents);
    } while (waiting_.empty());
    current_ = std::move(waiting_.front());
    waiting_.pop_front();
    return current_->message;
}

// One message of nothing makes the loop turn as well as many, which would grow without end while there is work.
void MessageQueue::post(const MSG& message) {
    const bool doubled = message.message == WM_NULL && !waiting_.empty() && waiting_.back()->message.message == WM_NULL;
    if (doubled) return wake();
    waiting_.push_back(waiting(message, nullptr, nullptr));
    wake();
}

bool MessageQueue::postCharacter() {
    const QEvent* key = currentEvent();
    if (key == nullptr) return false;
    const MSG character = characterOf(*key, current_->message);
    if (character.message == WM_NULL) return false;
    waiting_.push_front(waiting(character, key, nullptr));
    return true;
}

// notify() and not sendEvent(), which would take away the mark that the event came from the window system; a click
// gives the focus only with it.
void MessageQueue::handOn(const MSG& message) {
    if (current_ == nullptr || current_->receiver == nullptr) return;
    if (message.message != current_->message.message) return;
    passing_ = currentEvent();
    QCoreApplication::instance()->notify(current_->receiver, current_->event.get());
    passing_ = nullptr;
}

bool MessageQueue::eventFilter(QObject* receiver, QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && blocked_ != nullptr && blocked_()) {
        event->accept();
        return true;
    }
    if (!takes(*receiver, *event)) return false;
    take(static_cast<QWindow&>(*receiver), *event);
    event->accept();
    return true;
}

std::unique_ptr<MessageQueue::Waiting> MessageQueue::waiting(const MSG& message, const QEvent* event,
                                                             QWindow* receiver) {
    auto waiting = std::make_unique<Waiting>();
    waiting->message = message;
    if (event != nullptr) waiting->event = cloneOf(*event);
    waiting->receiver = receiver;
    return waiting;
}

// An application may end and another begin: the message box before the toolkit's start has one of its own.
void MessageQueue::watchApplication() {
    if (watched_ == QCoreApplication::instance()) return;
    watched_ = QCoreApplication::instance();
    if (watched_ != nullptr) watched_->installEventFilter(this);
}

bool MessageQueue::inputWaits() const {
    return std::any_of(waiting_.begin(), waiting_.end(),
                       [](const std::unique_ptr<Waiting>& one) { return one->event != nullptr; });
}

// Only what reaches a window while nothing but next() waits. A modal loop or an open menu gets its input at once:
// nobody would fetch it from the queue. But nothing overtakes what was typed before the menu opened.
bool MessageQueue::takes(const QObject& receiver, const QEvent& event) const {
    if (!receiver.isWindowType() || !isInputEvent(event) || isModifier(event) || &event == passing_) return false;
    if (QThread::currentThread()->loopLevel() > 0) return false;
    const bool isFree = QApplication::activeModalWidget() == nullptr && QApplication::activePopupWidget() == nullptr;
    return isFree || inputWaits();
}

void MessageQueue::take(QWindow& receiver, const QEvent& event) {
    waiting_.push_back(waiting(messageOf(event, pump::handleOf(receiver.winId())), &event, &receiver));
    wake();
}

// The dispatcher may go to sleep after the callback that posted.
void MessageQueue::wake() const {
    if (QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance()) dispatcher->wakeUp();
}
