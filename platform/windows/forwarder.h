// DLLs that hand their entry points' calls on to the process that loaded them
// (forwarding_dll.cpp.in). The entry points have the C calling convention, so that a call is handed
// on by a jump, whatever its arguments are.
#pragma once

namespace zelk::host {

// What such a DLL exports beside its entry points: sends the entry point of this name to `target`,
// without a name all of them to nobody, where they answer 0. Answers 0 for a name that there is
// not.
using ForwardEntry = int __cdecl(const char* name, void* target);
inline constexpr const char* kForwardEntry = "ZElkForward";

}  // namespace zelk::host
