// zelk audio: each key reaches the property of its own.
#include <gmock/gmock.h>

#include "run_zelk.h"

namespace zelk::test {
namespace {

using ::testing::HasSubstr;

TEST(Audio, SetsEachValueAndReadsItBack) {
  const Zelk zelk;
  const ZelkRun run = zelk.Run(
      "audio set volume=40 audio-system=2 fuse=3 virtual-mode=4 stereo-effect=5 bass=6 treble=7 "
      "gain.0x66=0xFFFFFFFF --json --trace --card virtual:saa7135");
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.Json().at("values"), (nlohmann::json{{"volume", nullptr},
                                                     {"audio-system", 2},
                                                     {"fuse", 3},
                                                     {"virtual-mode", 4},
                                                     {"stereo-effect", 5},
                                                     {"bass", 6},
                                                     {"treble", 7},
                                                     {"gain.0x66", 0xFFFFFFFF}}));
  for (const char* request :
       {"ZELK_SAA.71 00000028", "ZELK_SAA.73 00000002", "ZELK_SAA.72 00000003",
        "ZELK_SAA.75 00000004", "ZELK_SAA.76 00000005", "ZELK_SAA.77 00000006",
        "ZELK_SAA.78 00000007", "ZELK_SAA.66 FFFFFFFF", "VIDEODECODER.1 00000010"})
    EXPECT_THAT(run.err, HasSubstr(std::string("capture set ") + request));
}

TEST(Audio, ShowsWhatStandsWhenEverythingIsSet) {
  const Zelk zelk;
  // The free id names the same property as the key: the later one wins, and both show it.
  const nlohmann::json values = zelk.Run("audio set bass=6 gain.0x77=9 --json").Json().at("values");
  EXPECT_EQ(values, (nlohmann::json{{"bass", 9}, {"gain.0x77", 9}}));
}

TEST(Audio, GetTakesFurtherPropertiesById) {
  const Zelk zelk;
  const nlohmann::json values = zelk.Run("audio get --id 0x74 --id 113 --json").Json().at("values");
  EXPECT_EQ(values.size(), 8u);
  EXPECT_EQ(values.at("gain.0x74"), 0x7134);
  EXPECT_EQ(values.at("gain.0x71"), 0);
  // A property that the driver does not have.
  const ZelkRun refused = zelk.Run("audio get --id 0x12");
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(refused.err, HasSubstr("cannot read gain.0x12: "));
}

}  // namespace
}  // namespace zelk::test
