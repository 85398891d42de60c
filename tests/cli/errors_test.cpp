// A mistake gives one clear line on standard error, nothing on standard output, and an exit code
// that tells wrong use (2) from a card that refuses (1).
#include <gmock/gmock.h>

#include <algorithm>

#include "run_zelk.h"

namespace zelk::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

// A line, and what the complaint about it contains.
using Mistakes = std::vector<std::pair<std::string, std::vector<const char*>>>;

void ExpectOneClearLine(int exitCode, const Mistakes& mistakes) {
  for (const auto& [line, says] : mistakes) {
    SCOPED_TRACE("zelk " + line);
    const Zelk zelk;
    zelk.Folder().Write("broken.json", R"({"place": "Nowhere", "raster": "pal-bg", "tv": [], )");
    const ZelkRun run = zelk.Run(line);
    EXPECT_EQ(run.exitCode, exitCode) << run.err;
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, StartsWith("zelk: "));
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
    for (const char* text : says) EXPECT_THAT(run.err, HasSubstr(text));
  }
}

TEST(Errors, OfWrongUse) {
  ExpectOneClearLine(2, {{"", {"subcommand"}},
                         {"tune tv", {"channel"}},
                         {"dance", {"dance"}},
                         {"scan tv --sideways", {"--sideways"}},
                         {"tune tv E99", {"\"E99\"", "pal-bg", "175.25MHz"}},
                         {"tune tv 175.25", {"\"175.25\"", "175.25MHz"}},
                         {"scan tv --stop-at soon", {"\"soon\""}},
                         {"tune tv nanMHz", {"\"nanMHz\"", "175.25MHz"}},
                         {"tune fm infMHz", {"\"infMHz\"", "175.25MHz"}},
                         {"seek up -1MHz", {"\"-1MHz\"", "175.25MHz"}},
                         {"tune tv 4000.1MHz", {"\"4000.1MHz\""}},
                         {"tune tv 4000001", {"\"4000001\""}},
                         {"info --card virtual:saa7134,eeprom=.", {"eeprom=.: ", "256 bytes"}},
                         {"info --card virtual:tin", {"--card", "tin"}},
                         {"info --card /dev/video0", {"/dev/video0", "virtual:KIND"}},
                         {"signal --raster moon", {"--raster", "moon", "pal-bg"}},
                         {"signal --standard PAL_X", {"PAL_X", "PAL_B"}},
                         {"signal --country 0", {"--country"}},
                         {"signal --count 0", {"--count"}},
                         {"eeprom --offset 256", {"--offset", "256"}},
                         {"eeprom --offset 0xF0 --length 17", {"--length", "16"}},
                         {"i2c read 0x1C2 1", {"0x1C2"}},
                         {"i2c read 0xC3 0", {"count"}},
                         {"i2c read 0xC3 257", {"count", "256"}},
                         {"i2c write 0xC2 1 2 three", {"\"three\""}},
                         {"tune fm E5", {"\"E5\"", "MHz"}},
                         {"seek left 95MHz", {"\"left\"", "up or down"}},
                         {"fm mode loud 95MHz", {"\"loud\"", "stereo or mono"}},
                         {"scan fm --from 99MHz --to 99MHz", {"from 99000 to 99000"}},
                         {"audio set loudness=1", {"\"loudness\"", "volume", "gain.0xID"}},
                         {"audio set bass", {"\"bass\"", "KEY=VALUE"}},
                         {"audio set bass=deep", {"bass", "\"deep\""}},
                         {"audio set bass=0x100000000", {"bass", "4294967295"}},
                         {"audio set gain.bass=1", {"property id", "\"bass\""}}});
}

TEST(Errors, OfWrongEncoderParameters) {
  const std::string set = "mpeg set --card virtual:ql2 width=352 ";
  ExpectOneClearLine(
      2, {{set + "loudness=1", {"\"loudness\" is none of stream-type, width"}},
          {set + "width", {"\"width\" is no KEY=VALUE"}},
          {set + "stream-type=5", {"stream-type"}},
          {set + "bit-rate=0", {"bit-rate: 0, wanted 1 to 65535 kbit/s"}},
          {set + "bit-rate=65536", {"bit-rate"}},
          {set + "audio-sample-rate=22050", {"22050, wanted 32000, 44100, 48000 Hz"}},
          {set + "audio-bit-rate=128", {"128, wanted 192, 224, 256, 320, 384 kbit/s"}}});
}

// Where the plan has no channel 21 of that name it is 21 kHz.
TEST(Errors, OfRefusals) {
  ExpectOneClearLine(
      1, {{"tune tv 999999", {"999999 kHz", "48250 to 855250"}},
          {"tune tv 21", {"21 kHz"}},
          {"signal 48249", {"48249 kHz"}},
          {"tune fm 120MHz", {"120000 kHz", "FM band", "87500 to 108000"}},
          {"seek up 80MHz", {"80000 kHz", "87500 to 108000"}},
          {"scan fm --to 109MHz", {"109000 kHz", "87500 to 108000"}},
          {"info --air atlantis", {"atlantis", "western-europe-city"}},
          {"info --air broken.json", {"broken.json"}},
          {"mpeg get", {"this card has no MPEG encoder"}},
          {"mpeg set width=352", {"this card has no MPEG encoder"}},
          {"adc", {"this card has no audio converter"}},
          {"info --card virtual:ql2,name=Webcam",
           {"cannot initialise the card \"Webcam\": E_FAIL (0x80004005); see zelkapi_713x.log, "
            "zelkapi_BT878.log, zelkapi_BT88X.log, zelkapi_Quillon.log\n"}},
          {"i2c read 0x51 1 --card virtual:bt878", {"E_FAIL (0x80004005)\n"}},
          {"i2c read 0x51 1", {"0x51", "E_FAIL (0x80004005)", "see zelkapi_713x.log"}}});
}

TEST(Errors, NameTheLogOnlyWhenItTellsSomething) {
  const Zelk zelk;
  // An old log, and no way to add to it.
  std::filesystem::create_directory(zelk.Folder() / "zelkapi_713x.log");
  zelk.Folder().Write("zelkapi_BT878.log", "\r\nan old story");
  const ZelkRun run = zelk.Run("i2c read 0x51 1");
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_THAT(run.err, HasSubstr("E_FAIL (0x80004005)\n"));
  EXPECT_THAT(run.err, Not(HasSubstr(".log")));
}

}  // namespace
}  // namespace zelk::test
