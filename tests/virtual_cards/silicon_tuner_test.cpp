// Silicon tuners behind their demodulator. 175.25 MHz in system B, whose picture IF is 6.75 MHz
// here, needs 182 MHz at the mixer: four times that is 728 MHz at the oscillator, 2912 steps of 250
// kHz, written four times as large (2D 80).
#include "model_test.h"
#include "virtual_cards/chips/silicon_front_end.h"

namespace zelk::virtual_cards {
namespace {

constexpr double kTunedKHz = 175250;

class SiliconTunerTest : public ModelTest {
 protected:
  void Fit(SiliconRevision revision, double offsetKHz, std::uint32_t standard = AnalogVideo_PAL_B) {
    bus_ = {};
    air_ = AirWith(kTunedKHz + offsetKHz, standard);
    frontEnd_ = std::make_unique<SiliconFrontEnd>(revision, air_);
    frontEnd_->AttachTo(bus_);
  }
  void SetUpDemodulator(std::uint8_t system = 0x02) {
    for (const Bytes& bytes : {Bytes{0x07, 0x00}, {0x30, 0x2F}, {0x20, 0x0B}, {0x01, system}})
      Write(0x96, bytes);
  }
  // The same with the demodulator set up.
  void FitReady(SiliconRevision revision, double offsetKHz = 0,
                std::uint32_t standard = AnalogVideo_PAL_B, std::uint8_t system = 0x02) {
    Fit(revision, offsetKHz, standard);
    SetUpDemodulator(system);
  }
  // Writes registers 0x00 to 0x40; the reading of lock and AFC once they have settled.
  int TuneA(std::uint8_t oscillator = 0x50, std::uint8_t dividerLow = 0x80) {
    Write(0x96, {0x21, 0xC0});
    EXPECT_TRUE(Write(0xC2, {0x00, 0x2D, dividerLow, 0x00, 0x10, oscillator}));
    Write(0x96, {0x21, 0x80});
    Sleep(60);
    return ReadAt(0x96, 0x1B);
  }

  Air air_;
  std::unique_ptr<SiliconFrontEnd> frontEnd_;
};

TEST_F(SiliconTunerTest, LockAndAfcFollowTheCarrier) {
  constexpr int kLocked = 0x80;
  // Steps of 13.2 kHz; positive while the carrier lies below the tuned frequency.
  const std::pair<double, int> cases[] = {
      {0, kLocked | 0},     {-13.2, kLocked | 1}, {132, kLocked | (128 - 10)},
      {-594, kLocked | 45}, {-700, 53},           {-900, 63},
      {900, 128 - 63},      {1100, 0x40}};
  for (const auto& [offsetKHz, reading] : cases) {
    FitReady(SiliconRevision::kTda8275a, offsetKHz);
    EXPECT_EQ(TuneA(), reading) << offsetKHz;
    EXPECT_EQ(frontEnd_->Picture() != nullptr, (reading & kLocked) != 0) << offsetKHz;
    EXPECT_DOUBLE_EQ(frontEnd_->TunedKHz(), kTunedKHz);
  }
}

TEST_F(SiliconTunerTest, DemodulatorMustBeSetUp) {
  Fit(SiliconRevision::kTda8275a, 0);
  EXPECT_EQ(TuneA(), 0x40);
  SetUpDemodulator();
  EXPECT_EQ(ReadAt(0x96, 0x1B), 0x80);
  for (const std::uint8_t number : {std::uint8_t{0x07}, std::uint8_t{0x30}, std::uint8_t{0x20}}) {
    Write(0x96, {number, 0x55});
    EXPECT_EQ(ReadAt(0x96, 0x1B), 0x40) << int{number};
    SetUpDemodulator();
  }
  Write(0x96, {0x01, 0x08});  // D/K expects the picture 1 MHz higher in the IF
  EXPECT_EQ(ReadAt(0x96, 0x1B) & 0x80, 0);
}

TEST_F(SiliconTunerTest, PositiveModulationNeedsItsSystem) {
  for (const std::uint32_t standard : {AnalogVideo_PAL_G, AnalogVideo_SECAM_L}) {
    for (const std::uint8_t system : {std::uint8_t{0x04}, std::uint8_t{0x20}}) {
      // Both systems have their picture IF at 7.75 MHz: 174.25 MHz with this divider.
      FitReady(SiliconRevision::kTda8275a, -1000, standard, system);
      TuneA();
      EXPECT_EQ(frontEnd_->Picture() != nullptr,
                (standard == AnalogVideo_SECAM_L) == (system == 0x20));
    }
  }
}

TEST_F(SiliconTunerTest, OscillatorMustReachTheFrequency) {
  FitReady(SiliconRevision::kTda8275a);
  for (const std::uint8_t oscillator : {0x58, 0x48, 0x40, 0x30, 0x70}) {
    EXPECT_EQ(TuneA(oscillator), 0x40) << int{oscillator};
  }
  EXPECT_EQ(TuneA(0x50, 0x83), 0x80);  // the two lowest divider bits are not connected

  // In the TDA8275 the doublings stand one bit higher, and one bit divides by another 1.5.
  FitReady(SiliconRevision::kTda8275);
  EXPECT_EQ(TuneA(0x90), 0x80);
  EXPECT_EQ(TuneA(0xB0), 0x40);
}

TEST_F(SiliconTunerTest, LockNeedsItsTimeAndPower) {
  FitReady(SiliconRevision::kTda8275a);
  TuneA();
  Write(0x96, {0x21, 0xC0});
  Write(0xC2, {0x30, 0x10});
  EXPECT_EQ(Around(60, [&] { return ReadAt(0x96, 0x1B); }), std::pair(0x40, 0x80));
  frontEnd_->SetPowered(false);
  EXPECT_EQ(ReadAt(0x96, 0x1B), 0x40);
  EXPECT_FALSE(Write(0xC2, {0x30, 0x10}));
}

}  // namespace
}  // namespace zelk::virtual_cards
