// DLLs that hand their entry points' calls on to the process that loaded them. The entry points
// have the C calling convention, so that a call is handed on by a jump, whatever its arguments are.
#pragma once

#include <vector>

#include "platform/control.h"

namespace zelk::host {

// Lets the DLL's entry points of these names go there, and every other one answer 0.
void Connect(HMODULE forwarder, const std::vector<ModuleEntry>& entries);

}  // namespace zelk::host
