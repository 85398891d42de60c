// The system's calls that this process answers itself, all in one table.
#include "platform/control.h"
#include "platform/process/calls.h"
#include "platform/windows/imports.h"
#include "platform/windows/modules.h"
#include "platform/windows/settings.h"

namespace zelk::host {
namespace {

const auto systemSleep = SystemFunction("kernel32.dll", "Sleep", &Sleep);
const auto systemTime = SystemFunction("winmm.dll", "timeGetSystemTime", &timeGetSystemTime);
const auto systemDebugOutput =
    SystemFunction("kernel32.dll", "OutputDebugStringA", &OutputDebugStringA);

DWORD WINAPI TickCountOfClock() { return static_cast<DWORD>(ClockMilliseconds()); }

void WINAPI DebugOutput(LPCSTR text) {
  NoteDebugOutput(text);
  systemDebugOutput(text);
}

const Redirection kCalls[] = {
    Redirect("Sleep", SleepOnClock),
    Redirect("timeGetSystemTime", SystemTimeOfClock),
    Redirect("GetTickCount", TickCountOfClock),
    Redirect("WinExec", NoteCommand),
    Redirect("OutputDebugStringA", DebugOutput),
    Redirect("GetPrivateProfileIntA", ProfileInt),
    Redirect("GetPrivateProfileStringA", ProfileString),
    Redirect("RegOpenKeyExA", OpenRegistryKey),
    Redirect("GetUserDefaultLCID", UserLocale),
    Redirect("GetLocaleInfoA", LocaleInfo),
    Redirect("LoadLibraryA", LoadCounted),
    Redirect("GetProcAddress", FindOffered),
    Redirect("FreeLibrary", FreeCounted),
};

}  // namespace

void TakeOverCalls() { RedirectImports(kCalls); }

std::uint64_t RealMilliseconds() {
  MMTIME time{};
  time.wType = TIME_MS;
  systemTime(&time, sizeof time);
  return time.u.ms;
}

void RealSleep(DWORD milliseconds) { systemSleep(milliseconds); }

}  // namespace zelk::host
