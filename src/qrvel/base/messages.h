// The toolkit's queued messages. Only WIsendmsgs delivers, so a window procedure of the viewer is never entered from
// inside a Qt callback.
//
// Order: sizes first, then what the user did, then paints. At most one size and one paint wait for an object.
// While a transmission is being handed over, all of them wait.
#pragma once

#include <QPoint>
#include <QTimer>
#include <vector>

#include "toolkit/w.h"

namespace qrvel {

// Whoever carries messages about a drawing child to it, with all that belongs to that, and what the user chose to an
// object.
class ChildMessages {
  public:
    ChildMessages() = default;
    ChildMessages(const ChildMessages&) = delete;
    ChildMessages& operator=(const ChildMessages&) = delete;
    virtual ~ChildMessages() = default;

    // Each delivers the message, once.
    virtual void mouse(WHandle child, uint32_t first, QPoint position) = 0;
    virtual void action(WHandle object, uint32_t kind, uint32_t id) = 0;
    virtual void paint(WHandle child) = 0;
};

class ToolkitMessages {
  public:
    ToolkitMessages();

    void postSize(WHandle object);
    void postPaint(WHandle child);
    // A drag takes the place of one that waits last. position: device pixels.
    void postMouse(WHandle child, uint32_t first, QPoint position);
    // kind and id: the action message's parameters.
    void postAction(WHandle object, uint32_t kind, uint32_t id);

    bool isEmpty() const { return sizes_.empty() && actions_.empty() && paints_.empty(); }

    // Delivers one message at once, whatever waits.
    static void send(WHandle object, uint32_t message, uint32_t first = 0, uint32_t second = 0);

    // Delivers what waits now; what that queues waits for the next time.
    void deliver(ChildMessages& children);

    // Makes the main loop take a turn; and one in which WIsendmsgs is called.
    void wake();
    void workIsDue();
    // The same, but after the events that wait in the window system.
    void wakeAfterEvents() { nextTurn_.start(); }

  private:
    struct Action {
        WHandle object;
        uint32_t message;
        uint32_t first;
        uint32_t second;
        QPoint position;
    };

    QTimer nextTurn_;  // runs out when no event of the window system waits
    std::vector<WHandle> sizes_;
    std::vector<Action> actions_;
    std::vector<WHandle> paints_;
};

}  // namespace qrvel
