// WIsendmsgs: what a turn of the main loop does. Messages, then a piece of the picture that comes in, then what waits
// for a picture that is out.
#include <chrono>

#include "qrvel/base/application.h"
#include "qrvel/channel/data_channel.h"
#include "qrvel/output/child.h"
#include "qrvel/window/child_widget.h"
#include "qrvel/window/print_setup.h"

namespace qrvel {

namespace {

class Carrier final : public ChildMessages {
  public:
    void mouse(WHandle child, uint32_t first, QPoint position) override {
        Child* found = handles().find<Child>(child);
        if (found == nullptr) return;
        if (first == W_MOUSE_PRESS) found->pressPosition = position;
        found->mousePosition = position;
        const uint32_t updates = found->updates;
        ToolkitMessages::send(child, W_MSG_MOUSE, first);
        found = handles().find<Child>(child);
        if (first != W_MOUSE_RELEASE || found == nullptr) return;
        if (found->surface) found->surface->dropTrackBoxes();
        ViewMotion* view = viewOf(*found);
        if (view == nullptr) return;
        if (const auto stroke = view->stroked({found->pressPosition, position}, found->updates != updates)) {
            mouse(child, W_MOUSE_PRESS, stroke->press);
            mouse(child, W_MOUSE_RELEASE, stroke->release);
        }
    }

    void action(WHandle object, uint32_t kind, uint32_t id) override {
        ToolkitMessages::send(object, W_MSG_ACTION, kind, id);
        if (kind != W_ACTION_MENU) return;
        moveViews([&](ViewMotion& view) { view.chosen(id); });
    }

    void paint(WHandle child) override {
        const Child* found = handles().find<Child>(child);
        if (found == nullptr || application()->run->prints()) return;  // nobody sees it
        if (found->surface) found->surface->clear();
        const auto begun = std::chrono::steady_clock::now();
        ToolkitMessages::send(child, W_MSG_PAINT);
        const auto took = std::chrono::steady_clock::now() - begun;
        found = handles().find<Child>(child);
        if (ViewMotion* view = found != nullptr ? viewOf(*found) : nullptr) {
            view->painted(std::chrono::duration_cast<std::chrono::milliseconds>(took));
        }
        if (DataChannel* channel = findDataChannel()) channel->pictureIsOut();
        printPreviewIsStale();
        application()->run->painted(child);
    }
};

}  // namespace

}  // namespace qrvel

using namespace qrvel;

void WIsendmsgs(WHandle app) {
    auto* found = handles().find<Application>(app, __func__);
    if (found == nullptr) return;
    Carrier carrier;
    DataChannel* channel = findDataChannel();
    if (channel != nullptr && channel->isAboutToTransmit()) breakOffDrags();
    if (channel == nullptr || !channel->isTransmitting()) found->messages.deliver(carrier);
    channel = findDataChannel();  // the viewer may have closed it, here and by its chunks
    if (channel != nullptr && found->state.quit == 0) channel->run();
    channel = findDataChannel();
    if (found->messages.isEmpty() && (channel == nullptr || !channel->isShowing())) servePrintSetup();
    channel = findDataChannel();
    const bool more = !found->messages.isEmpty() || (channel != nullptr && channel->hasWork());
    found->state.messagesPending = more ? 1 : 0;
    if (more) found->messages.wakeAfterEvents();
}
