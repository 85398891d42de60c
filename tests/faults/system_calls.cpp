// The system's calls as the library makes them. The definitions of this program go before those of
// the host, so that every call comes here first; those of anybody but the library go straight on.
#include <dlfcn.h>

#include <array>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

#include "platform/win32.h"
#include "tests/faults/calls.h"
#include "tests/faults/spy.h"
#include "tests/faults/system_calls.h"

namespace zelk::faults {
namespace {

int openHandles = 0;

// The host's own definition of a function of this program.
template <auto Function>
decltype(Function) Host() {
  static const auto host = [] {
    Dl_info info = {};
    dladdr(reinterpret_cast<const void*>(Function), &info);
    return reinterpret_cast<decltype(Function)>(dlsym(RTLD_NEXT, info.dli_sname));
  }();
  return host;
}

template <auto Function, class... Arguments>
auto AskHost(Arguments... arguments) {
  const AtWork outside(false);
  return Host<Function>()(arguments...);
}

// Passes a call of the library: `failed` is what a refused one answers, `lie()` what a lying one
// does.
template <auto Function, class Result, class Lie, class... Arguments>
Result PassOrLie(const char* name, Result failed, Lie lie, Arguments... arguments) {
  if (!LibraryIsAtWork()) return Host<Function>()(arguments...);
  const Fate fate = FateOf(name);
  if (fate == Fate::Refused) return failed;
  if (fate == Fate::Lied) return lie();
  return AskHost<Function>(arguments...);
}

template <auto Function, class Result, class... Arguments>
Result Pass(const char* name, Result failed, Arguments... arguments) {
  return PassOrLie<Function>(
      name, failed, [=] { return failed; }, arguments...);
}

// A call that gives something back does so even when it says that it has not: nobody could try
// again.
template <auto Function, class Result, class... Arguments>
Result PassRelease(const char* name, Result failed, Arguments... arguments) {
  if (!LibraryIsAtWork()) return Host<Function>()(arguments...);
  const Fate fate = FateOf(name);
  const Result result = AskHost<Function>(arguments...);
  return fate == Fate::Refused || fate == Fate::Lied ? failed : result;
}

// A call that hands out an interface.
template <auto Function, class Interface, class... Arguments>
HRESULT PassObject(const char* name, REFIID iid, Interface** place, Arguments... arguments) {
  if (!LibraryIsAtWork()) return Host<Function>()(arguments..., place);
  const Fate fate = FateOf(name);
  if (fate == Fate::Refused || fate == Fate::Lied) {
    *place = reinterpret_cast<Interface*>(std::uintptr_t{0xDEAD0});
    return kRefusal;
  }
  const HRESULT code = AskHost<Function>(arguments..., place);
  if (SUCCEEDED(code)) *place = static_cast<Interface*>(StandInOf(iid, *place));
  return code == S_OK && fate == Fate::Odd ? S_FALSE : code;
}

DWORD Fill(char* text, DWORD size, char with) {
  if (size > 0) std::memset(text, with, size - 1);
  if (size > 0) text[size - 1] = '\0';
  return size;
}

// --- Entry points of I/O libraries ---

using Word = std::uintptr_t;
using EntryPoint = Word (*)(Word, Word, Word, Word);

struct Entry {
  std::string_view name;
  int place = -1;  // the argument that it stores through
  std::size_t bytes = 0;
  EntryPoint function = nullptr;
};

Entry entries[] = {
    {"INIT_IO"},     {"FREE_IO"},         {"I2CISINITOK"},         {"I2CINITSWMODE"},
    {"I2CSWSTART"},  {"I2CSWWRITE"},      {"I2CSWREAD", 0, 1},     {"I2CSWSTOP"},
    {"READDECODER"}, {"SETGPIEBIT"},      {"GETGPDATABITS", 2, 4}, {"InitIO"},
    {"FreeIO"},      {"I2CIsInitOK"},     {"I2CInitSWMode"},       {"I2CSWStart"},
    {"I2CSWWrite"},  {"I2CSWRead", 0, 1}, {"I2CSWStop"},           {"ReadDecoder"},
    {"SetGPIOPort"}, {"GetGPData", 0, 4},
};

template <std::size_t Number>
Word CallEntry(Word a, Word b, Word c, Word d) {
  const Entry& entry = entries[Number];
  const Fate fate = FateOf(entry.name.data());
  const Word arguments[] = {a, b, c, d};
  if (fate == Fate::Lied && entry.place >= 0) {
    FillByChance(reinterpret_cast<void*>(arguments[entry.place]), entry.bytes);
  }
  if (fate == Fate::Lied) return ChanceBelow(3);
  if (fate == Fate::Refused) return 0;
  const AtWork outside(false);
  return entry.function(a, b, c, d);
}

template <std::size_t... Numbers>
constexpr auto MakeCalls(std::index_sequence<Numbers...>) {
  return std::array<EntryPoint, sizeof...(Numbers)>{CallEntry<Numbers>...};
}

FARPROC CountedEntry(FARPROC function, std::string_view name) {
  static constexpr auto kCalls = MakeCalls(std::make_index_sequence<std::size(entries)>());
  for (std::size_t i = 0; i < std::size(entries); ++i) {
    if (entries[i].name != name || !function) continue;
    entries[i].function = reinterpret_cast<EntryPoint>(reinterpret_cast<void (*)()>(function));
    return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(kCalls[i]));
  }
  return function;
}

}  // namespace

std::function<void()> atLog;

int OpenHandles() { return openHandles; }

}  // namespace zelk::faults

using namespace zelk::faults;

HRESULT CoCreateInstance(REFCLSID classId, IUnknown* outer, DWORD context, REFIID iid,
                         LPVOID* place) {
  const auto create = [](const CLSID* id, IUnknown* unknown, DWORD where, const IID* wanted,
                         void** object) {
    return Host<&CoCreateInstance>()(*id, unknown, where, *wanted, object);
  };
  if (!LibraryIsAtWork()) return create(&classId, outer, context, &iid, place);
  const Fate fate = FateOf("CoCreateInstance");
  if (fate == Fate::Refused || fate == Fate::Lied) {
    *place = reinterpret_cast<void*>(std::uintptr_t{0xDEAD0});
    return kRefusal;
  }
  const AtWork outside(false);
  const HRESULT code = create(&classId, outer, context, &iid, place);
  if (SUCCEEDED(code)) *place = StandInOf(iid, *place);
  return code == S_OK && fate == Fate::Odd ? S_FALSE : code;
}

HRESULT GetRunningObjectTable(DWORD reserved, IRunningObjectTable** table) {
  return PassObject<&GetRunningObjectTable>("GetRunningObjectTable",
                                            zelk::IidOf<IRunningObjectTable>(), table, reserved);
}
HRESULT CreateItemMoniker(LPCOLESTR delimiter, LPCOLESTR item, IMoniker** moniker) {
  return PassObject<&CreateItemMoniker>("CreateItemMoniker", zelk::IidOf<IMoniker>(), moniker,
                                        delimiter, item);
}

HANDLE CreateFileA(LPCSTR name, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                   DWORD disposition, DWORD flags, HANDLE pattern) {
  if (LibraryIsAtWork() && atLog) atLog();
  const HANDLE file = Pass<&CreateFileA>("CreateFileA", INVALID_HANDLE_VALUE, name, access, share,
                                         security, disposition, flags, pattern);
  openHandles += LibraryIsAtWork() && file != INVALID_HANDLE_VALUE;
  return file;
}
BOOL CloseHandle(HANDLE file) {
  openHandles -= LibraryIsAtWork();
  return PassRelease<&CloseHandle>("CloseHandle", FALSE, file);
}
DWORD GetFileSize(HANDLE file, LPDWORD high) {
  return Pass<&GetFileSize>("GetFileSize", INVALID_FILE_SIZE, file, high);
}
DWORD SetFilePointer(HANDLE file, LONG distance, LONG* high, DWORD method) {
  return Pass<&SetFilePointer>("SetFilePointer", DWORD{0xFFFFFFFF}, file, distance, high, method);
}
BOOL WriteFile(HANDLE file, LPCVOID bytes, DWORD count, LPDWORD written, OVERLAPPED* overlapped) {
  return Pass<&WriteFile>("WriteFile", FALSE, file, bytes, count, written, overlapped);
}
BOOL DeleteFileA(LPCSTR name) { return Pass<&DeleteFileA>("DeleteFileA", FALSE, name); }

LSTATUS RegOpenKeyExA(HKEY key, LPCSTR subKey, DWORD options, REGSAM access, HKEY* result) {
  const LSTATUS code =
      Pass<&RegOpenKeyExA>("RegOpenKeyExA", LSTATUS{5}, key, subKey, options, access, result);
  openHandles += LibraryIsAtWork() && code == 0;
  return code;
}
LSTATUS RegCloseKey(HKEY key) {
  openHandles -= LibraryIsAtWork();
  return PassRelease<&RegCloseKey>("RegCloseKey", LSTATUS{5}, key);
}
// The registry promises no terminator.
LSTATUS RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                         LPDWORD size) {
  const auto lie = [&] {
    FillByChance(data, *size);
    return LSTATUS{0};
  };
  return PassOrLie<&RegQueryValueExA>("RegQueryValueExA", LSTATUS{5}, lie, key, name, reserved,
                                      type, data, size);
}

LCID GetUserDefaultLCID() { return Pass<&GetUserDefaultLCID>("GetUserDefaultLCID", LCID{0}); }
int GetLocaleInfoA(LCID locale, LCTYPE what, LPSTR text, int size) {
  const auto lie = [&] { return static_cast<int>(Fill(text, static_cast<DWORD>(size), '9')); };
  return PassOrLie<&GetLocaleInfoA>("GetLocaleInfoA", 0, lie, locale, what, text, size);
}
UINT GetPrivateProfileIntA(LPCSTR section, LPCSTR key, INT fallback, LPCSTR file) {
  return Pass<&GetPrivateProfileIntA>("GetPrivateProfileIntA", static_cast<UINT>(fallback), section,
                                      key, fallback, file);
}
DWORD GetPrivateProfileStringA(LPCSTR section, LPCSTR key, LPCSTR fallback, LPSTR text, DWORD size,
                               LPCSTR file) {
  const auto lie = [&] { return Fill(text, size, '7') - 1; };
  return PassOrLie<&GetPrivateProfileStringA>("GetPrivateProfileStringA", DWORD{0}, lie, section,
                                              key, fallback, text, size, file);
}

UINT WinExec(LPCSTR command, UINT show) {
  return Pass<&WinExec>("WinExec", UINT{0}, command, show);
}
HMODULE LoadLibraryA(LPCSTR name) { return Pass<&LoadLibraryA>("LoadLibraryA", HMODULE{}, name); }
BOOL FreeLibrary(HMODULE module) { return PassRelease<&FreeLibrary>("FreeLibrary", FALSE, module); }
FARPROC GetProcAddress(HMODULE module, LPCSTR name) {
  const FARPROC function = Pass<&GetProcAddress>("GetProcAddress", FARPROC{}, module, name);
  return LibraryIsAtWork() ? CountedEntry(function, name) : function;
}

BOOL PeekMessageA(MSG* message, HWND window, UINT lowest, UINT highest, UINT remove) {
  return Pass<&PeekMessageA>("PeekMessageA", FALSE, message, window, lowest, highest, remove);
}

// What the library allocates, it allocates so.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return !LibraryIsAtWork() || MayAllocate() ? ::operator new(size) : nullptr;
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return !LibraryIsAtWork() || MayAllocate() ? ::operator new[](size) : nullptr;
}
