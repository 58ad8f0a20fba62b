// The Windows calls that the viewer makes, with their real names, types and values, so that the viewer's own folders
// compile unchanged against the real headers. Only what is used is declared.
//
// What they do on Linux is said beside each; files and profile are POSIX, messages and windows stand on Qt.
#pragma once

#include <cstddef>
#include <cstdint>

using BOOL = int;
using BYTE = uint8_t;
using WORD = uint16_t;
using DWORD = uint32_t;
using UINT = unsigned int;
using LONG = int32_t;
using CHAR = char;
using LPSTR = char*;
using LPCSTR = const char*;
using WPARAM = uintptr_t;
using LPARAM = intptr_t;
using LRESULT = intptr_t;
using HFILE = int;
using ATOM = WORD;

// Handles are distinct pointer types, as under STRICT. A window of the window system that is not ours is its number.
using HWND = struct HWND__*;
using HINSTANCE = struct HINSTANCE__*;
using HMODULE = HINSTANCE;
using HDC = struct HDC__*;
using HGDIOBJ = void*;
using HBRUSH = struct HBRUSH__*;
using HCURSOR = struct HCURSOR__*;
using HICON = struct HICON__*;
using HMENU = struct HMENU__*;
using HACCEL = struct HACCEL__*;
using FARPROC = int64_t (*)();

#define CALLBACK
#define WINAPI

// ---- messages and windows -------------------------------------------------------------------------------------------

struct POINT {
    LONG x, y;
};

struct RECT {
    LONG left, top, right, bottom;
};

struct tagMSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
};
using MSG = tagMSG;

inline constexpr UINT WM_NULL = 0x0000;
inline constexpr UINT WM_DESTROY = 0x0002;
inline constexpr UINT WM_QUIT = 0x0012;
inline constexpr UINT WM_KEYFIRST = 0x0100;
inline constexpr UINT WM_KEYDOWN = 0x0100;
inline constexpr UINT WM_KEYUP = 0x0101;
inline constexpr UINT WM_CHAR = 0x0102;
inline constexpr UINT WM_SYSKEYDOWN = 0x0104;
inline constexpr UINT WM_SYSKEYUP = 0x0105;
inline constexpr UINT WM_SYSCHAR = 0x0106;
inline constexpr UINT WM_MOUSEFIRST = 0x0200;
inline constexpr UINT WM_MOUSEMOVE = 0x0200;
inline constexpr UINT WM_LBUTTONDOWN = 0x0201;
inline constexpr UINT WM_LBUTTONUP = 0x0202;
inline constexpr UINT WM_LBUTTONDBLCLK = 0x0203;
inline constexpr UINT WM_RBUTTONDOWN = 0x0204;
inline constexpr UINT WM_RBUTTONUP = 0x0205;
inline constexpr UINT WM_MBUTTONDOWN = 0x0207;
inline constexpr UINT WM_MBUTTONUP = 0x0208;
inline constexpr UINT WM_MOUSEWHEEL = 0x020A;
inline constexpr UINT WM_MOUSEHWHEEL = 0x020E;

inline constexpr UINT MB_OK = 0x00;
inline constexpr UINT MB_ICONHAND = 0x10;

extern "C" {

// Waits for the next message of any window. 0 for WM_QUIT, else non-zero. `window`, `first` and `last` are 0.
BOOL GetMessageA(MSG* message, HWND window, UINT first, UINT last);
// Queues the character message (WM_CHAR, WM_SYSCHAR) of a key message.
BOOL TranslateMessage(const MSG* message);
// Hands the message to its window; one whose id was changed is dropped.
LRESULT DispatchMessageA(const MSG* message);
// A keyboard command of the MDI client's system menu; there is none here, so always 0.
BOOL TranslateMDISysAccel(HWND mdiClient, MSG* message);
// Sends the command of an accelerator and answers non-zero when the key is one. Here only for keys of `window` itself:
// in a help text or a panel they mean something else.
int TranslateAcceleratorA(HWND window, HACCEL table, MSG* message);
// Queues a message: to an own window, to another process's (an X11 client message), or, with no window, to the loop.
BOOL PostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
void PostQuitMessage(int status);
BOOL IsWindow(HWND window);
// For whoever looks for the reason of something: a text to stderr.
void OutputDebugStringA(LPCSTR text);
// Modal; without a display the text goes to stderr.
int MessageBoxA(HWND owner, LPCSTR text, LPCSTR title, UINT type);

// ---- the trace window: class, window, device context ----------------------------------------------------------------

using WNDPROC = LRESULT(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);

struct WNDCLASSA {
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra;
    int cbWndExtra;
    HINSTANCE hInstance;
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground;
    LPCSTR lpszMenuName;
    LPCSTR lpszClassName;
};

struct TEXTMETRICA {
    LONG tmHeight;
    LONG tmAscent;
    LONG tmDescent;
    LONG tmInternalLeading;
    LONG tmExternalLeading;
    LONG tmAveCharWidth;
    LONG tmMaxCharWidth;
    LONG tmWeight;
    LONG tmOverhang;
    LONG tmDigitizedAspectX;
    LONG tmDigitizedAspectY;
    BYTE tmFirstChar, tmLastChar, tmDefaultChar, tmBreakChar;
    BYTE tmItalic, tmUnderlined, tmStruckOut, tmPitchAndFamily, tmCharSet;
};

inline constexpr UINT CS_VREDRAW = 0x0001;
inline constexpr UINT CS_HREDRAW = 0x0002;
inline constexpr DWORD WS_OVERLAPPED = 0x00000000;
inline constexpr DWORD WS_CAPTION = 0x00C00000;
inline constexpr DWORD WS_SYSMENU = 0x00080000;
inline constexpr DWORD WS_THICKFRAME = 0x00040000;
inline constexpr DWORD WS_MINIMIZEBOX = 0x00020000;
inline constexpr DWORD WS_MAXIMIZEBOX = 0x00010000;
inline constexpr int SW_SHOWNOACTIVATE = 4;
inline constexpr int SM_CYSCREEN = 1;
inline constexpr int SM_CYCAPTION = 4;
inline constexpr int SM_CXFRAME = 32;
inline constexpr int SM_CYFRAME = 33;
inline constexpr int WHITE_BRUSH = 0;
inline constexpr int WHITE_PEN = 6;
inline constexpr int BLACK_PEN = 7;
inline constexpr int OEM_FIXED_FONT = 10;
inline constexpr DWORD SRCCOPY = 0x00CC0020;
inline const LPCSTR IDC_ARROW = reinterpret_cast<LPCSTR>(uintptr_t{32512});

BOOL GetClassInfoA(HINSTANCE instance, LPCSTR name, WNDCLASSA* info);
ATOM RegisterClassA(const WNDCLASSA* windowClass);
HCURSOR LoadCursorA(HINSTANCE instance, LPCSTR name);
HWND CreateWindowExA(DWORD extended, LPCSTR className, LPCSTR title, DWORD style, int x, int y, int width, int height,
                     HWND parent, HMENU menu, HINSTANCE instance, void* parameter);
BOOL ShowWindow(HWND window, int command);
WORD SetWindowWord(HWND window, int index, WORD value);
LRESULT DefWindowProcA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
int GetSystemMetrics(int index);
HGDIOBJ GetStockObject(int index);

// The device context of a window, or with none of the screen.
HDC GetDC(HWND window);
int ReleaseDC(HWND window, HDC context);
HGDIOBJ SelectObject(HDC context, HGDIOBJ object);
BOOL GetTextMetricsA(HDC context, TEXTMETRICA* metrics);
// Within one window only.
BOOL BitBlt(HDC to, int x, int y, int width, int height, HDC from, int fromX, int fromY, DWORD operation);
BOOL Rectangle(HDC context, int left, int top, int right, int bottom);
BOOL TextOutA(HDC context, int x, int y, LPCSTR text, int length);

// ---- font enumeration -----------------------------------------------------------------------------------------------

inline constexpr int LF_FACESIZE = 32;
inline constexpr int LF_FULLFACESIZE = 64;
inline constexpr DWORD RASTER_FONTTYPE = 1;
inline constexpr DWORD DEVICE_FONTTYPE = 2;
inline constexpr DWORD TRUETYPE_FONTTYPE = 4;

struct LOGFONTA {
    LONG lfHeight, lfWidth, lfEscapement, lfOrientation, lfWeight;
    BYTE lfItalic, lfUnderline, lfStrikeOut, lfCharSet, lfOutPrecision, lfClipPrecision, lfQuality, lfPitchAndFamily;
    CHAR lfFaceName[LF_FACESIZE];
};

struct ENUMLOGFONTA {
    LOGFONTA elfLogFont;
    BYTE elfFullName[LF_FULLFACESIZE];
    BYTE elfStyle[LF_FACESIZE];
};

// Called with the first field of an ENUMLOGFONTA; 0 ends the enumeration.
using FONTENUMPROCA = int(CALLBACK*)(const LOGFONTA* font, const TEXTMETRICA* metrics, DWORD type, LPARAM parameter);

// No family: each family once; a family: its faces. Answers what the callback answered last.
int EnumFontFamiliesA(HDC context, LPCSTR family, FONTENUMPROCA callback, LPARAM parameter);

// ---- modules, version, environment, profile -------------------------------------------------------------------------

struct OSVERSIONINFOA {
    DWORD dwOSVersionInfoSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;  // 2: the NT family, which is what Linux reports too
    CHAR szCSDVersion[128];
};

struct SYSTEM_INFO {
    WORD wProcessorArchitecture;
    WORD wReserved;
    DWORD dwPageSize;
    void* lpMinimumApplicationAddress;
    void* lpMaximumApplicationAddress;
    uintptr_t dwActiveProcessorMask;
    DWORD dwNumberOfProcessors;
    DWORD dwProcessorType;
    DWORD dwAllocationGranularity;
    WORD wProcessorLevel;
    WORD wProcessorRevision;
};

// A module "NAME" is lib<NAME>.so, found as the dynamic linker finds it.
HMODULE GetModuleHandleA(LPCSTR name);
HMODULE LoadLibraryA(LPCSTR name);
BOOL FreeLibrary(HMODULE module);
FARPROC GetProcAddress(HMODULE module, LPCSTR name);
// The module's file name (null: the program's), cut to size - 1 characters; answers its length.
DWORD GetModuleFileNameA(HMODULE module, LPSTR name, DWORD size);
[[noreturn]] void ExitProcess(UINT status);

BOOL GetVersionExA(OSVERSIONINFOA* info);
void GetSystemInfo(SYSTEM_INFO* info);

// Length of the value; 0 when unset; the room needed (with the terminator) when it does not fit, and then no value.
DWORD GetEnvironmentVariableA(LPCSTR name, LPSTR value, DWORD size);

// Section "intl": from the session's locale. Other sections have no values.
DWORD GetProfileStringA(LPCSTR section, LPCSTR key, LPCSTR fallback, LPSTR value, DWORD size);
UINT GetProfileIntA(LPCSTR section, LPCSTR key, int fallback);

// ---- files ----------------------------------------------------------------------------------------------------------

inline constexpr HFILE HFILE_ERROR = -1;
inline constexpr int OFS_MAXPATHNAME = 128;
inline constexpr UINT OF_READ = 0x0000;
inline constexpr UINT OF_WRITE = 0x0001;
inline constexpr UINT OF_SHARE_EXCLUSIVE = 0x0010;
inline constexpr UINT OF_CREATE = 0x1000;
inline constexpr UINT OF_EXIST = 0x4000;

struct OFSTRUCT {
    BYTE cBytes;
    BYTE fFixedDisk;
    WORD nErrCode;
    WORD Reserved1;
    WORD Reserved2;
    CHAR szPathName[OFS_MAXPATHNAME];
};

// Looks only at the given path, and opens nothing but ordinary files; through a link nothing is written or found. Every
// open file holds a shared lock; OF_SHARE_EXCLUSIVE needs to be the only holder. OF_CREATE makes the file, or truncates
// one that is empty or was made or truncated so before: any other is left alone. OF_EXIST only tests, with OF_CREATE
// whether a file that is not there could be made. A handle above 0, or HFILE_ERROR.
HFILE OpenFile(LPCSTR name, OFSTRUCT* info, UINT style);
// The number of bytes written, or HFILE_ERROR as an unsigned value.
UINT _lwrite(HFILE file, LPCSTR bytes, UINT count);
HFILE _lclose(HFILE file);
}
