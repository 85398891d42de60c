// The five-byte FM receiver. 98 MHz: (98000 - 225) / 12.5 = 7822 (1E 8E).
#include "virtual_cards/chips/fm_receiver.h"
#include "model_test.h"

namespace zelk::virtual_cards {
namespace {

constexpr double kTunedKHz = 98000;
constexpr int kNoise = 31;

class FmReceiverTest : public ModelTest {
 protected:
  void Fit(Air air) {
    bus_ = {};
    air_ = std::move(air);
    chip_ = std::make_unique<FmReceiver>(air_);
    bus_.Attach(0xC0, chip_.get());
  }
  void Tune(std::initializer_list<std::uint8_t> bytes = {0x1E, 0x8E, 0xA0, 0x06, 0x00}) {
    EXPECT_TRUE(Write(0xC0, bytes));
    Sleep(60);
  }
  std::array<std::uint8_t, 5> Status() {
    std::array<std::uint8_t, 5> status{};
    EXPECT_TRUE(bus_.Read(0xC1, status));
    return status;
  }
  bool Stereo() { return (Status()[2] & 0x80) != 0; }
  int Counter() { return Status()[2] & 0x7F; }
  int Level() { return Status()[3] >> 4; }

  Air air_;
  std::unique_ptr<FmReceiver> chip_;
};

TEST_F(FmReceiverTest, CounterFallsAcrossTheStation) {
  struct Case {
    double offsetKHz;  // station minus tuned frequency
    int counter;
    bool centred;
  };
  for (const Case& one : {
           Case{151, kNoise, false},
           Case{150, 83, false},
           Case{100, 73, false},
           Case{76, 68, false},
           Case{75, 68, true},
           Case{50, 63, true},
           Case{10, 55, true},
           Case{2, 53, true},
           Case{0, 53, true},
           Case{-10, 51, true},
           Case{-50, 43, true},
           Case{-150, 23, false},
           Case{-151, kNoise, false},
       }) {
    Fit(FmAirWith(kTunedKHz + one.offsetKHz));
    Tune();
    EXPECT_EQ(Counter(), one.counter) << one.offsetKHz;
    EXPECT_EQ(Level(), one.centred ? 13 : 2) << one.offsetKHz;
    EXPECT_EQ(Stereo(), one.centred) << one.offsetKHz;
  }
}

TEST_F(FmReceiverTest, StatusBytes) {
  Fit(FmAirWith(kTunedKHz));
  EXPECT_THAT(Status(), testing::ElementsAre(0x00, 0x00, kNoise, 0x20, 0x00)) << "never tuned";
  Tune();
  EXPECT_THAT(Status(), testing::ElementsAre(0x9E, 0x8E, 0x80 | 53, 0xD0, 0x00));
}

TEST_F(FmReceiverTest, LevelFollowsTheStation) {
  for (const auto& [dbuV, level] :
       {std::pair{39, 2}, {40, 7}, {45, 8}, {60, 11}, {80, 15}, {110, 15}}) {
    Fit(FmAirWith(kTunedKHz, false, dbuV));
    Tune();
    EXPECT_EQ(Level(), level) << dbuV;
    EXPECT_EQ(Counter(), dbuV < 40 ? kNoise : 53);
  }
}

TEST_F(FmReceiverTest, StereoNeedsAPilotAndPermission) {
  for (const bool pilot : {false, true}) {
    for (const bool forcedMono : {false, true}) {
      Fit(FmAirWith(kTunedKHz, pilot));
      Tune({0x1E, 0x8E, static_cast<std::uint8_t>(forcedMono ? 0xA8 : 0xA0), 0x06, 0x00});
      EXPECT_EQ(Stereo(), pilot && !forcedMono);
      EXPECT_EQ(Counter(), 53);
    }
  }
}

TEST_F(FmReceiverTest, BandAndReferenceMustFit) {
  struct Case {
    std::uint8_t high, low, mode, setUp, reference;
    double tunedKHz;
  };
  for (const Case& one : {
           Case{0x1E, 0x8E, 0xA0, 0x06, 0x00, 98000},
           Case{0x5E, 0x8E, 0xA0, 0x06, 0x00, 98000},  // the search bit is no divider bit
           Case{0x1E, 0x8E, 0xB0, 0x06, 0x00, 97550},  // mixed from above
           Case{0x1E, 0x8E, 0xA0, 0x26, 0x00, 0},      // beyond the Japanese band
           Case{0x18, 0xEE, 0xA0, 0x26, 0x00, 80000},
           Case{0x18, 0xEE, 0xA0, 0x06, 0x00, 0},  // below the western band
           Case{0x1E, 0x8E, 0xA0, 0x46, 0x00, 0},  // standby
           Case{0x1E, 0x8E, 0xA0, 0x16, 0x00, 0},  // for a watch crystal
           Case{0x1E, 0x8E, 0xA0, 0x06, 0x80, 0},  // for one of 6.5 MHz
       }) {
    Fit(FmAirWith(one.tunedKHz > 0 ? one.tunedKHz : kTunedKHz));
    Tune({one.high, one.low, one.mode, one.setUp, one.reference});
    EXPECT_EQ(chip_->TunedKHz(), one.tunedKHz);
    EXPECT_EQ(Counter(), one.tunedKHz > 0 ? 53 : kNoise) << int{one.setUp};
  }
}

TEST_F(FmReceiverTest, ReadingsNeedTheirTime) {
  Fit(FmAirWith(kTunedKHz));
  Write(0xC0, {0x1E, 0x8E, 0xA0, 0x06, 0x00});
  Sleep(49);
  EXPECT_EQ(Status()[0], 0x1E);
  EXPECT_EQ(Counter(), kNoise);
  Sleep(1);
  EXPECT_EQ(Status()[0], 0x9E);
  EXPECT_EQ(Counter(), 53);
  Write(0xC0, {0x1E, 0x92});  // the divider alone, 50 kHz further
  EXPECT_EQ(Counter(), kNoise);
  Sleep(50);
  EXPECT_EQ(Counter(), 43);
}

}  // namespace
}  // namespace zelk::virtual_cards
