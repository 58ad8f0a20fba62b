#include "shell/main_loop.h"

#include "platform/windows.h"
#include "toolkit/wi.h"

namespace {

constexpr UINT LAST_KEY_MESSAGE = 265;
constexpr UINT LAST_MOUSE_MESSAGE = 526;

bool isKeyboard(UINT id) {
    return id >= WM_KEYFIRST && id <= LAST_KEY_MESSAGE;
}
bool isMouse(UINT id) {
    return id >= WM_MOUSEFIRST && id <= LAST_MOUSE_MESSAGE;
}
bool isKeyDown(UINT id) {
    return id == WM_KEYDOWN || id == WM_SYSKEYDOWN;
}
bool canBeHotKey(UINT id) {
    return id == WM_KEYDOWN || id == WM_CHAR || id == WM_SYSCHAR;
}

bool isAccelerator(const WVariables* variables, MSG* message) {
    if (variables->mdiClient == nullptr) return false;
    if (TranslateMDISysAccel(static_cast<HWND>(variables->mdiClient), message) != 0) return true;
    if (variables->mainWindow == nullptr) return false;
    return TranslateAcceleratorA(static_cast<HWND>(variables->mainWindow), static_cast<HACCEL>(WIwnquerymdiaccel()),
                                 message) != 0;
}

// A message that an accelerator has taken still goes on to hot keys and dispatch. True when the message is consumed.
bool translate(const WVariables* variables, MSG* message) {
    const UINT id = message->message;
    if (isKeyDown(id) && !isAccelerator(variables, message)) TranslateMessage(message);
    const bool consumed = canBeHotKey(id) && Wwntranshotkey(message, id) != 0;
    if (isMouse(id) || isKeyDown(id)) WTTIwnmousemsg(message->hwnd, id);
    return consumed;
}

void handleMessage(const WState* state, const WVariables* variables, MSG* message) {
    bool consumed = false;
    if (state->inputBlocked != 0 && isKeyboard(message->message)) {
        message->message = WM_NULL;  // dropped, but still dispatched, so that nothing that waits is forgotten
    } else if (message->message != WM_NULL) {
        consumed = translate(variables, message);
    }
    if (!consumed) DispatchMessageA(message);
}

}  // namespace

void HPGLrunMainLoop(WHandle app) {
    const auto* state = static_cast<const WState*>(WIgetvar(app, 0));
    const auto* variables = static_cast<const WVariables*>(WIgetvar(app, 1));
    if (state == nullptr || variables == nullptr) return;
    MSG message = {};
    while (state->quit == 0 && GetMessageA(&message, nullptr, 0, 0) != 0) {
        handleMessage(state, variables, &message);
        if (state->messagesPending != 0) WIsendmsgs(app);
    }
    Wtrace(app, ">>> leaving main loop: W.quit = %d\n", static_cast<int>(state->quit));
}
