#include "platform/windows/imports.h"

#include <cstring>

// Where the module begins that this code is part of; the linker defines it.
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace zelk::host {
namespace {

// A module's places by their distance from its beginning, as its headers give them.
class Module {
 public:
  explicit Module(const void* base) : base_(static_cast<const BYTE*>(base)) {}

  template <class Item>
  Item* At(DWORD distance) const {
    return reinterpret_cast<Item*>(const_cast<BYTE*>(base_) + distance);
  }
  const IMAGE_IMPORT_DESCRIPTOR* Imports() const {
    const auto* const dos = At<IMAGE_DOS_HEADER>(0);
    const auto* const headers = At<IMAGE_NT_HEADERS>(static_cast<DWORD>(dos->e_lfanew));
    const IMAGE_DATA_DIRECTORY& directory =
        headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    return directory.Size == 0 ? nullptr : At<IMAGE_IMPORT_DESCRIPTOR>(directory.VirtualAddress);
  }

 private:
  const BYTE* base_;
};

// The import tables are read-only once the module is loaded.
void Write(IMAGE_THUNK_DATA& slot, void* address) {
  const auto value = reinterpret_cast<DWORD_PTR>(address);
  if (slot.u1.Function == value) return;
  DWORD before = 0;
  if (!VirtualProtect(&slot, sizeof slot, PAGE_READWRITE, &before))
    throw std::runtime_error("an import table cannot be written");
  slot.u1.Function = value;
  VirtualProtect(&slot, sizeof slot, before, &before);
}

void RedirectIn(const Module& module, std::span<const Redirection> redirections) {
  const IMAGE_IMPORT_DESCRIPTOR* library = module.Imports();
  for (; library && library->Name != 0; ++library) {
    // Two tables side by side: the functions' names, and the addresses that calls go through.
    const auto* name = module.At<IMAGE_THUNK_DATA>(library->OriginalFirstThunk);
    auto* slot = module.At<IMAGE_THUNK_DATA>(library->FirstThunk);
    for (; name->u1.AddressOfData != 0; ++name, ++slot) {
      if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
      const auto* const import =
          module.At<IMAGE_IMPORT_BY_NAME>(static_cast<DWORD>(name->u1.AddressOfData));
      for (const Redirection& redirection : redirections) {
        if (std::strcmp(reinterpret_cast<const char*>(import->Name), redirection.function) == 0)
          Write(*slot, redirection.ours);
      }
    }
  }
}

}  // namespace

void RedirectImports(std::span<const Redirection> redirections) {
  for (const void* base :
       {static_cast<const void*>(GetModuleHandleA(nullptr)), static_cast<const void*>(&__ImageBase),
        static_cast<const void*>(GetModuleHandleA("ZElkAPI.dll"))}) {
    if (base) RedirectIn(Module(base), redirections);
  }
}

}  // namespace zelk::host
