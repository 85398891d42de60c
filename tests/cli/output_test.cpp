// What the single commands print.
#include <gmock/gmock.h>

#include <algorithm>
#include "run_zelk.h"

namespace zelk::test {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST(Output, OfEveryCommandIsOneJsonObjectWhenAskedFor) {
  for (const auto& [line, command] : {std::pair("cards", "cards"),
                                      {"info", "info"},
                                      {"tune tv E5", "tune"},
                                      {"signal E5 --count 3", "signal"},
                                      {"scan tv --stop-at 60MHz", "scan"},
                                      {"tune fm 90.8MHz", "tune fm"},
                                      {"scan fm --to 90MHz", "scan fm"},
                                      {"seek up 95MHz", "seek"},
                                      {"fm mode mono 90.8MHz", "fm mode"},
                                      {"audio get", "audio get"},
                                      {"audio set bass=5", "audio set"},
                                      {"eeprom", "eeprom"},
                                      {"i2c read 0xC3 1", "i2c read"},
                                      {"i2c write 0xC2 0x0D 0x62 0xCE 0x90", "i2c write"},
                                      {"remote", "remote"},
                                      {"remote --chip", "remote"}}) {
    SCOPED_TRACE(line);
    const Zelk zelk;
    // Global options may stand on either side of the command.
    const ZelkRun after = zelk.Run(std::string(line) + " --json");
    ASSERT_EQ(after.exitCode, 0) << after.err;
    EXPECT_EQ(after.err, "");
    EXPECT_EQ(after.Json().at("command"), command);
    const ZelkRun before = zelk.Run(std::string("--json ") + line);
    EXPECT_EQ(before.Json().at("command"), command);
  }
}

TEST(Output, OfInfoNamesTheTunerTheChipAndTheBands) {
  const Zelk zelk;
  const ZelkRun run = zelk.Run("info");
  EXPECT_THAT(run.out, AllOf(HasSubstr("FM1216MK2 (type 1)"), HasSubstr("SAA7134"),
                             HasSubstr("48250 kHz"), HasSubstr("855250 kHz")));
  const nlohmann::json info = zelk.Run("info --json --card virtual:saa7134,tuner=46").Json();
  EXPECT_EQ(info.at("tuner"), (nlohmann::json{{"type", 46}, {"name", "ALPS_TSEH1"}}));
  EXPECT_EQ(info.at("hw_info").at("tv_high_khz"), 801250);
}

TEST(Output, OfTuningTellsAChannelFromAnEmptyPlace) {
  const Zelk zelk;
  // One carrier, written in every way.
  const nlohmann::json byName = zelk.Run("tune tv e5 --json").Json();
  EXPECT_EQ(byName.at("frequency_khz"), 175250);
  EXPECT_EQ(byName.at("present"), true);
  EXPECT_EQ(byName.at("decoder_lock"), true);
  for (const char* text : {"175250", "175250kHz", "175.25MHz", "175.25mhz"})
    EXPECT_EQ(zelk.Run(std::string("tune tv --json ") + text).Json(), byName) << text;

  // E6 lies between two channels that are on the air.
  EXPECT_THAT(zelk.Run("tune tv E6").out, AllOf(StartsWith("182.250 MHz (E6 of pal-bg): no signal"),
                                                HasSubstr("decoder lock no")));
  // A name of the other plan.
  EXPECT_EQ(zelk.Run("tune tv 7 --raster ntsc-m-air --json").Json().at("frequency_khz"), 175250);
}

TEST(Output, OfSignalTakesTheReadingsAtTheirTimes) {
  const Zelk zelk;
  const nlohmann::json watch = zelk.Run("signal E5 --count 3 --interval 5000 --json").Json();
  ASSERT_EQ(watch.at("readings").size(), 3u);
  for (std::size_t i = 0; i < 3; ++i) {
    // A reading itself takes the settling time of the tuner.
    const auto time = watch.at("readings")[i].at("time_ms").get<std::uint32_t>();
    EXPECT_GE(time, i * 5000);
    EXPECT_LT(time, i * 5000 + 1000);
    EXPECT_EQ(watch.at("readings")[i].at("present"), true);
  }
}

TEST(Output, OfEepromIsADumpOfTheBytesAskedFor) {
  const Zelk zelk;
  // Byte 0x20 of this board names its tuner.
  const std::string card = " --card virtual:saa7134,tuner=31";
  const std::string whole = zelk.Run("eeprom" + card).out;
  EXPECT_EQ(std::count(whole.begin(), whole.end(), '\n'), 16);
  EXPECT_THAT(whole, HasSubstr("\n20  10 "));
  EXPECT_THAT(zelk.Run("eeprom --offset 0x20 --length 3" + card).out, StartsWith("20  10 "));
  const nlohmann::json bytes =
      zelk.Run("eeprom --offset 31 --length 3 --json" + card).Json().at("bytes");
  ASSERT_EQ(bytes.size(), 3u);
  EXPECT_EQ(bytes[1], 0x10);
}

TEST(Output, OfTheTraceGoesToStandardErrorAlone) {
  const Zelk zelk;
  const ZelkRun plain = zelk.Run("tune tv E5");
  const ZelkRun traced = zelk.Run("tune tv E5 --trace");
  EXPECT_EQ(traced.out, plain.out);
  EXPECT_EQ(plain.err, "");
  // (175250 + 38900) * 16 / 1000 = 3426, high band III.
  EXPECT_THAT(traced.err, HasSubstr("0D 62 CE 90"));
}

}  // namespace
}  // namespace zelk::test
