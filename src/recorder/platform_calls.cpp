// The Windows calls: scripted answers in front, and behind them, for files and the system's own values, the POSIX half.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "platform/posix.h"
#include "platform/windows.h"
#include "recorder/world.h"

using namespace recorder;

// ---- messages and windows -------------------------------------------------------------------------------------------

BOOL GetMessageA(MSG* message, HWND window, UINT first, UINT last) {
    if (!note(__func__, window, first, last)) return 0;
    if (!script.messages.empty()) {
        *message = script.messages.front();
        script.messages.pop_front();
        return message->message != WM_QUIT;
    }
    *message = MSG{};
    if (world.quitPosted || script.turns.empty()) return 0;
    // Taken out first: the turn may append further ones.
    const auto turn = std::move(script.turns.front());
    script.turns.pop_front();
    turn();
    return 1;
}

BOOL TranslateMessage(const MSG* message) {
    return note(__func__, *message);
}

LRESULT DispatchMessageA(const MSG* message) {
    if (!note(__func__, *message)) return 0;
    const auto window = world.windowProcedures.find(message->hwnd);
    if (window == world.windowProcedures.end()) return 0;
    return window->second(message->hwnd, message->message, message->wParam, message->lParam);
}

BOOL TranslateMDISysAccel(HWND mdiClient, MSG* message) {
    return note(__func__, mdiClient, *message) && script.systemAccelerators.contains(message->message);
}

int TranslateAcceleratorA(HWND window, HACCEL table, MSG* message) {
    return note(__func__, window, table, *message) && script.accelerators.contains(message->message);
}

BOOL PostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return note(__func__, window, message, wParam, lParam);
}

void PostQuitMessage(int status) {
    if (note(__func__, status)) world.quitPosted = true;
}

BOOL IsWindow(HWND window) {
    return note(__func__, window) && script.windows.contains(window);
}

int MessageBoxA(HWND owner, LPCSTR text, LPCSTR title, UINT type) {
    if (!note(__func__, owner, text, title, type)) return 0;
    report(title, text);
    return 1;
}

// ---- the trace window -----------------------------------------------------------------------------------------------

namespace {

constexpr LONG LINE_HEIGHT = 16;          // pixels
constexpr uintptr_t STOCK_BASE = 0x3000;  // stock objects are this plus their index

}  // namespace

BOOL GetClassInfoA(HINSTANCE instance, LPCSTR name, WNDCLASSA* info) {
    if (!note(__func__, instance, name)) return 0;
    const auto known = world.windowClasses.find(name);
    if (known == world.windowClasses.end()) return 0;
    *info = known->second;
    return 1;
}

ATOM RegisterClassA(const WNDCLASSA* windowClass) {
    const WNDCLASSA& made = *windowClass;
    if (!note(__func__, made.style, made.cbClsExtra, made.cbWndExtra, made.hInstance, made.hIcon, made.hCursor,
              made.hbrBackground, made.lpszMenuName, made.lpszClassName)) {
        return 0;
    }
    world.windowClasses[made.lpszClassName] = made;
    return static_cast<ATOM>(newHandle(__func__));
}

HCURSOR LoadCursorA(HINSTANCE instance, LPCSTR name) {
    // The system's cursors have a number in the place of a name.
    return systemHandle<HCURSOR>(create(__func__, instance, std::bit_cast<uintptr_t>(name)));
}

HWND CreateWindowExA(DWORD extended, LPCSTR className, LPCSTR title, DWORD style, int x, int y, int width, int height,
                     HWND parent, HMENU menu, HINSTANCE instance, void*) {
    const bool made = note(__func__, extended, className, title, style, x, y, width, height, parent, menu, instance);
    const auto windowClass = world.windowClasses.find(className);
    if (!made || windowClass == world.windowClasses.end()) return nullptr;
    const auto window = systemHandle<HWND>(newHandle(__func__));
    world.windowProcedures[window] = windowClass->second.lpfnWndProc;
    return window;
}

// The window was hidden, and its words 0, before.
BOOL ShowWindow(HWND window, int command) {
    note(__func__, window, command);
    return 0;
}

WORD SetWindowWord(HWND window, int index, WORD value) {
    note(__func__, window, index, value);
    return 0;
}

LRESULT DefWindowProcA(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    note(__func__, window, message, wParam, lParam);
    return 0;
}

int GetSystemMetrics(int index) {
    if (!note(__func__, index)) return 0;
    switch (index) {
        case SM_CYSCREEN:
            return 1000;
        case SM_CYCAPTION:
            return 20;
        case SM_CXFRAME:
        case SM_CYFRAME:
            return 4;
        default:
            return 0;
    }
}

HGDIOBJ GetStockObject(int index) {
    return note(__func__, index) ? systemHandle<HGDIOBJ>(STOCK_BASE + static_cast<uintptr_t>(index)) : nullptr;
}

HDC GetDC(HWND window) {
    return systemHandle<HDC>(create(__func__, window));
}
int ReleaseDC(HWND window, HDC context) {
    return note(__func__, window, context);
}

// As if the object had been selected before too.
HGDIOBJ SelectObject(HDC context, HGDIOBJ object) {
    return note(__func__, context, object) ? object : nullptr;
}

BOOL GetTextMetricsA(HDC context, TEXTMETRICA* metrics) {
    if (!note(__func__, context)) return 0;
    *metrics = TEXTMETRICA{};
    metrics->tmHeight = LINE_HEIGHT;
    metrics->tmAscent = 12;
    metrics->tmDescent = 4;
    metrics->tmAveCharWidth = 8;
    metrics->tmMaxCharWidth = 8;
    return 1;
}

BOOL BitBlt(HDC to, int x, int y, int width, int height, HDC from, int fromX, int fromY, DWORD operation) {
    return note(__func__, to, x, y, width, height, from, fromX, fromY, operation);
}

BOOL Rectangle(HDC context, int left, int top, int right, int bottom) {
    return note(__func__, context, left, top, right, bottom);
}

BOOL TextOutA(HDC context, int x, int y, LPCSTR text, int length) {
    const auto characters = list(text, length);
    return note(__func__, context, x, y, std::string_view(characters.data(), characters.size()), length);
}

// ---- font enumeration -----------------------------------------------------------------------------------------------

namespace {

std::string_view reportedName(const Family& family) {
    return std::string_view(family.fullName).substr(0, LF_FULLFACESIZE - 1);
}

// Calls back until `times` or an answer of 0; answers the last answer.
int callBack(const Family& family, int times, FONTENUMPROCA callback, LPARAM parameter) {
    ENUMLOGFONTA font{};
    TEXTMETRICA metrics{};
    reportedName(family).copy(font.elfLogFont.lfFaceName, LF_FACESIZE - 1);
    std::ranges::copy(reportedName(family), font.elfFullName);
    font.elfLogFont.lfHeight = metrics.tmHeight = LINE_HEIGHT;
    int answer = 1;
    for (int i = 0; i < times && answer != 0; ++i)
        answer = callback(&font.elfLogFont, &metrics, family.type, parameter);
    return answer;
}

}  // namespace

int EnumFontFamiliesA(HDC context, LPCSTR family, FONTENUMPROCA callback, LPARAM parameter) {
    if (!note(__func__, context, family)) return 0;
    int answer = 1;
    for (const Family& each : script.families) {
        if (family && reportedName(each) != family) continue;
        answer = callBack(each, family ? each.faces : 1, callback, parameter);
        if (answer == 0) break;
    }
    return answer;
}

// ---- modules --------------------------------------------------------------------------------------------------------

namespace {

constexpr std::string_view TOOLKIT_MODULE = "QRVEL";
constexpr std::string_view TOOLKIT_FILE = "libQRVEL.so";
constexpr uintptr_t LOADED_MODULE = 0x1000;
constexpr uintptr_t OWN_MODULE = 0x400;  // the program itself, which a null name asks for

}  // namespace

// Another handle than LoadLibraryA's: loading may fail although the module is there.
HMODULE GetModuleHandleA(LPCSTR name) {
    if (!note(__func__, name)) return nullptr;
    if (name == nullptr) return systemHandle<HMODULE>(OWN_MODULE);
    return name == TOOLKIT_MODULE && script.moduleLoaded ? systemHandle<HMODULE>(LOADED_MODULE) : nullptr;
}

HMODULE LoadLibraryA(LPCSTR name) {
    const bool known = note(__func__, name) && name == TOOLKIT_MODULE;
    return known ? systemHandle<HMODULE>(script.moduleHandle) : nullptr;
}

BOOL FreeLibrary(HMODULE module) {
    return note(__func__, module);
}

FARPROC GetProcAddress(HMODULE module, LPCSTR name) {
    const bool known = note(__func__, module, name) && std::string_view(name) == "Wqueryversion" && script.versionEntry;
    return known ? std::bit_cast<FARPROC>(&Wqueryversion) : nullptr;
}

DWORD GetModuleFileNameA(HMODULE module, LPSTR name, DWORD size) {
    if (!note(__func__, module, size)) return 0;
    return module ? copyCut(TOOLKIT_FILE, name, size) : posix::moduleFileName(nullptr, name, size);
}

void OutputDebugStringA(LPCSTR text) {
    note(__func__, text);
}

void ExitProcess(UINT status) {
    note(__func__, status);
    endProcess(static_cast<int>(status));
}

// ---- version, environment, profile ----------------------------------------------------------------------------------

namespace {

struct ProfileValue {
    std::string_view key;
    const char* value;
};

constexpr ProfileValue INVENTED_PROFILE[] = {
    {"sLanguage", "ENU"}, {"sCountry", "United States"},
    {"iCountry", "1"},    {"sShortDate", "M/d/yyyy"},
    {"sCurrency", "$"},   {"sThousand", ","},
    {"sDecimal", "."},
};

const char* inventedValue(std::string_view section, std::string_view key) {
    const auto* found = std::ranges::find(INVENTED_PROFILE, key, &ProfileValue::key);
    return section == "intl" && found != std::end(INVENTED_PROFILE) ? found->value : nullptr;
}

}  // namespace

BOOL GetVersionExA(OSVERSIONINFOA* info) {
    if (!note(__func__)) return 0;
    posix::versionInfo(info);
    if (script.inventProfile) {
        info->dwMajorVersion = 10;
        info->dwMinorVersion = 0;
        info->dwBuildNumber = 19045;
    }
    info->dwPlatformId = script.platformId;
    return 1;
}

void GetSystemInfo(SYSTEM_INFO* info) {
    note(__func__);
    posix::systemInfo(info);
    if (script.inventProfile) info->dwProcessorType = 8664;
}

DWORD GetEnvironmentVariableA(LPCSTR name, LPSTR value, DWORD size) {
    if (!note(__func__, name, size)) return 0;
    const auto scripted = script.environment.find(name);
    if (scripted == script.environment.end()) return posix::environmentVariable(name, value, size);
    const std::string& text = scripted->second;
    if (!text.empty() && text.size() >= size) return static_cast<DWORD>(text.size() + 1);
    return text.empty() ? 0 : copyCut(text, value, size);
}

DWORD GetProfileStringA(LPCSTR section, LPCSTR key, LPCSTR fallback, LPSTR value, DWORD size) {
    if (!note(__func__, section, key, fallback, size)) return 0;
    if (!script.inventProfile) return posix::profileString(section, key, fallback, value, size);
    const char* invented = inventedValue(section, key);
    return copyCut(invented ? invented : fallback, value, size);
}

UINT GetProfileIntA(LPCSTR section, LPCSTR key, int fallback) {
    if (!note(__func__, section, key, fallback)) return 0;
    if (!script.inventProfile) return posix::profileInt(section, key, fallback);
    const char* invented = inventedValue(section, key);
    return static_cast<UINT>(invented ? std::atoi(invented) : fallback);
}

// ---- files ----------------------------------------------------------------------------------------------------------

HFILE OpenFile(LPCSTR name, OFSTRUCT* info, UINT style) {
    const bool opens = note(__func__, name, style) && succeeds(std::string("OpenFile ") + name);
    return opens ? posix::openFile(name, info, style) : HFILE_ERROR;
}

UINT _lwrite(HFILE file, LPCSTR bytes, UINT count) {
    if (!note(__func__, file, count, std::string_view(bytes, count))) return static_cast<UINT>(HFILE_ERROR);
    return posix::writeFile(file, bytes, count);
}

HFILE _lclose(HFILE file) {
    return note(__func__, file) ? posix::closeFile(file) : HFILE_ERROR;
}
