// What a process can say to the host platform itself: the clock it runs on, the settings it reads,
// the modules and devices it finds. There is no counterpart on Windows, where the system, its
// registry and its installed drivers take this place.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/com.h"
#include "platform/win32.h"

namespace zelk::host {

// --- Clock ---

// The clock behind Sleep, timeGetSystemTime and GetTickCount. A real clock is the monotonic system
// clock. A virtual clock starts at 0 and moves only when somebody sleeps, at once.
void UseVirtualClock();
void UseRealClock();
bool ClockIsVirtual();
// Milliseconds on the clock in use, not wrapped to 32 bits.
std::uint64_t ClockMilliseconds();
// The sum of all Sleep arguments since the clock was last chosen, in milliseconds.
std::uint64_t SleptMilliseconds();

// --- Settings ---

// Settings come from files in one folder (docs/host-settings.md): "<name>.ini" for a profile file
// of that name, "registry.ini" for registry values (a section a key, "HKEY_CURRENT_USER\Control
// Panel\International"), "locale.ini" section "locale" with "lcid" (hexadecimal) and "country"
// (dialling code). A missing file, section or value is absent, as on Windows. The folder is the one
// named here (an empty name takes that back), else the environment variable ZELKAPI_SETTINGS, else
// none at all.
void UseSettingsFolder(std::string folder);

// What an installer leaves behind in a profile file. The value counts where the settings folder has
// none of that file, section and key; of several the newest counts. Returns a token for
// RemoveProfileValue.
std::uint32_t AddProfileValue(std::string file, std::string section, std::string key,
                              std::string value);
void RemoveProfileValue(std::uint32_t token);

// --- Programs ---

// The commands given to WinExec since the last call, oldest first; the list is emptied.
std::vector<std::string> TakeExecutedCommands();
// The lines given to OutputDebugStringA since the last call, oldest first; the list is emptied. At
// most the last 1000 are kept. They also go to standard error when the environment variable
// ZELKAPI_DEBUG_OUTPUT is set.
std::vector<std::string> TakeDebugOutput();

// --- Modules ---

struct ModuleEntry {
  const char* name;
  FARPROC address;
};
// Makes LoadLibraryA(name) answer with a module of these entry points before any file is tried.
// Names compare without case, as file names do on Windows. A second registration of a name replaces
// the first. The number of loads not yet freed can be asked for.
void RegisterModule(std::string_view name, const std::vector<ModuleEntry>& entries);
void UnregisterModule(std::string_view name);
int ModuleLoadCount(std::string_view name);

// --- Devices ---

// Puts a device into a category of the system device enumerator, behind those already there. The
// moniker's BindToObject asks `object` for the wanted interface; its property bag answers
// "FriendlyName". Returns a token for RemoveDevice.
std::uint32_t AddDevice(REFCLSID category, std::wstring friendlyName, IUnknown* object);
void RemoveDevice(std::uint32_t token);

}  // namespace zelk::host
