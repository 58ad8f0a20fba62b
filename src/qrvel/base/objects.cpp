#include "qrvel/base/objects.h"

#include "qrvel/base/application.h"

namespace qrvel {

QWidget* MainObject::area() const {
    const auto* container = handles().findFirst<Container>(
        [&](const Container& candidate) { return candidate.windowClass == windowClass; });
    return container != nullptr ? container->widget : nullptr;
}

WMsgProc procedureOf(WHandle object) {
    const Object* found = handles().findAny(object);
    const auto* windowClass = found != nullptr ? handles().find<WindowClass>(found->messageClass()) : nullptr;
    return windowClass != nullptr ? windowClass->procedure : nullptr;
}

WHandle objectOfContainer(WHandle container) {
    const auto* found = handles().find<Container>(container);
    if (found == nullptr) return 0;
    const auto* object = handles().findFirst<MainObject>(
        [&](const MainObject& candidate) { return candidate.windowClass == found->windowClass; });
    return object != nullptr ? object->handle : 0;
}

void postSizeOfContainer(WHandle container) {
    const WHandle object = objectOfContainer(container);
    if (object != 0 && application() != nullptr) application()->messages.postSize(object);
}

void sendSizeOfContainer(WHandle container) {
    if (const WHandle object = objectOfContainer(container)) ToolkitMessages::send(object, W_MSG_SIZE);
}

}  // namespace qrvel

using namespace qrvel;

WHandle Wregisterclass(WHandle app, WMsgProc proc) {
    if (handles().find<Application>(app, __func__) == nullptr || proc == nullptr) return 0;
    const auto* made = handles().make<WindowClass>(proc);
    return made != nullptr ? made->handle : 0;
}

WHandle Wcreateobject(WHandle app, WHandle windowClass, uint32_t /*kind*/, uint32_t /*flags*/) {
    if (handles().find<Application>(app, __func__) == nullptr) return 0;
    if (handles().find<WindowClass>(windowClass, __func__) == nullptr) return 0;
    const auto* made = handles().make<MainObject>(windowClass);
    return made != nullptr ? made->handle : 0;
}

void Wdestroyobject(WHandle object) {
    handles().destroy<MainObject>(object, __func__);
}

int32_t Wquerywinsize(WHandle object, int32_t* width, int32_t* height) {
    const Object* found = handles().findAny(object);
    const QWidget* widget = found != nullptr ? found->area() : nullptr;
    if (widget == nullptr) {
        HandleTable::reportMiss(object, Kind::MainObject, __func__);
        return 0;
    }
    *width = widget->width();
    *height = widget->height();
    return 1;
}
