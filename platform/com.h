// COM as this library uses it: Windows' own on Windows, the host's elsewhere.
#pragma once

#ifdef _WIN32
#include <windows.h>

#include <oaidl.h>
#include <objbase.h>
#include <ocidl.h>
#include <oleauto.h>
#else
#include "platform/host/com.h"
#endif
