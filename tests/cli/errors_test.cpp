// A mistake gives one clear line on standard error, nothing on standard output, and an exit code
// that tells wrong use (2) from a card that refuses (1).
#include <gmock/gmock.h>

#include <algorithm>
#include <ostream>

#include "run_zelk.h"

namespace zelk::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

struct ErrorCase {
  const char* line;
  int exitCode;
  std::vector<const char*> says;
};
void PrintTo(const ErrorCase& error, std::ostream* out) { *out << "zelk " << error.line; }

class Errors : public ::testing::TestWithParam<ErrorCase> {};

TEST_P(Errors, AreOneClearLine) {
  const Zelk zelk;
  zelk.Folder().Write("broken.json", R"({"place": "Nowhere", "raster": "pal-bg", "tv": [], )");
  const ZelkRun run = zelk.Run(GetParam().line);
  EXPECT_EQ(run.exitCode, GetParam().exitCode) << run.err;
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, StartsWith("zelk: "));
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
  for (const char* text : GetParam().says) EXPECT_THAT(run.err, HasSubstr(text));
}

INSTANTIATE_TEST_SUITE_P(
    WrongUse, Errors,
    ::testing::Values(ErrorCase{"", 2, {"subcommand"}}, ErrorCase{"tune tv", 2, {"channel"}},
                      ErrorCase{"dance", 2, {"dance"}},
                      ErrorCase{"scan tv --sideways", 2, {"--sideways"}},
                      ErrorCase{"tune tv E99", 2, {"\"E99\"", "pal-bg", "175.25MHz"}},
                      ErrorCase{"tune tv 175.25", 2, {"\"175.25\"", "175.25MHz"}},
                      ErrorCase{"scan tv --stop-at soon", 2, {"\"soon\""}},
                      ErrorCase{"info --card virtual:tin", 2, {"--card", "tin"}},
                      ErrorCase{"info --card /dev/video0", 2, {"/dev/video0", "virtual:KIND"}},
                      ErrorCase{"signal --raster moon", 2, {"--raster", "moon", "pal-bg"}},
                      ErrorCase{"signal --standard PAL_X", 2, {"PAL_X", "PAL_B"}},
                      ErrorCase{"signal --country 0", 2, {"--country"}},
                      ErrorCase{"signal --count 0", 2, {"--count"}},
                      ErrorCase{"eeprom --offset 256", 2, {"--offset", "256"}},
                      ErrorCase{"eeprom --offset 0xF0 --length 17", 2, {"--length", "16"}},
                      ErrorCase{"i2c read 0x1C2 1", 2, {"0x1C2"}},
                      ErrorCase{"i2c read 0xC3 0", 2, {"count"}},
                      ErrorCase{"i2c write 0xC2 1 2 three", 2, {"\"three\""}},
                      ErrorCase{"tune fm E5", 2, {"\"E5\"", "MHz"}},
                      ErrorCase{"seek left 95MHz", 2, {"\"left\"", "up or down"}},
                      ErrorCase{"fm mode loud 95MHz", 2, {"\"loud\"", "stereo or mono"}},
                      ErrorCase{"scan fm --from 99MHz --to 98MHz", 2, {"99000", "98000"}},
                      ErrorCase{"audio set loudness=1", 2, {"\"loudness\"", "volume", "gain.0xID"}},
                      ErrorCase{"audio set bass", 2, {"\"bass\"", "KEY=VALUE"}},
                      ErrorCase{"audio set bass=deep", 2, {"bass", "\"deep\""}},
                      ErrorCase{"audio set bass=0x100000000", 2, {"bass", "4294967295"}},
                      ErrorCase{"audio set gain.bass=1", 2, {"property id", "\"bass\""}}));

INSTANTIATE_TEST_SUITE_P(
    Refusals, Errors,
    ::testing::Values(
        ErrorCase{"tune tv 999999", 1, {"999999 kHz", "48250 to 855250"}},
        // Where the plan has no channel 21 of that name it is 21 kHz.
        ErrorCase{"tune tv 21", 1, {"21 kHz"}},
        ErrorCase{"tune fm 120MHz", 1, {"120000 kHz", "FM band", "87500 to 108000"}},
        ErrorCase{"seek up 80MHz", 1, {"80000 kHz", "87500 to 108000"}},
        ErrorCase{"scan fm --to 109MHz", 1, {"109000 kHz", "87500 to 108000"}},
        ErrorCase{"info --air atlantis", 1, {"atlantis", "western-europe-city"}},
        ErrorCase{"info --air broken.json", 1, {"broken.json"}},
        ErrorCase{"i2c read 0x51 1", 1, {"0x51", "E_FAIL (0x80004005)", "see zelkapi_713x.log"}}));

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
