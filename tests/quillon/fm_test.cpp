// FM radio: words for the chips, and what their readings mean.
#include "tests/quillon/quillon_test.h"
#include "tests/support/reading.h"
#include "tests/support/told_chip.h"

namespace zelk::test {
namespace {

class QuillonFm : public QuillonTest {
 protected:
  // A card whose chip at `address` says what it is told.
  void PlugTold(std::uint32_t tunerCode, std::uint8_t address) {
    PlugFm(tunerCode);
    card->FitChip(address, &chip);
    chip.Tell({0});
  }
  Reading Ask(std::uint8_t status, bool withOffset = true) {
    chip.Tell({status});
    return AskSignal(ZELK_FMIsSignalPresent, withOffset);
  }

  ToldChip chip;
};

TEST_F(QuillonFm, SwitchingToFm) {
  PlugReady();
  EXPECT_EQ(ZELK_FMInit(), S_OK);
  EXPECT_THAT(TakeTrace(), ElementsAre("tuner query IAMTVTuner", "tuner mode 2"));
  // TV tuning asks for no mode.
  EXPECT_EQ(ZELK_SetFreq(98600, nullptr), S_OK);
}

TEST_F(QuillonFm, StationsThroughTheTuner) {
  PlugFm(11);
  EXPECT_EQ(ZELK_FMSetFreq(98600, nullptr), S_OK);
  EXPECT_THAT(TakeTrace(), Contains(HasSubstr("tuner set TUNER.4 frequency=98600000 ")));
  // It is the frequency that a new country is tuned to.
  ZELK_put_TVFormat(AnalogVideo_PAL_B, 49);
  EXPECT_THAT(TakeTrace(), Contains(HasSubstr("frequency=98600000 ")));
  card->Refuse("tuner set TUNER.4", kRefused);
  EXPECT_EQ(ZELK_FMSetFreq(99000, nullptr), E_FAIL);
}

TEST_F(QuillonFm, StationsThroughTheReceiver) {
  const auto tune = [&](std::uint32_t frequency) {
    const auto before = host::SleptMilliseconds();
    const HRESULT result = ZELK_FMSetFreq(frequency, nullptr);
    EXPECT_EQ(host::SleptMilliseconds() - before, 80u);
    return result;
  };
  PlugFm(51);
  EXPECT_EQ(tune(87500), 1);
  EXPECT_EQ(ZELK_FMSetAudioMode(0), E_FAIL);
  EXPECT_EQ(tune(108000), 1);
  EXPECT_THAT(TakeWrites("C0"), ElementsAre("1B 46 A0 06 00", "1B 46 A8 06 00", "21 AE A8 06 00"));
  EXPECT_THAT(TakeLog(), IsEmpty());

  card->Refuse("i2c write C0", kRefused);
  EXPECT_EQ(tune(90000), 0);
  EXPECT_THAT(TakeLog(), IsEmpty());
  EXPECT_EQ(ZELK_FMSetAudioMode(1), E_FAIL);
  EXPECT_THAT(TakeLog(), ElementsAre("Quillon I2CWriteDWord() fail"));

  // The Japanese board's band flag is set when tuning, not when the audio mode is set.
  UserCountry("81");
  PlugFm(49);
  EXPECT_EQ(tune(76000), 1);
  EXPECT_EQ(ZELK_FMSetAudioMode(1), E_FAIL);
  EXPECT_THAT(TakeWrites("C0"), ElementsAre("17 AE A0 26 00", "17 AE A0 06 00"));
}

TEST_F(QuillonFm, AudioModeOfTheDemodulator) {
  const Lines words = {"00 4E 90 4B", "00 4E 30 4B"};
  const Lines otherWords = {"00 4F 94 7D", "00 4F 34 7D"};
  for (const std::uint32_t code : {11u, 17u, 25u, 255u}) {
    PlugFm(code);
    EXPECT_EQ(ZELK_FMSetAudioMode(1), S_OK);
    EXPECT_EQ(ZELK_FMSetAudioMode(2), S_OK);
    EXPECT_EQ(TakeWrites("86"), code < 25 ? words : otherWords) << code;
    EXPECT_EQ(test::Ask(ZELK_FMGetAudioMode), Answer(S_OK, 2));
    card->Refuse("i2c write 86", kRefused);
    EXPECT_EQ(ZELK_FMSetAudioMode(1), E_FAIL);
    EXPECT_EQ(test::Ask(ZELK_FMGetAudioMode), Answer(S_OK, 1));
  }
  // A module without a demodulator for FM has nothing to be told.
  PlugFm(16);
  EXPECT_EQ(ZELK_FMSetAudioMode(1), E_FAIL);
  EXPECT_THAT(TakeTrace(), IsEmpty());
}

TEST_F(QuillonFm, DemodulatorReadings) {
  for (const std::uint32_t code : {11u, 17u, 25u, 255u}) {
    PlugTold(code, 0x86);
    for (std::uint8_t afc = 0; afc < 16; ++afc) {
      // The bits around the reading do not count.
      const auto status = static_cast<std::uint8_t>(afc << 1 | (afc % 2 ? 0xE1 : 0));
      const Reading expected = DemodulatorReading(afc, afc == 0 || afc == 15);
      EXPECT_EQ(Ask(status), expected) << +afc;
      EXPECT_EQ(Ask(status, false), (Reading{S_OK, expected.present, kUntouched, kUntouched}));
    }
  }
  // A failed reading counts as 0, whatever the driver's block held.
  chip.Tell({0x1E});
  card->Refuse("i2c read 86", kRefused);
  EXPECT_EQ(AskSignal(ZELK_FMIsSignalPresent), (Reading{E_FAIL, 1, 5, -12.5}));
  EXPECT_THAT(TakeLog(), ElementsAre("Quillon I2CRead() fail"));
}

TEST_F(QuillonFm, TunerReadings) {
  PlugTold(16, 0xC0);
  for (std::uint8_t afc = 0; afc < 8; ++afc) {
    Reading expected = kPllReadings[afc];
    expected.present = afc == 2;
    const std::uint8_t status = 0x50 | afc;
    EXPECT_EQ(Ask(status), expected) << +afc;
    EXPECT_EQ(Ask(status, false), (Reading{S_OK, expected.present, afc, kUntouched})) << +afc;
  }
  // Bits 3, 5 and 7 do not count; lock and pilot do.
  EXPECT_EQ(Ask(0xFA).present, 1u);
  EXPECT_EQ(Ask(0x12).present, 0u);
  EXPECT_EQ(Ask(0x42).present, 0u);
  card->Refuse("i2c read C0", kRefused);
  EXPECT_EQ(Ask(0x52), (Reading{E_FAIL, kUntouched, kUntouched, kUntouched}));
}

TEST_F(QuillonFm, ReceiverReadings) {
  for (const std::uint32_t code : {49u, 51u, 53u}) {
    PlugTold(code, 0xC0);
    for (const auto& [level, expected] : {std::pair(0x35, Reading{S_OK, 0, 1, 0.0}),
                                          {0xA0, {S_OK, 1, 3, 0.0}},
                                          {0x9F, {S_OK, 0, 2, 0.0}},
                                          {0xFF, {S_OK, 1, 5, 0.0}},
                                          {0x40, {S_OK, 0, 0, 0.0}}}) {
      chip.answers = {{0, 0, 0, static_cast<std::uint8_t>(level), 0}};
      EXPECT_EQ(AskSignal(ZELK_FMIsSignalPresent), expected) << level;
    }
    // Nothing is left of a station that can no longer be asked about.
    chip.answers = {{0, 0, 0, 0xFF, 0}};
    AskSignal(ZELK_FMIsSignalPresent);
    card->Refuse("capture query-supported QL2_I2C.1", kRefused);
    EXPECT_EQ(AskSignal(ZELK_FMIsSignalPresent), (Reading{S_OK, 0, 0, 0.0}));
  }
}

TEST_F(QuillonFm, Refusals) {
  std::uint32_t value = 0;
  std::uint8_t byte = 0;
  PlugTv();
  EXPECT_EQ(ZELK_FMSetFreq(90000, nullptr), VFW_E_WRONG_STATE);
  EXPECT_EQ(ZELK_FMIsSignalPresent(&value, nullptr, nullptr), VFW_E_WRONG_STATE);
  EXPECT_EQ(ZELK_FMSetAudioMode(1), VFW_E_WRONG_STATE);
  EXPECT_EQ(Slot<QuillonDevice>()->GetFMStatusByte(&byte, nullptr), VFW_E_WRONG_STATE);
  EXPECT_EQ(ZELK_FMGetAudioMode(&value), S_OK);
  EXPECT_THAT(TakeLog(), ElementsAre("Quillon SetFMFreq(): Current mode not FM",
                                     "Quillon IsFMSignalPresent(): Current mode not FM",
                                     "Quillon SetFMAudioMode(): Current mode not FM",
                                     "Quillon GetFMStatusByte(): Current mode not FM"));
  PlugFm(51);
  EXPECT_EQ(ZELK_FMSetFreq(87499, nullptr), E_FAIL);
  EXPECT_EQ(ZELK_FMSetFreq(108001, nullptr), E_FAIL);
  EXPECT_EQ(ZELK_FMIsSignalPresent(nullptr, &value, nullptr), E_FAIL);
  const std::string outside = "Quillon SetFMFreq(): Hardware not initial or frequency not correct";
  EXPECT_THAT(TakeLog(), ElementsAre(outside, outside,
                                     "Quillon IsFMSignalPresent(): no pIsSignalPresent point"));
  // The frequency is still the first one.
  ZELK_FMSetAudioMode(1);
  EXPECT_THAT(TakeWrites("C0"), ElementsAre("1C 0E A0 06 00"));
}

}  // namespace
}  // namespace zelk::test
