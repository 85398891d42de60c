// What reaches the tuner module: every one that these boards carry, in television and in FM, with
// both chips and over both transports.
#include "tests/bt_family/noted_card.h"
#include "tests/support/common_modules.h"

namespace zelk::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
class BtTuning : public NotedCardTest {
 protected:
  // What SetFreq writes to the PLL, its bytes alone.
  std::string Written(std::uint32_t frequencyKHz) {
    TakeNotes();
    EXPECT_EQ(ZELK_SetFreq(frequencyKHz, nullptr), S_OK);
    EXPECT_EQ(notes.size(), 1u);
    return notes.empty() ? "" : notes[0].substr(4);
  }
};

bool Carries(const CardSetUp& setUp, std::uint32_t type) {
  if (type <= 1 || (type >= 4 && type <= 15) || type == 20 || type == 21) return true;
  if (setUp.cx2388x) return type <= 17 || (type >= 24 && type <= 30);
  return type >= 42 && type <= 45;
}

std::vector<TunerModule> AllModules() {
  std::vector<TunerModule> modules(std::begin(kCommonModules), std::end(kCommonModules));
  // (169250 + 45750) * 16 / 1000 = 3440; (161250 + 45750) * 16 / 1000 = 3312
  modules.push_back({{42, 44}, 169250, 469250, "0D 70", "20 30", "CE 01", "CE 02", "CE 04"});
  modules.push_back({{43, 45}, 161250, 463250, "0C F0", "1F D0", "CE 01", "CE 02", "CE 04"});
  return modules;
}

TEST_F(BtTuning, EveryModuleAroundItsBandLimits) {
  for (const CardSetUp& wanted : {kBt878, kCx2388x}) {
    for (const TunerModule& module : AllModules()) {
      for (const std::uint32_t type : module.types) {
        if (!Carries(wanted, type)) continue;
        SCOPED_TRACE(std::string(wanted.name) + " tuner type " + std::to_string(type));
        PlugNoted(wanted, {.tunerType = type});
        const char* const fifth = type >= 12 && type <= 15   ? " A0"
                                  : type == 16 || type == 17 ? " B0"
                                                             : "";
        const auto word = [&](const char* divider, const char* control) {
          return std::string(divider) + " " + control + fifth;
        };
        EXPECT_EQ(Written(module.midFrom), word(module.dividerAtMid, module.mid));
        EXPECT_EQ(Written(module.highFrom), word(module.dividerAtHigh, module.high));
        EXPECT_EQ(Written(module.midFrom - 1).substr(6), std::string(module.low) + fifth);
        EXPECT_EQ(Written(module.highFrom - 1).substr(6), std::string(module.mid) + fifth);
      }
    }
  }
}

TEST_F(BtTuning, SecamLNeedsOtherSettings) {
  PlugNoted(kCx2388x, {.tunerType = 3});
  ASSERT_EQ(ZELK_put_TVFormat(AnalogVideo_SECAM_L, 33), S_OK);
  EXPECT_EQ(Written(160000).substr(6), "8E A3");
  EXPECT_EQ(Written(471250).substr(6), "8E 33");
  PlugNoted(kBt878Io, {.tunerType = 21});
  ASSERT_EQ(ZELK_put_TVFormat(AnalogVideo_SECAM_L1, 33), S_OK);
  EXPECT_EQ(Written(55750), "05 9B CE 01");
}

TEST_F(BtTuning, UnknownModuleIsSentTheFrequencyItself) {
  PlugNoted(kBt878, {.tunerType = 40});
  EXPECT_EQ(Written(182250), "C7 EA C7 EA");
  EXPECT_THAT(CardFixture::TakeLog("zelkapi.log"),
              ElementsAre("BT878 This tuner type has not yet implemented in ZELK_SetFreq()"));
  EXPECT_THAT(TakeLog(), IsEmpty());
}

TEST_F(BtTuning, DriverTunesWhereItCan) {
  for (const CardSetUp& wanted : {kBt878Tuner, kCx2388xTuner}) {
    PlugTv(wanted, {.tunerType = 0});
    ZELK_put_TVFormat(AnalogVideo_PAL_B, 49);
    TakeTrace();
    EXPECT_EQ(ZELK_SetFreq(471250, nullptr), S_OK);
    EXPECT_THAT(TakeTrace(),
                ElementsAre("tuner set TUNER.4 frequency=471250000 flags=0 channel=0 country=49"));
    card->Refuse("tuner set", kRefused);
    EXPECT_EQ(ZELK_SetFreq(471250, nullptr), kRefused);
    EXPECT_THAT(TakeLog(),
                ElementsAre(wanted.cx2388x ? "BT88X SetTVFreq() fail" : "BT878 SetTVFreq() fail"));
  }
  // The CX2388x tuner driver knows FM too, and names the failure as in television.
  PlugFm(kCx2388xTuner, {.tunerType = 1});
  TakeTrace();
  EXPECT_EQ(ZELK_FMSetFreq(98000, nullptr), S_OK);
  EXPECT_THAT(TakeTrace(),
              ElementsAre("tuner set TUNER.4 frequency=98000000 flags=0 channel=0 country=886"));
  card->Refuse("tuner set", kRefused);
  EXPECT_EQ(ZELK_FMSetFreq(98100, nullptr), kRefused);
  EXPECT_THAT(TakeLog(), ElementsAre("BT88X SetTVFreq() fail"));
}

// What FM needs of each kind of module: set-up, a station, and mono. "PLL" stands for its address.
struct FmModule {
  std::uint32_t type;
  Strings setUp, station, mono;
};

const FmModule kFmModules[] = {
    {0, {}, {"PLL: 08 7E 88 A5"}, {"PLL: 08 7E 88 A7"}},
    {1, {"PLL: 08 5E 8E A0"}, {"PLL: 08 7E 88 A5"}, {"PLL: 08 7E 88 A7"}},
    {13, {"PLL: 0C 3C 86 41 A0", "86: 00 4E 90 74"}, {"PLL: 08 7E 80 19 A0"}, {"86: 00 4E 30 4B"}},
    {15, {"PLL: 0B CE 86 21 A0", "86: 00 4E D0 77"}, {"PLL: 08 7E 80 19 A0"}, {"86: 00 4E 30 4B"}},
    {21, {"PLL: 0B CE CE 01", "86: 00 5A 90 20"}, {"PLL: 08 7E 88 09"}, {"86: 00 4F 34 7D"}},
    // (98000 + 41250) / 50
    {30, {}, {"PLL: 0A E1 88 A5"}, {"PLL: 0A E1 88 A7"}},
    {44, {}, {"PLL: 08 7E 88 A5"}, {"PLL: 08 7E 88 A7"}},
};

TEST_F(BtTuning, FmOnEachKindOfModule) {
  for (const CardSetUp& wanted : {kBt878, kBt878Io, kCx2388x, kCx2388xIo}) {
    for (const FmModule& module : kFmModules) {
      if (!Carries(wanted, module.type)) continue;
      SCOPED_TRACE(std::string(wanted.name) + " tuner type " + std::to_string(module.type));
      const auto addressed = [&](Strings writes) {
        for (std::string& write : writes) {
          if (write.starts_with("PLL")) write.replace(0, 3, wanted.PllAddress());
        }
        return writes;
      };
      Plug(wanted, {.tunerType = module.type});
      ASSERT_EQ(Init(), S_OK);
      FitNotedChips();
      EXPECT_EQ(ZELK_FMInit(), S_OK);
      EXPECT_EQ(TakeNotes(), addressed(module.setUp));
      EXPECT_EQ(ZELK_FMSetFreq(98000, nullptr), S_OK);
      EXPECT_EQ(TakeNotes(), addressed(module.station));
      EXPECT_EQ(ZELK_FMSetAudioMode(0), S_OK);
      EXPECT_EQ(TakeNotes(), addressed(module.mono));
      // A frequency outside the band is refused and forgotten.
      EXPECT_EQ(ZELK_FMSetFreq(87499, nullptr), E_FAIL);
      EXPECT_EQ(ZELK_FMSetFreq(108001, nullptr), E_FAIL);
      EXPECT_THAT(TakeNotes(), IsEmpty());
      EXPECT_EQ(ZELK_FMSetFreq(87500, nullptr), S_OK);
      EXPECT_EQ(ZELK_FMSetFreq(108000, nullptr), S_OK);
    }
  }
}

TEST_F(BtTuning, JapaneseModuleReachesDownTo76MHz) {
  for (const CardSetUp& wanted : {kBt878, kCx2388x}) {
    PlugFm(wanted, {.tunerType = 5});
    FitNotedChips();
    EXPECT_EQ(ZELK_FMSetFreq(75999, nullptr), E_FAIL);
    EXPECT_EQ(ZELK_FMSetFreq(76000, nullptr), S_OK);
    EXPECT_EQ(TakeNotes(), Strings{std::string(wanted.PllAddress()) + ": 06 C6 88 A5"});
  }
}

// A scan tests a station a second time with another control word.
TEST_F(BtTuning, FmControlWords) {
  PlugFm(kBt878, {.tunerType = 1});
  FitNotedChips();
  const auto controlFor = [&](std::uint32_t mode, std::uint32_t flag) {
    Device().SetFMTuneFlag(flag);
    EXPECT_EQ(Device().SetFMAudioMode(mode), S_OK);
    return TakeNotes().at(0).substr(10);
  };
  EXPECT_EQ(controlFor(1, 0), "88 A4");
  EXPECT_EQ(controlFor(1, 1), "88 A5");
  EXPECT_EQ(controlFor(0, 0), "88 A6");
  EXPECT_EQ(controlFor(0, 1), "88 A7");
  EXPECT_EQ(controlFor(2, 1), "88 A6");
  Device().SetFMTuneFlag(0);
  ZELK_FMInit();
  TakeNotes();
  Device().SetFMFreq(98000);
  EXPECT_EQ(TakeNotes().at(0).substr(10), "88 A5");
}

}  // namespace
}  // namespace zelk::test
