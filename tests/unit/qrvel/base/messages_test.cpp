// The order in which messages are delivered.
#include "qrvel/base/messages.h"

#include "qrvel/base/objects.h"
#include "toolkit_fixture.h"

namespace qrvel {
namespace {

std::string heard;

void hear(WHandle /*object*/, uint32_t message, uint32_t first, uint32_t second) {
    heard += std::to_string(message) + ' ' + std::to_string(first) + ' ' + std::to_string(second) + '\n';
}

// Writes down what there is for children.
class Carrier final : public ChildMessages {
  public:
    void mouse(WHandle /*child*/, uint32_t first, QPoint position) override {
        heard += "mouse " + std::to_string(first) + " at " + std::to_string(position.x()) + '\n';
        if (whenCarrying) whenCarrying();
    }
    void action(WHandle of, uint32_t kind, uint32_t id) override { ToolkitMessages::send(of, W_MSG_ACTION, kind, id); }
    void paint(WHandle child) override { heard += "paint " + std::to_string(child) + '\n'; }

    std::function<void()> whenCarrying;
};

class Messages : public ToolkitFixture {
  protected:
    Messages() {
        heard.clear();
        start();
        const auto* windowClass = handles().make<WindowClass>(hear);
        object = handles().make<MainObject>(windowClass->handle)->handle;
    }

    std::string deliver() {
        heard.clear();
        application()->messages.deliver(carrier);
        return heard;
    }

    WHandle object = 0;
    Carrier carrier;
};

constexpr WHandle CHILD = 7;

TEST_F(Messages, ComeInTheirOrder) {
    ToolkitMessages& queue = application()->messages;
    queue.postPaint(CHILD);
    queue.postMouse(CHILD, W_MOUSE_PRESS, {1, 0});
    queue.postAction(object, 5, 11);
    queue.postSize(object);
    const std::string action = std::to_string(W_MSG_ACTION);
    EXPECT_EQ(deliver(), std::to_string(W_MSG_SIZE) + " 0 0\nmouse 0 at 1\n" + action + " 5 11\npaint 7\n");
    EXPECT_TRUE(queue.isEmpty());
    EXPECT_EQ(deliver(), "");
}

TEST_F(Messages, OfOneKindWaitOnce) {
    ToolkitMessages& queue = application()->messages;
    for (int i = 0; i < 3; ++i) {
        queue.postSize(object);
        queue.postPaint(CHILD);
        queue.postMouse(CHILD, W_MOUSE_DRAG, {i, 0});
    }
    EXPECT_EQ(deliver(), std::to_string(W_MSG_SIZE) + " 0 0\nmouse 2 at 2\npaint 7\n");
}

TEST_F(Messages, DragsDoNotPassAnAction) {
    ToolkitMessages& queue = application()->messages;
    queue.postMouse(CHILD, W_MOUSE_DRAG, {1, 0});
    queue.postAction(object, 1, 2);
    queue.postMouse(CHILD, W_MOUSE_DRAG, {3, 0});
    EXPECT_EQ(deliver(), "mouse 2 at 1\n" + std::to_string(W_MSG_ACTION) + " 1 2\nmouse 2 at 3\n");
}

TEST_F(Messages, QueuedByAMessageWaitForTheNextTime) {
    carrier.whenCarrying = [] { application()->messages.postMouse(CHILD, W_MOUSE_RELEASE, {9, 0}); };
    application()->messages.postMouse(CHILD, W_MOUSE_PRESS, {1, 0});
    EXPECT_EQ(deliver(), "mouse 0 at 1\n");
    EXPECT_EQ(deliver(), "mouse 1 at 9\n");
}

TEST_F(Messages, ToNobodyAreLost) {
    application()->messages.postSize(object + 1);
    EXPECT_EQ(deliver(), "");
}

}  // namespace
}  // namespace qrvel
