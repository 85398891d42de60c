// The change to TV and FM and the choice of standard and country, as the tuner driver and the
// demodulator hear of them.
#include "tests/bt_family/noted_card.h"

namespace zelk::test {
namespace {

class Bt88xMode : public NotedCardTest {
 protected:
  const Strings bothLocksRefused = Strings(2, "BT88X SetHWLock(): Current mode not TV or FM");
};

Strings LockedChange(const char* mode) {
  return {"capture query IKsPropertySet", "lock 0 := 0", "tuner query IAMTVTuner", mode,
          "capture query IKsPropertySet", "lock 0 := 1"};
}

TEST_F(Bt88xMode, ModesWithATunerDriver) {
  Plug(kCx2388xTuner, {.tunerType = 1});
  TakeTrace();
  ASSERT_EQ(Init(), S_OK);
  // Without a mode the locks are refused, twice.
  EXPECT_THAT(TakeTrace(),
              ElementsAre("capture query IKsPropertySet", "tuner query IKsPropertySet",
                          "i2c setup hardware 100000", "eeprom select 06", "eeprom read 06 -> 01",
                          "eeprom select 42", "eeprom read 42 -> 00", "tuner query IAMTVTuner",
                          "tuner mode 1", "tuner channel 9 0 0"));
  EXPECT_EQ(TakeLog(), bothLocksRefused);
  EXPECT_EQ(ZELK_TVInit(), S_OK);
  EXPECT_THAT(TakeTrace(), ElementsAre("tuner query IAMTVTuner", "tuner mode 1"));
  EXPECT_EQ(TakeLog(), bothLocksRefused);
  EXPECT_EQ(ZELK_TVInit(), S_OK);
  EXPECT_EQ(TakeTrace(), LockedChange("tuner mode 1"));
  EXPECT_EQ(ZELK_FMInit(), S_OK);
  Strings fm = LockedChange("tuner mode 2");
  fm.push_back("i2c write C0: 08 5E 8E A0");
  EXPECT_EQ(TakeTrace(), fm);
  EXPECT_THAT(TakeLog(), IsEmpty());
  // A driver that refuses changes nothing.
  card->Refuse("tuner query IAMTVTuner", kRefused);
  EXPECT_EQ(ZELK_TVInit(), S_OK);
  EXPECT_NE(ZELK_SetFreq(175250, nullptr), VFW_E_WRONG_STATE);
}

TEST_F(Bt88xMode, ModesWithoutATunerDriver) {
  for (const CardSetUp& wanted : {kCx2388x, kCx2388xIo}) {
    Plug(wanted, {.tunerType = 15});
    EXPECT_EQ(Init(), S_OK);
    FitNotedChips();
    EXPECT_EQ(ZELK_TVInit(), S_OK);
    EXPECT_THAT(TakeNotes(), IsEmpty());
    EXPECT_THAT(TakeLog(), IsEmpty());
  }
}

// The result of FM's last write is the result, and the mode is FM even so.
TEST_F(Bt88xMode, FmThatCannotBeSetUp) {
  Plug(kCx2388x, {.tunerType = 13});
  ASSERT_EQ(Init(), S_OK);
  card->Refuse("i2c write 86", kRefused);
  EXPECT_EQ(ZELK_FMInit(), E_FAIL);
  card->ClearRefusals();
  card->Refuse("i2c write C0", kRefused);
  EXPECT_EQ(ZELK_FMInit(), S_OK);
  card->ClearRefusals();
  EXPECT_EQ(ZELK_FMSetFreq(98000, nullptr), S_OK);
}

struct Format {
  std::vector<std::uint32_t> standards;  // the first is the one that is named to the tuner driver
  Strings written;                       // to the demodulator
  // Countries and those named for them. 0: the tuner driver hears nothing.
  std::vector<std::pair<std::uint32_t, std::uint32_t>> countries;
};

std::string Tuning(std::uint32_t country) {
  return "tuner set TUNER.4 frequency=175250000 flags=0 channel=0 country=" +
         std::to_string(country);
}

TEST_F(Bt88xMode, Formats) {
  const Format formats[] = {
      {{AnalogVideo_PAL_B, AnalogVideo_SECAM_B},
       {"i2c write 86: 00 16 70 49"},
       {{33, 34}, {36, 34}, {48, 34}, {370, 34}, {359, 49}, {420, 49}, {4201, 49}, {7, 0}}},
      {{AnalogVideo_PAL_D, AnalogVideo_SECAM_D},
       {"i2c write 86: 00 16 70 4B"},
       {{7, 86}, {36, 86}, {370, 86}, {48, 48}, {359, 359}, {420, 420}, {4201, 4201}, {33, 0}}},
      {{AnalogVideo_PAL_I}, {"i2c write 86: 00 16 70 4A"}, {{33, 0}}},
      {{AnalogVideo_SECAM_L}, {"i2c write 86: 00 06 50 4B"}, {{33, 33}, {44, 0}}},
      {{AnalogVideo_NTSC_M, AnalogVideo_PAL_G}, {}, {{33, 0}, {36, 0}}}};
  const auto expectFormat = [&](const Format& format, std::uint32_t standard, std::uint32_t country,
                                std::uint32_t named) {
    SCOPED_TRACE(::testing::Message() << standard << " in " << country);
    TakeTrace();
    EXPECT_EQ(ZELK_put_TVFormat(standard, country), S_OK);
    char digits[9];
    std::snprintf(digits, sizeof(digits), "%08X", format.standards[0]);
    const Strings told = {std::string("tuner set TUNER.3 ") + digits, Tuning(named)};
    EXPECT_EQ(TakeTrace(), Joined({format.written, named ? told : Strings()}));
    EXPECT_EQ(TakeLog(), Strings(named ? 1 : 0, "country = " + std::to_string(named) + " "));
    // The country that is kept is the one that was named.
    ZELK_SetFreq(175250, nullptr);
    EXPECT_EQ(TakeTrace().back(), Tuning(named ? named : country));
  };
  for (const std::uint32_t type : {14u, 15u, 20u, 21u}) {
    PlugTv(kCx2388xTuner, {.tunerType = type});
    for (const Format& format : formats) {
      for (const std::uint32_t standard : format.standards) {
        for (const auto& [country, named] : format.countries) {
          expectFormat(format, standard, country, named);
        }
      }
    }
  }
  PlugTv(kCx2388xTuner, {.tunerType = 1});
  TakeTrace();
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 36), S_OK);
  EXPECT_THAT(TakeTrace(), IsEmpty());
}

TEST_F(Bt88xMode, FormatsThatFail) {
  PlugTv(kCx2388xTuner, {.tunerType = 15});
  // A refused demodulator is the result where nothing follows it, a refused tuning where it does.
  card->Refuse("i2c write 86", kRefused);
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 44), E_FAIL);
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 36), S_OK);
  card->ClearRefusals();
  card->Refuse("tuner set TUNER.3", kRefused);
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 36), S_OK);
  card->Refuse("tuner set TUNER.4", kRefused);
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 36), kRefused);
  // Without a tuner driver there is nobody to name the country to.
  PlugTv(kCx2388x, {.tunerType = 15});
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 36), E_FAIL);
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 44), S_OK);
  EXPECT_THAT(TakeLog(), IsEmpty());
}

}  // namespace
}  // namespace zelk::test
