// The TV scan: what it finds on every tuner, its events, and its commands.
#include <functional>

#include "platform/win32.h"
#include "tests/support/card_test.h"

namespace zelk::test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

class TvScan : public CardTest {
 protected:
  static std::vector<std::string> EventsOf(const std::string& code) {
    std::vector<std::string> events;
    for (const std::string& event : scanEvents) {
      if (event.starts_with(code)) events.push_back(event);
    }
    return events;
  }
};

struct Place {
  std::vector<std::uint32_t> tunerTypes;
  std::uint32_t standard, country;
  std::vector<double> carriers;
};

const Place kPlaces[] = {
    {{0, 1, 2, 3, 6, 7, 8, 9, 14, 15, 20, 21, 25, 26, 27, 28, 33, 34, 40, 43, 47},
     AnalogVideo_PAL_B,
     49,
     {48250, 175250.01, 189249.99, 210260, 471240, 623250, 855250}},
    // 41 begins at 66 MHz, 18 and 19 at 49.25 MHz, 45 at 55.25 MHz.
    {{18, 19, 41, 45}, AnalogVideo_PAL_D, 86, {77250, 175250, 199260, 471240, 855250}},
    {{4, 5, 12, 13, 24, 29, 30, 31, 32, 35, 42, 44},
     AnalogVideo_NTSC_M,
     1,
     {55250, 83260, 181250, 211240, 475250, 681250, 801250}},
    {{10, 11, 16, 17, 36, 37},
     AnalogVideo_NTSC_M_J,
     81,
     {91250, 103240, 171250, 217260, 471250, 597250, 765250}}};

TEST_F(TvScan, EveryTunerFindsExactlyTheCarriersOnTheAir) {
  for (const Place& place : kPlaces) {
    for (const std::uint32_t type : place.tunerTypes) {
      PlugTv(type, MakeAir(place.carriers, place.standard));
      ZELK_put_TVFormat(place.standard, place.country);
      ZELK_HWInfo info = {};
      ASSERT_EQ(ZELK_GetHWInfo(&info), S_OK);
      std::vector<std::uint32_t> expected;
      for (const double carrier : place.carriers) {
        // The raster position nearest to the carrier, where it lies in the card's band.
        const auto raster = static_cast<std::uint32_t>(carrier / 250 + 0.5) * 250;
        // The last probe comes before the end of the band.
        if (raster >= info.TvLowKHz && raster < info.TvHighKHz) expected.push_back(raster);
      }
      EXPECT_THAT(ScanTv(), ElementsAreArray(expected)) << "tuner type " << type;
    }
  }
}

// The carriers' readings are 2 on the raster and 3 62.5 kHz above it.
TEST_F(TvScan, AlpsModulesReportByTheirAfcReadingAndLeap) {
  struct Case {
    std::uint32_t type, standard, country;
    std::vector<std::string> found;
    const char* next;  // probe, 5250 or 6500 kHz above the one on 133250
  };
  const Case cases[] = {
      {46, AnalogVideo_NTSC_M, 1, {"1003 135000", "1003 183250", "1003 477000"}, "1004 138500"},
      {47, AnalogVideo_PAL_B, 49, {"1003 133250", "1003 183250", "1003 475250"}, "1004 139750"},
      {48, AnalogVideo_NTSC_M, 1, {"1003 135000", "1003 183250", "1003 477000"}, "1004 138500"},
  };
  for (const Case& one : cases) {
    PlugTv(one.type, MakeAir({133250, 183312.5, 475250}, one.standard));
    ZELK_put_TVFormat(one.standard, one.country);
    scanEvents.clear();
    ZELK_AllFreqScan(RecordScanEvent, ZELK_SCAN_START);
    ASSERT_EQ(EventsOf("1003"), one.found) << one.type;
    EXPECT_EQ(std::find(scanEvents.begin(), scanEvents.end(), one.found[0])[2], one.next);
  }
}

TEST_F(TvScan, EventsInOrder) {
  PlugTv(5, MakeAir({55500}, AnalogVideo_NTSC_M));
  atScanEvent = [](std::uint32_t event, std::uint32_t value) {
    if (event == ZELK_EVENT_POSITION && value >= 61000) ZELK_AllFreqScan(nullptr, 0);
  };
  EXPECT_EQ(ZELK_AllFreqScan(ActOnScanEvent, ZELK_SCAN_START), S_FALSE);
  EXPECT_THAT(scanEvents, ElementsAre("1001 0", "1002 0", "1004 55500", "1003 55500", "1002 0",
                                      "1004 60750", "1002 0", "1004 61000", "1005 0"));
}

TEST_F(TvScan, WholeBandEndsAtOrAboveItsLimit) {
  PlugTv(5, MakeAir({799750}, AnalogVideo_NTSC_M));
  EXPECT_EQ(ZELK_AllFreqScan(RecordScanEvent, ZELK_SCAN_START), S_FALSE);
  // The channel near the end carries the sweep past it: (805000 - 55250) * 100 / 746000 = 100.5.
  EXPECT_EQ(EventsOf("1004").back(), "1004 805000");
  EXPECT_EQ(EventsOf("1002").back(), "1002 100");
  EXPECT_EQ(EventsOf("1004").size(), 2979u);
}

TEST_F(TvScan, StopsAfter125Channels) {
  std::vector<double> carriers;
  for (int i = 0; i < 140; ++i) carriers.push_back(48250 + 5250.0 * i);
  PlugTv(1, MakeAir(carriers));
  EXPECT_EQ(ZELK_AllFreqScan(RecordScanEvent, ZELK_SCAN_START), S_FALSE);
  EXPECT_EQ(EventsOf("1003").size(), 125u);
  EXPECT_EQ(EventsOf("1002").back(), "1002 81");
}

TEST_F(TvScan, CommandsWhileNothingRunsAndStopAtTheFirstEventProbeNothing) {
  PlugTv(1);
  TakeTrace();
  EXPECT_EQ(ZELK_AllFreqScan(RecordScanEvent, ZELK_SCAN_STOP), S_FALSE);
  EXPECT_EQ(ZELK_AllFreqScan(RecordScanEvent, 2), S_FALSE);
  EXPECT_EQ(ZELK_AllFreqScan(nullptr, ZELK_SCAN_STOP), S_FALSE);
  atScanEvent = [](std::uint32_t event, std::uint32_t) {
    if (event != ZELK_EVENT_STARTED) return;
    EXPECT_EQ(ZELK_AllFreqScan(ActOnScanEvent, ZELK_SCAN_STOP), S_OK);
  };
  EXPECT_EQ(ZELK_AllFreqScan(ActOnScanEvent, ZELK_SCAN_START), S_FALSE);
  EXPECT_THAT(scanEvents, ElementsAre("1005 0", "1005 0", "1001 0", "1005 0"));
  EXPECT_THAT(TakeTrace(), IsEmpty());
}

TEST_F(TvScan, SecondStartIsRefusedAndAnotherCommandNests) {
  PlugTv(1, MakeAir({855000}));
  bool nested = false;
  atScanEvent = [&](std::uint32_t event, std::uint32_t) {
    if (event != ZELK_EVENT_POSITION || nested) return;
    nested = true;
    const auto before = scanEvents.size();
    EXPECT_EQ(ZELK_AllFreqScan(ActOnScanEvent, ZELK_SCAN_START), E_FAIL);
    EXPECT_EQ(scanEvents.size(), before);
    EXPECT_EQ(ZELK_AllFreqScan(ActOnScanEvent, 2), S_FALSE);
  };
  EXPECT_EQ(ZELK_AllFreqScan(ActOnScanEvent, ZELK_SCAN_START), S_FALSE);
  // The nested sweep runs to the end of the band and its end is the outer one's too.
  EXPECT_THAT(EventsOf("1001"), ElementsAre("1001 0", "1001 0"));
  EXPECT_THAT(EventsOf("1005"), ElementsAre("1005 0", "1005 0"));
  EXPECT_THAT(EventsOf("1003"), ElementsAre("1003 855000"));
}

TEST_F(TvScan, OutsideTvModeNothingIsFoundAndTheBandIsWalked) {
  PlugTuner(5, MakeAir({175250}));
  ASSERT_EQ(Init(), S_OK);
  EXPECT_EQ(ZELK_AllFreqScan(RecordScanEvent, ZELK_SCAN_START), S_FALSE);
  EXPECT_THAT(EventsOf("1003"), IsEmpty());
  EXPECT_EQ(EventsOf("1004").size(), (801250u - 55250u) / 250);
  EXPECT_THAT(TakeLog(), ::testing::Each("SAA713x SetTVFreq(): Current mode not TV"));
}

}  // namespace
}  // namespace zelk::test
