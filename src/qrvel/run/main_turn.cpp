// WIsendmsgs: what a turn of the main loop does. Messages, then a piece of the picture that comes in, then what waits
// for a picture that is out.
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
        found->mousePosition = position;
        ToolkitMessages::send(child, W_MSG_MOUSE, first);
        found = handles().find<Child>(child);
        if (first == W_MOUSE_RELEASE && found != nullptr && found->surface) found->surface->dropTrackBoxes();
    }

    void paint(WHandle child) override {
        const Child* found = handles().find<Child>(child);
        if (found == nullptr || application()->run->prints()) return;  // nobody sees it
        if (found->surface) found->surface->clear();
        ToolkitMessages::send(child, W_MSG_PAINT);
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
