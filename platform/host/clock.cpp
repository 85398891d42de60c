// The clock: real, or virtual and advanced by Sleep alone. A band scan asks for the time about
// 100,000 times, so the state is a handful of relaxed atomics.
#include <sched.h>
#include <time.h>

#include <atomic>
#include <cerrno>

#include "platform/host/control.h"

namespace {

constexpr std::uint64_t kMillisecondsPerSecond = 1000;
constexpr long kNanosecondsPerMillisecond = 1'000'000;
constexpr long kNanosecondsPerSecond = 1'000'000'000;

std::atomic<bool> clockIsVirtual{false};
std::atomic<std::uint64_t> virtualMilliseconds{0};
std::atomic<std::uint64_t> sleptMilliseconds{0};

void ChooseClock(bool isVirtual) {
  clockIsVirtual.store(isVirtual, std::memory_order_relaxed);
  virtualMilliseconds.store(0, std::memory_order_relaxed);
  sleptMilliseconds.store(0, std::memory_order_relaxed);
}

timespec MonotonicNow() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now;
}

// An absolute end, so that signals that interrupt the wait do not lengthen it.
void SleepForReal(DWORD milliseconds) {
  timespec end = MonotonicNow();
  end.tv_sec += milliseconds / kMillisecondsPerSecond;
  end.tv_nsec +=
      static_cast<long>(milliseconds % kMillisecondsPerSecond) * kNanosecondsPerMillisecond;
  if (end.tv_nsec >= kNanosecondsPerSecond) {
    end.tv_nsec -= kNanosecondsPerSecond;
    ++end.tv_sec;
  }
  while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &end, nullptr) == EINTR) {
  }
}

bool IsVirtual() { return clockIsVirtual.load(std::memory_order_relaxed); }

std::uint64_t Now() {
  if (IsVirtual()) return virtualMilliseconds.load(std::memory_order_relaxed);
  const timespec now = MonotonicNow();
  return static_cast<std::uint64_t>(now.tv_sec) * kMillisecondsPerSecond +
         static_cast<std::uint64_t>(now.tv_nsec / kNanosecondsPerMillisecond);
}

constexpr MMRESULT kTimerNoError = 0;
constexpr MMRESULT kInvalidParameter = 11;
constexpr MMRESULT kTimerCannotDo = 97;

}  // namespace

namespace zelk::host {

void UseVirtualClock() { ChooseClock(true); }
void UseRealClock() { ChooseClock(false); }
bool ClockIsVirtual() { return IsVirtual(); }

std::uint64_t ClockMilliseconds() { return Now(); }
std::uint64_t SleptMilliseconds() { return sleptMilliseconds.load(std::memory_order_relaxed); }

}  // namespace zelk::host

void Sleep(DWORD dwMilliseconds) {
  sleptMilliseconds.fetch_add(dwMilliseconds, std::memory_order_relaxed);
  if (IsVirtual()) {
    virtualMilliseconds.fetch_add(dwMilliseconds, std::memory_order_relaxed);
  } else if (dwMilliseconds == 0) {
    sched_yield();
  } else {
    SleepForReal(dwMilliseconds);
  }
}

DWORD GetTickCount() { return static_cast<DWORD>(Now()); }

// The clock counts milliseconds whatever period is asked for.
MMRESULT timeBeginPeriod(UINT uPeriod) { return uPeriod == 0 ? kTimerCannotDo : kTimerNoError; }
MMRESULT timeEndPeriod(UINT uPeriod) { return uPeriod == 0 ? kTimerCannotDo : kTimerNoError; }

// Answers in milliseconds whatever `wType` says, as Windows does.
MMRESULT timeGetSystemTime(MMTIME* pmmt, UINT cbmmt) {
  if (!pmmt || cbmmt < sizeof(MMTIME)) return kInvalidParameter;
  pmmt->wType = TIME_MS;
  pmmt->u.ms = static_cast<DWORD>(Now());
  return kTimerNoError;
}
