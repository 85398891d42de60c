// The change to TV and FM and the choice of standard and country, as the tuner driver and the
// demodulator hear of them.
#include "tests/support/bt_test.h"

namespace zelk::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Strings = std::vector<std::string>;

constexpr HRESULT kRefused = static_cast<HRESULT>(0x8007001F);

class Bt88xMode : public BtTest {
 protected:
  const Strings bothLocksRefused = {"BT88X SetHWLock(): Current mode not TV or FM",
                                    "BT88X SetHWLock(): Current mode not TV or FM"};
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

struct FormatCase {
  std::uint32_t standard, country;
  const char* words;        // null: the demodulator is left alone
  std::uint32_t named = 0;  // country for the tuner driver; 0: it hears nothing
  std::uint32_t namedStandard = 0;
};

TEST_F(Bt88xMode, Formats) {
  constexpr std::uint32_t B = AnalogVideo_PAL_B;
  constexpr std::uint32_t D = AnalogVideo_PAL_D;
  const char* const b = "i2c write 86: 00 16 70 49";
  const char* const d = "i2c write 86: 00 16 70 4B";
  const char* const l = "i2c write 86: 00 06 50 4B";
  const FormatCase cases[] = {
      {B, 33, b, 34, B},
      {B, 36, b, 34, B},
      {AnalogVideo_SECAM_B, 48, b, 34, B},
      {B, 370, b, 34, B},
      {B, 359, b, 49, B},
      {AnalogVideo_SECAM_B, 420, b, 49, B},
      {B, 4201, b, 49, B},
      {B, 44, b},
      {B, 7, b},
      {D, 7, d, 86, D},
      {AnalogVideo_SECAM_D, 36, d, 86, D},
      {D, 370, d, 86, D},
      {D, 48, d, 48, D},
      {D, 359, d, 359, D},
      {AnalogVideo_SECAM_D, 420, d, 420, D},
      {D, 4201, d, 4201, D},
      {D, 33, d},
      {AnalogVideo_PAL_I, 33, "i2c write 86: 00 16 70 4A"},
      {AnalogVideo_SECAM_L, 33, l, 33, AnalogVideo_SECAM_L},
      {AnalogVideo_SECAM_L, 44, l},
      {AnalogVideo_NTSC_M, 33, nullptr},
      {AnalogVideo_PAL_G, 36, nullptr},
  };
  for (const std::uint32_t type : {14u, 15u, 20u, 21u}) {
    PlugTv(kCx2388xTuner, {.tunerType = type});
    for (const FormatCase& one : cases) {
      SCOPED_TRACE(::testing::Message() << one.standard << " in " << one.country);
      TakeTrace();
      EXPECT_EQ(ZELK_put_TVFormat(one.standard, one.country), S_OK);
      Strings expected;
      if (one.words) expected.push_back(one.words);
      const std::string country = std::to_string(one.named);
      if (one.named) {
        char standard[9];
        std::snprintf(standard, sizeof(standard), "%08X", one.namedStandard);
        expected.push_back(std::string("tuner set TUNER.3 ") + standard);
        expected.push_back("tuner set TUNER.4 frequency=175250000 flags=0 channel=0 country=" +
                           country);
      }
      EXPECT_EQ(TakeTrace(), expected);
      EXPECT_EQ(TakeLog(), one.named ? Strings{"country = " + country + " "} : Strings{});
      // The country that is kept is the one that was named.
      ZELK_SetFreq(175250, nullptr);
      EXPECT_EQ(TakeTrace().back(),
                "tuner set TUNER.4 frequency=175250000 flags=0 channel=0 country=" +
                    std::to_string(one.named ? one.named : one.country));
    }
  }
  PlugTv(kCx2388xTuner, {.tunerType = 1});
  TakeTrace();
  EXPECT_EQ(ZELK_put_TVFormat(B, 36), S_OK);
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
