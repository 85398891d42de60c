// The QL2 card from outside: tuning by the driver, its status, the decoder's lock, FM.
#include "plugged_ql2.h"

namespace zelk::virtual_cards {
namespace {

constexpr double kTunedKHz = 175250;

// What the driver makes of the chips' AFC: 100 while it has caught the carrier. 175.25 MHz lies on
// no step of the PLL; 175.225 does, with either IF.
TEST_F(Ql2CardTest, StatusBesideTheCarrier) {
  struct Case {
    double offsetKHz;  // carrier minus tuned frequency
    unsigned byDemodulator, byPll;
    int demodulatorKHz, pllKHz;
  };
  for (const Case& one : {
           Case{-1100, 0, 0, 0, 0},
           Case{-700, 20, 50, -187, -125},
           Case{-130, 60, 50, -137, -125},
           Case{-110, 80, 50, -112, -125},
           Case{-90, 100, 100, -87, -62},
           Case{0, 100, 100, 12, 0},
           Case{60, 100, 100, 62, 62},
           Case{90, 100, 100, 87, 62},
           Case{110, 80, 0, 112, 0},
           Case{130, 60, 0, 137, 0},
           Case{1100, 0, 0, 0, 0},
       }) {
    for (const bool demodulator : {true, false}) {
      PlugTuner(demodulator ? 11 : 50, AirWith(175225 + one.offsetKHz));
      Ql2Interfaces on(*card_);
      on.tvTuner->put_CountryCode(49);
      on.Tune(175225);
      const KSPROPERTY_TUNER_STATUS_S status = on.Status();
      EXPECT_EQ(status.SignalStrength, demodulator ? one.byDemodulator : one.byPll)
          << one.offsetKHz << ' ' << demodulator;
      EXPECT_EQ(static_cast<LONG>(status.PLLOffset), demodulator ? one.demodulatorKHz : one.pllKHz)
          << one.offsetKHz << ' ' << demodulator;
    }
  }
  PlugTuner(11, AirWith(175225, AnalogVideo_PAL_B, 39));
  Ql2Interfaces on(*card_);
  on.Tune(175225);
  EXPECT_EQ(on.Status().SignalStrength, 0U);
}

TEST_F(Ql2CardTest, ReadingsNeedTheirTime) {
  PlugTuner(11, AirWith(kTunedKHz));
  Ql2Interfaces on(*card_);
  KSPROPERTY_TUNER_STATUS_S status{};
  const auto ask = [&] {
    GetProperty(on.tuner.Get(), kPropsetTuner, KSPROPERTY_TUNER_STATUS, status);
    return status.SignalStrength;
  };
  on.Tune(kTunedKHz);
  Sleep(49);
  EXPECT_EQ(ask(), 0U);
  EXPECT_EQ(status.Busy, 1U);
  Sleep(1);
  EXPECT_EQ(ask(), 100U);
  EXPECT_EQ(status.Busy, 0U);
  Sleep(9);
  EXPECT_FALSE(on.Locked());
  Sleep(1);
  EXPECT_TRUE(on.Locked());
  on.Tune(kTunedKHz);
  EXPECT_EQ(ask(), 0U);
  EXPECT_FALSE(on.Locked());
}

// The country chooses the transmission system, and with it modulation and IF.
TEST_F(Ql2CardTest, CountryMustSuitTheCarrier) {
  struct Case {
    std::uint32_t standard;
    double kHz;
    LONG country;
    bool locked;
  };
  for (const Case& one : {
           Case{AnalogVideo_PAL_B, 175250, 49, true},
           Case{AnalogVideo_PAL_D, 175250, 420, true},
           Case{AnalogVideo_SECAM_L, 176000, 33, true},
           Case{AnalogVideo_SECAM_L, 176000, 49, false},
           Case{AnalogVideo_SECAM_L1, 55750, 33, true},  // at the lower end of the IF
           Case{AnalogVideo_PAL_B, 55250, 33, false},
       }) {
    PlugTuner(11, AirWith(one.kHz, one.standard));
    Ql2Interfaces on(*card_);
    on.tvTuner->put_CountryCode(one.country);
    on.Tune(one.kHz);
    EXPECT_EQ(on.Status().SignalStrength == 100, one.locked) << one.kHz << ' ' << one.country;
    EXPECT_EQ(on.Locked(), one.locked) << one.kHz << ' ' << one.country;
  }
}

// The driver takes more than modules reach; there is nothing to receive then, at neither end.
TEST_F(Ql2CardTest, BeyondTheModulesRange) {
  PlugTuner(255, AirWith(863250));
  Ql2Interfaces on(*card_);
  on.tvTuner->put_CountryCode(49);
  on.Tune(863250);
  EXPECT_EQ(on.Status().SignalStrength, 100U);
  for (const double kHz : {900250.0, 42000.0}) {
    EXPECT_EQ(on.Tune(kHz), S_OK);
    EXPECT_EQ(on.Status().SignalStrength, 0U);
    EXPECT_EQ(on.Status().Busy, 1U);
    EXPECT_FALSE(on.Locked());
  }
  for (const double kHz : {0.0, 39000.0, 911000.0}) EXPECT_EQ(on.Tune(kHz), E_INVALIDARG);
  EXPECT_EQ(on.Status().CurrentFrequency, 42000000U);
}

TEST_F(Ql2CardTest, FmAndTelevisionTakeTurns) {
  Air air = AirWith(kTunedKHz);
  air.fm = FmAirWith(98000).fm;
  PlugTuner(11, air);
  Ql2Interfaces on(*card_);
  on.tvTuner->put_Mode(AMTUNER_MODE_FM_RADIO);
  EXPECT_EQ(on.Tune(120000), E_INVALIDARG);
  EXPECT_EQ(on.Tune(98000), S_OK);
  EXPECT_EQ(on.Status().SignalStrength, 100U);
  EXPECT_FALSE(on.Locked());
  EXPECT_EQ(on.Tune(97000), S_OK);
  EXPECT_EQ(on.Status().SignalStrength, 0U);
  on.tvTuner->put_Mode(AMTUNER_MODE_TV);
  EXPECT_EQ(on.Tune(kTunedKHz), S_OK);
  EXPECT_EQ(on.Status().SignalStrength, 100U);
  EXPECT_TRUE(on.Locked());
}

// A separate receiver makes FM a mode of the board, but is the application's to tune.
TEST_F(Ql2CardTest, ModesOfTheBoard) {
  for (const auto& [code, fm, tuned] :
       {std::tuple{10u, false, S_OK}, {11u, true, S_OK}, {49u, true, E_INVALIDARG}}) {
    PlugTuner(code);
    Ql2Interfaces on(*card_);
    LONG modes = 0;
    EXPECT_EQ(on.tvTuner->GetAvailableModes(&modes), S_OK);
    EXPECT_EQ(modes, fm ? AMTUNER_MODE_TV | AMTUNER_MODE_FM_RADIO : AMTUNER_MODE_TV);
    EXPECT_EQ(on.tvTuner->put_Mode(AMTUNER_MODE_FM_RADIO), fm ? S_OK : E_INVALIDARG);
    EXPECT_EQ(on.tvTuner->put_Mode(AMTUNER_MODE_DSS), E_INVALIDARG);
    EXPECT_EQ(on.Tune(98000), tuned) << code << ": where there is no FM, the mode is still TV";
  }
}

}  // namespace
}  // namespace zelk::virtual_cards
