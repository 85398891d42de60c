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

TEST(Encoder, RefusesWhatDoesNotExist) {
  const Zelk zelk;
  for (const auto& [assignment, complaint] :
       {std::pair("loudness=1", "\"loudness\" is none of stream-type, width"),
        {"width", "\"width\" is no KEY=VALUE"},
        {"stream-type=5", "stream-type"},
        {"bit-rate=0", "bit-rate: 0, wanted 1 to 65535 kbit/s"},
        {"bit-rate=65536", "bit-rate"},
        {"audio-sample-rate=22050", "22050, wanted 32000, 44100, 48000 Hz"},
        {"audio-bit-rate=128", "128, wanted 192, 224, 256, 320, 384 kbit/s"}}) {
    const ZelkRun run = zelk.Run("mpeg set width=352 " + std::string(assignment) + kCard);
    EXPECT_EQ(run.exitCode, 2) << assignment;
    EXPECT_THAT(run.err, HasSubstr(complaint));
    EXPECT_EQ(run.out, "");
  }
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

TEST(Encoder, CardsWithoutOne) {
  const Zelk zelk;
  for (const auto& [line, complaint] : {std::pair("mpeg get", "this card has no MPEG encoder"),
                                        {"mpeg set width=352", "this card has no MPEG encoder"},
                                        {"adc", "this card has no audio converter"}}) {
    const ZelkRun run = zelk.Run(line);
    EXPECT_EQ(run.exitCode, 1) << line;
    EXPECT_THAT(run.err, HasSubstr(complaint));
  }
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

TEST(Encoder, BandsOnTheCard) {
  const Zelk zelk;
  const nlohmann::json tv = zelk.Run("scan tv --stop-at 200MHz --json" + kCard).Json();
  std::vector<std::string> channels;
  for (const auto& channel : tv.at("channels")) channels.push_back(channel.at("channel"));
  EXPECT_THAT(channels, ::testing::ElementsAre("E3", "E5", "E7"));
  for (const char* tuner : {"11", "51"}) {
    const nlohmann::json fm =
        zelk.Run("scan fm --from 100MHz --json" + kCard + ",tuner=" + tuner).Json();
    EXPECT_EQ(fm.at("stations").size(), 8u) << tuner;
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
