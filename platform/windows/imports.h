// Redirection of imported functions. A Windows program calls the system through the import tables
// of its modules; writing another address there sends the calls of this process's own modules
// elsewhere, while the system itself and everybody else's modules keep theirs.
#pragma once

#include <span>
#include <stdexcept>
#include <string>

#include "platform/win32.h"

namespace zelk::host {

struct Redirection {
  const char* function;
  void* ours;
};

template <class Function>
Redirection Redirect(const char* function, Function* ours) {
  return {function, reinterpret_cast<void*>(ours)};
}

// Redirects the imports of the program, of the module that this code is part of and, where it is
// loaded, of ZElkAPI.dll. What is redirected already stays so.
void RedirectImports(std::span<const Redirection> redirections);

// The system's own function, for use behind a redirection of it.
template <class Function>
Function* SystemFunction(const char* module, const char* name, Function*) {
  const HMODULE loaded = GetModuleHandleA(module);
  void* const address = loaded ? reinterpret_cast<void*>(GetProcAddress(loaded, name)) : nullptr;
  if (!address) throw std::runtime_error(std::string("this system has no ") + name);
  return reinterpret_cast<Function*>(address);
}

}  // namespace zelk::host
