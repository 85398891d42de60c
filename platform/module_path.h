// Where the running code was loaded from.
#pragma once

#include <filesystem>

#include "platform/win32.h"

#ifndef _WIN32
#include <dlfcn.h>
#endif

namespace zelk {

// The file, program or library, that holds the function or constant at `address`; empty when the
// system does not say.
inline std::filesystem::path ModulePathOf(const void* address) {
#ifdef _WIN32
  HMODULE module = nullptr;
  char name[MAX_PATH] = {};
  if (!GetModuleHandleExA(
          GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
          static_cast<LPCSTR>(address), &module))
    return {};
  const DWORD length = GetModuleFileNameA(module, name, MAX_PATH);
  return length > 0 && length < MAX_PATH ? name : "";
#else
  Dl_info info = {};
  if (dladdr(address, &info) == 0 || !info.dli_fname) return {};
  // A program may come with the bare name that the shell was given, which says nothing.
  const std::filesystem::path path = info.dli_fname;
  return path.has_parent_path() ? path : "";
#endif
}

}  // namespace zelk
