// This process and those it would start.
#include <unistd.h>

#include "platform/process/calls.h"

UINT WinExec(LPCSTR lpCmdLine, UINT uCmdShow) {
  return zelk::host::NoteCommand(lpCmdLine, uCmdShow);
}
void OutputDebugStringA(LPCSTR lpOutputString) { zelk::host::NoteDebugOutput(lpOutputString); }

DWORD GetCurrentProcessId() { return static_cast<DWORD>(getpid()); }
DWORD GetCurrentThreadId() { return static_cast<DWORD>(gettid()); }
