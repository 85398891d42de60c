// FM radio: what is found must be what is on the air, and a search ends where the band does.
#include <gmock/gmock.h>

#include <algorithm>

#include "run_zelk.h"
#include "virtual_cards/air.h"

namespace zelk::test {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

// How far from its carrier the library may report a station: two of its steps.
constexpr double kReportToleranceKHz = 100;

void ExpectWholeFmBand(const std::string& card, const std::string& place) {
  SCOPED_TRACE(card + " in " + place);
  const Zelk zelk;
  const ZelkRun run = zelk.Run("scan fm --json --card virtual:" + card + " --air " + place);
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const nlohmann::json scan = run.Json();
  const double low = scan.at("band_low_khz");
  const double high = scan.at("band_high_khz");
  std::vector<virtual_cards::FmStation> onTheAir = virtual_cards::LoadAir(place).fm;
  std::erase_if(onTheAir, [&](const auto& station) {
    return station.carrierKHz < low || station.carrierKHz > high;
  });

  const nlohmann::json& found = scan.at("stations");
  ASSERT_EQ(found.size(), onTheAir.size()) << found;
  for (std::size_t i = 0; i < onTheAir.size(); ++i) {
    EXPECT_NEAR(found[i].at("frequency_khz").get<double>(), onTheAir[i].carrierKHz,
                kReportToleranceKHz);
    EXPECT_EQ(found[i].at("stereo"), onTheAir[i].stereo) << found[i];
    EXPECT_TRUE(found[i].at("strength").is_number()) << found[i];
  }
}

TEST(ScanFm, FindsEveryBandWhole) {
  ExpectWholeFmBand("saa7134", "western-europe-city");
  ExpectWholeFmBand("saa7134,tuner=5", "japan-city");
  ExpectWholeFmBand("saa7134,tuner=15", "french-city");
  ExpectWholeFmBand("saa7134,tuner=19", "eastern-europe-city");
  ExpectWholeFmBand("saa7134,tuner=21", "british-city");
  ExpectWholeFmBand("saa7134,board=0xE3", "us-city");
}

TEST(ScanFm, KeepsWithinTheLimitsAskedFor) {
  for (const std::string limit : {"--to", "--stop-at"}) {
    const nlohmann::json scan =
        Zelk().Run("scan fm --json --from 95MHz " + limit + " 98MHz").Json();
    std::vector<std::uint32_t> found;
    for (const auto& station : scan.at("stations")) found.push_back(station.at("frequency_khz"));
    EXPECT_THAT(found, ::testing::ElementsAre(95300, 96400, 97500)) << limit;
  }
}

TEST(ScanFm, OnABoardWithoutFmWarnsAndPointsToTheReason) {
  const Zelk zelk;
  const ZelkRun run = zelk.Run("scan fm --card virtual:saa7134,tuner=46");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_THAT(run.err, StartsWith("zelk: warning: "));
  EXPECT_THAT(run.out, HasSubstr("\n0 stations, "));
  EXPECT_THAT(run.out, HasSubstr("; see zelkapi_713x.log\n"));
}

TEST(EasternBand, NeedsItsOption) {
  const Zelk zelk;
  EXPECT_EQ(zelk.Run("scan fm --air eastern-europe-city --from 65MHz --to 75MHz").exitCode, 1);
  const auto found =
      zelk.Run("scan fm --air eastern-europe-city --eastern-fm --from 65MHz --to 75MHz --json")
          .Json()
          .at("stations");
  EXPECT_EQ(found.size(), 9u);
}

TEST(Seek, FindsTheNearestStationOrSaysThatThereIsNone) {
  const Zelk zelk;
  for (const auto& [line, text] :
       {std::pair("up 98000", "98.600 MHz, mono\n"),
        {"up 98.6MHz", "99.700 MHz, stereo\n"},
        {"up 107.9MHz", "no station above 107.900 MHz\n"},
        {"down 95.3MHz", "94.200 MHz, mono\n"},
        {"down 95.4MHz", "95.300 MHz, stereo\n"},
        // The next one lies some stretches further down.
        {"down 88.5MHz", "87.900 MHz, mono\n"},
        {"down 87.9MHz", "no station below 87.900 MHz\n"},
        {"down 87500", "no station below 87.500 MHz\n"},
        {"down 87MHz --card virtual:saa7134,tuner=5 --air japan-city", " MHz, "}}) {
    const ZelkRun run = zelk.Run(std::string("seek ") + line);
    EXPECT_EQ(run.exitCode, 0) << line;
    EXPECT_THAT(run.out, HasSubstr(text)) << line;
  }
  EXPECT_EQ(zelk.Run("seek up 95MHz --card virtual:saa7134,tuner=46").exitCode, 1) << "no FM";
}

TEST(FmMode, ReachesTheTuner) {
  const Zelk zelk;
  const ZelkRun mono = zelk.Run("fm mode mono 90.8MHz --trace");
  EXPECT_THAT(mono.out, StartsWith("90.800 MHz in mono: "));
  // (2 * 90800 + 21400) / 100 = 2030; the control word with and without the forced mono.
  EXPECT_THAT(mono.err, HasSubstr("i2c write C2: 07 EE 88 A7"));
  const ZelkRun stereo = zelk.Run("fm mode stereo 90.8MHz --trace");
  EXPECT_THAT(stereo.err, ::testing::Not(HasSubstr("07 EE 88 A7")));
}

}  // namespace
}  // namespace zelk::test
