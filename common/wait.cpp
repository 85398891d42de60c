#include "common/wait.h"

#include "platform/win32.h"

namespace zelk {
namespace {

constexpr DWORD kSliceMs = 5;

std::uint32_t SystemTimeMs() {
  MMTIME time{};
  time.wType = TIME_MS;
  timeGetSystemTime(&time, sizeof(time));
  return time.u.ms;
}

}  // namespace

void WaitMs(std::uint32_t milliseconds) {
  timeBeginPeriod(1);
  const std::uint32_t start = SystemTimeMs();
  // The unsigned difference stays right when the 32-bit time wraps.
  do {
    Sleep(kSliceMs);
  } while (SystemTimeMs() - start < milliseconds);
  timeEndPeriod(1);
}

}  // namespace zelk
