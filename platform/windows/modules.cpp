// Modules that the process offers. On Windows a module is a DLL: one that exports the published
// entry points and hands each call on to the process stands in a folder beside the program, where
// no search for DLLs comes by. While it is registered it is loaded, so that the system finds it by
// its name alone.
#include "platform/windows/modules.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/control.h"
#include "platform/module_path.h"
#include "platform/mutex.h"
#include "platform/process/calls.h"
#include "platform/windows/forwarder.h"
#include "platform/windows/imports.h"

namespace zelk::host {
namespace {

const auto systemLoad = SystemFunction("kernel32.dll", "LoadLibraryA", &LoadLibraryA);
const auto systemFree = SystemFunction("kernel32.dll", "FreeLibrary", &FreeLibrary);
const auto systemFind = SystemFunction("kernel32.dll", "GetProcAddress", &GetProcAddress);

constexpr const char* kFolder = "virtual-io";

struct OfferedModule {
  HMODULE module;
  ForwardEntry* forward;
  std::string name;
  std::vector<std::string> entries;
  int loads = 0;
  bool offered = true;
};

struct ModuleTable {
  Mutex mutex;
  std::vector<OfferedModule> modules;
};

ModuleTable& Table() {
  static auto* const table = new ModuleTable;  // modules may be freed by static destructors
  return *table;
}

OfferedModule* Find(ModuleTable& table, HMODULE module) {
  for (OfferedModule& entry : table.modules)
    if (entry.module == module) return &entry;
  return nullptr;
}

std::string PathOf(std::string_view name) {
  const auto path =
      ModulePathOf(reinterpret_cast<const void*>(&PathOf)).parent_path() / kFolder / name;
  return path.string();
}

// Ends the forwarding; the DLL stays loaded as long as somebody else holds it.
void Withdraw(ModuleTable& table, std::string_view name) {
  for (OfferedModule& entry : table.modules) {
    if (!entry.offered || lstrcmpiA(entry.name.c_str(), std::string(name).c_str()) != 0) continue;
    entry.offered = false;
    entry.forward(nullptr, nullptr);
    systemFree(entry.module);
  }
  std::erase_if(table.modules,
                [](const OfferedModule& entry) { return !entry.offered && entry.loads == 0; });
}

}  // namespace

void RegisterModule(std::string_view name, const std::vector<ModuleEntry>& entries) {
  TakeOverCalls();
  ModuleTable& table = Table();
  const std::lock_guard lock(table.mutex);
  Withdraw(table, name);
  const std::string path = PathOf(name);
  const HMODULE module = systemLoad(path.c_str());
  if (!module) throw std::runtime_error("cannot load " + path);
  const auto forward = reinterpret_cast<ForwardEntry*>(
      reinterpret_cast<void (*)()>(systemFind(module, kForwardEntry)));
  OfferedModule offered{
      .module = module, .forward = forward, .name = std::string(name), .entries = {}};
  for (const ModuleEntry& entry : entries) {
    if (!forward || !forward(entry.name, reinterpret_cast<void*>(entry.address))) {
      systemFree(module);
      throw std::runtime_error(path + " has no entry point " + entry.name);
    }
    offered.entries.emplace_back(entry.name);
  }
  table.modules.push_back(std::move(offered));
}

void UnregisterModule(std::string_view name) {
  ModuleTable& table = Table();
  const std::lock_guard lock(table.mutex);
  Withdraw(table, name);
}

int ModuleLoadCount(std::string_view name) {
  ModuleTable& table = Table();
  const std::lock_guard lock(table.mutex);
  int loads = 0;
  for (const OfferedModule& entry : table.modules)
    if (lstrcmpiA(entry.name.c_str(), std::string(name).c_str()) == 0) loads += entry.loads;
  return loads;
}

HMODULE WINAPI LoadCounted(LPCSTR name) {
  const HMODULE module = systemLoad(name);
  ModuleTable& table = Table();
  const std::lock_guard lock(table.mutex);
  OfferedModule* const entry = Find(table, module);
  if (!entry) return module;
  if (!entry->offered) {  // no more than in the memory of those who hold it still
    systemFree(module);
    return nullptr;
  }
  ++entry->loads;
  return module;
}

BOOL WINAPI FreeCounted(HMODULE module) {
  const BOOL freed = systemFree(module);
  ModuleTable& table = Table();
  const std::lock_guard lock(table.mutex);
  OfferedModule* const entry = Find(table, module);
  if (freed && entry && --entry->loads == 0 && !entry->offered)
    table.modules.erase(table.modules.begin() + (entry - table.modules.data()));
  return freed;
}

// The DLL exports every name there is; the process may offer fewer. A number in the place of a name
// means the export of that number, and the system's business.
FARPROC WINAPI FindOffered(HMODULE module, LPCSTR name) {
  ModuleTable& table = Table();
  const std::lock_guard lock(table.mutex);
  const OfferedModule* const entry = Find(table, module);
  const bool hidden =
      entry && !IS_INTRESOURCE(name) &&
      std::find(entry->entries.begin(), entry->entries.end(), name) == entry->entries.end();
  return hidden ? nullptr : systemFind(module, name);
}

}  // namespace zelk::host
