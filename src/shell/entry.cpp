#include "shell/entry.h"

#include <cstdlib>
#include <cstring>

#include "platform/winmain.h"
#include "shell/lifetime.h"
#include "shell/shell_state.h"

namespace {

constexpr int32_t MODULE_NAME_LENGTH = 128;

bool isBlankOrEnd(char c) {
    return (static_cast<uint8_t>(c) & 0xDFU) == 0;
}

// The module name is one; every blank outside quotes, and the end, adds one.
int32_t countArguments(const char* commandLine) {
    int32_t count = 1;
    bool quoted = false;
    for (const char* c = commandLine;; ++c) {
        if (*c == '"') quoted = !quoted;
        if (!quoted && isBlankOrEnd(*c)) ++count;
        if (*c == '\0') return count;
    }
}

void* allocateOrEnd(size_t bytes) {
    void* memory = malloc(bytes);
    if (memory == nullptr) ExitProcess(static_cast<UINT>(-1));
    return memory;
}

// Overwrites separators and quotes with terminators and sets the elements behind the first. A quote left open leaves
// more elements than were counted; those are dropped.
void splitInPlace(char* text, HPGLArguments* arguments) {
    int32_t element = 1;
    bool quoted = false;
    if (arguments->count > element) arguments->values[element] = text;
    for (char* c = text; *c != '\0'; ++c) {
        if (*c == ' ' && !quoted) {
            *c = '\0';
            if (++element < arguments->count) arguments->values[element] = c + 1;
        } else if (*c == '"') {
            *c = '\0';
            quoted = !quoted;
            if (quoted && element < arguments->count) arguments->values[element] = c + 1;
        }
    }
}

}  // namespace

HPGLArguments HPGLsplitCommandLine(const char* commandLine) {
    HPGLArguments arguments = {countArguments(commandLine), nullptr};
    const auto slots = static_cast<size_t>(arguments.count) + 1;
    arguments.values = static_cast<char**>(allocateOrEnd(slots * sizeof(char*)));
    memset(arguments.values, 0, slots * sizeof(char*));

    char moduleName[MODULE_NAME_LENGTH + 1] = "";
    GetModuleFileNameA(nullptr, moduleName, sizeof moduleName);
    const size_t moduleLength = strlen(moduleName);
    const size_t lineLength = strlen(commandLine);
    auto* copy = static_cast<char*>(allocateOrEnd(moduleLength + lineLength + 2));
    memcpy(copy, moduleName, moduleLength + 1);
    memcpy(copy + moduleLength + 1, commandLine, lineLength + 1);
    arguments.values[0] = copy;
    splitInPlace(copy + moduleLength + 1, &arguments);
    return arguments;
}

void HPGLfreeArguments(HPGLArguments* arguments) {
    free(arguments->values[0]);
    free(arguments->values);
    *arguments = {};
}

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR commandLine, int /*show*/) {
    HPGLArguments arguments = HPGLsplitCommandLine(commandLine);
    TheShell.instance = instance;
    TheShell.previous = previous;
    const int32_t status = HPGLrunApplication(arguments.count, arguments.values);
    HPGLfreeArguments(&arguments);
    return status;
}
