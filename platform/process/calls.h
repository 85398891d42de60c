// System calls as a process runs them that has a say in its clock, its programs and its settings
// (platform/control.h). The host's Win32 calls are these; on Windows they take the place of
// the system's own.
#pragma once

#include <cstdint>

#include "platform/win32.h"

namespace zelk::host {

// Makes the process's calls come here. Nothing to do on the host, where they always do.
void TakeOverCalls();

// --- Clock ---
void WINAPI SleepOnClock(DWORD milliseconds);
MMRESULT WINAPI SystemTimeOfClock(MMTIME* time, UINT size);

// What the system's own clock says and does; milliseconds from any start.
std::uint64_t RealMilliseconds();
void RealSleep(DWORD milliseconds);

// --- Programs ---
// Notes the command and answers that there is no such program (2).
UINT WINAPI NoteCommand(LPCSTR command, UINT show);
void WINAPI NoteDebugOutput(LPCSTR text);

}  // namespace zelk::host
