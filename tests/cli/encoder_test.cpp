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
  EXPECT_THAT(zelk.Run("mpeg set --help").out,
              HasSubstr("\n"
                        "  stream-type         0 to 4\n"
                        "  width               1 to 4096 pixels\n"
                        "  height              1 to 4096 pixels\n"
                        "  bit-rate            1 to 65535 kbit/s\n"
                        "  max-bit-rate        1 to 65535 kbit/s\n"
                        "  variable-bit-rate   0 to 1\n"
                        "  option9             0 to 255\n"
                        "  option10            0 to 255\n"
                        "  audio-sample-rate   32000, 44100, 48000 Hz\n"
                        "  audio-bit-rate      192, 224, 256, 320, 384 kbit/s\n"
                        "  audio-mode          0 to 3\n"));
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

}  // namespace
}  // namespace zelk::test
