// Window classes and the objects made of them.
#pragma once

#include "handles.h"

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

    WHandle windowClass;
};

// The procedure that an object's or a child's messages go to; null when there is none.
WMsgProc procedureOf(WHandle object);

// The object of a class, 0 when there is none.
WHandle mainObjectOf(WHandle windowClass);

}  // namespace qrvel
