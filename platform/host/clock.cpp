// The system's clock behind the process's, and the calls that ask it.
#include <sched.h>
#include <time.h>

#include <cerrno>

#include "platform/control.h"
#include "platform/process/calls.h"

namespace {

constexpr std::uint64_t kMillisecondsPerSecond = 1000;
constexpr long kNanosecondsPerMillisecond = 1'000'000;
constexpr long kNanosecondsPerSecond = 1'000'000'000;

timespec MonotonicNow() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now;
}

constexpr MMRESULT kTimerNoError = 0;
constexpr MMRESULT kTimerCannotDo = 97;

}  // namespace

namespace zelk::host {

std::uint64_t RealMilliseconds() {
  const timespec now = MonotonicNow();
  return static_cast<std::uint64_t>(now.tv_sec) * kMillisecondsPerSecond +
         static_cast<std::uint64_t>(now.tv_nsec / kNanosecondsPerMillisecond);
}

// An absolute end, so that signals that interrupt the wait do not lengthen it.
void RealSleep(DWORD milliseconds) {
  if (milliseconds == 0) {
    sched_yield();
    return;
  }
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

void TakeOverCalls() {}

}  // namespace zelk::host

void Sleep(DWORD dwMilliseconds) { zelk::host::SleepOnClock(dwMilliseconds); }

DWORD GetTickCount() { return static_cast<DWORD>(zelk::host::ClockMilliseconds()); }

// The clock counts milliseconds whatever period is asked for.
MMRESULT timeBeginPeriod(UINT uPeriod) { return uPeriod == 0 ? kTimerCannotDo : kTimerNoError; }
MMRESULT timeEndPeriod(UINT uPeriod) { return uPeriod == 0 ? kTimerCannotDo : kTimerNoError; }

MMRESULT timeGetSystemTime(MMTIME* pmmt, UINT cbmmt) {
  return zelk::host::SystemTimeOfClock(pmmt, cbmmt);
}
