// What reaches the tuner module: every one that these boards carry, in television and in FM, with
// both chips and over both transports.
#include "tests/bt_family/noted_card.h"

namespace zelk::test {
namespace {

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

// Bytes behind the PLL's address. The rows that all families share are walked with the SAA713x's
// cards; here is one of each form, and what these boards draw otherwise.
TEST_F(BtTuning, WhatThePllIsSent) {
  struct Case {
    CardSetUp setUp;
    std::uint32_t type, standard, frequency;
    const char* bytes;
  };
  const Case cases[] = {{kBt878, 0, AnalogVideo_PAL_B, 175250, "0D 62 CE 90"},
                        {kBt878Io, 13, AnalogVideo_NTSC_M, 55250, "06 50 86 41 A0"},
                        {kCx2388x, 17, AnalogVideo_NTSC_M_J, 91250, "09 60 86 41 B0"},
                        {kCx2388xIo, 29, AnalogVideo_NTSC_M, 175250, "0D D2 8E 02"},
                        {kCx2388x, 3, AnalogVideo_SECAM_L, 471250, "1F E2 8E 33"},
                        {kBt878Io, 21, AnalogVideo_SECAM_L1, 55750, "05 9B CE 01"},
                        // (169250 + 45750) * 16 / 1000 = 3440; (161250 + 45750) * 16 / 1000 = 3312
                        {kBt878, 42, AnalogVideo_NTSC_M, 169249, "0D 6F CE 01"},
                        {kBt878, 44, AnalogVideo_NTSC_M, 169250, "0D 70 CE 02"},
                        {kBt878, 44, AnalogVideo_NTSC_M, 469249, "20 2F CE 02"},
                        {kBt878, 42, AnalogVideo_NTSC_M, 469250, "20 30 CE 04"},
                        {kBt878, 45, AnalogVideo_NTSC_M, 161249, "0C EF CE 01"},
                        {kBt878, 43, AnalogVideo_NTSC_M, 161250, "0C F0 CE 02"},
                        {kBt878, 43, AnalogVideo_NTSC_M, 463249, "1F CF CE 02"},
                        {kBt878, 45, AnalogVideo_NTSC_M, 463250, "1F D0 CE 04"}};
  for (const Case& one : cases) {
    PlugNoted(one.setUp, {.tunerType = one.type});
    ZELK_put_TVFormat(one.standard, 33);
    EXPECT_EQ(Written(one.frequency), one.bytes) << one.type << " " << one.frequency;
  }
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
      // Modules that the other chip's boards alone carry.
      if (module.type == (wanted.cx2388x ? 44u : 30u)) continue;
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

}  // namespace
}  // namespace zelk::test
