// Both scans find exactly what is on the air: with both chips, over drivers and I/O libraries.
#include "tests/support/bt_test.h"
#include "tests/support/fm_band.h"

namespace zelk::test {
namespace {

using ::testing::ElementsAreArray;

class BtScan : public BtTest {};

struct TvCase {
  std::uint32_t type;
  std::uint32_t standard;
  std::uint32_t country;
  std::vector<double> carriers;
  bool onCx2388x = true;
};

const std::vector<double> kEurope = {48250, 175250.01, 189249.99, 471240, 623250};
const std::vector<double> kAmerica = {55250, 83260, 181250, 211240, 681250};
const std::vector<double> kJapan = {91250, 103240, 171250, 471250, 597250};

TEST_F(BtScan, Television) {
  const TvCase cases[] = {
      {1, AnalogVideo_PAL_B, 49, kEurope},          {5, AnalogVideo_NTSC_M, 1, kAmerica},
      {11, AnalogVideo_NTSC_M_J, 81, kJapan},       {13, AnalogVideo_NTSC_M, 1, kAmerica},
      {15, AnalogVideo_PAL_B, 49, kEurope},         {21, AnalogVideo_PAL_B, 49, kEurope},
      {44, AnalogVideo_NTSC_M, 1, kAmerica, false}, {45, AnalogVideo_NTSC_M, 1, kAmerica, false},
  };
  for (const CardSetUp& wanted : kSetUps) {
    for (const TvCase& one : cases) {
      if (wanted.cx2388x && !one.onCx2388x) continue;
      SCOPED_TRACE(std::string(wanted.name) + " tuner type " + std::to_string(one.type));
      PlugTv(wanted, {.tunerType = one.type}, MakeAir(one.carriers, one.standard));
      ZELK_put_TVFormat(one.standard, one.country);
      // On a Bt878 the modules of the MK3 generation are set up with the change to TV.
      ZELK_TVInit();
      ZELK_put_TVFormat(one.standard, one.country);
      std::vector<std::uint32_t> expected;
      for (const double carrier : one.carriers) {
        expected.push_back(static_cast<std::uint32_t>(carrier / 250 + 0.5) * 250);
      }
      EXPECT_THAT(ScanTv(), ElementsAreArray(expected));
    }
  }
}

// The silicon tuner needs its driver.
TEST_F(BtScan, SiliconTuner) {
  PlugTv(kBt878Tuner, {.tunerType = 40}, MakeAir(kEurope, AnalogVideo_PAL_B));
  EXPECT_EQ(ZELK_put_TVFormat(AnalogVideo_PAL_B, 49), S_OK);
  EXPECT_THAT(ScanTv(), ElementsAreArray({48250, 175250, 189250, 471250, 623250}));
}

TEST_F(BtScan, FmBand) {
  virtual_cards::Air air;
  air.fm = SampleStations(87500, 108000);
  for (const CardSetUp& wanted : kSetUps) {
    for (const std::uint32_t type : {1u, 5u, 9u, 13u, 15u, 21u, 30u, 45u}) {
      if ((wanted.cx2388x && type == 45) || (!wanted.cx2388x && type == 30)) continue;
      // Where the CX2388x's driver tunes, the scan cannot order the second test of a station that
      // these modules need.
      if (wanted.cx2388x && wanted.tunerFilter && type != 13 && type != 15 && type != 21) continue;
      SCOPED_TRACE(std::string(wanted.name) + " tuner type " + std::to_string(type));
      PlugFm(wanted, {.tunerType = type}, air);
      ExpectFmScanFinds(air.fm);
    }
  }
}

}  // namespace
}  // namespace zelk::test
