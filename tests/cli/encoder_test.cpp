// zelk on a card with an MPEG encoder.
#include <gmock/gmock.h>

#include "run_zelk.h"

namespace zelk::test {
namespace {

using ::testing::HasSubstr;

const std::string kCard = " --card virtual:ql2";

TEST(Encoder, SetsAndShowsTheParameters) {
  const Zelk zelk;
  const ZelkRun run = zelk.Run(
      "mpeg set stream-type=0 Width=352 height=288 variable-bit-rate=1 bit-rate=4000 "
      "MaxBitRate=8000 audio-sample-rate=32000 audio-bit-rate=224 audio-mode=3 option9=15 --json" +
      kCard);
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.Json().at("values"), (nlohmann::json{{"stream-type", 0},
                                                     {"width", 352},
                                                     {"height", 288},
                                                     {"bit-rate", 4000},
                                                     {"max-bit-rate", 8000},
                                                     {"variable-bit-rate", 1},
                                                     {"option9", 15},
                                                     {"audio-sample-rate", 32000},
                                                     {"audio-bit-rate", 224},
                                                     {"audio-mode", 3}}));
  // What is not named stays what it is.
  const nlohmann::json before = zelk.Run("mpeg get --json" + kCard).Json().at("values");
  nlohmann::json after = zelk.Run("mpeg set audio-mode=2 --json" + kCard).Json().at("values");
  EXPECT_EQ(after.at("audio-mode"), 2);
  after["audio-mode"] = before.at("audio-mode");
  EXPECT_EQ(after, before);
}

// The library answers success all the same.
TEST(Encoder, SaysWhenTheCardDidOtherwise) {
  const Zelk zelk;
  const ZelkRun size = zelk.Run("mpeg set width=352" + kCard + ",pin=videoinfo2");
  EXPECT_EQ(size.exitCode, 1);
  EXPECT_THAT(size.err, HasSubstr("the card has width 720 instead of 352"));
  const ZelkRun peak = zelk.Run("mpeg set variable-bit-rate=0 max-bit-rate=9000" + kCard);
  EXPECT_EQ(peak.exitCode, 1);
  EXPECT_THAT(peak.err, HasSubstr("the card has max-bit-rate 6000 instead of 9000"));
}

TEST(Encoder, ConverterAndLocks) {
  const Zelk zelk;
  const ZelkRun adc = zelk.Run("adc --trace" + kCard);
  EXPECT_EQ(adc.exitCode, 0);
  EXPECT_THAT(adc.err, HasSubstr("i2c write 34: 00 1F"));
  EXPECT_THAT(adc.err, HasSubstr("i2c write 34: 02 1F"));
  for (const char* card : {" --card virtual:ql2", " --card virtual:saa7134"}) {
    EXPECT_EQ(zelk.Run(std::string("lock 1 on") + card).out, "Lock 1: on\n") << card;
    EXPECT_EQ(zelk.Run(std::string("lock 0") + card).out, "Lock 0: off\n") << card;
    EXPECT_EQ(zelk.Run(std::string("lock 2") + card).exitCode, 2) << card;
    EXPECT_EQ(zelk.Run(std::string("lock 0 open") + card).exitCode, 2) << card;
  }
}

// The driver's offset is signed; the library hands its bits on as an unsigned figure.
TEST(Encoder, OffsetsBelowTheCarrierAreNegative) {
  const Zelk zelk;
  const nlohmann::json signal = zelk.Run("tune tv 175.35MHz --json" + kCard).Json();
  EXPECT_LT(signal.at("afc_offset_khz"), 0);
  EXPECT_GT(signal.at("afc_offset_khz"), -200);
}

}  // namespace
}  // namespace zelk::test
