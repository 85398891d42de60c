// The IF demodulator: what its set-up words mean and what its status says. The tuner is that of
// type 20, tuned to 175.225 MHz for an IF of 38.9 MHz.
#include "virtual_cards/chips/if_demodulator.h"
#include "model_test.h"
#include "virtual_cards/chips/tuner_can.h"

namespace zelk::virtual_cards {
namespace {

using Mode = IfDemodulator::Mode;

constexpr double kTunedKHz = 175225;
constexpr int kGood = 0xE0;  // carrier, picture IF, sound IF
constexpr int kDeaf = 7 << 1;

class IfDemodulatorTest : public TunerModuleTest {
 protected:
  // `offsetKHz` is the carrier's distance from the tuned frequency.
  void Fit(double offsetKHz, std::uint32_t standard = AnalogVideo_PAL_B) {
    TunerModuleTest::Fit(20, AirWith(kTunedKHz + offsetKHz, standard));
    Write(0xC2, {0x0D, 0x62, 0xCE, 0x02});
  }
  int StatusAfter(const Bytes& bytes) {
    WriteAndWait(0x86, bytes);
    return Read(0x86);
  }
};

TEST_F(IfDemodulatorTest, Words) {
  constexpr Mode kTv = Mode::kNegativeTv;
  const PllTuner tuner(*FindTunerModel(20), air_);
  const std::tuple<Bytes, Mode, double, double> cases[] = {
      {{0, 0x56, 0x30, 0x44}, kTv, 45750, 4500},  // NTSC M, America
      {{0, 0xD6, 0x10, 0x04}, kTv, 45750, 4500},
      {{0, 0x56, 0x10, 0x40}, kTv, 58750, 4500},  // NTSC M, Japan
      {{0, 0xD4, 0x2D, 0x80}, kTv, 58750, 4500},
      {{0, 0x16, 0x70, 0x49}, kTv, 38900, 5500},                // B/G
      {{0, 0x16, 0x70, 0x4A}, kTv, 38900, 6000},                // I
      {{0, 0x56, 0x7F, 0x4B}, kTv, 38900, 6500},                // D/K
      {{0, 0x06, 0x50, 0x4B}, Mode::kPositiveTv, 38900, 6500},  // L
      {{0, 0x86, 0x4E, 0x4B}, Mode::kPositiveTv, 33950, 6500},  // L'
      {{0, 0x16, 0x70, 0x4D}, kTv, 38000, 5500},
      {{0, 0x16, 0x70, 0x51}, kTv, 33900, 5500},
      {{0, 0x4E, 0x90, 0x4B}, Mode::kFmRadio, 38900, 6500}};
  for (const auto& [bytes, mode, pictureKHz, soundKHz] : cases) {
    IfDemodulator chip(tuner);
    EXPECT_TRUE(chip.Write(bytes));
    EXPECT_TRUE(chip.SetUp());
    EXPECT_EQ(std::tuple(chip.Modulation(), chip.PictureIfKHz(), chip.SoundOffsetKHz()),
              std::tuple(mode, pictureKHz, soundKHz));
  }
}

TEST_F(IfDemodulatorTest, StatusFollowsTheCarrier) {
  // The oscillator is above the carrier: a carrier that is too high makes the IF too low.
  const std::pair<double, int> cases[] = {
      {12.5, kGood | 0 << 1},   {37.5, kGood | 1 << 1},   {187.5, kGood | 7 << 1},
      {900, kGood | 7 << 1},    {-12.5, kGood | 15 << 1}, {-37.5, kGood | 14 << 1},
      {-187.5, kGood | 8 << 1}, {-900, kGood | 8 << 1},   {1100, kDeaf}};
  for (const auto& [offsetKHz, status] : cases) {
    Fit(offsetKHz);
    EXPECT_EQ(StatusAfter({0x00, 0x16, 0x70, 0x49}), status) << offsetKHz;
  }
}

TEST_F(IfDemodulatorTest, SetUpMustSuitTheBroadcast) {
  // The last column: the three upper bits of the status.
  const std::tuple<LONG, std::uint8_t, std::uint8_t, int> cases[] = {
      {AnalogVideo_PAL_B, 0x16, 0x4B, 0xC0},  // sound of D/K
      {AnalogVideo_PAL_B, 0x06, 0x49, 0x00},  // positive modulation
      {AnalogVideo_PAL_B, 0x16, 0x44, 0x00},  // American IF: not in this module's filters
      {AnalogVideo_PAL_B, 0x16, 0x51, 0x00},  // 5 MHz beside the carrier
      {AnalogVideo_PAL_B, 0x0E, 0x49, 0x00},  // FM radio
      {AnalogVideo_SECAM_L, 0x06, 0x4B, 0xE0}, {AnalogVideo_SECAM_L, 0x16, 0x4B, 0x00}};
  for (const auto& [standard, b, e, levels] : cases) {
    Fit(0, standard);
    EXPECT_EQ(StatusAfter({0x00, b, 0x70, e}) & 0xE0, levels) << int{b} << ' ' << int{e};
    EXPECT_EQ(ShowsAPicture(), levels != 0);
  }
}

// 33.95 MHz: the same oscillator receives a carrier 4.95 MHz higher.
TEST_F(IfDemodulatorTest, LPrimeMovesThePictureIf) {
  Fit(4950, AnalogVideo_SECAM_L1);
  EXPECT_EQ(StatusAfter({0x00, 0x86, 0x4E, 0x4B}), kGood);
  EXPECT_DOUBLE_EQ(can_->TunedKHz(), kTunedKHz + 4950);
}

TEST_F(IfDemodulatorTest, DeafUntilAllRegistersAreWritten) {
  Fit(0);
  Sleep(60);
  EXPECT_EQ(Read(0x86), kDeaf);
  EXPECT_EQ(StatusAfter({0x00, 0x16, 0x70}), kDeaf);
  EXPECT_EQ(StatusAfter({0x02, 0x49}), kGood) << "E alone, by its own subaddress";
}

TEST_F(IfDemodulatorTest, ReadingsNeedTheirTime) {
  const PllTuner tuner(*FindTunerModel(20), air_);
  IfDemodulator chip(tuner);
  bus_.Attach(0x86, &chip);
  EXPECT_EQ(Read(0x86), kDeaf | 1) << "the power-on flag ends with the first status";
  EXPECT_EQ(Read(0x86), kDeaf);

  Fit(0);
  Write(0x86, {0x00, 0x16, 0x70, 0x49});
  EXPECT_EQ(Around(50, [&] { return Read(0x86); }), std::pair(kDeaf, kGood));
  Write(0xC2, {0x0D, 0x62, 0xCE, 0x02});  // a retune disturbs it as well
  EXPECT_EQ(Read(0x86), kDeaf);
}

}  // namespace
}  // namespace zelk::virtual_cards
