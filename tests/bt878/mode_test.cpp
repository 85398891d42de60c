// The change to TV and the choice of standard and country on each group of tuner modules.
#include "tests/bt_family/noted_card.h"

namespace zelk::test {
namespace {

class Bt878Mode : public NotedCardTest {
 protected:
  // What SetTVFormat tells the tuner driver: the country, then the tuning.
  Strings TunerLines() { return TakeTrace("tuner "); }
};

std::string Tuning(std::uint32_t country) {
  return "set TUNER.4 frequency=175250000 flags=0 channel=0 country=" + std::to_string(country);
}

// A country pushed to the tuner driver, and the tuning behind it with the one of before.
Strings Told(std::uint32_t country, std::uint32_t before) {
  return {"query IAMTVTuner", "country " + std::to_string(country), Tuning(before)};
}

TEST_F(Bt878Mode, TvOnModulesWithADemodulatorOfTheirOwn) {
  PlugNoted(kBt878, {.tunerType = 12});
  EXPECT_EQ(ZELK_TVInit(), S_OK);
  EXPECT_THAT(TakeTrace(),
              ElementsAre("i2c setup hardware 100000", "i2c setup hardware 100000",
                          "i2c write 86: 00 56 30 44", "i2c result", "i2c setup software 100000"));
  PlugNoted(kBt878, {.tunerType = 1});
  EXPECT_EQ(ZELK_TVInit(), S_OK);
  EXPECT_THAT(TakeTrace(), IsEmpty());
}

TEST_F(Bt878Mode, TvOnModulesWithADemodulatorForTheStandard) {
  const Strings none;
  const Strings bg = {"86: 00 16 70 49"};
  const Strings dk = {"86: 00 16 70 4B"};
  const std::pair<std::uint32_t, Strings> cases[] = {{AnalogVideo_PAL_B, bg},
                                                     {AnalogVideo_SECAM_B, bg},
                                                     {AnalogVideo_PAL_D, dk},
                                                     {AnalogVideo_SECAM_D, dk},
                                                     {AnalogVideo_PAL_I, {"86: 00 16 70 4A"}},
                                                     {AnalogVideo_SECAM_L, {"86: 00 06 50 4B"}},
                                                     {AnalogVideo_NTSC_M, none},
                                                     {AnalogVideo_PAL_B | AnalogVideo_PAL_I, none}};
  for (const std::uint32_t type : {14u, 15u, 20u, 21u}) {
    for (const auto& [standard, words] : cases) {
      PlugNoted(kBt878, {.tunerType = type});
      ZELK_put_TVFormat(standard, 44);
      const Strings tuning = TakeNotes();
      ASSERT_EQ(tuning.size(), 1u);
      TakeTrace();
      EXPECT_EQ(ZELK_TVInit(), S_OK);
      EXPECT_EQ(TakeNotes(), Joined({words, tuning})) << type;
      // The software engine serves them.
      EXPECT_THAT(TakeTrace(), Each(Not(HasSubstr("setup"))));
    }
  }
}

// The change to TV tunes with the country of before, and forgets it.
TEST_F(Bt878Mode, TvForgetsTheCountry) {
  PlugNoted(kBt878Tuner, {.tunerType = 15});
  ZELK_put_TVFormat(AnalogVideo_PAL_I, 44);
  TunerLines();
  EXPECT_EQ(ZELK_TVInit(), S_OK);
  EXPECT_THAT(TunerLines(), ElementsAre(Tuning(44)));
  ZELK_put_TVFormat(AnalogVideo_PAL_I, 44);
  EXPECT_THAT(TunerLines(), ::testing::ElementsAreArray(Told(44, 0)));
}

TEST_F(Bt878Mode, CountriesOfMk3Modules) {
  // The third is the country that the tuner driver is told, 0 where it hears nothing.
  // Behind 4201 and 370 the next call counts as forced.
  const std::array<std::uint32_t, 3> cases[] = {
      {AnalogVideo_PAL_B, 49, 49},   {AnalogVideo_PAL_B, 49, 0},    {AnalogVideo_PAL_B, 36, 34},
      {AnalogVideo_PAL_B, 36, 34},   {AnalogVideo_PAL_D, 36, 86},   {AnalogVideo_SECAM_D, 359, 359},
      {AnalogVideo_PAL_D, 48, 86},   {AnalogVideo_PAL_B, 420, 34},  {AnalogVideo_PAL_B, 33, 34},
      {AnalogVideo_SECAM_L, 33, 33}, {AnalogVideo_PAL_D, 7, 86},    {AnalogVideo_PAL_B, 4201, 4201},
      {AnalogVideo_PAL_B, 49, 34},   {AnalogVideo_PAL_D, 370, 370}, {AnalogVideo_PAL_D, 370, 86},
      {AnalogVideo_PAL_I, 44, 44},   {AnalogVideo_PAL_D, 44, 0}};
  for (const std::uint32_t type : {14u, 21u}) {
    PlugNoted(kBt878Tuner, {.tunerType = type});
    std::uint32_t before = 0;
    for (const auto& [standard, country, pushed] : cases) {
      EXPECT_EQ(ZELK_put_TVFormat(standard, country), S_OK);
      EXPECT_EQ(TunerLines(), pushed ? Told(pushed, before) : Strings{})
          << standard << " " << country;
      before = country;
    }
    // The query's code is the result; standard and country are stored even so.
    card->Refuse("tuner query IAMTVTuner", kRefused);
    EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 49), kRefused);
    EXPECT_THAT(TunerLines(), ElementsAre("query IAMTVTuner -> 8007001F", Tuning(44)));
    EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 49), S_OK);
    EXPECT_THAT(TunerLines(), IsEmpty());
  }
  // Other modules leave the country to the driver.
  PlugNoted(kBt878Tuner, {.tunerType = 1});
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 36), S_OK);
  EXPECT_THAT(TunerLines(), IsEmpty());
}

// Without a tuner filter there is nobody to tell, but the tuning stays.
TEST_F(Bt878Mode, CountriesWithoutATunerFilter) {
  for (const CardSetUp& wanted : {kBt878, kBt878Io}) {
    PlugNoted(wanted, {.tunerType = 15});
    EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 36), S_OK);
    EXPECT_THAT(TakeNotes(), ElementsAre("C2: 0D 62 86 22 A0"));
  }
}

const Strings kRestart = {"96: 01", "96: 01 A5", "96: 16 01", "96: 14 01", "96: 0E 08"};

TEST_F(Bt878Mode, StandardsOfTheSiliconTuner) {
  const std::pair<std::uint32_t, const char*> standards[] = {
      {AnalogVideo_NTSC_M, "01"}, {AnalogVideo_NTSC_M_J, "01"}, {AnalogVideo_PAL_M, "01"},
      {AnalogVideo_PAL_N, "01"},  {AnalogVideo_PAL_B, "02"},    {AnalogVideo_SECAM_B, "02"},
      {AnalogVideo_PAL_D, "10"},  {AnalogVideo_SECAM_D, "10"},  {AnalogVideo_PAL_G, "04"},
      {AnalogVideo_PAL_H, "04"},  {AnalogVideo_SECAM_G, "04"},  {AnalogVideo_SECAM_H, "04"},
      {AnalogVideo_PAL_I, "08"},  {AnalogVideo_SECAM_L, "20"},  {AnalogVideo_SECAM_L1, "40"}};
  PlugNoted(kBt878Tuner, {.tunerType = 40});
  silicon->Tell({0x25});
  for (const auto& [standard, bit] : standards) {
    EXPECT_EQ(ZELK_put_TVFormat(standard, 44), S_OK);
    EXPECT_EQ(TakeNotes(), Joined({{std::string("96: 01 ") + bit}, kRestart}));
    // The same once more changes nothing.
    EXPECT_EQ(ZELK_put_TVFormat(standard, 44), S_OK);
    EXPECT_THAT(TakeNotes(), IsEmpty());
  }
  EXPECT_THAT(TunerLines(), IsEmpty());
  for (const std::uint32_t standard : {0x800u, 0x10000u, 0x20000u, 0x12u}) {
    EXPECT_EQ(ZELK_put_TVFormat(standard, 44), E_FAIL);
    EXPECT_THAT(TakeNotes(), IsEmpty());
  }
  // Nothing of it was stored.
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_SECAM_L1, 44), S_OK);
  EXPECT_THAT(TakeNotes(), IsEmpty());
}

TEST_F(Bt878Mode, CountriesOfTheSiliconTuner) {
  struct Case {
    std::uint32_t standard, country;
    Strings writes;  // behind those of the standard itself
    std::vector<std::uint32_t> pushed;
  };
  Strings russian = kRestart;
  russian[3] = "96: 14 05";
  const auto after = [](const char* write, const Strings& restart) {
    return Joined({{write}, restart});
  };
  const Case cases[] = {
      Case{AnalogVideo_PAL_B, 36, {}, {34}},
      {AnalogVideo_PAL_D, 48, {}, {86}},
      {AnalogVideo_SECAM_D, 420, {}, {420}},
      {AnalogVideo_PAL_B, 33, after("96: 01 02", kRestart), {34}},
      {AnalogVideo_SECAM_L, 33, after("96: 01 20", kRestart), {33}},
      {AnalogVideo_PAL_G, 33, kRestart, {33}},
      {AnalogVideo_PAL_D, 7, {}, {86}},
      {AnalogVideo_SECAM_D, 7, after("96: 01 10", russian), {7}},
      {AnalogVideo_PAL_I, 7, {}, {7}},
      {AnalogVideo_PAL_I, 370, {}, {}},
      {AnalogVideo_PAL_B, 33, after("96: 01 02", kRestart), {34, 34}},
  };
  // Without a tuner filter each push is a tuning alone; the module is unknown and gets 175250
  // itself.
  for (const CardSetUp& wanted : {kBt878, kBt878Tuner}) {
    PlugNoted(wanted, {.tunerType = 40});
    silicon->Tell({0x25});
    std::uint32_t before = 0;
    for (const Case& one : cases) {
      SCOPED_TRACE(::testing::Message() << one.standard << " " << one.country);
      EXPECT_EQ(ZELK_put_TVFormat(one.standard, one.country), S_OK);
      Strings writes = TakeNotes();
      ASSERT_GE(writes.size(), 6u);
      writes.erase(writes.begin(), writes.begin() + 6);
      Strings told;
      if (!wanted.tunerFilter) {
        EXPECT_EQ(writes, Joined({Strings(one.pushed.size(), "C2: AC 92 AC 92"), one.writes}));
      } else {
        // This driver writes on its own account as well.
        for (const std::uint32_t pushed : one.pushed) told = Joined({told, Told(pushed, before)});
      }
      EXPECT_EQ(TunerLines(), told);
      before = one.country;
    }
  }
}

TEST_F(Bt878Mode, SiliconTunerThatDoesNotAnswer) {
  PlugNoted(kBt878Tuner, {.tunerType = 40});
  // Only a stop that fails shows in the result of a write.
  card->Refuse("i2c stop", kRefused);
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 44), kRefused);
  EXPECT_THAT(TakeNotes(), Not(Contains("96: 16 01")));
  card->ClearRefusals();
  // Neither standard nor country was stored, so that the same choice is made anew.
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 44), S_OK);
  EXPECT_THAT(TakeNotes(), Contains("96: 16 01"));
}

}  // namespace
}  // namespace zelk::test
