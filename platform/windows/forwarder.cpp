#include "platform/windows/forwarder.h"

#include <stdexcept>

namespace zelk::host {

void Connect(HMODULE forwarder, const std::vector<ModuleEntry>& entries) {
  using ConnectEntry = int __cdecl(const char* name, void* target);
  const auto connect = reinterpret_cast<ConnectEntry*>(
      reinterpret_cast<void*>(GetProcAddress(forwarder, "ZElkForward")));
  if (!connect) throw std::runtime_error("not a forwarding DLL");
  connect(nullptr, nullptr);
  for (const ModuleEntry& entry : entries) {
    if (!connect(entry.name, reinterpret_cast<void*>(entry.address)))
      throw std::runtime_error(std::string("the DLL has no entry point ") + entry.name);
  }
}

}  // namespace zelk::host
