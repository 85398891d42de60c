// What a scan finds must be what is on the air, whatever the tuner and the channel plan.
#include <gmock/gmock.h>

#include <cmath>
#include <ostream>

#include "run_zelk.h"
#include "virtual_cards/air.h"

namespace zelk::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

struct Channel {
  std::string name;
  std::uint32_t kHz;
  bool operator==(const Channel&) const = default;
};
void PrintTo(const Channel& channel, std::ostream* out) {
  *out << channel.name << " at " << channel.kHz;
}

std::vector<Channel> OnTheAir(const std::string& place) {
  const virtual_cards::Air air = virtual_cards::LoadAir(place);
  const virtual_cards::Raster raster = virtual_cards::LoadRaster(air.raster);
  std::vector<Channel> channels;
  for (const auto& carrier : air.tv)
    channels.push_back({carrier.channel, raster.Find(carrier.channel)->pictureKHz});
  return channels;
}

std::vector<Channel> Listed(const nlohmann::json& scan) {
  std::vector<Channel> channels;
  for (const auto& row : scan.at("channels"))
    channels.push_back({row.at("channel").is_null() ? "-" : row.at("channel").get<std::string>(),
                        row.at("frequency_khz").get<std::uint32_t>()});
  return channels;
}

void ExpectPlaceFoundWhole(const std::string& card, const std::string& place) {
  SCOPED_TRACE(card + " in " + place);
  const Zelk zelk;
  const ZelkRun run = zelk.Run("scan tv --json --card virtual:" + card + " --air " + place);
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.err, "");
  const nlohmann::json scan = run.Json();
  EXPECT_EQ(Listed(scan), OnTheAir(place));
  EXPECT_FALSE(scan.at("interrupted"));
  for (const auto& row : scan.at("channels")) {
    EXPECT_TRUE(row.at("present")) << row;
    EXPECT_TRUE(row.at("decoder_lock")) << row;
  }
}

// A PLL tuner of the country for each plan, and the tuners that report channels above their
// carriers or cannot say how far off they are.
TEST(Scan, FindsEveryPlaceWhole) {
  ExpectPlaceFoundWhole("saa7134", "western-europe-city");
  ExpectPlaceFoundWhole("saa7134,tuner=3", "french-city");
  ExpectPlaceFoundWhole("saa7134,tuner=5", "us-city");
  ExpectPlaceFoundWhole("saa7134,tuner=13", "us-cable");
  ExpectPlaceFoundWhole("saa7134,tuner=7", "british-city");
  ExpectPlaceFoundWhole("saa7134,tuner=9", "eastern-europe-city");
  ExpectPlaceFoundWhole("saa7134,tuner=11", "japan-city");
  ExpectPlaceFoundWhole("saa7134,tuner=40", "western-europe-city");
  ExpectPlaceFoundWhole("saa7134,tuner=46", "us-city");
  ExpectPlaceFoundWhole("saa7134,tuner=47", "western-europe-city");
  ExpectPlaceFoundWhole("saa7134,tuner=48", "japan-city");
}

TEST(Scan, WorksTheSameWhereNothingCanBeWritten) {
  // A folder in place of the log file keeps everybody out, the superuser included.
  const Zelk open;
  const Zelk closed;
  std::filesystem::create_directory(closed.Folder() / "zelkapi_713x.log");
  // For this country the backend of a silicon tuner has something to log.
  const char* line = "scan tv --stop-at 200MHz --json --country 48 --card virtual:saa7134,tuner=40";
  nlohmann::json expected = open.Run(line).Json();
  nlohmann::json found = closed.Run(line).Json();
  ASSERT_TRUE(std::filesystem::is_regular_file(open.Folder() / "zelkapi_713x.log"));
  EXPECT_THAT(expected.at("channels"), Not(::testing::IsEmpty()));
  expected.erase("elapsed_ms");
  found.erase("elapsed_ms");
  EXPECT_EQ(found, expected);
}

TEST(Scan, OfABoardThatCannotBeTunedPointsToTheReason) {
  const Zelk zelk;
  const ZelkRun run = zelk.Run("scan tv --card virtual:saa7134,tuner=38");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_THAT(run.out, HasSubstr("\n0 channels"));
  EXPECT_THAT(run.out, HasSubstr("; see zelkapi_713x.log"));
}

TEST(Scan, StopsBehindTheFrequencyAskedFor) {
  const Zelk zelk;
  const nlohmann::json scan = zelk.Run("scan tv --json --stop-at 190MHz").Json();
  EXPECT_EQ(Listed(scan), (std::vector<Channel>{{"E3", 55250}, {"E5", 175250}, {"E7", 189250}}));
  EXPECT_FALSE(scan.at("interrupted"));
}

}  // namespace
}  // namespace zelk::test
