// The FM scan on virtual cards: every tuner with FM finds what is on the air, and only that.
#include <cmath>

#include "platform/control.h"
#include "tests/support/card_test.h"

namespace zelk::test {
namespace {

using virtual_cards::FmStation;
using virtual_cards::Saa713xOptions;

struct Found {
  std::uint32_t frequency;
  bool stereo;
};
std::vector<Found> found;

void ZELK_CALL Collect(uint32_t event, uint32_t value, uint32_t extra) {
  if (event == ZELK_EVENT_FOUND) found.push_back({value, extra == 1});
}

// Stations at odd and even steps of the scan, strong and weak, a little off their frequency.
std::vector<FmStation> Stations(double low, double high) {
  struct Kind {
    double offsetKHz, levelDbuV;
    bool stereo;
    double gapKHz;
  };
  constexpr Kind kKinds[] = {{0, 70, true, 400},   {10, 50, false, 650}, {-10, 80, true, 1000},
                             {5, 47, true, 550},   {-5, 60, false, 800}, {0, 75, false, 450},
                             {10, 65, true, 1200}, {-10, 55, false, 900}};
  std::vector<FmStation> stations;
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

class FmBand : public CardTest {
 protected:
  // Scans the card's own band.
  void ExpectWholeBand(const Saa713xOptions& options) {
    SCOPED_TRACE("tuner type " + std::to_string(options.tunerType) + ", board " +
                 std::to_string(options.boardConfig.value_or(0)));
    Plug(options);
    ASSERT_EQ(Init(), S_OK);
    ZELK_HWInfo info = {};
    ASSERT_EQ(ZELK_GetHWInfo(&info), S_OK);
    virtual_cards::Air air;
    air.fm = Stations(info.FmLowKHz, info.FmHighKHz);
    Plug(options, air);
    ASSERT_EQ(Init(), S_OK);
    ASSERT_EQ(ZELK_FMInit(), S_OK);
    found.clear();
    ASSERT_EQ(ZELK_FMAllFreqScan(Collect, ZELK_SCAN_START, 0, 0, 0, 0), S_OK);
    const std::size_t receivable = air.fm.size() - 1;
    ASSERT_EQ(found.size(), receivable);
    for (std::size_t i = 0; i < receivable; ++i) {
      EXPECT_LE(std::abs(found[i].frequency - air.fm[i].carrierKHz), 100) << i;
      EXPECT_EQ(found[i].stereo, air.fm[i].stereo) << air.fm[i].carrierKHz;
    }
  }
};

TEST_F(FmBand, EveryTunerFindsEveryStation) {
  for (const std::uint32_t type : {1u,  3u,  5u,  7u,  9u,  11u, 13u, 15u, 17u, 19u,
                                   21u, 26u, 28u, 30u, 32u, 34u, 40u, 41u, 44u, 45u}) {
    ExpectWholeBand({.tunerType = type});
  }
  // Boards with the separate receiver.
  for (const std::uint32_t board : {0xE1u, 0xE3u, 0xE9u}) ExpectWholeBand({.boardConfig = board});
}

// The strategies that wait themselves do so at each probe.
TEST_F(FmBand, WaitsOfAProbe) {
  for (const auto& [board, least] :
       {std::pair<std::uint32_t, std::uint32_t>{0xE3, 80}, {0x1C, 80 + 80}, {0x01, 80}}) {
    Plug({.boardConfig = board});
    ASSERT_EQ(Init(), S_OK);
    ZELK_FMInit();
    const auto before = host::SleptMilliseconds();
    ZELK_FMAllFreqScan(nullptr, ZELK_SCAN_START, 0, 0, 87500, 108000);
    EXPECT_GE(host::SleptMilliseconds() - before, 410u * least) << std::hex << board;
  }
}

}  // namespace
}  // namespace zelk::test
