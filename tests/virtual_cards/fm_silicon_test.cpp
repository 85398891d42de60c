// FM on a silicon tuner, as the card's driver reports it. 98.025 MHz needs 99.625 MHz at the mixer:
// eight times that is 797 MHz at the oscillator, 3188 steps of 250 kHz, written four times as large
// (31 D0).
#include "plugged_card.h"

namespace zelk::virtual_cards {
namespace {

constexpr double kTunedKHz = 98025;
constexpr ULONG kNoise = 2000000;

class FmSiliconTest : public PluggedCardTest {
 protected:
  // Plugs the card in, goes to FM and tunes. `offsetKHz` is tuned frequency minus station.
  std::unique_ptr<Interfaces> Ready(std::uint32_t type, double offsetKHz, bool stereo = true,
                                    double levelDbuV = 70) {
    Plug({.tunerType = type}, FmAirWith(kTunedKHz - offsetKHz, stereo, levelDbuV));
    auto on = std::make_unique<Interfaces>(*card_);
    EXPECT_EQ(on->tvTuner->put_Mode(AMTUNER_MODE_FM_RADIO), S_OK);
    if (type == 40) {
      for (const Bytes& bytes : {Bytes{0x28, 0x14}, {0x0D, 0x47}, {0x0F, 0x81}})
        on->Write(0x96, bytes);
    }
    Tune(*on, type == 40 ? 0xD8 : 0x78);
    Sleep(60);
    return on;
  }
  static void Tune(Interfaces& on, BYTE oscillator) {
    on.Write(0x96, {0x21, 0xC0});
    EXPECT_EQ(on.Write(0xC2, {0x00, 0x31, 0xD0, 0x00, 0x10, oscillator}), S_OK);
    on.Write(0x96, {0x21, 0x80});
  }

  using Readings = std::tuple<ULONG, int, bool>;  // level, AFC and stereo
  static Readings ReadingsOf(Interfaces& on) {
    ULONG level = 0xBAD, afc = 0xBAD;
    BYTE stereo = 2;
    EXPECT_EQ(on.GetOwn(0x6D, level), S_OK);
    EXPECT_EQ(on.GetOwn(0x6E, afc), S_OK);
    EXPECT_EQ(GetProperty(on.capture.Get(), kOwnSet, 0x6F, stereo), S_OK);
    EXPECT_LE(stereo, 1);
    return {level, static_cast<int>(afc), stereo == 1};
  }
  static bool Deaf(Interfaces& on) { return ReadingsOf(on) == Readings(kNoise, 2, false); }
};

TEST_F(FmSiliconTest, AfcStepsAcrossTheStation) {
  const std::tuple<double, int, bool> cases[] = {
      {-151, 2, false}, {-149, -2, false}, {-94, -2, false}, {-93, -1, false},
      {-74, -1, true},  {-32, -1, true},   {-31, 0, true},   {31, 0, true},
      {32, 1, true},    {76, 1, false},    {93, 1, false},   {94, 2, false}};
  for (const auto& [offsetKHz, step, centred] : cases) {
    for (const std::uint32_t type : {40u, 41u}) {
      const auto on = Ready(type, offsetKHz);
      EXPECT_EQ(ReadingsOf(*on), Readings(centred ? 487000 : kNoise, step, centred))
          << type << ' ' << offsetKHz;
      EXPECT_EQ(card_->TunedKHz(), kTunedKHz);
    }
  }
}

TEST_F(FmSiliconTest, LevelAndStereoOfTheStation) {
  for (const auto& [dbuV, figure] :
       {std::pair{39, kNoise}, {40, 1198000ul}, {60, 724000ul}, {80, 250000ul}, {110, 0ul}}) {
    const auto on = Ready(41, 0, false, dbuV);
    EXPECT_EQ(ReadingsOf(*on), Readings(figure, dbuV < 40 ? 2 : 0, false)) << dbuV;
  }
}

TEST_F(FmSiliconTest, AnswersInFmAlone) {
  Plug({}, FmAirWith(kTunedKHz));
  {
    Interfaces other(*card_);
    EXPECT_EQ(ReadingsOf(other), Readings(0, 0, false)) << "no silicon tuner, nothing to say";
  }
  const auto on = Ready(41, 0);
  EXPECT_FALSE(Deaf(*on));
  EXPECT_EQ(on->tvTuner->put_Mode(AMTUNER_MODE_TV), S_OK);
  EXPECT_TRUE(Deaf(*on));
  EXPECT_EQ(on->tvTuner->put_Mode(AMTUNER_MODE_FM_RADIO), S_OK);
  EXPECT_FALSE(Deaf(*on));
  on->SetOwn(0x67, 1);
  EXPECT_TRUE(Deaf(*on)) << "powered down";
}

TEST_F(FmSiliconTest, SetUpAndTime) {
  const auto on = Ready(40, 0);
  for (const BYTE number : {BYTE{0x28}, BYTE{0x0D}, BYTE{0x0F}}) {
    const int value = on->ReadAt(0x96, number);
    on->Write(0x96, {number, 0x88});
    EXPECT_TRUE(Deaf(*on)) << int{number};
    on->Write(0x96, {number, static_cast<BYTE>(value)});
    EXPECT_FALSE(Deaf(*on));
  }
  Tune(*on, 0xC8);  // an oscillator that does not reach the frequency
  Sleep(60);
  EXPECT_TRUE(Deaf(*on));
  Tune(*on, 0xD8);
  EXPECT_EQ(Around(50, [&] { return Deaf(*on); }), std::pair(true, false));
}

}  // namespace
}  // namespace zelk::virtual_cards
