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

class TunerCanTest : public TunerModuleTest {};

TEST_F(TunerCanTest, AfcFollowsTheCarrier) {
  struct Case {
    double offsetKHz;
    int afc;
    bool picture;
  };
  for (const Case& one : {
           Case{-1100, 4, false},  // outside the window
           Case{-900, 0, false},
           Case{-601, 0, false},
           Case{-599, 0, true},
           Case{-125, 0, true},
           Case{-95, 0, true},
           Case{-92, 1, true},
           Case{-62.5, 1, true},
           Case{-30, 2, true},
           Case{0, 2, true},
           Case{30, 2, true},
           Case{62.5, 3, true},
           Case{92, 3, true},
           Case{125, 4, true},
           Case{900, 4, false},
       }) {
    Fit(1, AirWith(kTunedKHz + one.offsetKHz));
    EXPECT_TRUE(Write(0xC2, {0x0D, 0x62, 0xCE, 0x90}));
    Sleep(60);
    EXPECT_EQ(Read(0xC2), kInLock | one.afc) << one.offsetKHz;
    EXPECT_EQ(can_->Picture() != nullptr, one.picture) << one.offsetKHz;
    EXPECT_DOUBLE_EQ(can_->TunedKHz(), kTunedKHz);
  }
}

TEST_F(TunerCanTest, ReferenceStepAndByteOrder) {
  struct Case {
    std::vector<std::uint8_t> bytes;
    double tunedKHz;
  };
  const Case cases[] = {
      {{0x0D, 0x62, 0xCE, 0x90}, 175225},   // 3426 x 62.5 kHz
      {{0xCE, 0x90, 0x0D, 0x62}, 175225},   // control first
      {{0x0D, 0x62, 0x88, 0xA0}, 132400},   // 3426 x 50 kHz
      {{0x0D, 0x62, 0x8C, 0xA0}, 132400},   // the same reference by its other code
      {{0x0D, 0x62, 0x8A, 0xA0}, 68162.5},  // 3426 x 31.25 kHz
      {{0x0D, 0x62, 0xCF, 0x90}, 0},        // tuning voltage off
      {{0x0D, 0x62, 0x4E, 0x90}, 0},        // a third byte without bit 7 is a divider again
      {{0x0D, 0x62}, 0},                    // never got a control byte
  };
  for (const Case& one : cases) {
    Fit(1, AirWith(one.tunedKHz));
    EXPECT_TRUE(bus_.Write(0xC2, one.bytes));
    EXPECT_DOUBLE_EQ(can_->TunedKHz(), one.tunedKHz);
    Sleep(60);
    EXPECT_EQ(can_->Picture() != nullptr, one.tunedKHz > 0);
  }
}

TEST_F(TunerCanTest, BandSwitchesMustCoverTheFrequency) {
  struct Case {
    std::uint32_t type;
    std::vector<std::uint8_t> bytes;
    bool heard;
  };
  const Case cases[] = {
      {1, {0x0D, 0x62, 0xCE, 0xA0}, false},  // 175.225 MHz: low ends at 175 MHz
      {1, {0x0D, 0x5C, 0xCE, 0xA0}, true},   // 174.85 MHz: low and mid overlap
      {1, {0x0D, 0x5C, 0xCE, 0x90}, true},
      {1, {0x0D, 0x62, 0xCE, 0x30}, false},  // high
      {1, {0x0D, 0x62, 0xCE, 0x02}, false},  // another family's mid
      {3, {0x0D, 0x62, 0x8E, 0x91}, true},
      {3, {0x0D, 0x62, 0x8E, 0x90}, false},
      // 83.25 MHz: (83250 + 45750) / 62.5 = 2064, by either switch setting of the low band.
      {46, {0x08, 0x10, 0xCE, 0x01}, true},
      {46, {0x08, 0x10, 0xCE, 0x11}, true},
      {46, {0x08, 0x10, 0xCE, 0x02}, false},
      // 175.25 MHz in a module whose IF is 45.875 MHz: (175250 + 45875) / 62.5 = 3538.
      {29, {0x0D, 0xD2, 0x8E, 0x02}, true},
  };
  for (const Case& one : cases) {
    const double nominal[] = {174850, 175225, 83250, 175250};
    Air air;
    for (const double carrier : nominal) air.tv.push_back(AirWith(carrier).tv[0]);
    Fit(one.type, air);
    bus_.Write(0xC2, one.bytes);
    Sleep(60);
    EXPECT_EQ(can_->TunedKHz() > 0, one.heard) << one.type << testing::PrintToString(one.bytes);
    EXPECT_EQ((Read(0xC2) & kInLock) != 0, one.heard);
  }
}

TEST_F(TunerCanTest, ReadingsNeedTheirTime) {
  Fit(1, AirWith(kTunedKHz));
  Write(0xC2, {0x0D, 0x62, 0xCE, 0x90});
  Sleep(49);
  EXPECT_EQ(Read(0xC2), 4);
  Sleep(1);
  EXPECT_EQ(Read(0xC2), kInLock | 2);
  Sleep(9);
  EXPECT_EQ(can_->Picture(), nullptr);
  Sleep(1);
  EXPECT_NE(can_->Picture(), nullptr);
  Write(0xC2, {0x0D, 0x62, 0xCE, 0x90});  // writing the same again starts anew
  EXPECT_EQ(Read(0xC2), 4);
  EXPECT_EQ(can_->Picture(), nullptr);
}

TEST_F(TunerCanTest, PowerOnFlagEndsWithTheFirstStatus) {
  air_ = AirWith(kTunedKHz);
  can_ = std::make_unique<TunerCan>(1, air_);
  can_->AttachTo(bus_);
  EXPECT_EQ(Read(0xC2), 0x84);
  EXPECT_EQ(Read(0xC2), 0x04);
}

TEST_F(TunerCanTest, BoardsChooseTheBusAddress) {
  air_ = AirWith(kTunedKHz);
  can_ = std::make_unique<TunerCan>(1, air_, PllTuner::kOtherAddress);
  can_->AttachTo(bus_);
  EXPECT_FALSE(Write(0xC2, {0x0D, 0x62, 0xCE, 0x90}));
  EXPECT_TRUE(Write(0xC0, {0x0D, 0x62, 0xCE, 0x90}));
  Sleep(60);
  EXPECT_EQ(Read(0xC0) & kInLock, kInLock);
  EXPECT_EQ(Read(0xC2), -1);
  EXPECT_NE(can_->Picture(), nullptr);
}

TEST_F(TunerCanTest, WeakCarriersAreNotReceived) {
  for (const double level : {39.0, 41.0}) {
    Fit(1, AirWith(kTunedKHz, AnalogVideo_PAL_B, level));
    Write(0xC2, {0x0D, 0x62, 0xCE, 0x90});
    Sleep(60);
    EXPECT_EQ(Read(0xC2), level > 40 ? kInLock | 2 : kNoCarrier);
    EXPECT_EQ(can_->Picture() != nullptr, level > 40);
  }
}

TEST_F(TunerCanTest, PowerDownIsSilentAndKeepsRegisters) {
  Fit(1, AirWith(kTunedKHz));
  Write(0xC2, {0x0D, 0x62, 0xCE, 0x90});
  Sleep(60);
  can_->SetPowered(false);
  EXPECT_FALSE(Write(0xC2, {0x0D, 0x63, 0xCE, 0x90}));
  EXPECT_EQ(Read(0xC2), -1);
  EXPECT_EQ(can_->Picture(), nullptr);
  can_->SetPowered(true);
  EXPECT_NE(can_->Picture(), nullptr);
  EXPECT_DOUBLE_EQ(can_->TunedKHz(), kTunedKHz);
}

// Types 2 and 3 switch to positive modulation by bit 1 of the band byte; type 1 cannot.
TEST_F(TunerCanTest, ModulationSense) {
  struct Case {
    std::uint32_t type;
    std::uint8_t band;
    std::uint32_t standard;
    bool picture;
  };
  for (const Case& one : {
           Case{3, 0x91, AnalogVideo_PAL_B, true},
           Case{3, 0x91, AnalogVideo_SECAM_L, false},
           Case{3, 0x93, AnalogVideo_SECAM_L, true},
           Case{3, 0x93, AnalogVideo_PAL_B, false},
           Case{1, 0x90, AnalogVideo_SECAM_L, false},
           Case{1, 0x92, AnalogVideo_SECAM_L, false},
       }) {
    Fit(one.type, AirWith(kTunedKHz, one.standard));
    Write(0xC2, {0x0D, 0x62, 0x8E, one.band});
    Sleep(60);
    EXPECT_EQ(can_->Picture() != nullptr, one.picture) << one.type << ' ' << int{one.band};
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
  Write(0xC2, {0x0D, 0x62, 0x86, 0x22});
  Write(0x86, {0x00, 0x16, 0x70, 0x49});
  Sleep(60);
  EXPECT_NE(can_->Picture(), nullptr);
  EXPECT_EQ(Read(0xC2), kNoCarrier);
  EXPECT_EQ(Read(0xC0), -1);

  Fit(47, AirWith(kTunedKHz + 62.5));
  Write(0xC2, {0x0D, 0x62, 0xCE, 0x02});
  Sleep(60);
  EXPECT_EQ(Read(0xC1), kNoCarrier) << "the demodulator is not set up";
  Write(0x86, {0x00, 0xD6, 0x70, 0x09});
  Sleep(60);
  EXPECT_EQ(Read(0xC1), kInLock | 3);
  EXPECT_EQ(Read(0xC2), kNoCarrier);
  EXPECT_FALSE(Write(0xC0, {0x0D, 0x62, 0xCE, 0x02}));
}

TEST_F(TunerCanTest, FmDemodulatorDoesNotTouchThePicture) {
  Fit(0, AirWith(kTunedKHz));
  EXPECT_TRUE(Write(0x86, {0x00, 0x4E, 0x90, 0x4B}));
  Write(0xC2, {0x0D, 0x62, 0xCE, 0x90});
  Sleep(60);
  EXPECT_NE(can_->Picture(), nullptr);
  Fit(1, AirWith(kTunedKHz));
  EXPECT_FALSE(Write(0x86, {0x00, 0x4E, 0x90, 0x4B}));
}

TEST_F(TunerCanTest, TypesWithoutAKnownModule) {
  for (const std::uint32_t type : {38u, 39u, 40u, 41u, 52u, 0xFFFFFFFFu}) {
    EXPECT_THROW(TunerCan(type, air_), std::invalid_argument) << type;
  }
}

}  // namespace
}  // namespace zelk::virtual_cards
