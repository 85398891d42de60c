// The process's clock: real, or virtual and advanced by Sleep alone. A band scan asks for the time
// about 100,000 times, so the state is a handful of relaxed atomics.
#include <atomic>

#include "platform/control.h"
#include "platform/process/calls.h"

namespace zelk::host {
namespace {

std::atomic<bool> clockIsVirtual{false};
std::atomic<std::uint64_t> virtualMilliseconds{0};
std::atomic<std::uint64_t> sleptMilliseconds{0};

void ChooseClock(bool isVirtual) {
  TakeOverCalls();
  clockIsVirtual.store(isVirtual, std::memory_order_relaxed);
  virtualMilliseconds.store(0, std::memory_order_relaxed);
  sleptMilliseconds.store(0, std::memory_order_relaxed);
}

constexpr MMRESULT kTimerNoError = 0;
constexpr MMRESULT kInvalidParameter = 11;

}  // namespace

void UseVirtualClock() { ChooseClock(true); }
void UseRealClock() { ChooseClock(false); }
bool ClockIsVirtual() { return clockIsVirtual.load(std::memory_order_relaxed); }

std::uint64_t ClockMilliseconds() {
  return ClockIsVirtual() ? virtualMilliseconds.load(std::memory_order_relaxed)
                          : RealMilliseconds();
}
std::uint64_t SleptMilliseconds() { return sleptMilliseconds.load(std::memory_order_relaxed); }

void WINAPI SleepOnClock(DWORD milliseconds) {
  sleptMilliseconds.fetch_add(milliseconds, std::memory_order_relaxed);
  if (ClockIsVirtual()) {
    virtualMilliseconds.fetch_add(milliseconds, std::memory_order_relaxed);
  } else {
    RealSleep(milliseconds);
  }
}

// Answers in milliseconds whatever `wType` says, as Windows does.
MMRESULT WINAPI SystemTimeOfClock(MMTIME* time, UINT size) {
  if (!time || size < sizeof(MMTIME)) return kInvalidParameter;
  time->wType = TIME_MS;
  time->u.ms = static_cast<DWORD>(ClockMilliseconds());
  return kTimerNoError;
}

}  // namespace zelk::host
