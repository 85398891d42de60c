// Cards that are found among the system's devices, as real ones are.
#include "cli/devices.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "run_zelk.h"
#include "virtual_cards/cards/virtual_card.h"

namespace zelk::test {
namespace {

using cli::Device;
using cli::TunerOf;
using ::testing::HasSubstr;

constexpr char kName[] = "Korvane, Telmora WDM Video Capture (7134)";

Device Named(std::string name, std::wstring path = L"") {
  return {.friendlyName = name, .name = name, .path = std::move(path), .moniker = {}};
}

TEST(Devices, TheTunerIsOnTheSameHardwareOrNamedAlike) {
  const Device capture = Named("Telmora Video Capture", L"\\\\?\\pci#dev_7134#1#{65e8773d}");
  EXPECT_EQ(TunerOf(capture, {}), nullptr);
  const std::vector<Device> named = {Named("Other Tuner"), Named("Telmora Tuner"), Named("Tuner")};
  EXPECT_EQ(TunerOf(capture, named), &named[1]);
  const std::vector<Device> placed = {
      Named("Telmora Video Tuner", L"\\\\?\\pci#dev_7134#2#{a799a800}"),
      Named("Tuner", L"\\\\?\\pci#dev_7134#1#{a799a800}")};
  EXPECT_EQ(TunerOf(capture, placed), &placed[1]);
}

TEST(Devices, OfOneNameAreToldApart) {
  const auto first = virtual_cards::CreateCard("saa7134", {});
  const auto second = virtual_cards::CreateCard("saa7134", {});
  const std::vector<Device> devices = cli::CaptureDevices();
  ASSERT_GE(devices.size(), 2u);
  EXPECT_EQ(devices[0].name, kName);
  EXPECT_EQ(devices[1].name, std::string(kName) + "#2");
  EXPECT_EQ(devices[1].friendlyName, kName);
}

TEST(Devices, AreListedWithWhatTheLibraryMakesOfThem) {
  const Zelk zelk;
  EXPECT_THAT(zelk.Run("cards --plug saa7134,tuner=14").out,
              HasSubstr("\n\nDevice                                     Kind     Library\n"
                        "Korvane, Telmora WDM Video Capture (7134)  capture  accepts it, tuner "
                        "FI1216MEMK3\n"
                        "Korvane, Telmora WDM TV Tuner (7134)       tuner    -\n"));
  EXPECT_TRUE(std::filesystem::is_empty(zelk.Folder().Path())) << "a log of the trial is left";
  const nlohmann::json named = zelk.Run("cards --json --names --plug ql2").Json().at("devices");
  EXPECT_FALSE(named.at(0).contains("accepted"));
}

TEST(Devices, ACardIsDrivenByItsName) {
  const Zelk zelk;
  const std::string named = std::string(" --card \"") + kName + "\"";
  nlohmann::json expected = zelk.Run("tune tv E5 --json").Json();
  nlohmann::json found = zelk.Run("tune tv E5 --json --plug saa7134" + named).Json();
  EXPECT_EQ(found.at("card"), kName);
  found.erase("card");
  expected.erase("card");
  EXPECT_EQ(found, expected);

  EXPECT_THAT(zelk.Run("info --trace --plug saa7134" + named).err, HasSubstr("tuner query "));
  EXPECT_THAT(zelk.Run("info --plug saa7134 --tuner none" + named).out, HasSubstr(kName));
  EXPECT_EQ(zelk.Run("info --plug bt878-io --card io").exitCode, 0);
  const ZelkRun unknown = zelk.Run("info --plug saa7134 --tuner other" + named);
  EXPECT_EQ(unknown.exitCode, 2);
  EXPECT_THAT(unknown.err, HasSubstr("\"other\""));
  EXPECT_EQ(zelk.Run("info" + named).exitCode, 2) << "it is plugged in no more";
  EXPECT_EQ(zelk.Run("info --plug saa7134").exitCode, 2) << "two virtual cards";
  EXPECT_EQ(zelk.Run("info --trace --card io").exitCode, 2) << "no trace of a real card";
}

}  // namespace
}  // namespace zelk::test
