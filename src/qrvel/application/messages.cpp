#include "messages.h"

#include <algorithm>
#include <utility>

#include "application.h"
#include "child.h"
#include "conversion.h"
#include "data_channel.h"
#include "objects.h"
#include "picture_file.h"
#include "print_setup.h"
#include "windows.h"

namespace qrvel {

namespace {

void addOnce(std::vector<WHandle>& waiting, WHandle object) {
    if (std::find(waiting.begin(), waiting.end(), object) == waiting.end()) waiting.push_back(object);
}

void deliverPaint(WHandle object) {
    Child* child = handles().find<Child>(object);
    if (child == nullptr || conversion() != nullptr) return;  // nobody sees it
    if (child->surface) child->surface->clear();
    MessageQueue::send(object, W_MSG_PAINT);
    if (DataChannel* channel = findDataChannel()) channel->pictureIsOut();
    printPreviewIsStale();
    child = handles().find<Child>(object);
    if (child != nullptr) savePictureAfterPaint(*child);
}

}  // namespace

MessageQueue::MessageQueue() {
    nextTurn_.setSingleShot(true);
    QObject::connect(&nextTurn_, &QTimer::timeout, [] { PostMessageA(nullptr, WM_NULL, 0, 0); });
}

void MessageQueue::send(WHandle object, uint32_t message, uint32_t first, uint32_t second) {
    if (const WMsgProc procedure = procedureOf(object)) procedure(object, message, first, second);
}

void MessageQueue::workIsDue() {
    application()->state.messagesPending = 1;
    wake();
}

void MessageQueue::postSize(WHandle object) {
    addOnce(sizes_, object);
    workIsDue();
}

void MessageQueue::postPaint(WHandle child) {
    addOnce(paints_, child);
    workIsDue();
}

void MessageQueue::postMouse(WHandle child, uint32_t first, QPoint position) {
    const Action action{.object = child, .message = W_MSG_MOUSE, .first = first, .second = 0, .position = position};
    const bool merges = first == MOUSE_DRAG && !actions_.empty() && actions_.back().message == W_MSG_MOUSE &&
                        actions_.back().object == child && actions_.back().first == MOUSE_DRAG;
    if (merges) {
        actions_.back() = action;
    } else {
        actions_.push_back(action);
    }
    workIsDue();
}

void MessageQueue::postAction(WHandle object, uint32_t kind, uint32_t id) {
    breakOffDrags();
    actions_.push_back({.object = object, .message = W_MSG_ACTION, .first = kind, .second = id, .position = {}});
    workIsDue();
}

void MessageQueue::deliverAction(const Action& action) {
    if (action.message != W_MSG_MOUSE) {
        send(action.object, action.message, action.first, action.second);
        return;
    }
    Child* child = handles().find<Child>(action.object);
    if (child == nullptr) return;
    child->mousePosition = action.position;
    send(action.object, action.message, action.first, action.second);
    child = handles().find<Child>(action.object);
    if (action.first == MOUSE_RELEASE && child != nullptr && child->surface) child->surface->dropTrackBoxes();
}

void MessageQueue::deliver() {
    for (const WHandle object : std::exchange(sizes_, {})) {
        send(object, W_MSG_SIZE);
    }
    for (const Action& action : std::exchange(actions_, {})) {
        deliverAction(action);
    }
    for (const WHandle child : std::exchange(paints_, {})) {
        deliverPaint(child);
    }
}

void MessageQueue::wake() {
    PostMessageA(nullptr, WM_NULL, 0, 0);
}

}  // namespace qrvel

using namespace qrvel;

void WIsendmsgs(WHandle app) {
    auto* found = handles().find<Application>(app, __func__);
    if (found == nullptr) return;
    DataChannel* channel = findDataChannel();
    if (channel != nullptr && channel->isAboutToTransmit()) breakOffDrags();
    if (channel == nullptr || !channel->isTransmitting()) found->messages.deliver();
    channel = findDataChannel();  // the viewer may have closed it, here and by its chunks
    if (channel != nullptr && found->state.quit == 0) channel->run();
    channel = findDataChannel();
    if (found->messages.isEmpty() && (channel == nullptr || !channel->isShowing())) servePrintSetup();
    channel = findDataChannel();
    const bool more = !found->messages.isEmpty() || (channel != nullptr && channel->hasWork());
    found->state.messagesPending = more ? 1 : 0;
    if (more) found->messages.wakeAfterEvents();
}
