// The FM scan on virtual cards: every tuner with FM finds what is on the air, and only that.
#include "tests/support/fm_band.h"

#include "tests/support/card_test.h"

namespace zelk::test {
namespace {

using virtual_cards::Saa713xOptions;

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
    air.fm = SampleStations(info.FmLowKHz, info.FmHighKHz);
    Plug(options, air);
    ASSERT_EQ(Init(), S_OK);
    ASSERT_EQ(ZELK_FMInit(), S_OK);
    ExpectFmScanFinds(air.fm);
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

}  // namespace
}  // namespace zelk::test
