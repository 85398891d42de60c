// The QL2 card from outside: tuning by the driver, its status, the decoder's lock, FM.
#include "plugged_ql2.h"

namespace zelk::virtual_cards {
namespace {

constexpr double kTunedKHz = 175250;

// What the driver makes of the chips' AFC: 100 while it has caught the carrier. 175.25 MHz lies on
// no step of the PLL; 175.225 does, with either IF.
TEST_F(Ql2CardTest, StatusBesideTheCarrier) {
  // Carrier minus tuned frequency; the strength by demodulator and by PLL, the offset by each.
  const std::tuple<double, unsigned, unsigned, int, int> cases[] = {
      {-1100, 0, 0, 0, 0},        {-700, 20, 50, -187, -125}, {-130, 60, 50, -137, -125},
      {-110, 80, 50, -112, -125}, {-90, 100, 100, -87, -62},  {0, 100, 100, 12, 0},
      {90, 100, 100, 87, 62},     {110, 80, 0, 112, 0},       {130, 60, 0, 137, 0},
      {1100, 0, 0, 0, 0}};
  for (const auto& [offsetKHz, byDemodulator, byPll, demodulatorKHz, pllKHz] : cases) {
    for (const bool demodulator : {true, false}) {
      Plug({.tunerCode = demodulator ? 11u : 50u}, AirWith(175225 + offsetKHz));
      Ql2Interfaces on(*card_);
      on.tvTuner->put_CountryCode(49);
      on.Tune(175225);
      const KSPROPERTY_TUNER_STATUS_S status = on.Status();
      EXPECT_EQ(status.SignalStrength, demodulator ? byDemodulator : byPll) << offsetKHz;
      EXPECT_EQ(static_cast<LONG>(status.PLLOffset), demodulator ? demodulatorKHz : pllKHz)
          << offsetKHz;
    }
  }
}

// The country chooses the transmission system, and with it modulation and IF.
TEST_F(Ql2CardTest, CountryMustSuitTheCarrier) {
  const std::tuple<LONG, double, LONG, bool> cases[] = {
      {AnalogVideo_PAL_B, 175250, 49, true},   {AnalogVideo_PAL_D, 175250, 420, true},
      {AnalogVideo_SECAM_L, 176000, 33, true}, {AnalogVideo_SECAM_L, 176000, 49, false},
      {AnalogVideo_SECAM_L1, 55750, 33, true}, {AnalogVideo_PAL_B, 55250, 33, false}};
  for (const auto& [standard, kHz, country, locked] : cases) {
    Plug({.tunerCode = 11}, AirWith(kHz, standard));
    Ql2Interfaces on(*card_);
    on.tvTuner->put_CountryCode(country);
    on.Tune(kHz);
    EXPECT_EQ(on.Status().SignalStrength == 100, locked) << kHz << ' ' << country;
    EXPECT_EQ(on.Locked(), locked) << kHz << ' ' << country;
  }
}

// The driver takes more than modules reach; there is nothing to receive then, at neither end.
TEST_F(Ql2CardTest, BeyondTheModulesRange) {
  Plug({.tunerCode = 255}, AirWith(863250));
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
  Plug({.tunerCode = 11}, air);
  Ql2Interfaces on(*card_);
  for (const auto& [mode, kHz, strength] : {std::tuple(AMTUNER_MODE_FM_RADIO, 98000.0, 100U),
                                            {AMTUNER_MODE_FM_RADIO, 97000, 0},
                                            {AMTUNER_MODE_TV, kTunedKHz, 100}}) {
    on.tvTuner->put_Mode(mode);
    EXPECT_EQ(on.Tune(kHz), S_OK);
    EXPECT_EQ(on.Status().SignalStrength, strength) << kHz;
    EXPECT_EQ(on.Locked(), mode == AMTUNER_MODE_TV);
  }
  on.tvTuner->put_Mode(AMTUNER_MODE_FM_RADIO);
  EXPECT_EQ(on.Tune(120000), E_INVALIDARG);
}

// A separate receiver makes FM a mode of the board, but is the application's to tune.
TEST_F(Ql2CardTest, ModesOfTheBoard) {
  for (const auto& [code, fm, tuned] :
       {std::tuple{10u, false, S_OK}, {11u, true, S_OK}, {49u, true, E_INVALIDARG}}) {
    Plug({.tunerCode = code});
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
