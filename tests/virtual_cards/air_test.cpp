// The data files: the shipped ones hold the national plans, and a slip in a user's own is reported
// with its file and place, never passed over.
#include "virtual_cards/air.h"

#include <gmock/gmock.h>
#include <stdlib.h>

#include <stdexcept>

#include "platform/dshow.h"
#include "platform/win32.h"
#include "tests/support/temp_folder.h"

namespace zelk::virtual_cards {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

// The ends of bands, as printed in the plans: a wrong first carrier, step or count shows there.
TEST(Raster, HasTheChannelsOfThePlanOnTheirCarriers) {
  const std::pair<const char*, std::vector<std::pair<const char*, std::uint32_t>>> plans[] = {
      {"ntsc-m-air", {{"4", 67250}, {"6", 83250}, {"13", 211250}, {"69", 801250}}},
      {"ntsc-m-cable",
       {{"99", 115250}, {"22", 169250}, {"36", 295250}, {"94", 643250}, {"125", 799250}}},
      {"pal-bg",
       {{"e4", 62250},
        {"E12", 224250},
        {"S10", 168250},
        {"S20", 294250},
        {"S41", 463250},
        {"K69", 855250}}},
      {"pal-dk", {{"R2", 59250}, {"R5", 93250}, {"R12", 223250}}},
      {"pal-i", {{"IC", 61750}, {"IJ", 215250}, {"68", 847250}}},
      {"secam-l", {{"3", 60500}, {"4", 63750}, {"10", 216000}}},
      {"japan-air", {{"7", 189250}, {"12", 217250}, {"62", 765250}}}};
  for (const auto& [id, channels] : plans) {
    const Raster raster = LoadRaster(id);
    for (const auto& [name, pictureKHz] : channels) {
      const RasterChannel* channel = raster.Find(name);
      ASSERT_TRUE(channel) << id << ' ' << name;
      EXPECT_EQ(channel->pictureKHz, pictureKHz) << id << ' ' << name;
    }
  }
}

TEST(Raster, FindsTheNearestChannelWithinTheTolerance) {
  const Raster raster = LoadRaster("pal-bg");
  ASSERT_TRUE(raster.Nearest(175450, 200));
  EXPECT_EQ(raster.Nearest(175450, 200)->name, "E5");
  EXPECT_FALSE(raster.Nearest(175451, 200));
  EXPECT_EQ(raster.Nearest(178751, 5000)->name, "E6");  // half way, and a little more
}

TEST(Place, HasItsCarriersBesideTheirChannels) {
  const Air air = LoadAir(kDefaultPlace);
  const TvCarrier* e7 = air.NearestTv(189250, 20);
  ASSERT_TRUE(e7);
  EXPECT_EQ(e7->channel, "E7");
  EXPECT_DOUBLE_EQ(e7->pictureKHz, 189260.417) << "nominal carrier and offset";
  EXPECT_FALSE(air.NearestTv(182250, 500));
  ASSERT_TRUE(air.NearestFm(98600, 5));
  EXPECT_FALSE(air.NearestFm(98600, 5)->stereo);
}

TEST(Place, MayTransmitAStandardOfItsOwnOnAChannel) {
  const Air air = LoadAir("french-city");
  EXPECT_EQ(air.NearestTv(55750, 50)->standard, static_cast<std::uint32_t>(AnalogVideo_SECAM_L1));
  EXPECT_EQ(air.NearestTv(471250 + 8000, 50)->standard,
            static_cast<std::uint32_t>(AnalogVideo_SECAM_L));
}

// --- Files of a user's own ---

class OwnData : public ::testing::Test {
 protected:
  OwnData() {
    std::filesystem::create_directories(folder_ / "rasters");
    std::filesystem::create_directories(folder_ / "places");
    SetEnvironmentVariableA("ZELKAPI_DATA", folder_.Path().c_str());
    folder_.Write("rasters/plan.json", kPlan);
  }
  ~OwnData() override { SetEnvironmentVariableA("ZELKAPI_DATA", nullptr); }

  // What the loader says to a place with this text in it.
  std::string Complaint(std::string_view text) {
    folder_.Write("places/here.json", text);
    return ComplaintOf([] { LoadAir("here"); });
  }
  std::string RasterComplaint(std::string_view text) {
    folder_.Write("rasters/odd.json", text);
    return ComplaintOf([] { LoadRaster("odd"); });
  }
  template <class Action>
  static std::string ComplaintOf(Action action) {
    try {
      action();
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "(none)";
  }

  static constexpr std::string_view kPlan = R"({"source": "s", "title": "t", "standard": "PAL_B",
    "country": 49, "bands": [{"band": "b", "prefix": "E", "numbers": [5, 6], "first_khz": 175250,
    "step_khz": 7000}]})";
  zelk::testing::TempFolder folder_;
};

std::string PlaceText(const std::string& tv, const std::string& fm = "") {
  return R"({"place": "p", "raster": "plan", "tv": [)" + tv + R"(], "fm": [)" + fm + "]}";
}

TEST_F(OwnData, IsTakenFromTheFolderNamedInTheEnvironment) {
  EXPECT_EQ(Complaint(PlaceText(R"({"channel": "E6", "station": "a", "level_dbuv": 50})")),
            "(none)");
  EXPECT_EQ(RasterIds(), std::vector<std::string>{"plan"});
  EXPECT_EQ(LoadAir("here").tv.at(0).pictureKHz, 182250);
}

TEST_F(OwnData, OfAPlaceIsCheckedPieceByPiece) {
  const std::string e5 = R"({"channel": "E5", "station": "a", "level_dbuv": )";
  const std::pair<std::string, const char*> cases[] = {
      {R"({"channel": "E7", "station": "a", "level_dbuv": 50})", "no channel \"E7\""},
      {e5 + R"(50}, {"channel": "e5", "station": "b", "level_dbuv": 60})",
       "\"tv\" entry 2: channel \"E5\" stands twice"},
      {e5 + "121}", "\"level_dbuv\": 121 is out of range"},
      {e5 + "-1}", "\"level_dbuv\": -1 is out of range"},
      {e5 + R"("50"})", "\"level_dbuv\": must be a number"},
      {R"({"channel": 5, "station": "a", "level_dbuv": 50})", "\"channel\": must be a text"},
      {R"({"channel": "E5", "level_dbuv": 50})", "\"station\" is missing"},
      {e5 + R"(50, "offset": 3})", "unknown key \"offset\""},
      {e5 + R"(50, "offset_khz": 2000})", "\"offset_khz\": 2000 is out of range"},
      {e5 + R"(50, "standard": "PAL"})", "\"PAL\" is not a video standard"},
      {e5 + R"(50, "channel": "E6"})", "stands twice"},
      {R"("E5")", "must be an object"},
      {R"({"channel": "E5")", "parse error"}};
  for (const auto& [tv, says] : cases)
    EXPECT_THAT(Complaint(PlaceText(tv)), AllOf(HasSubstr("here.json"), HasSubstr(says))) << tv;
  const std::string fm = R"({"station": "a", "level_dbuv": 50, "frequency_khz": )";
  EXPECT_THAT(Complaint(PlaceText("", fm + R"(98600, "stereo": 1})")),
              HasSubstr("\"fm\" entry 1, \"stereo\": must be true or false"));
  EXPECT_THAT(Complaint(PlaceText("", fm + R"(98.6, "stereo": true})")),
              HasSubstr("\"frequency_khz\": must be a whole number"));
  EXPECT_THAT(Complaint(R"({"place": "p", "raster": "moon", "tv": [], "fm": []})"),
              HasSubstr("no raster \"moon\"; there are: plan"));
  EXPECT_THAT(ComplaintOf([] { LoadAir("there"); }), HasSubstr("no place or file \"there\""));
}

TEST_F(OwnData, OfARasterIsCheckedPieceByPiece) {
  const std::string band = R"({"band": "b", "prefix": "E", "first_khz": 175250, "step_khz": 7000,
                               "numbers": )";
  const std::tuple<std::string, const char*, const char*> cases[] = {
      {band + "[5, 6]}", R"("E6": 189250)", "\"E6\" stands twice"},
      {band + "[5, 6]}", R"("X1": 182250)", "stand on one carrier"},
      {band + "[5, 6]}", R"("X1": 182.25)", "must be a whole number"},
      {band + "[5, 6]}", R"("X1": 60000, "X1": 61000)", "stands twice"},
      {band + "[6, 5]}", "", "entry 2: 5 is out of range"},
      {"", "", "has no channels"}};
  for (const auto& [bands, channels, says] : cases) {
    EXPECT_THAT(
        RasterComplaint(
            R"({"source": "s", "title": "t", "standard": "PAL_B", "country": 49, "bands": [)" +
            bands + R"(], "channels": {)" + channels + "}}"),
        HasSubstr(says));
  }
  EXPECT_THAT(RasterComplaint(R"({"titel": "t"})"), HasSubstr("unknown key \"titel\""));
  EXPECT_THAT(ComplaintOf([] { LoadRaster("../rasters/plan"); }), HasSubstr("no raster"))
      << "an id is no path";
}

}  // namespace
}  // namespace zelk::virtual_cards
