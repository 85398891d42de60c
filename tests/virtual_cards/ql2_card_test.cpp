// The QL2 card from outside: tuning by the driver, its status, the decoder's lock, FM by either
// way.
#include "plugged_ql2.h"

namespace zelk::virtual_cards {
namespace {

constexpr double kTunedKHz = 175250;

// Every board tunes every carrier of its band, and its status and its decoder say so.
TEST_F(Ql2CardTest, EveryBoardReceivesItsBand) {
  struct Case {
    std::vector<std::uint32_t> codes;
    double lowKHz, highKHz;
    std::uint32_t standard;
    LONG country;
  };
  const Case cases[] = {
      {{10, 11, 26, 50, 51, 0, 15, 255}, 48250, 863250, AnalogVideo_PAL_B, 49},
      {{16, 17, 24, 25, 52, 53}, 55250, 801250, AnalogVideo_NTSC_M, 1},
      {{48, 49}, 91250, 771250, AnalogVideo_NTSC_M_J, 81},
  };
  for (const Case& one : cases) {
    for (const std::uint32_t code : one.codes) {
      Air air;
      for (double kHz = one.lowKHz; kHz <= one.highKHz; kHz += 8000)
        air.tv.push_back(AirWith(kHz, one.standard).tv[0]);
      Plug({.tunerCode = code}, air);
      Ql2Interfaces on(*card_);
      EXPECT_EQ(on.tvTuner->put_CountryCode(one.country), S_OK);
      for (const TvCarrier& carrier : air.tv) {
        ASSERT_EQ(on.Tune(carrier.pictureKHz), S_OK);
        const KSPROPERTY_TUNER_STATUS_S status = on.Status();
        ASSERT_EQ(status.SignalStrength, 100U) << code << " at " << carrier.pictureKHz;
        EXPECT_EQ(status.CurrentFrequency, carrier.pictureKHz * 1000);
        EXPECT_EQ(status.Busy, 0U);
        EXPECT_TRUE(on.Locked());
        EXPECT_NEAR(card_->TunedKHz(), carrier.pictureKHz, 32);
        EXPECT_EQ(on.Tune(carrier.pictureKHz + 4000), S_OK);
        ASSERT_EQ(on.Status().SignalStrength, 0U) << code << " at " << carrier.pictureKHz;
        EXPECT_FALSE(on.Locked());
      }
    }
  }
}

}  // namespace
}  // namespace zelk::virtual_cards
