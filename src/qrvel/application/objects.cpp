#include "objects.h"

#include "application.h"
#include "child.h"
#include "shell.h"

namespace qrvel {

namespace {

WHandle classOf(WHandle object) {
    if (const auto* main = handles().find<MainObject>(object)) return main->windowClass;
    const auto* child = handles().find<Child>(object);
    const auto* container = child != nullptr ? handles().find<Container>(child->container) : nullptr;
    return container != nullptr ? container->windowClass : 0;
}

// The widget whose inside an object's size is.
QWidget* widgetOf(WHandle object) {
    if (const auto* child = handles().find<Child>(object)) return child->widget;
    if (const auto* shell = handles().find<Shell>(object)) return shell->window;
    if (const auto* container = handles().find<Container>(object)) return container->widget;
    const auto* main = handles().find<MainObject>(object);
    if (main == nullptr) return nullptr;
    const auto* container = handles().findFirst<Container>(
        [&](const Container& candidate) { return candidate.windowClass == main->windowClass; });
    return container != nullptr ? container->widget : nullptr;
}

}  // namespace

WMsgProc procedureOf(WHandle object) {
    const auto* windowClass = handles().find<WindowClass>(classOf(object));
    return windowClass != nullptr ? windowClass->procedure : nullptr;
}

WHandle mainObjectOf(WHandle windowClass) {
    const auto* object = handles().findFirst<MainObject>(
        [&](const MainObject& candidate) { return candidate.windowClass == windowClass; });
    return object != nullptr ? object->handle : 0;
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
    const QWidget* widget = widgetOf(object);
    if (widget == nullptr) {
        HandleTable::reportMiss(object, Kind::MainObject, __func__);
        return 0;
    }
    *width = widget->width();
    *height = widget->height();
    return 1;
}
