// The process's one message queue: input events of Qt's windows and posted messages, in the order of their coming.
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QWindow>
#include <deque>
#include <memory>

#include "platform/windows.h"

class MessageQueue : public QObject {
  public:
    static MessageQueue& instance();

    // Waits in Qt's dispatcher for the next message. WM_QUIT when there is no application to wait for.
    MSG next();

    // Appends a message of no event and wakes next().
    void post(const MSG& message);

    // Puts the character of the current key in front; false when it has none.
    bool postCharacter();

    // Hands the current message's event to its window, unless the message was changed or the window is gone.
    void handOn(const MSG& message);

    // The event behind the message that next() answered last, or null.
    const QEvent* currentEvent() const { return current_ != nullptr ? current_->event.get() : nullptr; }

    void setInputBlock(bool (*blocked)()) { blocked_ = blocked; }

  protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

  private:
    struct Waiting {
        MSG message{};
        std::unique_ptr<QEvent> event;  // a clone; a character has one of its key's
        QPointer<QWindow> receiver;     // null where nothing is to be handed on
    };

    static std::unique_ptr<Waiting> waiting(const MSG& message, const QEvent* event, QWindow* receiver);
    void watchApplication();
    bool inputWaits() const;
    bool takes(const QObject& receiver, const QEvent& event) const;
    void take(QWindow& receiver, const QEvent& event);
    void wake() const;

    std::deque<std::unique_ptr<Waiting>> waiting_;
    std::unique_ptr<Waiting> current_;  // what next() answered last
    QPointer<QCoreApplication> watched_;
    const QEvent* passing_ = nullptr;  // being handed on: the filter lets it through
    bool (*blocked_)() = nullptr;
};
