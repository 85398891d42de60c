// Standard and country: demodulator words, country substitutes, what is remembered and what is
// announced.
#include "tests/support/card_test.h"

namespace zelk::test {
namespace {

using virtual_cards::Saa713xOptions;

class TvFormat : public CardTest {
 protected:
  // The countries that SetTVFormat and the tuning that goes with it name to the tuner driver.
  Lines Countries() {
    Lines countries;
    for (const std::string& line : TakeTrace()) {
      const auto at = line.find("country=");
      if (at != std::string::npos) countries.push_back(line.substr(at + 8));
    }
    return countries;
  }
};

TEST_F(TvFormat, DemodulatorWords) {
  // Tuner type and standard.
  using Modules = std::vector<std::pair<std::uint32_t, std::uint32_t>>;
  const std::pair<Lines, Modules> cases[] = {
      {{"00 16 70 49"},
       {{14, AnalogVideo_PAL_B},
        {15, AnalogVideo_SECAM_B},
        {20, AnalogVideo_PAL_G},
        {21, AnalogVideo_SECAM_G}}},
      {{"00 16 70 4B"},
       {{14, AnalogVideo_SECAM_D}, {20, AnalogVideo_PAL_D}, {20, AnalogVideo_SECAM_K1}}},
      {{"00 16 70 4A"}, {{15, AnalogVideo_PAL_I}, {21, AnalogVideo_PAL_I}}},
      {{"00 06 50 4B"}, {{14, AnalogVideo_SECAM_L}}},
      {{"00 06 4E 4B"}, {{20, AnalogVideo_SECAM_L}}},
      {{"00 86 4E 4B"}, {{20, AnalogVideo_SECAM_L1}}},
      {{"00 D6 10 04"}, {{46, AnalogVideo_PAL_B}}},
      {{"00 D6 70 09"}, {{47, AnalogVideo_NTSC_M}}},
      {{"00 D6 70 00"}, {{48, 0}}},
      {{},
       {{14, AnalogVideo_PAL_G},
        {14, AnalogVideo_SECAM_K},
        {14, AnalogVideo_SECAM_L1},
        {14, AnalogVideo_PAL_B | AnalogVideo_PAL_D},
        {20, AnalogVideo_PAL_H},
        {1, AnalogVideo_PAL_B},
        {12, AnalogVideo_NTSC_M}}}};
  for (const auto& [words, modules] : cases) {
    for (const auto& [type, standard] : modules) {
      PlugTv(type);
      TakeTrace();
      EXPECT_EQ(ZELK_put_TVFormat(standard, 49), S_OK);
      EXPECT_EQ(TakeWrites("86"), words) << type << " " << std::hex << standard;
      // A write that fails is the result, and the rest is done all the same.
      if (words.empty()) continue;
      card->Refuse("i2c write 86", kRefused);
      EXPECT_EQ(ZELK_put_TVFormat(standard, 44), kRefused);
      EXPECT_THAT(TakeLog(), Contains("SAA713x I2CWriteDWord() fail"));
      EXPECT_THAT(Countries(), Contains("44"));
    }
  }
}

TEST_F(TvFormat, SwitchingToTvSetsTheDemodulatorUp) {
  const Lines none;
  const Lines american = {"00 56 30 44"};
  const std::pair<std::uint32_t, Lines> cases[] = {
      {12, american},        {13, american}, {17, {"00 56 10 40"}},
      {18, {"00 56 7F 4B"}}, {1, none},      {46, none}};
  for (const auto& [type, words] : cases) {
    PlugReady({.tunerType = type});
    EXPECT_EQ(ZELK_TVInit(), S_OK);
    EXPECT_EQ(TakeWrites("86"), words) << type;
  }
  // A module whose set-up depends on the format gets the last one again.
  PlugTv(14);
  ASSERT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_I, 44), S_OK);
  TakeTrace();
  EXPECT_EQ(ZELK_TVInit(), S_OK);
  EXPECT_THAT(TakeWrites("86"), ElementsAre("00 16 70 4A"));
}

TEST_F(TvFormat, SwitchingToTvChangesTheTunersMode) {
  for (const std::uint32_t type : {40u, 41u}) {
    PlugTv(type);
    // The lock closes again whatever happens in between, and the result does not show it.
    card->Refuse("tuner query IAMTVTuner", E_NOINTERFACE);
    EXPECT_EQ(ZELK_TVInit(), S_OK);
    EXPECT_EQ(card->DriverProperty(0x65), 1u);
  }
  Lines expected = {"gpio 27 := 1", "capture set ZELK_SAA.65 00000000", "tuner query IAMTVTuner",
                    "tuner mode 1", "capture set ZELK_SAA.65 00000001"};
  for (const bool tunerFilter : {true, false}) {
    PlugReady({.tunerType = 46, .boardConfig = 0xE3, .tunerFilter = tunerFilter});
    ZELK_TVInit();
    EXPECT_EQ(TakeTrace(), expected);
    expected.resize(1);
  }
}

TEST_F(TvFormat, SameCountryAgainIsNotTunedAgain) {
  PlugTv(14);
  ASSERT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 49), S_OK);
  TakeTrace();
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_I, 49), S_OK);
  EXPECT_THAT(TakeTrace(), ElementsAre("i2c select 86", "i2c write 86: 00 16 70 4A"));
  // The new standard was not stored: the next notification still names the old one.
  EXPECT_EQ(ZELK_SetFreq(182250, nullptr), S_OK);
  EXPECT_THAT(TakeTrace(), Contains("capture set VAMP_TUNE.3 00000001 00000031 00000010 00000001"));
}

constexpr std::uint32_t kStandards[] = {AnalogVideo_PAL_B, AnalogVideo_PAL_D, AnalogVideo_SECAM_D};

// What is named in place of a country with each of these, when the format is chosen and while
// tuning.
struct Country {
  std::uint32_t code, chosen[3], tuned[3];
  std::uint32_t ownStandard;  // taken over from the decoder where there was a substitute
};
constexpr Country kCountries[] = {
    {7, {7, 86, 7}, {7, 86, 7}, AnalogVideo_SECAM_D},
    {33, {52, 33, 33}, {52, 33, 33}, AnalogVideo_SECAM_L},
    {36, {52, 86, 36}, {52, 86, 36}, AnalogVideo_PAL_D},
    {48, {48, 86, 48}, {52, 48, 48}, AnalogVideo_PAL_D},
    {359, {49, 359, 359}, {49, 359, 359}, AnalogVideo_PAL_D},
    {370, {52, 370, 370}, {52, 370, 370}, AnalogVideo_PAL_D},
    {420, {49, 420, 420}, {49, 420, 420}, AnalogVideo_PAL_D},
    {4201, {49, 4201, 4201}, {49, 4201, 4201}, AnalogVideo_PAL_D},
    {44, {44, 44, 44}, {44, 44, 44}, AnalogVideo_PAL_I},
};

TEST_F(TvFormat, CountrySubstitutes) {
  const Saa713xOptions boards[] = {
      {.tunerType = 40},
      {.tunerType = 41},
      {.tunerType = 1, .chipId = 0x7130, .boardConfig = 0x0601},  // option code 3
      {.tunerType = 1, .chipId = 0x7130, .boardConfig = 0x0801},  // option code 4
  };
  for (const Saa713xOptions& board : boards) {
    for (const Country& country : kCountries) {
      for (const int i : {0, 1, 2}) {
        PlugReady(board);
        ZELK_TVInit();
        TakeTrace();
        EXPECT_EQ(ZELK_put_TVFormat(kStandards[i], country.code), S_OK);
        const std::uint32_t chosen = country.chosen[i];
        Lines named = {std::to_string(chosen)};
        // The silicon tuners' driver tunes as well. A substitute has none of its own.
        if (board.tunerType != 1) {
          named.push_back(std::to_string(chosen == country.code ? country.tuned[i] : chosen));
        }
        EXPECT_EQ(Countries(), named) << board.tunerType << " " << country.code << " " << i;
        EXPECT_EQ(TakeLog(), Lines(country.code == 44 ? 0 : 1,
                                   "SAA713x SetTVFormat(): Multi-video-get interface."));
      }
    }
  }
  // Other boards leave the country alone.
  PlugTv(1);
  TakeTrace();
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_D, 48), S_OK);
  EXPECT_EQ(Countries().front(), "48");
  EXPECT_THAT(TakeLog(), IsEmpty());
}

// A board that does not tell its chip has no substitutes, so that a country and a standard meet
// that choosing the format would have parted.
TEST_F(TvFormat, CountrySubstitutesWhileTuning) {
  const auto notification = [](int phase, std::uint32_t country, std::uint32_t standard) {
    char line[80];
    std::snprintf(line, sizeof(line), "capture set VAMP_TUNE.3 %08X %08X %08X %08X", phase, country,
                  standard, phase);
    return std::string(line);
  };
  for (const Country& country : kCountries) {
    for (const int i : {0, 1, 2}) {
      for (const std::uint32_t detected : {country.ownStandard, std::uint32_t{AnalogVideo_PAL_N}}) {
        Plug({.tunerType = 1, .chipId = 0x7130, .boardConfig = 0x0601});
        card->SetDetectedStandard(detected);
        Saa713xDevice device;
        const auto init = [&] {
          device.HWInit(card->CaptureFilter().Get(), card->FriendlyName().c_str(),
                        card->TunerFilter().Get(), 0);
          device.InitialTV();
        };
        card->Refuse("vamp chip-id", E_FAIL);
        init();
        device.SetTVFormat(kStandards[i], country.code);
        card->ClearRefusals();
        init();
        TakeTrace();
        EXPECT_EQ(device.SetTVFreq(182250), S_OK);
        const std::uint32_t tuned = country.tuned[i];
        const bool follows = tuned != country.code && detected == country.ownStandard;
        EXPECT_THAT(TakeTrace(),
                    IsSupersetOf({notification(1, tuned, kStandards[i]),
                                  notification(2, tuned, follows ? detected : kStandards[i])}))
            << country.code << " " << i;
      }
    }
  }
}

TEST_F(TvFormat, NotificationsOnlyForANewFrequencyOrCountry) {
  PlugTv(1);
  card->SetDetectedStandard(AnalogVideo_PAL_B);
  ASSERT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 49), S_OK);
  ASSERT_EQ(ZELK_SetFreq(182250, nullptr), S_OK);
  TakeTrace();
  EXPECT_EQ(ZELK_SetFreq(182250, nullptr), S_OK);
  EXPECT_THAT(TakeTrace(), ElementsAre("i2c select C2", "i2c write C2: 0D D2 CE 90",
                                       "capture get VIDEODECODER.1 -> 00000010",
                                       "capture get ZELK_SAA.74 -> 00007134",
                                       "capture set VIDEODECODER.1 00000010"));
  // The closing notification's code is the result; the opening one's is not looked at.
  card->Refuse("capture set VAMP_TUNE.3 00000001", E_FAIL);
  EXPECT_EQ(ZELK_SetFreq(189250, nullptr), S_OK);
  card->Refuse("i2c write C2", E_FAIL);
  EXPECT_EQ(ZELK_SetFreq(196250, nullptr), S_OK);
  EXPECT_EQ(ZELK_SetFreq(196250, nullptr), E_FAIL);
}

TEST_F(TvFormat, RefusedTunerRequests) {
  const char* const otherFile = "zelkapi_713X.log";
  PlugTv(40);
  card->Refuse("tuner set TUNER.4", kRefused);
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 49), S_OK);
  EXPECT_THAT(TakeLog(otherFile), ElementsAre("SAA713x SetTVFormat() fail (TDA8275 tuner)",
                                              "SAA713x SetTVFreq() fail (TDA8275 tuner)"));
  EXPECT_EQ(ZELK_SetFreq(175250, nullptr), kRefused);
}

TEST_F(TvFormat, TvSystems) {
  const std::tuple<std::uint32_t, std::uint32_t, const char*> cases[] = {
      {AnalogVideo_NTSC_M, 1, "1"},  {AnalogVideo_NTSC_433, 9, "1"},
      {AnalogVideo_PAL_B, 1, "49"},  {AnalogVideo_PAL_G, 2, "34"},
      {AnalogVideo_PAL_D, 1, "420"}, {AnalogVideo_PAL_D, 2, "86"},
      {AnalogVideo_PAL_I, 2, "44"},  {AnalogVideo_PAL_M, 4, "55"},
      {AnalogVideo_PAL_N, 4, "54"},  {AnalogVideo_SECAM_K, 2, "7"},
      {AnalogVideo_SECAM_D, 2, "7"}, {AnalogVideo_SECAM_L1, 2, "33"},
  };
  for (const auto& [standard, system, country] : cases) {
    PlugTv(1);
    TakeTrace();
    EXPECT_EQ(ZElk_put_TVSystem(standard, system), S_OK);
    EXPECT_EQ(Countries().front(), country) << std::hex << standard << " " << system;
  }
  // Country 0: the format is not chosen anew, but the card is tuned again with its notifications.
  for (const auto& [standard, system] :
       {std::pair(AnalogVideo_PAL_I, 1u), {AnalogVideo_PAL_B, 4}}) {
    PlugTv(1);
    TakeTrace();
    EXPECT_EQ(ZElk_put_TVSystem(standard, system), S_OK);
    const auto trace = TakeTrace();
    EXPECT_EQ(trace.front(), "capture set VAMP_TUNE.3 00000001 00000000 00000000 00000001");
    EXPECT_THAT(trace, Contains("i2c write C2: 0D 62 CE 90"));
  }
  // None, two at once, and PAL H and SECAM B, G and H, which have no row.
  for (const std::uint32_t standard : {0u, 3u, 0x80u, 0x1000u, 0x4000u, 0x8000u, 0x100000u}) {
    EXPECT_EQ(ZElk_put_TVSystem(standard, 2), E_FAIL);
    EXPECT_THAT(TakeTrace(), IsEmpty());
  }
}

TEST_F(TvFormat, TvSystemOutsideTvModeLosesTheFrequency) {
  PlugReady();
  EXPECT_EQ(ZElk_put_TVSystem(AnalogVideo_PAL_B, 1), S_OK);
  ZELK_TVInit();
  TakeTrace();
  // The next country brings the stored frequency to light: 0.
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 44), S_OK);
  EXPECT_THAT(TakeTrace(), Contains("tuner set TUNER.4 frequency=0 flags=1 channel=4 country=44"));
}

TEST_F(TvFormat, DecoderStandardRecord) {
  PlugReady({.tunerType = 18});
  card->SetDetectedStandard(AnalogVideo_SECAM_D);
  std::uint32_t record[8] = {};
  EXPECT_EQ(ZELK_GetVIDEOSTANDARD(record), E_FAIL);
  EXPECT_EQ(record[6], static_cast<std::uint32_t>(AnalogVideo_SECAM_D));
  TakeTrace();
  EXPECT_EQ(ZELK_SETCaptureStandard(AnalogVideo_SECAM_D), E_FAIL);
  EXPECT_EQ(ZELK_SETCaptureStandard(AnalogVideo_PAL_B), E_FAIL);
  EXPECT_THAT(TakeTrace(),
              ElementsAre("capture set VIDEODECODER.1 00002000", "i2c select 86",
                          "i2c write 86: 00 56 7F 4B", "capture set VIDEODECODER.1 00000010"));
}

TEST_F(TvFormat, AudioSystemTunesAgain) {
  PlugTv(1);
  ASSERT_EQ(ZELK_SetFreq(182250, nullptr), S_OK);
  card->SetDetectedStandard(AnalogVideo_PAL_B);
  TakeTrace();
  EXPECT_EQ(ZELK_SetAUDIOSYSTEM(3), S_OK);
  EXPECT_THAT(TakeTrace(),
              IsSupersetOf({"capture set ZELK_SAA.73 00000003", "i2c write C2: 0D D2 CE 90"}));
  // On a SECAM D signal the card goes to country 7.
  card->SetDetectedStandard(AnalogVideo_SECAM_D);
  EXPECT_EQ(ZELK_SetAUDIOSYSTEM(4), S_OK);
  EXPECT_THAT(Countries(), ElementsAre("7"));
}

}  // namespace
}  // namespace zelk::test
