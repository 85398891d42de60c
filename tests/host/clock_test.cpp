#include <gtest/gtest.h>

#include "platform/control.h"

namespace zelk::host {
namespace {

TEST(Clock, VirtualTimePassesOnlyInSleepAndAtOnce) {
  UseVirtualClock();
  EXPECT_EQ(ClockMilliseconds(), 0U);
  Sleep(5);
  Sleep(4'000'000'000U);
  Sleep(1'000'000'000U);
  EXPECT_EQ(ClockMilliseconds(), 5'000'000'005U);
  EXPECT_EQ(SleptMilliseconds(), 5'000'000'005U);
  // The calls count in 32 bits and start over after 49.7 days.
  MMTIME time{};
  EXPECT_EQ(timeGetSystemTime(&time, sizeof time), 0U);
  EXPECT_EQ(time.u.ms, 5'000'000'005U - 0x1'0000'0000U);
  EXPECT_EQ(GetTickCount(), time.u.ms);
  EXPECT_NE(timeGetSystemTime(&time, sizeof time - 1), 0U);
  UseVirtualClock();
  EXPECT_EQ(ClockMilliseconds() + SleptMilliseconds(), 0U);
  UseRealClock();
}

TEST(Clock, RealSleepLastsAtLeastAsLongAsAsked) {
  UseRealClock();
  const std::uint64_t start = ClockMilliseconds();
  Sleep(3);
  EXPECT_GE(ClockMilliseconds() - start, 3U);
  EXPECT_EQ(SleptMilliseconds(), 3U);
}

}  // namespace
}  // namespace zelk::host
