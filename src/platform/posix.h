// The half of the platform that needs no window system. Each does what windows.h says of the call of the same name;
// the shared object exports them under those names, the recorder puts its script in front of them.
#pragma once

#include "platform/windows.h"

namespace posix {

HFILE openFile(LPCSTR name, OFSTRUCT* info, UINT style);
UINT writeFile(HFILE file, LPCSTR bytes, UINT count);
HFILE closeFile(HFILE file);

DWORD environmentVariable(LPCSTR name, LPSTR value, DWORD size);
BOOL versionInfo(OSVERSIONINFOA* info);
void systemInfo(SYSTEM_INFO* info);
DWORD profileString(LPCSTR section, LPCSTR key, LPCSTR fallback, LPSTR value, DWORD size);
UINT profileInt(LPCSTR section, LPCSTR key, int fallback);

HMODULE moduleHandle(LPCSTR name);
HMODULE loadLibrary(LPCSTR name);
BOOL freeLibrary(HMODULE module);
FARPROC procAddress(HMODULE module, LPCSTR name);
DWORD moduleFileName(HMODULE module, LPSTR name, DWORD size);

}  // namespace posix
