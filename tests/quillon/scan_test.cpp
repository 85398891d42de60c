// Both scans on the virtual card find exactly what is on the air.
#include "tests/quillon/quillon_test.h"
#include "tests/support/fm_band.h"

namespace zelk::test {
namespace {

using virtual_cards::Air;

class QuillonScan : public QuillonTest {};

TEST_F(QuillonScan, Television) {
  for (const auto& [code, place] :
       {std::pair(255u, "western-europe-city"), {24u, "us-city"}, {49u, "japan-city"}}) {
    SCOPED_TRACE(place);
    const Air air = virtual_cards::LoadAir(place);
    const virtual_cards::Raster raster = virtual_cards::LoadRaster(air.raster);
    PlugTv(code, air);
    ASSERT_EQ(ZELK_put_TVFormat(raster.standard, static_cast<std::uint32_t>(raster.countryCode)),
              S_OK);
    const ZELK_HWInfo info = Info();
    std::vector<double> onAir;
    for (const auto& carrier : air.tv) {
      if (carrier.pictureKHz >= info.TvLowKHz && carrier.pictureKHz < info.TvHighKHz) {
        onAir.push_back(carrier.pictureKHz);
      }
    }
    const std::vector<std::uint32_t> found = ScanTv();
    ASSERT_EQ(found.size(), onAir.size());
    for (std::size_t i = 0; i < found.size(); ++i) EXPECT_NEAR(found[i], onAir[i], 250);
  }
}

// Every module with FM: an IF demodulator of either kind, or a separate receiver.
TEST_F(QuillonScan, Radio) {
  for (const std::uint32_t code : {11u, 17u, 25u, 49u, 51u, 53u, 255u}) {
    SCOPED_TRACE("tuner code " + std::to_string(code));
    UserCountry(code == 49 ? "81" : "49");
    Air air;
    air.fm = code == 49 ? SampleStations(76000, 91000) : SampleStations(87500, 108000);
    PlugFm(code, air);
    ExpectFmScanFinds(air.fm);
  }
}

}  // namespace
}  // namespace zelk::test
