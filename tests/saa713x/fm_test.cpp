// FM radio: the bytes for each kind of tuner, and what its readings mean.
#include <algorithm>
#include <map>

#include "api/library.h"
#include "platform/control.h"
#include "tests/support/card_test.h"
#include "tests/support/reading.h"
#include "tests/support/told_chip.h"

namespace zelk::test {
namespace {

using virtual_cards::Saa713xOptions;

// Every tuner type that a board can carry, but for the ALPS modules, which have boards of their
// own.
constexpr std::uint32_t kOrdinaryTuners[] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13,
                                             14, 15, 16, 17, 18, 19, 20, 21, 24, 25, 26, 27, 28, 29,
                                             30, 31, 32, 33, 34, 35, 36, 37, 42, 43, 44, 45};

class Fm : public CardTest {
 protected:
  Lines OnlyTransfers() {
    Lines transfers;
    for (const std::string& line : TakeTrace()) {
      if (!line.starts_with("i2c select")) transfers.push_back(line);
    }
    return transfers;
  }
  void PlugFm(const Saa713xOptions& options) {
    PlugReady(options);
    ZELK_FMInit();
    TakeTrace();
  }
  void PlugFmTuner(std::uint32_t type) { PlugFm({.tunerType = type}); }
};

const Lines kFmModeSwitch = {"capture set ZELK_SAA.65 00000000", "tuner query IAMTVTuner",
                             "tuner mode 2", "capture set ZELK_SAA.65 00000001"};

TEST_F(Fm, SwitchingToFm) {
  std::map<std::uint32_t, Lines> cases = {
      {13, {"i2c write C2: 0C 3C 86 41 A0 00 00", "i2c write 86: 00 4E 90 74"}},
      {15, {"i2c write C2: 0B CE 86 21 A0", "i2c write 86: 00 4E D0 77"}},
      {19, {"i2c write 86: 00 4E DF 5C"}},
      {21, {"i2c write C2: 0B CE CE 01", "i2c write 86: 00 5A 90 20"}},
      {40, kFmModeSwitch},
      {41, kFmModeSwitch},
  };
  for (const std::uint32_t type : {1u, 3u, 5u, 7u, 9u, 11u, 26u, 28u, 32u, 34u}) {
    cases[type] = {"i2c write C2: 08 5E 8E A0"};
  }
  // All others need nothing.
  for (const std::uint32_t type : kOrdinaryTuners) cases.try_emplace(type);
  for (const auto& [type, expected] : cases) {
    PlugReady({.tunerType = type});
    const auto before = host::SleptMilliseconds();
    EXPECT_EQ(ZELK_FMInit(), S_OK) << type;
    EXPECT_EQ(OnlyTransfers(), expected) << type;
    // Two modules need time between their PLL and their demodulator.
    EXPECT_EQ(host::SleptMilliseconds() - before, type == 15 || type == 21 ? 80u : 0u) << type;
    // In FM mode now.
    EXPECT_EQ(ZELK_SetFreq(175250, nullptr), VFW_E_WRONG_STATE) << type;
    EXPECT_NE(ZELK_FMSetFreq(89000, nullptr), VFW_E_WRONG_STATE) << type;
  }
}

TEST_F(Fm, SwitchingAlpsBoardsToFm) {
  // An ordinary board has no receiver: nothing happens and the mode stays.
  PlugTv(46);
  TakeTrace();
  EXPECT_EQ(ZELK_FMInit(), S_OK);
  EXPECT_THAT(TakeTrace(), IsEmpty());
  EXPECT_EQ(ZELK_FMSetFreq(98000, nullptr), VFW_E_WRONG_STATE);

  const std::pair<std::uint32_t, const char*> boards[] = {{0xE1, "i2c write C0: 17 AE 01 26 00"},
                                                          {0xE3, "i2c write C0: 17 AE 01 06 00"},
                                                          {0xE9, "i2c write C0: 17 AE 01 06 00"}};
  for (const auto& [board, word] : boards) {
    PlugReady({.boardConfig = board});
    EXPECT_EQ(ZELK_FMInit(), S_OK);
    Lines expected = kFmModeSwitch;
    expected.insert(expected.end(), {"gpio 27 := 0", word});
    EXPECT_EQ(OnlyTransfers(), expected);
    EXPECT_FALSE(card->GpioOutput(27));
  }
  // A refused mode is logged; the rest follows and the write's result counts.
  card->Refuse("tuner mode", kRefused);
  TakeLog();
  EXPECT_EQ(ZELK_FMInit(), S_OK);
  EXPECT_THAT(TakeLog(), ElementsAre("SAA713x pTVTuner->put_Mode fail"));
  EXPECT_EQ(OnlyTransfers().back(), "i2c write C0: 17 AE 01 06 00");
}

TEST_F(Fm, RefusedModeSwitchOfSiliconTuners) {
  PlugReady({.tunerType = 40});
  card->Refuse("tuner query IAMTVTuner", E_NOINTERFACE);
  EXPECT_EQ(ZELK_FMInit(), E_NOINTERFACE);
  EXPECT_EQ(card->DriverProperty(0x65), 1u);
  EXPECT_THAT(TakeLog(), IsEmpty());
  EXPECT_NE(ZELK_FMSetFreq(98000, nullptr), VFW_E_WRONG_STATE);
  card->ClearRefusals();
  card->Refuse("tuner mode", kRefused);
  EXPECT_EQ(ZELK_FMInit(), kRefused);
  EXPECT_THAT(TakeLog(), ElementsAre("SAA713x pTVTuner->put_Mode fail"));
  PlugReady({.tunerType = 41, .tunerFilter = false});
  EXPECT_EQ(ZELK_FMInit(), E_FAIL);
}

TEST_F(Fm, TuningWords) {
  std::map<std::uint32_t, const char*> cases = {
      {13, "08 7E 80 19 A0"},
      {15, "08 7E 80 19 A0"},
      {21, "08 7E 88 09"},
      // (196000 + 66600) / 100 = 2626
      {19, "0A 42 80 19 B0"},
      // (98000 + 41250) / 50 = 2785
      {30, "0A E1 88 A5"},
      {44, "08 7E C8 91"},
      {45, "08 7E C8 91"},
  };
  for (const std::uint32_t type : kOrdinaryTuners) {
    // (196000 + 21400) / 100 = 2174
    cases.try_emplace(type, "08 7E 88 A5");
    PlugFmTuner(type);
    ZELK_FMSetFreq(98000, nullptr);
    EXPECT_THAT(TakeWrites("C2"), ElementsAre(cases[type])) << type;
  }
  // The receiver chip: (98000 * 4000 - 900000) / 50000 = 7822.
  PlugFm({.boardConfig = 0xE3});
  EXPECT_EQ(ZELK_FMSetFreq(98000, nullptr), S_OK);
  EXPECT_THAT(OnlyTransfers(), ElementsAre("gpio 27 := 0", "i2c write C0: 1E 8E A0 06 00"));
}

// A scan tests a station a second time with the flag cleared.
TEST_F(Fm, AudioModeAndTuneFlagChooseTheControlWord) {
  struct Case {
    std::uint32_t mode, flag;
    const char *classic, *tnf;
  };
  const Case cases[] = {{1, 1, "07 DE 88 A5", "07 DE C8 91"},
                        {1, 0, "07 DE 88 A4", "07 DE C8 11"},
                        {0, 1, "07 DE 88 A7", "07 DE C8 31"},
                        {0, 0, "07 DE 88 A6", nullptr},
                        {2, 1, "07 DE 88 A6", nullptr}};
  for (const std::uint32_t type : {1u, 44u}) {
    PlugFmTuner(type);
    for (const Case& one : cases) {
      Slot<Saa713xDevice>()->SetFMTuneFlag(one.flag);
      const char* const word = type == 1 ? one.classic : one.tnf;
      // Without a word nothing is written and the frequency is the result.
      EXPECT_EQ(ZELK_FMSetAudioMode(one.mode), word ? S_OK : 90000);
      EXPECT_EQ(TakeWrites("C2"), word ? Lines{word} : Lines()) << type << " " << one.mode;
    }
  }
}

TEST_F(Fm, AudioMode) {
  // What mono and stereo mean.
  using Modes = std::array<Lines, 2>;
  const Modes fiDemodulator = {Lines{"i2c write 86: 00 4E 30 4B"}, {"i2c write 86: 00 4E 90 4B"}};
  const Modes tvAudio = {Lines{"tv-audio mode 1"}, {"tv-audio mode 2"}};
  const std::map<std::uint32_t, Modes> cases = {
      {0, fiDemodulator}, {2, fiDemodulator},
      {6, fiDemodulator}, {8, {Lines{"i2c write 86: 00 4F 34 7D"}, {"i2c write 86: 00 4F 94 7D"}}},
      {27, tvAudio},      {28, tvAudio}};
  for (const std::uint32_t type : kOrdinaryTuners) {
    PlugFmTuner(type);
    for (const std::uint32_t mode : {1u, 0u}) {
      EXPECT_EQ(ZELK_FMSetAudioMode(mode), S_OK) << type;
      const Lines heard = OnlyTransfers();
      const auto own = cases.find(type);
      // Others are tuned again: 90 MHz, as long as nothing else was tuned.
      if (own == cases.end()) ZELK_FMSetFreq(90000, nullptr);
      EXPECT_EQ(heard, own == cases.end() ? OnlyTransfers() : own->second[mode]) << type;
    }
  }
  for (const auto& [board, band] : {std::pair{0xE1u, "26"}, {0xE9u, "06"}, {0xE3u, "06"}}) {
    PlugFm({.boardConfig = board});
    for (const auto& [mode, word] : {std::pair{1u, "A0"}, {0u, "A8"}}) {
      EXPECT_EQ(ZELK_FMSetAudioMode(mode), S_OK) << board;
      EXPECT_THAT(OnlyTransfers(), ElementsAre("gpio 27 := 0", std::string("i2c write C0: 1C 0E ") +
                                                                   word + " " + band + " 00"));
    }
  }
  card->Refuse("i2c write C0", kRefused);
  TakeLog();
  EXPECT_EQ(ZELK_FMSetAudioMode(1), kRefused);
  EXPECT_THAT(TakeLog(), Contains("SAA713x I2CWriteDWord() fail"));
}

// In its order: gate, input filter, image, charge pump, gate.
TEST_F(Fm, TuningTheTda8275a) {
  PlugFmTuner(41);
  const auto before = host::SleptMilliseconds();
  EXPECT_EQ(ZELK_FMSetFreq(98000, nullptr), 1);
  // 16 ms for the tuner's loop, 112 ms for its gain control.
  EXPECT_EQ(host::SleptMilliseconds() - before, 20u + 115u);
  // Oscillator 98 - 3.9 + 5.5 = 99.6 MHz, times 8 in 250 kHz steps: 3187, times 4: 0x31CC.
  EXPECT_THAT(OnlyTransfers(),
              ElementsAre("i2c write 96: 21 C0", "i2c write C2: 07 26",
                          "i2c write C2: 00 31 CC 00 10 79 9B 38 0A 28 FF 40 00 39",
                          "i2c write C2: 80 28", "i2c write C2: 30 14", "i2c write C2: 30 10",
                          "i2c write C2: 80 28", "i2c write 96: 21 80"));
  EXPECT_NEAR(card->TunedKHz(), 98000, 31.25);
}

// The divider and the band's two registers at both ends of every band in which there is FM,
// Eastern Europe's included. The oscillator runs 1.6 MHz above the station; the divider counts
// 1/32 MHz of it, in the TDA8275's last band 1/16, and is written four times as large.
TEST_F(Fm, EveryBandOfTheSiliconTuners) {
  struct Station {
    std::uint32_t frequency;
    const char *divider, *band;
  };
  const std::vector<Station> tda8275 = {
      {62000, "1F CC", "F8 BF"},  {64400, "21 00", "F8 BF"}, {64401, "21 00", "C8 BF"},
      {74400, "26 00", "C8 BF"},  {74401, "26 00", "D0 BF"}, {82400, "2A 00", "D0 BF"},
      {82401, "2A 00", "D0 9F"},  {91400, "2E 80", "D0 9F"}, {91401, "2E 80", "D8 9F"},
      {96400, "31 00", "D8 9F"},  {96401, "31 00", "D9 9F"}, {107400, "36 80", "D9 9F"},
      {107401, "1B 40", "B1 9F"}, {108000, "1B 64", "B1 9F"}};
  const std::vector<Station> tda8275a = {{62000, "1F CC", "60 BB"}, {65650, "21 A0", "60 BB"},
                                         {65651, "21 A0", "68 BB"}, {79650, "28 A0", "68 BB"},
                                         {79651, "28 A0", "70 BB"}, {95900, "30 C0", "70 BB"},
                                         {95901, "30 C0", "79 9B"}, {108000, "36 CC", "79 9B"}};
  for (const std::uint32_t type : {40u, 41u}) {
    PlugTuner(type);
    ASSERT_EQ(Init(1), S_OK);
    ZELK_FMInit();
    const char* const between = type == 40 ? " 40 52 " : " 00 10 ";
    const char* const behind = type == 40 ? " BF 2A 04 FF 00 00 40" : " 38 0A 28 FF 40 00 39";
    for (const Station& one : type == 40 ? tda8275 : tda8275a) {
      TakeTrace();
      EXPECT_EQ(ZELK_FMSetFreq(one.frequency, nullptr), 1);
      EXPECT_THAT(TakeWrites("C2"),
                  Contains(std::string("00 ") + one.divider + between + one.band + behind))
          << type << " " << one.frequency;
      EXPECT_NEAR(card->TunedKHz(), one.frequency, 62.5);
    }
  }
}

// In four of its modes the demodulator's gain control is set up otherwise, and started anew where
// the level is above 20 or the AFC shows no lock.
TEST_F(Fm, TuningTheTda8275) {
  ToldChip demodulator;
  ToldChip tuner;
  PlugFmTuner(40);
  card->FitChip(0x96, &demodulator);
  card->FitChip(0xC2, &tuner);
  const auto tune = [&](unsigned mode, unsigned level, unsigned afc, std::uint8_t control) {
    demodulator.answers = {{static_cast<std::uint8_t>(mode)},
                           {static_cast<std::uint8_t>(level), static_cast<std::uint8_t>(afc)},
                           {control}};
    EXPECT_EQ(ZELK_FMSetFreq(98000, nullptr), 1);
    return OnlyTransfers();
  };
  EXPECT_THAT(
      tune(0x20, 21, 0x80, 0x55),
      ElementsAre("i2c read 96[01] -> 20", "i2c write 96: 01 A0", "i2c write 96: 0F 88",
                  "i2c write 96: 28 14", "i2c write 96: 05 02", "i2c write 96: 0D 47",
                  "i2c write 96: 21 C0", "i2c write C2: 00 31 CC 40 52 D9 9F BF 2A 04 FF 00 00 40",
                  "i2c write C2: 60 3F", "i2c write 96: 21 80", "i2c read 96[1A] -> 15 80",
                  "i2c read 96[0E] -> 55", "i2c write 96: 0E 57", "i2c write 96: 0E 55",
                  "i2c write 96: 0F 81"));
  // Bit 1 of the control register is set, then cleared.
  EXPECT_THAT(tune(0x20, 0, 0, 0xFF), IsSupersetOf({"i2c write 96: 0E FF", "i2c write 96: 0E FD"}));
  const auto restarted = [](const Lines& lines) {
    return std::find(lines.begin(), lines.end(), "i2c write 96: 0E 57") != lines.end();
  };
  for (unsigned mode = 0; mode <= 0xFF; ++mode) {
    const bool watched = mode == 0x20 || mode == 0x40 || mode == 0xA0 || mode == 0xC0;
    for (const unsigned level : {0u, 20u, 21u, 0xFFu}) {
      for (const unsigned afc : {0x7Fu, 0x80u}) {
        const Lines lines = tune(mode, level, afc, 0x55);
        EXPECT_EQ(lines[4], watched ? "i2c write 96: 05 02" : "i2c write 96: 05 04") << mode;
        EXPECT_EQ(restarted(lines), watched && (level > 20 || afc < 0x80))
            << mode << " " << level << " " << afc;
      }
    }
  }
}

TEST_F(Fm, BandAndModeAreChecked) {
  PlugFmTuner(1);
  EXPECT_EQ(ZELK_FMSetFreq(87500, nullptr), S_OK);
  EXPECT_EQ(ZELK_FMSetFreq(108000, nullptr), S_OK);
  EXPECT_EQ(ZELK_FMSetFreq(87499, nullptr), E_FAIL);
  EXPECT_EQ(ZELK_FMSetFreq(108001, nullptr), E_FAIL);
  EXPECT_EQ(TakeLog(),
            Lines(2, "SAA713x SetFMFreq(): Hardware not initial or frequency not correct"));
  ZELK_TVInit();
  EXPECT_EQ(Ask(ZELK_FMSetFreq, 98000), Answer(VFW_E_WRONG_STATE, kUntouched));
  EXPECT_EQ(ZELK_FMSetAudioMode(1), VFW_E_WRONG_STATE);
  EXPECT_EQ(AskSignal(ZELK_FMIsSignalPresent),
            (Reading{VFW_E_WRONG_STATE, kUntouched, kUntouched, kUntouched}));
  EXPECT_THAT(TakeLog(), ElementsAre("SAA713x SetFMFreq(): Current mode not FM",
                                     "SAA713x SetFMAudioMode(): Current mode not FM",
                                     "SAA713x IsFMSignalPresent(): Current mode not FM"));
}

Reading AskFm(bool withOffset = true) { return AskSignal(ZELK_FMIsSignalPresent, withOffset); }

TEST_F(Fm, PresenceByDemodulator) {
  ToldChip chip;
  const std::uint32_t level[] = {0, 0, 1, 2, 3, 4, 4, 5, 5, 4, 4, 3, 2, 1, 0, 0};
  for (const std::uint32_t type : {13u, 21u}) {
    PlugFmTuner(type);
    card->FitChip(0x86, &chip);
    for (std::uint8_t code = 0; code < 16; ++code) {
      chip.Tell({static_cast<std::uint8_t>(0xE1 | code << 1)});
      const std::uint32_t present = code == 0 || code == 14;
      EXPECT_EQ(AskFm(), (Reading{S_OK, present, level[code], -187.5 + 25.0 * code}));
      // Strength comes with the offset alone.
      EXPECT_EQ(AskFm(false), (Reading{S_OK, present, kUntouched, kUntouched}));
    }
  }
}

TEST_F(Fm, PresenceByTunerStatus) {
  ToldChip chip;
  PlugFmTuner(1);
  card->FitChip(0xC2, &chip);
  // Bits 7, 5 and 3 do not matter.
  for (const auto& [status, expected] : {std::pair(0x52, Reading{S_OK, 1, 5, 0.0}),
                                         {0xFA, {S_OK, 1, 5, 0.0}},
                                         {0x42, {S_OK, 0, 5, 0.0}},
                                         {0x54, {S_OK, 0, 0, 125.0}}}) {
    chip.Tell({static_cast<std::uint8_t>(status)});
    EXPECT_EQ(AskFm(), expected);
  }
  EXPECT_EQ(AskFm(false), (Reading{S_OK, 0, 4, kUntouched}));
  card->Refuse("i2c read C2", kRefused);
  EXPECT_EQ(AskFm(), (Reading{E_FAIL, kUntouched, kUntouched, kUntouched}));
}

TEST_F(Fm, PresenceByReceiver) {
  ToldChip chip;
  PlugFm({.boardConfig = 0xE3});
  card->FitChip(0xC0, &chip);
  for (const auto& [level, expected] : {std::pair(0xF0, Reading{S_OK, 1, 5, 0.0}),
                                        {0x5F, {S_OK, 1, 0, 0.0}},
                                        {0x4F, {S_OK, 0, 0, 0.0}},
                                        {0x3F, {S_OK, 0, 1, 0.0}},
                                        {0x00, {S_OK, 0, 0, 0.0}}}) {
    chip.answers = {{0, 0, 0, static_cast<std::uint8_t>(level), 0}};
    EXPECT_EQ(AskFm(), expected) << level;
  }
}

TEST_F(Fm, PresenceByDriver) {
  // What the properties say, and the strength or the offset that it means.
  const std::tuple<std::uint32_t, std::int32_t, double> cases[] = {
      {0x6D, 0, 100},      {0x6D, 299999, 100}, {0x6D, 300000, 95},  {0x6D, 699999, 80},
      {0x6D, 700000, 75},  {0x6D, 800000, 75},  {0x6D, 899999, 75},  {0x6D, 900000, 70},
      {0x6D, 1199999, 60}, {0x6D, 1200000, 55}, {0x6D, 1599999, 40}, {0x6D, 1600000, 0},
      {0x6E, 2, -100},     {0x6E, 1, 0},        {0x6E, 0, 0},        {0x6E, -1, 50},
      {0x6E, -2, 100},     {0x6E, 3, 0}};
  for (const auto& [property, figure, meaning] : cases) {
    PlugTuner(40);
    auto told = ComPtr<ToldFilter>::Adopt(new ToldFilter(card->CaptureFilter().Get(), property));
    told->answers = {static_cast<std::uint32_t>(figure)};
    ASSERT_EQ(ZELK_HWInit(told.Get(), card->FriendlyName().c_str(), card->TunerFilter().Get(), 0),
              S_OK);
    ZELK_FMInit();
    const Reading reading = AskFm();
    EXPECT_EQ(property == 0x6D ? reading.strength : reading.offset, meaning) << figure;
    EXPECT_TRUE(property == 0x6E || reading.result == figure) << figure;
    told.Reset();
  }
}

}  // namespace
}  // namespace zelk::test
