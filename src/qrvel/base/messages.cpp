#include "qrvel/base/messages.h"

#include <algorithm>
#include <utility>

#include "platform/windows.h"
#include "qrvel/base/application.h"
#include "qrvel/base/objects.h"

namespace qrvel {

namespace {

void addOnce(std::vector<WHandle>& waiting, WHandle object) {
    if (std::find(waiting.begin(), waiting.end(), object) == waiting.end()) waiting.push_back(object);
}

}  // namespace

ToolkitMessages::ToolkitMessages() {
    nextTurn_.setSingleShot(true);
    QObject::connect(&nextTurn_, &QTimer::timeout, [] { PostMessageA(nullptr, WM_NULL, 0, 0); });
}

void ToolkitMessages::send(WHandle object, uint32_t message, uint32_t first, uint32_t second) {
    if (const WMsgProc procedure = procedureOf(object)) procedure(object, message, first, second);
}

void ToolkitMessages::workIsDue() {
    application()->state.messagesPending = 1;
    wake();
}

void ToolkitMessages::postSize(WHandle object) {
    addOnce(sizes_, object);
    workIsDue();
}

void ToolkitMessages::postPaint(WHandle child) {
    addOnce(paints_, child);
    workIsDue();
}

void ToolkitMessages::postMouse(WHandle child, uint32_t first, QPoint position) {
    const Action action{.object = child, .message = W_MSG_MOUSE, .first = first, .second = 0, .position = position};
    const bool merges = first == W_MOUSE_DRAG && !actions_.empty() && actions_.back().message == W_MSG_MOUSE &&
                        actions_.back().object == child && actions_.back().first == W_MOUSE_DRAG;
    if (merges) {
        actions_.back() = action;
    } else {
        actions_.push_back(action);
    }
    workIsDue();
}

void ToolkitMessages::postAction(WHandle object, uint32_t kind, uint32_t id) {
    actions_.push_back({.object = object, .message = W_MSG_ACTION, .first = kind, .second = id, .position = {}});
    workIsDue();
}

void ToolkitMessages::deliver(ChildMessages& children) {
    for (const WHandle object : std::exchange(sizes_, {})) {
        send(object, W_MSG_SIZE);
    }
    for (const Action& action : std::exchange(actions_, {})) {
        if (action.message == W_MSG_MOUSE) {
            children.mouse(action.object, action.first, action.position);
        } else {
            children.action(action.object, action.first, action.second);
        }
    }
    for (const WHandle child : std::exchange(paints_, {})) {
        children.paint(child);
    }
}

void ToolkitMessages::wake() {
    PostMessageA(nullptr, WM_NULL, 0, 0);
}

}  // namespace qrvel
