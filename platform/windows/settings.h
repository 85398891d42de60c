// The calls that read settings, for a process that named a settings folder (platform/control.h).
// Without one, and for files with a path of their own, all of them are the system's.
#pragma once

#include "platform/win32.h"

namespace zelk::host {

UINT WINAPI ProfileInt(LPCSTR section, LPCSTR key, INT fallback, LPCSTR file);
DWORD WINAPI ProfileString(LPCSTR section, LPCSTR key, LPCSTR fallback, LPSTR text, DWORD size,
                           LPCSTR file);
LSTATUS WINAPI OpenRegistryKey(HKEY key, LPCSTR subKey, DWORD options, REGSAM access, HKEY* result);
LCID WINAPI UserLocale();
int WINAPI LocaleInfo(LCID locale, LCTYPE type, LPSTR text, int size);

}  // namespace zelk::host
