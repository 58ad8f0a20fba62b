// Window classes, the objects made of them, and the containers that are their windows.
#pragma once

#include <QPointer>
#include <QWidget>

#include "qrvel/base/handles.h"

namespace qrvel {

struct WindowClass : Object {
    static constexpr Kind KIND = Kind::WindowClass;
    explicit WindowClass(WMsgProc called) : procedure(called) {}

    WMsgProc procedure;
};

// What messages about the whole window name. Its window is the container that was given the same class.
struct MainObject : Object {
    static constexpr Kind KIND = Kind::MainObject;
    explicit MainObject(WHandle of) : windowClass(of) {}

    WHandle messageClass() const override { return windowClass; }
    QWidget* area() const override;

    WHandle windowClass;
};

// The inside of a window.
struct Container : Object {
    static constexpr Kind KIND = Kind::Container;

    QWidget* area() const override { return widget; }

    QPointer<QWidget> widget;  // its parent, the shell's window, owns it
    WHandle windowClass = 0;
};

// The procedure that an object's or a child's messages go to; null when there is none.
WMsgProc procedureOf(WHandle object);

// The object whose window a container is; 0 when there is none.
WHandle objectOfContainer(WHandle container);
// Queues a size message for it, or delivers one before it returns.
void postSizeOfContainer(WHandle container);
void sendSizeOfContainer(WHandle container);

}  // namespace qrvel
