// Television: standard, country, tuning, and what counts as a signal.
#include "tests/quillon/quillon_test.h"
#include "tests/support/reading.h"

namespace zelk::test {
namespace {

const std::string kTuned = "After QL2IF_SetTunerFreq";

class QuillonTv : public QuillonTest {
 protected:
  // The country codes that the tuner is given.
  Lines TakeCountries() { return TakeTrace("tuner country "); }
};

TEST_F(QuillonTv, SwitchingToTv) {
  PlugReady();
  EXPECT_EQ(ZELK_TVInit(), S_OK);
  EXPECT_THAT(TakeTrace(), ElementsAre("tuner query IAMTVTuner", "tuner mode 1"));
  // A tuner that cannot be switched does not matter.
  card->Refuse("tuner query IAMTVTuner", E_NOINTERFACE);
  EXPECT_EQ(ZELK_TVInit(), S_OK);
  EXPECT_EQ(ZELK_FMInit(), S_OK);
}

TEST_F(QuillonTv, CountriesAndTheirSubstitutes) {
  // With the country in force already, 34, the tuner is left alone.
  using Case = std::array<std::uint32_t, 4>;
  const Case cases[] = {{49, AnalogVideo_PAL_B, 36, 34},  {49, AnalogVideo_PAL_D, 7, 86},
                        {49, AnalogVideo_PAL_B, 359, 34}, {49, AnalogVideo_PAL_D, 48, 86},
                        {49, AnalogVideo_PAL_B, 420, 34}, {49, AnalogVideo_PAL_B, 33, 34},
                        {49, AnalogVideo_PAL_H, 36, 36},  {49, AnalogVideo_PAL_B, 44, 44},
                        {370, AnalogVideo_PAL_D, 1, 86},  {4201, AnalogVideo_PAL_B, 1, 34},
                        {371, AnalogVideo_PAL_D, 1, 1},   {34, AnalogVideo_PAL_B, 36, 0}};
  for (const auto& [before, standard, country, told] : cases) {
    PlugTv();
    ASSERT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_G, before), S_OK);
    TakeTrace();
    EXPECT_EQ(ZELK_put_TVFormat(standard, country), S_OK);
    EXPECT_EQ(TakeCountries(), told ? Lines{std::to_string(told)} : Lines())
        << standard << ' ' << country;
  }
}

TEST_F(QuillonTv, WhatAFormatMeansToTheCard) {
  PlugTv();
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 49), S_OK);
  EXPECT_THAT(
      TakeTrace(),
      ElementsAre("tuner query IAMTVTuner", HasSubstr("tuner get-channel"),
                  HasSubstr("tuner channel "), "tuner country 49", HasSubstr("tuner get TUNER.4"),
                  HasSubstr("tuner set TUNER.4 frequency=175250000"),
                  "capture query IAMAnalogVideoDecoder", "capture put-format 00000010"));
  // Once more: the decoder alone.
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 49), S_OK);
  EXPECT_THAT(TakeTrace(),
              ElementsAre("capture query IAMAnalogVideoDecoder", "capture put-format 00000010"));
  // Country 0 is the one that an untouched card has.
  PlugTv();
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 0), S_OK);
  EXPECT_THAT(TakeTrace(), Not(Contains(HasSubstr("tuner"))));
}

TEST_F(QuillonTv, RefusedFormats) {
  struct Case {
    const char* request;
    HRESULT result;
    Lines debugger;
    bool stored;  // the country is in force afterwards
  };
  for (const Case& one : {
           Case{"tuner query IAMTVTuner",
                kRefused,
                {"Quillon: SetTVFormat: QueryInterface(IAMTVTUNER) failed!"},
                false},
           {"tuner country", kRefused, {"Quillon: SetTVFormat: put_CountryCode failed!"}, false},
           {"tuner get-channel", S_OK, {kTuned}, true},
           {"tuner channel", S_OK, {kTuned}, true},
           {"tuner get TUNER.4", S_OK, {}, true},
           {"capture query IAMAnalogVideoDecoder", S_OK, {kTuned}, true},
           {"capture put-format", E_FAIL, {kTuned, "Quillon: Set Video Standared Fail"}, true},
       }) {
    PlugTv();
    card->Refuse(one.request, kRefused);
    EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 49), one.result) << one.request;
    EXPECT_EQ(host::TakeDebugOutput(), one.debugger) << one.request;
    card->ClearRefusals();
    if (one.request == std::string("tuner get-channel")) {
      EXPECT_THAT(TakeTrace(), Contains("tuner channel 0 -1 -1"));
    }
    TakeTrace();
    ZELK_put_TVFormat(AnalogVideo_PAL_B, 49);
    EXPECT_EQ(TakeCountries().empty(), one.stored) << one.request;
  }
}

TEST_F(QuillonTv, SystemsStandForCountries) {
  // A system that means no country counts as one itself. PAL D in a country of several standards,
  // 420, is China's.
  const std::tuple<std::uint32_t, std::uint32_t, const char*> cases[] = {
      {AnalogVideo_NTSC_M_J, 31, "1"}, {AnalogVideo_PAL_B, 1, "49"},
      {AnalogVideo_PAL_G, 2, "34"},    {AnalogVideo_PAL_B, 4, "4"},
      {AnalogVideo_PAL_B, 31, "31"},   {AnalogVideo_PAL_D, 1, "86"},
      {AnalogVideo_PAL_I, 1, "1"},     {AnalogVideo_PAL_I, 2, "44"},
      {AnalogVideo_PAL_M, 4, "55"},    {AnalogVideo_PAL_60, 2, "2"},
      {AnalogVideo_SECAM_K1, 2, "7"},  {AnalogVideo_SECAM_L, 2, "33"}};
  for (const auto& [standard, system, country] : cases) {
    PlugTv();
    EXPECT_EQ(ZElk_put_TVSystem(standard, system), S_OK);
    EXPECT_THAT(TakeCountries(), ElementsAre(country)) << standard << ' ' << system;
  }
  PlugTv();
  for (const std::uint32_t standard : {0u, 0x80u, 0x1000u, 0x4000u, 0x8000u, 0x100000u, 0x30u}) {
    EXPECT_EQ(ZElk_put_TVSystem(standard, 2), E_FAIL) << standard;
  }
  EXPECT_THAT(TakeTrace(), IsEmpty());
}

TEST_F(QuillonTv, ARefusedRetuningForgetsTheFrequency) {
  PlugTv();
  ASSERT_EQ(ZELK_SetFreq(210250, nullptr), S_OK);
  card->Refuse("tuner set TUNER.4", E_FAIL);
  EXPECT_EQ(ZElk_put_TVSystem(AnalogVideo_PAL_B, 1), S_OK);
  card->ClearRefusals();
  TakeTrace();
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 44), S_OK);
  EXPECT_THAT(TakeTrace(), Contains(HasSubstr("tuner set TUNER.4 frequency=0 ")));
}

TEST_F(QuillonTv, Tuning) {
  PlugTv();
  EXPECT_EQ(ZELK_SetFreq(175250, nullptr), S_OK);
  EXPECT_NEAR(card->TunedKHz(), 175250, 62.5);  // on the PLL's grid
  EXPECT_THAT(host::TakeDebugOutput(), ElementsAre(kTuned));

  card->Refuse("tuner get TUNER.4", kRefused);
  EXPECT_EQ(ZELK_SetFreq(182250, nullptr), E_FAIL);
  EXPECT_THAT(TakeLog(), ElementsAre("api: Get Tuner Property Failed"));
  EXPECT_THAT(host::TakeDebugOutput(), IsEmpty());
  card->ClearRefusals();

  card->Refuse("tuner set TUNER.4", kRefused);
  EXPECT_EQ(ZELK_SetFreq(182250, nullptr), E_FAIL);
  EXPECT_THAT(TakeLog(), ElementsAre("api: Set Tuner Property Failed"));
  EXPECT_THAT(host::TakeDebugOutput(), ElementsAre(kTuned));
  card->ClearRefusals();

  // Neither changed the frequency that a new country is tuned to.
  TakeTrace();
  ZELK_put_TVFormat(AnalogVideo_PAL_B, 49);
  EXPECT_THAT(TakeTrace(), Contains(HasSubstr("frequency=175250000 ")));
}

TEST_F(QuillonTv, SignalOnTheAir) {
  virtual_cards::Air air = MakeAir({175250});
  PlugTv(11, air);
  ASSERT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 49), S_OK);
  const auto before = host::SleptMilliseconds();
  EXPECT_EQ(Ask(ZELK_SetFreq, 175250), Answer(S_OK, 1));
  EXPECT_EQ(host::SleptMilliseconds() - before, 160u);  // tuner, then decoder
  const Reading reading = AskSignal(ZELK_IsSignalPresent);
  EXPECT_EQ(reading, (Reading{S_OK, 1, 100, reading.offset}));
  EXPECT_LT(reading.offset, 62.5);
  EXPECT_EQ(Ask(ZELK_SetFreq, 182250), Answer(S_OK, 0));
  EXPECT_EQ(AskSignal(ZELK_IsSignalPresent).present, 0u);

  // A carrier without a picture is no signal.
  ZELK_SetFreq(175250, nullptr);
  card->Refuse("capture horizontal-locked", kRefused);
  EXPECT_EQ(AskSignal(ZELK_IsSignalPresent).result, kRefused);
  EXPECT_EQ(AskSignal(ZELK_IsSignalPresent).present, 0u);
  card->ClearRefusals();
  // The tuner's own refusals are not told apart.
  card->Refuse("tuner get TUNER.6", kRefused);
  EXPECT_EQ(AskSignal(ZELK_IsSignalPresent), (Reading{E_FAIL, 0, 0, 0.0}));
}

// Beside a carrier the driver reports some strength; only the full one counts.
TEST_F(QuillonTv, HalfACarrierIsNone) {
  PlugTv(11, MakeAir({175250}));
  ASSERT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 49), S_OK);
  bool seen = false;
  for (std::uint32_t beside = 175250; beside < 177250; beside += 50) {
    ASSERT_EQ(ZELK_SetFreq(beside, nullptr), S_OK);
    const Reading reading = AskSignal(
        [](auto... places) { return Slot<QuillonDevice>()->IsSignalPresent_TUNER(places...); });
    EXPECT_EQ(reading.present, reading.strength == 100) << beside;
    seen = seen || (reading.strength >= 50 && reading.strength < 100);
  }
  EXPECT_TRUE(seen) << "the driver never reported a half strength";
}

// The driver's offset is a signed figure that applications are given as an unsigned one.
TEST_F(QuillonTv, ACarrierBelowTheTunedFrequency) {
  PlugTv(11, MakeAir({175100}));
  ASSERT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 49), S_OK);
  ASSERT_EQ(ZELK_SetFreq(175250, nullptr), S_OK);
  const double offset = AskSignal(ZELK_IsSignalPresent).offset;
  EXPECT_GT(offset, 4294967296.0 - 200);
  EXPECT_LT(offset, 4294967296.0);
}

TEST_F(QuillonTv, BeforeInitialisation) {
  Plug({.friendlyName = kName});
  Forget();
  QuillonDevice device;
  std::uint32_t value = kUntouched;
  ZELK_HWInfo info = {};
  const auto refuses = [&](const char* name, HRESULT result) {
    EXPECT_EQ(result, E_FAIL) << name;
    EXPECT_THAT(TakeLog(),
                ElementsAre(std::string("Quillon ") + name + "(): Hardware not initial"));
  };
  refuses("InitialTV", device.InitialTV());
  refuses("GetHWInfo", device.GetHWInfo(&info));
  refuses("GetTunerType", device.GetTunerType(&value));
  refuses("IsSignalPresent_DECODER", device.IsSignalPresent_DECODER(&value));
  refuses("InitialTV", device.InitialFM(1));
  refuses("IsFMSignalPresent", device.IsFMSignalPresent(&value, nullptr, nullptr));
  refuses("SetFMAudioMode", device.SetFMAudioMode(1));
  refuses("GetFMAudioMode", device.GetFMAudioMode(&value));
  refuses("GetFMStatusByte", device.GetFMStatusByte(nullptr, nullptr));
  EXPECT_EQ(device.SetFMFreq(90000), E_FAIL);
  EXPECT_THAT(TakeLog(),
              ElementsAre("Quillon SetFMFreq(): Hardware not initial or frequency not correct"));
  EXPECT_EQ(value, kUntouched);
  // These look at what they need instead.
  EXPECT_EQ(device.SetTVFreq(175250), E_FAIL);
  EXPECT_EQ(AskSignal([&](auto... places) { return device.IsSignalPresent_TUNER(places...); }),
            (Reading{E_FAIL, 0, 0, 0.0}));
  EXPECT_EQ(device.GetMPEGParam(nullptr), E_FAIL);
  EXPECT_EQ(device.SetMPEGParam({}), E_FAIL);
  EXPECT_EQ(device.SetTVFormat(AnalogVideo_PAL_B, 49), E_FAIL);
  EXPECT_THAT(TakeLog(), IsEmpty());
  EXPECT_THAT(host::TakeDebugOutput(),
              ElementsAre("Quillon: SetTVFormat: g_pTunerFilter ==NULL failed!"));
}

}  // namespace
}  // namespace zelk::test
