// The calls that load modules, for a process that offers modules of its own (platform/control.h).
#pragma once

#include "platform/win32.h"

namespace zelk::host {

HMODULE WINAPI LoadCounted(LPCSTR name);
BOOL WINAPI FreeCounted(HMODULE module);
FARPROC WINAPI FindOffered(HMODULE module, LPCSTR name);

}  // namespace zelk::host
