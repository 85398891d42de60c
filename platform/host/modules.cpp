// Loadable modules: those that the process registered, then shared libraries by their path.
#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/control.h"
#include "platform/ignore_case.h"

// A module. The name is Windows' own for what an HMODULE points to.
struct HINSTANCE__ {
  std::string name;
  std::vector<std::pair<std::string, FARPROC>> entries;  // of a registered module
  void* library = nullptr;                               // of a shared library
  bool offered = false;                                  // LoadLibraryA may still answer with it
  int loads = 0;
};

namespace {

using Module = HINSTANCE__;

struct ModuleTable {
  std::mutex mutex;
  std::vector<std::unique_ptr<Module>> modules;
};

ModuleTable& Table() {
  static auto* const table = new ModuleTable;  // modules may be freed by static destructors
  return *table;
}

// What Windows compares: the file name without its folder, ".dll" supplied when there is no
// extension.
std::string ModuleFileName(std::string_view path) {
  const std::size_t separator = path.find_last_of("/\\");
  std::string name(separator == std::string_view::npos ? path : path.substr(separator + 1));
  if (name.find('.') == std::string::npos) name += ".dll";
  return name;
}

Module* FindLoaded(ModuleTable& table, HMODULE handle) {
  const auto found =
      std::find_if(table.modules.begin(), table.modules.end(),
                   [&](const auto& module) { return module.get() == handle && module->loads > 0; });
  return found == table.modules.end() ? nullptr : found->get();
}

// Forgets the modules that nobody holds and nobody can load.
void DropUnused(ModuleTable& table) {
  std::erase_if(table.modules,
                [](const auto& module) { return !module->offered && module->loads == 0; });
}

void Withdraw(ModuleTable& table, const std::string& name) {
  for (const auto& module : table.modules)
    if (module->offered && zelk::host::EqualIgnoringCase(module->name, name))
      module->offered = false;
  DropUnused(table);
}

DWORD CopyPath(std::string_view path, LPSTR buffer, DWORD size) {
  if (!buffer || size == 0) return 0;
  const std::size_t length = std::min<std::size_t>(path.size(), size - 1);
  path.copy(buffer, length);
  buffer[length] = '\0';
  return path.size() < size ? static_cast<DWORD>(length) : size;
}

std::string ProgramPath() {
  std::string path(256, '\0');
  for (;;) {
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    if (length < 0) return {};
    if (static_cast<std::size_t>(length) < path.size()) {
      path.resize(static_cast<std::size_t>(length));
      return path;
    }
    path.resize(path.size() * 2);
  }
}

}  // namespace

HMODULE LoadLibraryA(LPCSTR lpLibFileName) {
  if (!lpLibFileName || !*lpLibFileName) return nullptr;
  ModuleTable& table = Table();
  {
    const std::string name = ModuleFileName(lpLibFileName);
    const std::lock_guard lock(table.mutex);
    for (const auto& module : table.modules) {
      if (module->offered && zelk::host::EqualIgnoringCase(module->name, name)) {
        ++module->loads;
        return module.get();
      }
    }
  }
  // A bare name would be looked for in folders that others may write to, and no card's I/O library
  // is made for this system.
  if (!std::strchr(lpLibFileName, '/')) return nullptr;
  // Outside the lock: a library's initialisers may load modules themselves.
  void* const library = dlopen(lpLibFileName, RTLD_NOW | RTLD_LOCAL);
  if (!library) return nullptr;
  const std::lock_guard lock(table.mutex);
  for (const auto& module : table.modules) {
    if (module->library == library) {
      ++module->loads;
      return module.get();
    }
  }
  auto module = std::make_unique<Module>();
  module->name = lpLibFileName;
  module->library = library;
  module->loads = 1;
  table.modules.push_back(std::move(module));
  return table.modules.back().get();
}

FARPROC GetProcAddress(HMODULE hModule, LPCSTR lpProcName) {
  constexpr std::uintptr_t kHighestOrdinal = 0xFFFF;  // entry points have no numbers here
  if (reinterpret_cast<std::uintptr_t>(lpProcName) <= kHighestOrdinal) return nullptr;
  ModuleTable& table = Table();
  const std::lock_guard lock(table.mutex);
  const Module* const module = FindLoaded(table, hModule);
  if (!module) return nullptr;
  if (module->library) return reinterpret_cast<FARPROC>(dlsym(module->library, lpProcName));
  for (const auto& [name, address] : module->entries)
    if (name == lpProcName) return address;
  return nullptr;
}

BOOL FreeLibrary(HMODULE hLibModule) {
  ModuleTable& table = Table();
  void* library = nullptr;
  {
    const std::lock_guard lock(table.mutex);
    Module* const module = FindLoaded(table, hLibModule);
    if (!module) return FALSE;
    library = module->library;
    --module->loads;
    DropUnused(table);
  }
  if (library) dlclose(library);  // counts its own loads
  return TRUE;
}

DWORD GetModuleFileNameA(HMODULE hModule, LPSTR lpFilename, DWORD nSize) {
  if (!hModule) return CopyPath(ProgramPath(), lpFilename, nSize);
  ModuleTable& table = Table();
  const std::lock_guard lock(table.mutex);
  const Module* const module = FindLoaded(table, hModule);
  if (!module) return 0;
  link_map* map = nullptr;
  if (module->library && dlinfo(module->library, RTLD_DI_LINKMAP, &map) == 0)
    return CopyPath(map->l_name, lpFilename, nSize);
  return CopyPath(module->name, lpFilename, nSize);
}

DWORD GetEnvironmentVariableA(LPCSTR lpName, LPSTR lpBuffer, DWORD nSize) {
  const char* const value = lpName ? std::getenv(lpName) : nullptr;
  if (!value) return 0;
  const std::size_t length = std::strlen(value);
  if (!lpBuffer || length >= nSize) return static_cast<DWORD>(length + 1);
  std::memcpy(lpBuffer, value, length + 1);
  return static_cast<DWORD>(length);
}

BOOL SetEnvironmentVariableA(LPCSTR lpName, LPCSTR lpValue) {
  if (!lpName) return FALSE;
  return (lpValue ? setenv(lpName, lpValue, 1) : unsetenv(lpName)) == 0;
}

namespace zelk::host {

void RegisterModule(std::string_view name, const std::vector<ModuleEntry>& entries) {
  auto module = std::make_unique<Module>();
  module->name = ModuleFileName(name);
  for (const ModuleEntry& entry : entries) module->entries.emplace_back(entry.name, entry.address);
  module->offered = true;
  ModuleTable& table = Table();
  const std::lock_guard lock(table.mutex);
  Withdraw(table, module->name);
  table.modules.push_back(std::move(module));
}

void UnregisterModule(std::string_view name) {
  ModuleTable& table = Table();
  const std::lock_guard lock(table.mutex);
  Withdraw(table, ModuleFileName(name));
}

int ModuleLoadCount(std::string_view name) {
  const std::string fileName = ModuleFileName(name);
  ModuleTable& table = Table();
  const std::lock_guard lock(table.mutex);
  int loads = 0;
  for (const auto& module : table.modules)
    if (EqualIgnoringCase(ModuleFileName(module->name), fileName)) loads += module->loads;
  return loads;
}

}  // namespace zelk::host
