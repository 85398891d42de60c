#include "tests/support/fm_band.h"

#include <gtest/gtest.h>

#include <cmath>

#include "ZElkAPI.h"

namespace zelk::test {
namespace {

struct Found {
  std::uint32_t frequency;
  bool stereo;
};
std::vector<Found> found;

void ZELK_CALL Collect(uint32_t event, uint32_t value, uint32_t extra) {
  if (event == ZELK_EVENT_FOUND) found.push_back({value, extra == 1});
}

}  // namespace

std::vector<virtual_cards::FmStation> SampleStations(double low, double high) {
  struct Kind {
    double offsetKHz, levelDbuV;
    bool stereo;
    double gapKHz;
  };
  constexpr Kind kKinds[] = {{0, 70, true, 400},   {10, 50, false, 650}, {-10, 80, true, 1000},
                             {5, 47, true, 550},   {-5, 60, false, 800}, {0, 75, false, 450},
                             {10, 65, true, 1200}, {-10, 55, false, 900}};
  std::vector<virtual_cards::FmStation> stations;
  double carrier = low + 600;
  for (std::size_t i = 0; carrier < high - 600; ++i) {
    const Kind& kind = kKinds[i % std::size(kKinds)];
    stations.push_back({.station = "",
                        .carrierKHz = carrier + kind.offsetKHz,
                        .levelDbuV = kind.levelDbuV,
                        .stereo = kind.stereo});
    carrier += kind.gapKHz;
  }
  // Too weak to be received.
  stations.push_back({.station = "", .carrierKHz = high - 200, .levelDbuV = 20, .stereo = true});
  return stations;
}

void ExpectFmScanFinds(const std::vector<virtual_cards::FmStation>& stations, bool stereoKnown) {
  found.clear();
  ASSERT_EQ(ZELK_FMAllFreqScan(Collect, ZELK_SCAN_START, 0, 0, 0, 0), ZELK_S_OK);
  const std::size_t receivable = stations.size() - 1;
  ASSERT_EQ(found.size(), receivable);
  for (std::size_t i = 0; i < receivable; ++i) {
    EXPECT_LE(std::abs(found[i].frequency - stations[i].carrierKHz), 100) << i;
    if (stereoKnown) {
      EXPECT_EQ(found[i].stereo, stations[i].stereo) << stations[i].carrierKHz;
    }
  }
}

}  // namespace zelk::test
