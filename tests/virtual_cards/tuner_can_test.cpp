// Tuner modules: what a PLL chip makes of its bytes, and what its status says of the air. The
// module of type 1 has a picture IF of 38.9 MHz; 0D 62 with steps of 62.5 kHz is an oscillator at
// 214.125 MHz, tuned to 175.225 MHz.
#include "virtual_cards/chips/tuner_can.h"
#include "model_test.h"

namespace zelk::virtual_cards {
namespace {

constexpr double kTunedKHz = 175225;
constexpr int kInLock = 0x40;
constexpr int kNoCarrier = kInLock | 4;

const Bytes kTuning = {0x0D, 0x62, 0xCE, 0x90};

using TunerCanTest = TunerModuleTest;

TEST_F(TunerCanTest, AfcFollowsTheCarrier) {
  const std::tuple<double, int, bool> cases[] = {
      {-1100.0, 4, false}, {-900, 0, false}, {-601, 0, false}, {-599, 0, true}, {-95, 0, true},
      {-92, 1, true},      {-62.5, 1, true}, {-30, 2, true},   {30, 2, true},   {62.5, 3, true},
      {92, 3, true},       {125, 4, true},   {900, 4, false}};
  for (const auto& [offsetKHz, afc, picture] : cases) {
    EXPECT_EQ(Tuned(1, AirWith(kTunedKHz + offsetKHz), kTuning), kInLock | afc) << offsetKHz;
    EXPECT_EQ(ShowsAPicture(), picture) << offsetKHz;
  }
}

TEST_F(TunerCanTest, ReferenceStepAndByteOrder) {
  // 3426 steps of 62.5, 50 or 31.25 kHz; the control byte may come first, and 50 has two codes.
  // Deaf: tuning voltage off, a third byte without bit 7 (a divider again), no control byte at all.
  const std::pair<Bytes, double> cases[] = {
      {{0x0D, 0x62, 0xCE, 0x90}, 175225},  {{0xCE, 0x90, 0x0D, 0x62}, 175225},
      {{0x0D, 0x62, 0x88, 0xA0}, 132400},  {{0x0D, 0x62, 0x8C, 0xA0}, 132400},
      {{0x0D, 0x62, 0x8A, 0xA0}, 68162.5}, {{0x0D, 0x62, 0xCF, 0x90}, 0},
      {{0x0D, 0x62, 0x4E, 0x90}, 0},       {{0x0D, 0x62}, 0}};
  for (const auto& [bytes, tunedKHz] : cases) {
    Tuned(1, AirWith(tunedKHz), bytes);
    EXPECT_DOUBLE_EQ(can_->TunedKHz(), tunedKHz);
    EXPECT_EQ(ShowsAPicture(), tunedKHz > 0);
  }
}

TEST_F(TunerCanTest, BandSwitchesMustCoverTheFrequency) {
  // Type 1 at 175.225 MHz, where low has ended (A0), and 174.85, where low and mid overlap; 30 is
  // its high band and 02 another family's mid. Type 46 has its low band under two switch settings:
  // (83250 + 45750) / 62.5 = 2064.
  const std::tuple<std::uint32_t, Bytes, bool> cases[] = {
      {1, {0x0D, 0x62, 0xCE, 0xA0}, false}, {1, {0x0D, 0x5C, 0xCE, 0xA0}, true},
      {1, {0x0D, 0x5C, 0xCE, 0x90}, true},  {1, {0x0D, 0x62, 0xCE, 0x30}, false},
      {1, {0x0D, 0x62, 0xCE, 0x02}, false}, {3, {0x0D, 0x62, 0x8E, 0x90}, false},
      {46, {0x08, 0x10, 0xCE, 0x01}, true}, {46, {0x08, 0x10, 0xCE, 0x11}, true},
      {46, {0x08, 0x10, 0xCE, 0x02}, false}};
  for (const auto& [type, bytes, heard] : cases) {
    EXPECT_EQ((Tuned(type, {}, bytes) & kInLock) != 0, heard);
    EXPECT_EQ(can_->TunedKHz() > 0, heard) << type << testing::PrintToString(bytes);
  }
}

TEST_F(TunerCanTest, ReadingsNeedTheirTime) {
  Fit(1, AirWith(kTunedKHz));
  Write(0xC2, kTuning);
  EXPECT_EQ(Around(50, [&] { return Read(0xC2); }), std::pair(4, kInLock | 2));
  EXPECT_EQ(Around(10, [&] { return ShowsAPicture(); }), std::pair(false, true));
  Write(0xC2, kTuning);  // writing the same again starts anew
  EXPECT_EQ(Read(0xC2), 4);
  EXPECT_FALSE(ShowsAPicture());
}

TEST_F(TunerCanTest, PowerOnFlagEndsWithTheFirstStatus) {
  TunerCan can(1, air_);
  can.AttachTo(bus_);
  EXPECT_EQ(Read(0xC2), 0x84);
  EXPECT_EQ(Read(0xC2), 0x04);
}

TEST_F(TunerCanTest, WeakCarriersAreNotReceived) {
  EXPECT_EQ(Tuned(1, AirWith(kTunedKHz, AnalogVideo_PAL_B, 41), kTuning), kInLock | 2);
  EXPECT_EQ(Tuned(1, AirWith(kTunedKHz, AnalogVideo_PAL_B, 39), kTuning), kNoCarrier);
  EXPECT_FALSE(ShowsAPicture());
}

TEST_F(TunerCanTest, PowerDownIsSilentAndKeepsRegisters) {
  Tuned(1, AirWith(kTunedKHz), kTuning);
  can_->SetPowered(false);
  EXPECT_FALSE(Write(0xC2, {0x0D, 0x63, 0xCE, 0x90}));
  EXPECT_EQ(Read(0xC2), -1);
  EXPECT_FALSE(ShowsAPicture());
  can_->SetPowered(true);
  EXPECT_TRUE(ShowsAPicture());
  EXPECT_DOUBLE_EQ(can_->TunedKHz(), kTunedKHz);
}

// Types 2 and 3 switch to positive modulation by bit 1 of the band byte; type 1 cannot.
TEST_F(TunerCanTest, ModulationSense) {
  const std::tuple<std::uint32_t, std::uint8_t, LONG, bool> cases[] = {
      {3, 0x91, AnalogVideo_PAL_B, true},
      {3, 0x91, AnalogVideo_SECAM_L, false},
      {3, 0x93, AnalogVideo_SECAM_L, true},
      {3, 0x93, AnalogVideo_PAL_B, false},
      {1, 0x92, AnalogVideo_SECAM_L, false}};
  for (const auto& [type, band, standard, picture] : cases) {
    Tuned(type, AirWith(kTunedKHz, standard), {0x0D, 0x62, 0x8E, band});
    EXPECT_EQ(ShowsAPicture(), picture) << type << ' ' << int{band};
  }
}

// A module of the third generation takes the AGC byte as the end of a transfer; without it the byte
// and what follows would be a control pair and a divider.
TEST_F(TunerCanTest, AgcByteEndsATransfer) {
  Fit(14, AirWith(kTunedKHz));
  Write(0xC2, {0x0D, 0x62, 0x86, 0x22, 0xA0, 0x00, 0x00});
  EXPECT_DOUBLE_EQ(can_->TunedKHz(), kTunedKHz);
}

// Where the picture is demodulated outside the module, the PLL knows nothing of it; the ALPS
// modules bring the AFC voltage to a second address instead.
TEST_F(TunerCanTest, WhereAfcIsRead) {
  Fit(14, AirWith(kTunedKHz));
  Write(0x86, {0x00, 0x16, 0x70, 0x49});
  WriteAndWait(0xC2, {0x0D, 0x62, 0x86, 0x22});
  EXPECT_TRUE(ShowsAPicture());
  EXPECT_EQ(Read(0xC2), kNoCarrier);
  EXPECT_EQ(Read(0xC0), -1);

  Tuned(47, AirWith(kTunedKHz + 62.5), {0x0D, 0x62, 0xCE, 0x02});
  EXPECT_EQ(Read(0xC1), kNoCarrier) << "the demodulator is not set up";
  WriteAndWait(0x86, {0x00, 0xD6, 0x70, 0x09});
  EXPECT_EQ(Read(0xC1), kInLock | 3);
  EXPECT_EQ(Read(0xC2), kNoCarrier);
  EXPECT_FALSE(Write(0xC0, {0x0D, 0x62, 0xCE, 0x02}));
}

TEST_F(TunerCanTest, FmDemodulatorDoesNotTouchThePicture) {
  Fit(0, AirWith(kTunedKHz));
  EXPECT_TRUE(Write(0x86, {0x00, 0x4E, 0x90, 0x4B}));
  WriteAndWait(0xC2, kTuning);
  EXPECT_TRUE(ShowsAPicture());
  Fit(1, AirWith(kTunedKHz));
  EXPECT_FALSE(Write(0x86, {0x00, 0x4E, 0x90, 0x4B}));
}

}  // namespace
}  // namespace zelk::virtual_cards
