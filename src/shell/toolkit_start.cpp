#include "shell/toolkit_start.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/windows.h"
#include "shell/shell_state.h"
#include "toolkit/wi.h"

namespace {

constexpr char TOOLKIT_MODULE[] = "QRVEL";
constexpr uintptr_t FIRST_VALID_MODULE = 32;  // smaller handles are error codes
constexpr size_t MESSAGE_SIZE = 256;

struct ModuleName {
    char text[129] = "";
    explicit ModuleName(HMODULE module) { GetModuleFileNameA(module, text, sizeof text); }
};

HWND windowOf(int64_t number) {
    return reinterpret_cast<HWND>(static_cast<uintptr_t>(number));
}

void notify(HWND window, uint32_t id, uintptr_t second) {
    if (IsWindow(window) != 0) PostMessageA(window, HPGL_NOTIFY_MESSAGE, id, static_cast<LPARAM>(second));
}

void endWithWrongToolkit(const char* message, const HPGLNotification& notification) {
    MessageBoxA(nullptr, message, "KEL Graphics Fatal Error", MB_ICONHAND);
    notify(windowOf(notification.window), static_cast<uint32_t>(notification.id), 0);
    ExitProcess(HPGL_WRONG_TOOLKIT_EXIT);
}

int32_t compareVersion(HMODULE library, char* message, size_t size) {
    const FARPROC entry = GetProcAddress(library, "Wqueryversion");
    if (entry == nullptr) {
        snprintf(message, size, "Unable to get W Lib Version");
        return HPGL_NO_VERSION_ENTRY;
    }
    const auto query = reinterpret_cast<uint64_t (*)(uint32_t)>(reinterpret_cast<void*>(entry));
    const auto version = static_cast<uint32_t>(query(0));
    if (version == W_VERSION) return HPGL_VERSION_OK;
    snprintf(message, size, "\nWrong Version of W Lib\n\n  - W:\t%08lX (%s)\n  - App:\t%08lX (%s)\n\n%s",
             static_cast<unsigned long>(version), ModuleName(library).text, static_cast<unsigned long>(W_VERSION),
             ModuleName(nullptr).text,
             "Delete older version(s) of KEL frontend software and reinstall the latest one.");
    return HPGL_WRONG_VERSION;
}

char** copyVector(int32_t count, char* const* values) {
    const auto slots = static_cast<size_t>(count) + 1;
    auto* copy = static_cast<char**>(malloc(slots * sizeof(char*)));
    if (copy != nullptr) memcpy(copy, values, slots * sizeof(char*));
    return copy;
}

void writeInstances(WHandle app) {
    auto* variables = static_cast<WVariables*>(WIgetvar(app, 1));
    if (variables == nullptr) return;
    variables->instance = TheShell.instance;
    variables->previous = TheShell.previous;
    Wtrace(app, "hInst %X, hPrev %X\n", static_cast<unsigned>(reinterpret_cast<uintptr_t>(TheShell.instance)),
           static_cast<unsigned>(reinterpret_cast<uintptr_t>(TheShell.previous)));
}

}  // namespace

HPGLNotification HPGLreadNotification(int32_t count, char* const* values) {
    HPGLNotification notification = {0, 0};
    for (int32_t i = 1; i < count; ++i) {
        const char* value = values[i];
        if (value == nullptr || strlen(value) < 4 || value[0] != '-' || value[2] != '=') continue;
        if (value[1] == 'I' || value[1] == 'i') notification.id = atoi(value + 3);
        if (value[1] == 'P' || value[1] == 'p') notification.window = atol(value + 3);
    }
    return notification;
}

int32_t HPGLcheckToolkitVersion(char* message, size_t size) {
    if (GetModuleHandleA(TOOLKIT_MODULE) == nullptr) {
        snprintf(message, size, "Unable to find W Lib");
        return HPGL_TOOLKIT_NOT_FOUND;
    }
    const HMODULE library = LoadLibraryA(TOOLKIT_MODULE);
    if (reinterpret_cast<uintptr_t>(library) < FIRST_VALID_MODULE) {
        snprintf(message, size, "Unable to load W Lib");
        if (library != nullptr) FreeLibrary(library);
        return HPGL_TOOLKIT_NOT_LOADED;
    }
    const int32_t result = compareVersion(library, message, size);
    FreeLibrary(library);
    return result;
}

WHandle HPGLinitToolkit(int32_t count, char** values) {
    const HPGLNotification notification = HPGLreadNotification(count, values);
    char message[MESSAGE_SIZE];
    if (HPGLcheckToolkitVersion(message, sizeof message) != HPGL_VERSION_OK) {
        endWithWrongToolkit(message, notification);
    }
    char** copy = copyVector(count, values);
    const WHandle app = copy != nullptr ? WIinitialise(count, copy, 1) : 0;
    free(copy);
    if (app == 0) return 0;
    writeInstances(app);
    Wregexitproc(app, cbexit);
    return app;
}

void cbexit(WHandle app, int32_t status) {
    if (status == 0) return;
    const auto* variables = static_cast<const WVariables*>(WIgetvar(app, 1));
    if (variables != nullptr && variables->notifyWindow != nullptr) {
        notify(static_cast<HWND>(variables->notifyWindow), variables->notifyId,
               reinterpret_cast<uintptr_t>(variables->mainWindow));
    }
    ExitProcess(static_cast<UINT>(status));
}
