// The Win32 calls: Windows' own on Windows, the host's elsewhere.
#pragma once

#ifdef _WIN32
#include <windows.h>

#include <mmsystem.h>
#include <shlwapi.h>
#else
#include "platform/host/win32.h"
#endif
