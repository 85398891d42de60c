// The IF demodulator: what its set-up words mean and what its status says. The tuner is that of
// type 20, tuned to 175.225 MHz for an IF of 38.9 MHz.
#include "virtual_cards/chips/if_demodulator.h"
#include "model_test.h"
#include "virtual_cards/chips/tuner_can.h"

namespace zelk::virtual_cards {
namespace {

using Mode = IfDemodulator::Mode;

constexpr double kTunedKHz = 175225;

TEST(IfDemodulatorSetUp, Words) {
  struct Case {
    std::uint8_t b, c, e;
    Mode mode;
    double pictureKHz;
    double soundKHz;
  };
  const Air air;
  const PllTuner tuner(*FindTunerModel(20), air);
  for (const Case& one : {
           Case{0x56, 0x30, 0x44, Mode::kNegativeTv, 45750, 4500},  // NTSC M, America
           Case{0xD0, 0x10, 0x04, Mode::kNegativeTv, 45750, 4500},
           Case{0xD6, 0x10, 0x04, Mode::kNegativeTv, 45750, 4500},
           Case{0x56, 0x10, 0x40, Mode::kNegativeTv, 58750, 4500},  // NTSC M, Japan
           Case{0xD4, 0x2D, 0x80, Mode::kNegativeTv, 58750, 4500},
           Case{0xD6, 0x70, 0x00, Mode::kNegativeTv, 58750, 4500},
           Case{0x16, 0x70, 0x49, Mode::kNegativeTv, 38900, 5500},  // B/G
           Case{0xD6, 0x70, 0x09, Mode::kNegativeTv, 38900, 5500},
           Case{0x16, 0x70, 0x4A, Mode::kNegativeTv, 38900, 6000},  // I
           Case{0x16, 0x70, 0x4B, Mode::kNegativeTv, 38900, 6500},  // D/K
           Case{0x56, 0x7F, 0x4B, Mode::kNegativeTv, 38900, 6500},
           Case{0x06, 0x50, 0x4B, Mode::kPositiveTv, 38900, 6500},  // L
           Case{0x86, 0x4E, 0x4B, Mode::kPositiveTv, 33950, 6500},  // L'
           Case{0x16, 0x70, 0x4D, Mode::kNegativeTv, 38000, 5500},
           Case{0x16, 0x70, 0x51, Mode::kNegativeTv, 33900, 5500},
           Case{0x4E, 0x90, 0x4B, Mode::kFmRadio, 38900, 6500},
       }) {
    IfDemodulator chip(tuner);
    EXPECT_TRUE(chip.Write(std::vector<std::uint8_t>{0x00, one.b, one.c, one.e}));
    EXPECT_TRUE(chip.SetUp());
    EXPECT_EQ(chip.Modulation(), one.mode);
    EXPECT_EQ(chip.PictureIfKHz(), one.pictureKHz);
    EXPECT_EQ(chip.SoundOffsetKHz(), one.soundKHz);
  }
}

class IfDemodulatorTest : public ModelTest {
 protected:
  // `offsetKHz` is the carrier's distance from the tuned frequency.
  void Fit(double offsetKHz, std::uint32_t standard = AnalogVideo_PAL_B) {
    bus_ = {};
    air_ = AirWith(kTunedKHz + offsetKHz, standard);
    can_ = std::make_unique<TunerCan>(20, air_);
    can_->AttachTo(bus_);
    Write(0xC2, {0x0D, 0x62, 0xCE, 0x02});
    Read(0x86);  // ends the power-on state
  }

  Air air_;
  std::unique_ptr<TunerCan> can_;
};

TEST_F(IfDemodulatorTest, StatusFollowsTheCarrier) {
  constexpr int kGood = 0xE0;  // carrier, picture IF, sound IF
  struct Case {
    double offsetKHz;
    int status;
  };
  // The oscillator is above the carrier: a carrier that is too high makes the IF too low.
  for (const Case& one : {
           Case{12.5, kGood | 0 << 1},
           Case{37.5, kGood | 1 << 1},
           Case{112.5, kGood | 4 << 1},
           Case{187.5, kGood | 7 << 1},
           Case{900, kGood | 7 << 1},
           Case{-12.5, kGood | 15 << 1},
           Case{-37.5, kGood | 14 << 1},
           Case{-187.5, kGood | 8 << 1},
           Case{-900, kGood | 8 << 1},
           Case{1100, 7 << 1},
       }) {
    Fit(one.offsetKHz);
    Write(0x86, {0x00, 0x16, 0x70, 0x49});
    Sleep(60);
    EXPECT_EQ(Read(0x86), one.status) << one.offsetKHz;
  }
}

TEST_F(IfDemodulatorTest, SetUpMustSuitTheBroadcast) {
  struct Case {
    std::uint32_t standard;
    std::uint8_t b, e;
    int levels;  // the three upper bits of the status
  };
  for (const Case& one : {
           Case{AnalogVideo_PAL_B, 0x16, 0x49, 0xE0},
           Case{AnalogVideo_PAL_B, 0x16, 0x4B, 0xC0},  // sound of D/K
           Case{AnalogVideo_PAL_B, 0x06, 0x49, 0x00},  // positive modulation
           Case{AnalogVideo_PAL_B, 0x16, 0x44, 0x00},  // American IF: not in this module's filters
           Case{AnalogVideo_PAL_B, 0x16, 0x51, 0x00},  // 5 MHz beside the carrier
           Case{AnalogVideo_PAL_B, 0x0E, 0x49, 0x00},  // FM radio
           Case{AnalogVideo_SECAM_L, 0x06, 0x4B, 0xE0},
           Case{AnalogVideo_SECAM_L, 0x16, 0x4B, 0x00},
       }) {
    Fit(0, one.standard);
    Write(0x86, {0x00, one.b, 0x70, one.e});
    Sleep(60);
    EXPECT_EQ(Read(0x86) & 0xE0, one.levels) << int{one.b} << ' ' << int{one.e};
    EXPECT_EQ(can_->Picture() != nullptr, one.levels != 0);
  }
}

// 33.95 MHz: the same oscillator receives a carrier 4.95 MHz higher.
TEST_F(IfDemodulatorTest, LPrimeMovesThePictureIf) {
  Fit(4950, AnalogVideo_SECAM_L1);
  Write(0x86, {0x00, 0x86, 0x4E, 0x4B});
  Sleep(60);
  EXPECT_EQ(Read(0x86), 0xE0);
  EXPECT_DOUBLE_EQ(can_->TunedKHz(), kTunedKHz + 4950);
}

TEST_F(IfDemodulatorTest, DeafUntilAllRegistersAreWritten) {
  Fit(0);
  Sleep(60);
  EXPECT_EQ(Read(0x86), 7 << 1);
  Write(0x86, {0x00, 0x16, 0x70});
  Sleep(60);
  EXPECT_EQ(Read(0x86), 7 << 1);
  Write(0x86, {0x02, 0x49});  // E alone, by its own subaddress
  Sleep(60);
  EXPECT_EQ(Read(0x86), 0xE0);
}

TEST_F(IfDemodulatorTest, ReadingsNeedTheirTime) {
  Fit(0);
  Write(0x86, {0x00, 0x16, 0x70, 0x49});
  Sleep(49);
  EXPECT_EQ(Read(0x86), 7 << 1);
  Sleep(1);
  EXPECT_EQ(Read(0x86), 0xE0);
  Write(0xC2, {0x0D, 0x62, 0xCE, 0x02});  // a retune disturbs it as well
  EXPECT_EQ(Read(0x86), 7 << 1);
}

TEST_F(IfDemodulatorTest, PowerOnFlagEndsWithTheFirstStatus) {
  const PllTuner tuner(*FindTunerModel(20), air_);
  IfDemodulator chip(tuner);
  bus_.Attach(0x86, &chip);
  EXPECT_EQ(Read(0x86), 7 << 1 | 1);
  EXPECT_EQ(Read(0x86), 7 << 1);
}

}  // namespace
}  // namespace zelk::virtual_cards
