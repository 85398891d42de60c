// Both scans on the virtual card find exactly what is on the air.
#include "tests/quillon/quillon_test.h"
#include "tests/support/fm_band.h"

namespace zelk::test {
namespace {

using virtual_cards::Air;

// One of each kind: IF demodulator, AFC in the demodulator alone, separate receiver, the default.
constexpr std::uint32_t kTunerCodes[] = {11, 17, 25, 49, 51, 53, 255};
constexpr std::uint32_t kTunersWithoutFm[] = {10, 16, 24, 26, 48, 50, 52};

class QuillonScan : public QuillonTest {
 protected:
  void ExpectTvBand(std::uint32_t code, const char* place) {
    SCOPED_TRACE("tuner code " + std::to_string(code) + ", " + place);
    const Air air = virtual_cards::LoadAir(place);
    const virtual_cards::Raster raster = virtual_cards::LoadRaster(air.raster);
    PlugTv(code, air);
    ASSERT_EQ(ZELK_put_TVFormat(raster.standard, static_cast<std::uint32_t>(raster.countryCode)),
              S_OK);
    ZELK_HWInfo info = {};
    ASSERT_EQ(ZELK_GetHWInfo(&info), S_OK);
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
};

TEST_F(QuillonScan, Television) {
  for (const std::uint32_t code : {10u, 11u, 26u, 50u, 51u, 255u}) {
    ExpectTvBand(code, "western-europe-city");
  }
  for (const std::uint32_t code : {16u, 17u, 24u, 25u, 52u, 53u}) ExpectTvBand(code, "us-city");
  for (const std::uint32_t code : {48u, 49u}) ExpectTvBand(code, "japan-city");
}

TEST_F(QuillonScan, Radio) {
  for (const std::uint32_t code : kTunerCodes) {
    SCOPED_TRACE("tuner code " + std::to_string(code));
    UserCountry(code == 49 ? "81" : "49");
    Air air;
    air.fm = code == 49 ? SampleStations(76000, 91000) : SampleStations(87500, 108000);
    PlugFm(code, air);
    ExpectFmScanFinds(air.fm);
  }
}

TEST_F(QuillonScan, TunersWithoutAnFmSectionFindNoStation) {
  Air air;
  air.fm = {{.station = "", .carrierKHz = 98600, .levelDbuV = 70, .stereo = true}};
  for (const std::uint32_t code : kTunersWithoutFm) {
    SCOPED_TRACE("tuner code " + std::to_string(code));
    PlugFm(code, air);
    // The last station, here the only one, is not to be found.
    ExpectFmScanFinds(air.fm);
  }
}

}  // namespace
}  // namespace zelk::test
