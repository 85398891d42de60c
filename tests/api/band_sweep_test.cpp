// The progress figure at the band's odd ends.
#include "api/band_sweep.h"

#include <gtest/gtest.h>

namespace zelk {
namespace {

TEST(ProgressPercent, TruncatesTowardZero) {
  struct Case {
    std::uint32_t frequency, low, high;
    std::int32_t percent;
  };
  for (const Case& one : {
           Case{48250, 48250, 855250, 0},
           {451749, 48250, 855250, 49},
           {451750, 48250, 855250, 50},
           {865000, 48250, 855250, 101},
           // No width: covered at once.
           {250, 0, 0, 100},
           // Ends exchanged: a negative quotient, truncated toward zero.
           {100250, 100000, 99000, -25},
           {100255, 100000, 99000, -25},
           // A frequency that wrapped below the band counts as far above it.
           {99750, 100000, 200000, static_cast<std::int32_t>(4294967046ULL * 100 / 100000)},
       }) {
    const BandSweep sweep = {.frequency = one.frequency,
                             .low = one.low,
                             .high = one.high,
                             .foundLimit = 0,
                             .callback = nullptr};
    EXPECT_EQ(static_cast<std::int32_t>(ProgressPercent(sweep)), one.percent)
        << one.frequency << " in " << one.low << "-" << one.high;
  }
}

}  // namespace
}  // namespace zelk
