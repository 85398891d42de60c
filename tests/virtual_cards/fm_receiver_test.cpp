// The five-byte FM receiver. 98 MHz: (98000 - 225) / 12.5 = 7822 (1E 8E).
#include "virtual_cards/chips/fm_receiver.h"
#include "model_test.h"

namespace zelk::virtual_cards {
namespace {

constexpr double kTunedKHz = 98000;
constexpr int kNoise = 31;

class FmReceiverTest : public ModelTest {
 protected:
  FmReceiverTest() { Fit({}); }
  void Fit(Air air) {
    bus_ = {};
    air_ = std::move(air);
    chip_ = std::make_unique<FmReceiver>(air_);
    bus_.Attach(0xC0, chip_.get());
  }
  std::array<std::uint8_t, 5> Status() {
    std::array<std::uint8_t, 5> status{};
    EXPECT_TRUE(bus_.Read(0xC1, status));
    return status;
  }
  // The status of a chip that has settled on these bytes.
  std::array<std::uint8_t, 5> Tuned(Air air, const Bytes& bytes = {0x1E, 0x8E, 0xA0, 0x06, 0x00}) {
    Fit(std::move(air));
    WriteAndWait(0xC0, bytes);
    return Status();
  }
  int Counter() { return Status()[2] & 0x7F; }

  Air air_;
  std::unique_ptr<FmReceiver> chip_;
};

TEST_F(FmReceiverTest, CounterFallsAcrossTheStation) {
  EXPECT_THAT(Status(), testing::ElementsAre(0x00, 0x00, kNoise, 0x20, 0x00)) << "never tuned";
  // Station minus tuned frequency, the counter, and whether the station is near enough to be heard.
  const std::tuple<double, int, bool> cases[] = {
      {151, kNoise, false}, {150, 83, false},     {76, 68, false}, {75, 68, true},
      {10, 55, true},       {2, 53, true},        {-10, 51, true}, {-50, 43, true},
      {-150, 23, false},    {-151, kNoise, false}};
  for (const auto& [offsetKHz, counter, centred] : cases) {
    EXPECT_THAT(Tuned(FmAirWith(kTunedKHz + offsetKHz)),
                testing::ElementsAre(0x9E, 0x8E, counter | (centred ? 0x80 : 0),
                                     centred ? 0xD0 : 0x20, 0x00))
        << offsetKHz;
  }
}

TEST_F(FmReceiverTest, LevelFollowsTheStation) {
  for (const auto& [dbuV, level] :
       {std::pair{39, 2}, {40, 7}, {45, 8}, {60, 11}, {80, 15}, {110, 15}}) {
    EXPECT_EQ(Tuned(FmAirWith(kTunedKHz, false, dbuV))[3] >> 4, level) << dbuV;
    EXPECT_EQ(Counter(), dbuV < 40 ? kNoise : 53);
  }
}

TEST_F(FmReceiverTest, StereoNeedsAPilotAndPermission) {
  const std::tuple<bool, std::uint8_t, int> cases[] = {
      {true, 0xA0, 0x80 | 53}, {true, 0xA8, 53}, {false, 0xA0, 53}};
  for (const auto& [pilot, mode, reading] : cases)
    EXPECT_EQ(Tuned(FmAirWith(kTunedKHz, pilot), {0x1E, 0x8E, mode, 0x06, 0x00})[2], reading);
}

TEST_F(FmReceiverTest, BandAndReferenceMustFit) {
  const std::pair<Bytes, double> cases[] = {
      {{0x5E, 0x8E, 0xA0, 0x06, 0x00}, 98000},  // the search bit is no divider bit
      {{0x1E, 0x8E, 0xB0, 0x06, 0x00}, 97550},  // mixed from above
      {{0x1E, 0x8E, 0xA0, 0x26, 0x00}, 0},      // beyond the Japanese band
      {{0x18, 0xEE, 0xA0, 0x26, 0x00}, 80000},
      {{0x18, 0xEE, 0xA0, 0x06, 0x00}, 0},   // below the western band
      {{0x1E, 0x8E, 0xA0, 0x46, 0x00}, 0},   // standby
      {{0x1E, 0x8E, 0xA0, 0x16, 0x00}, 0},   // for a watch crystal
      {{0x1E, 0x8E, 0xA0, 0x06, 0x80}, 0}};  // for one of 6.5 MHz
  for (const auto& [bytes, tunedKHz] : cases) {
    Tuned(FmAirWith(tunedKHz > 0 ? tunedKHz : kTunedKHz), bytes);
    EXPECT_EQ(chip_->TunedKHz(), tunedKHz);
    EXPECT_EQ(Counter(), tunedKHz > 0 ? 53 : kNoise) << testing::PrintToString(bytes);
  }
}

TEST_F(FmReceiverTest, ReadingsNeedTheirTime) {
  const auto readyAndCounter = [&] { return std::pair(Status()[0] & 0x80, Counter()); };
  Fit(FmAirWith(kTunedKHz));
  Write(0xC0, {0x1E, 0x8E, 0xA0, 0x06, 0x00});
  EXPECT_EQ(Around(50, readyAndCounter), std::pair(std::pair(0, kNoise), std::pair(0x80, 53)));
  Write(0xC0, {0x1E, 0x92});  // the divider alone, 50 kHz further
  EXPECT_EQ(Counter(), kNoise);
  Sleep(50);
  EXPECT_EQ(Counter(), 43);
}

}  // namespace
}  // namespace zelk::virtual_cards
