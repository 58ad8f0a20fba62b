#include "trace/trace_window.h"

#include <cstring>

#include "trace/wrapping.h"

namespace {

constexpr char WINDOW_CLASS[] = "KELG_DEBUG";
constexpr int32_t DEFAULT_WIDTH = 800;  // where neither file nor environment gave one

void readGeometry(TRCSlot* slot) {
    TRCReadEnvironment("KELGTRACE_WINHT", &slot->values[TRC_HEIGHT]);
    TRCReadEnvironment("KELGTRACE_WINWD", &slot->values[TRC_WIDTH]);
    TRCReadEnvironment("KELGTRACE_WINX", &slot->values[TRC_X]);
    TRCReadEnvironment("KELGTRACE_WINY", &slot->values[TRC_Y]);
    if (slot->values[TRC_WIDTH] == 0) slot->values[TRC_WIDTH] = DEFAULT_WIDTH;
}

void registerClass() {
    WNDCLASSA windowClass = {};
    const HINSTANCE instance = GetModuleHandleA(nullptr);
    if (GetClassInfoA(instance, WINDOW_CLASS, &windowClass)) return;
    windowClass = {};
    windowClass.style = CS_HREDRAW | CS_VREDRAW;
    windowClass.lpfnWndProc = TRCWindowProcedure;
    windowClass.cbWndExtra = 2;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    windowClass.lpszMenuName = WINDOW_CLASS;
    windowClass.lpszClassName = WINDOW_CLASS;
    RegisterClassA(&windowClass);
}

void readLineHeight(TRCSlot* slot) {
    TEXTMETRICA metrics = {};
    slot->font = GetStockObject(OEM_FIXED_FONT);
    const HDC context = GetDC(slot->window);
    SelectObject(context, slot->font);
    GetTextMetricsA(context, &metrics);
    ReleaseDC(slot->window, context);
    slot->lineHeight = metrics.tmHeight;
}

void createWindow(TRCHandle handle, TRCSlot* slot) {
    registerClass();
    const int32_t frameHeight = 2 * GetSystemMetrics(SM_CYFRAME) + GetSystemMetrics(SM_CYCAPTION);
    const int32_t frameWidth = 2 * GetSystemMetrics(SM_CXFRAME);
    const int32_t height = slot->values[TRC_HEIGHT];
    const int32_t bottom = wrapSub(GetSystemMetrics(SM_CYSCREEN), slot->values[TRC_Y]);
    const int32_t top = wrapSub(wrapSub(bottom, height), frameHeight);
    slot->window =
        CreateWindowExA(0, WINDOW_CLASS, slot->fileName,
                        WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX,
                        slot->values[TRC_X], top, wrapAdd(slot->values[TRC_WIDTH], frameWidth),
                        wrapAdd(height, frameHeight), nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
    if (slot->window == nullptr) return;
    SetWindowWord(slot->window, 0, static_cast<WORD>(handle));
    ShowWindow(slot->window, SW_SHOWNOACTIVATE);
    readLineHeight(slot);
}

void drawLine(const TRCSlot* slot, const char* line) {
    const int32_t width = slot->values[TRC_WIDTH];
    const int32_t height = slot->values[TRC_HEIGHT];
    const int32_t lastLine = wrapSub(height, slot->lineHeight);
    size_t length = strlen(line);
    if (length > 0 && line[length - 1] == '\n') --length;

    const HDC context = GetDC(slot->window);
    SelectObject(context, slot->font);
    BitBlt(context, 0, 0, width, lastLine, context, 0, slot->lineHeight, SRCCOPY);
    SelectObject(context, GetStockObject(WHITE_BRUSH));
    SelectObject(context, GetStockObject(WHITE_PEN));
    Rectangle(context, 0, lastLine, width, height);
    SelectObject(context, GetStockObject(BLACK_PEN));
    TextOutA(context, 0, lastLine, line, static_cast<int>(length));
    ReleaseDC(slot->window, context);
}

}  // namespace

void TRCShowLine(TRCHandle handle, TRCSlot* slot, const char* line) {
    if (!slot->windowInitialised) {
        slot->windowInitialised = true;
        readGeometry(slot);
        if (slot->values[TRC_HEIGHT] != 0) createWindow(handle, slot);
    }
    if (slot->window != nullptr && slot->values[TRC_HEIGHT] != 0) drawLine(slot, line);
}

LRESULT CALLBACK TRCWindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_DESTROY) return DefWindowProcA(window, message, wParam, lParam);
    for (TRCSlot& slot : TRCGlobal.slots) {
        if (slot.window == window) slot.window = nullptr;
    }
    PostQuitMessage(0);
    return 0;
}
