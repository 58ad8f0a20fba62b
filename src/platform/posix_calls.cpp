// The half that needs no window system, under the names of windows.h.
#include <cstdio>
#include <cstdlib>

#include "platform/posix.h"

HFILE OpenFile(LPCSTR name, OFSTRUCT* info, UINT style) {
    return posix::openFile(name, info, style);
}

UINT _lwrite(HFILE file, LPCSTR bytes, UINT count) {
    return posix::writeFile(file, bytes, count);
}

HFILE _lclose(HFILE file) {
    return posix::closeFile(file);
}

DWORD GetEnvironmentVariableA(LPCSTR name, LPSTR value, DWORD size) {
    return posix::environmentVariable(name, value, size);
}

BOOL GetVersionExA(OSVERSIONINFOA* info) {
    return posix::versionInfo(info);
}

void GetSystemInfo(SYSTEM_INFO* info) {
    posix::systemInfo(info);
}

DWORD GetProfileStringA(LPCSTR section, LPCSTR key, LPCSTR fallback, LPSTR value, DWORD size) {
    return posix::profileString(section, key, fallback, value, size);
}

UINT GetProfileIntA(LPCSTR section, LPCSTR key, int fallback) {
    return posix::profileInt(section, key, fallback);
}

HMODULE GetModuleHandleA(LPCSTR name) {
    return posix::moduleHandle(name);
}

HMODULE LoadLibraryA(LPCSTR name) {
    return posix::loadLibrary(name);
}

BOOL FreeLibrary(HMODULE module) {
    return posix::freeLibrary(module);
}

FARPROC GetProcAddress(HMODULE module, LPCSTR name) {
    return posix::procAddress(module, name);
}

DWORD GetModuleFileNameA(HMODULE module, LPSTR name, DWORD size) {
    return posix::moduleFileName(module, name, size);
}

void OutputDebugStringA(LPCSTR text) {
    std::fputs(text, stderr);
}

// Ends as a return from main does: the standard streams are flushed and what was registered for the end is called.
void ExitProcess(UINT status) {
    std::exit(static_cast<int>(status));
}
