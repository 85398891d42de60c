// The bytes that reach the tuner's PLL: every module at, below and above both its band limits.
#include <span>

#include "tests/support/card_test.h"
#include "tests/support/common_modules.h"

namespace zelk::test {
namespace {

class Pll : public CardTest {
 protected:
  // What SetFreq writes to the tuner.
  std::vector<std::string> Written(std::uint32_t frequencyKHz) {
    TakeTrace();
    EXPECT_EQ(ZELK_SetFreq(frequencyKHz, nullptr), S_OK);
    return TakeWrites("C2");
  }
  std::string LastWritten(std::uint32_t frequencyKHz) {
    const auto writes = Written(frequencyKHz);
    return writes.empty() ? "" : writes.back();
  }
};

const TunerModule kModules[] = {
    {{18, 19}, 158000, 442000, "0C 4E", "1E 0E", "86 41", "86 42", "86 44"},
    {{35}, 133250, 367250, "0B 30", "19 D0", "CE 01", "CE 02", "CE 08"},
    {{36}, 171250, 409250, "0E 60", "1D 40", "CE 01", "CE 02", "CE 08"},
    {{37}, 170000, 468000, "0E 4C", "20 EC", "CE 01", "CE 02", "CE 08"},
    {{42, 44}, 163250, 463250, "0D 10", "1F D0", "CE 01", "CE 02", "CE 04"},
    {{45}, 161250, 471250, "0C 82", "1F E2", "CE 01", "CE 02", "CE 04"},
    {{46}, 127250, 361250, "0A D0", "19 70", "CE 11", "CE 02", "CE 08"},
    {{47}, 140250, 423250, "0B 32", "1C E2", "CE 01", "CE 02", "CE 08"},
    {{48}, 165250, 373250, "0E 00", "1B 00", "CE 01", "CE 02", "CE 08"},
};

TEST_F(Pll, EveryModuleAroundItsBandLimits) {
  const auto expectWords = [&](const TunerModule& module, std::uint32_t type) {
    SCOPED_TRACE("tuner type " + std::to_string(type));
    PlugTv(type);
    const std::string mid = std::string(module.dividerAtMid) + " " + module.mid;
    const std::string high = std::string(module.dividerAtHigh) + " " + module.high;
    EXPECT_EQ(LastWritten(module.midFrom), mid);
    EXPECT_EQ(LastWritten(module.highFrom), high);
    // One kilohertz above shares the divider, one below takes the band below.
    EXPECT_EQ(LastWritten(module.midFrom + 1), mid);
    EXPECT_EQ(LastWritten(module.highFrom + 1), high);
    EXPECT_EQ(LastWritten(module.midFrom - 1).substr(6), module.low);
    EXPECT_EQ(LastWritten(module.highFrom - 1).substr(6), module.mid);
    // Physically: the module is tuned to what was asked for, to a step of its divider (the
    // TCL2002N's intermediate frequency lies 125 kHz above its nominal one).
    for (const std::uint32_t frequency : {module.midFrom - 250, module.midFrom, module.highFrom}) {
      LastWritten(frequency);
      EXPECT_NEAR(card->TunedKHz(), frequency, 62.5);
    }
  };
  for (const std::span<const TunerModule> modules :
       {std::span<const TunerModule>(kCommonModules), {kModules}}) {
    for (const TunerModule& module : modules) {
      for (const std::uint32_t type : module.types) expectWords(module, type);
    }
  }
}

TEST_F(Pll, AlpsLowBandHasAnExceptionAt83250) {
  PlugTv(46);
  EXPECT_EQ(LastWritten(83249).substr(6), "CE 11");
  EXPECT_EQ(LastWritten(83250).substr(6), "CE 01");
  EXPECT_EQ(LastWritten(83251).substr(6), "CE 11");
}

TEST_F(Pll, SecamLNeedsOtherSettings) {
  PlugTv(3);
  ASSERT_EQ(ZELK_put_TVFormat(AnalogVideo_SECAM_L, 33), S_OK);
  EXPECT_EQ(LastWritten(160000).substr(6), "8E A3");
  EXPECT_EQ(LastWritten(175250).substr(6), "8E 93");
  EXPECT_EQ(LastWritten(471250).substr(6), "8E 33");
  PlugTv(21);
  ASSERT_EQ(ZELK_put_TVFormat(AnalogVideo_SECAM_L1, 33), S_OK);
  // (55750 + 33950) * 16 / 1000 = 1435
  EXPECT_EQ(LastWritten(55750), "05 9B CE 01");
}

TEST_F(Pll, LongWritesComeFirst) {
  const std::pair<std::uint32_t, std::vector<std::string>> cases[] = {
      {12, {"0D D0 86 42 A0", "0D D0 86 42"}}, {15, {"0D 62 86 22 A0", "0D 62 86 22"}},
      {16, {"0E A0 86 42 B0", "0E A0 86 42"}}, {19, {"0D 62 86 42 B0", "0D 62 86 42"}},
      {20, {"0D 62 CE 02", "0D 62 CE 02"}},    {24, {"0D D0 CE 02"}},
  };
  for (const auto& [type, writes] : cases) {
    PlugTv(type);
    EXPECT_EQ(Written(175250), writes) << type;
  }
}

TEST_F(Pll, Type43IsTunedByItsDriver) {
  PlugTv(43);
  TakeTrace();
  EXPECT_EQ(ZELK_SetFreq(175250, nullptr), S_OK);
  const auto trace = TakeTrace();
  EXPECT_THAT(trace,
              Contains("tuner set TUNER.4 frequency=175250000 flags=1 channel=44 country=0"));
  EXPECT_THAT(trace, Not(Contains(HasSubstr("i2c write"))));
  PlugReady({.tunerType = 43, .tunerFilter = false});
  ZELK_TVInit();
  // Without a tuner filter the request fails; the closing notification's code is the result while
  // one is sent, the request's own on the same frequency.
  EXPECT_EQ(ZELK_SetFreq(175250, nullptr), S_OK);
  EXPECT_EQ(ZELK_SetFreq(175250, nullptr), E_FAIL);
}

TEST_F(Pll, TypesWithoutAPllSendNothing) {
  const auto expectNothing = [&](const char* what) {
    TakeLog();
    TakeTrace();
    EXPECT_EQ(ZELK_SetFreq(182250, nullptr), S_OK) << what;
    for (const std::string& line : TakeTrace()) {
      EXPECT_FALSE(line.starts_with("i2c") || line.starts_with("tuner")) << what << ": " << line;
    }
    EXPECT_THAT(TakeLog(),
                ElementsAre("SAA713x This tuner type has not yet implemented in ZELK_SetFreq()"))
        << what;
  };
  PlugTv(38);
  expectNothing("K38");
  for (const std::uint32_t type : {40u, 41u}) {
    PlugReady({.tunerType = type, .tunerFilter = false});
    ZELK_TVInit();
    expectNothing("silicon tuner without a tuner filter");
  }
}

}  // namespace
}  // namespace zelk::test
