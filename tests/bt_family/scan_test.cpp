// Both scans find exactly what is on the air: with both chips, over drivers and I/O libraries.
#include "tests/support/bt_test.h"
#include "tests/support/fm_band.h"

namespace zelk::test {
namespace {

using ::testing::ElementsAreArray;

class BtScan : public BtTest {};

struct Case {
  CardSetUp setUp;
  std::uint32_t tvType, standard, country;
  std::vector<double> carriers;
  std::vector<std::uint32_t> fmTypes;
};

const std::vector<double> kEurope = {48250, 175250.01, 189249.99, 471240, 623250};
const std::vector<double> kAmerica = {55250, 83260, 181250, 211240, 681250};
const std::vector<double> kJapan = {91250, 103240, 171250, 471250, 597250};

// Each kind of module with a scan of its own. The Bt878's silicon tuner needs its driver; where the
// CX2388x's driver tunes, the scan cannot order the second test of a station that all but the
// modules with a demodulator for FM need.
const Case kCases[] = {
    {kBt878, 44, AnalogVideo_NTSC_M, 1, kAmerica, {1, 13, 45}},
    {kBt878Tuner, 40, AnalogVideo_PAL_B, 49, kEurope, {9}},
    {kBt878Io, 15, AnalogVideo_PAL_B, 49, kEurope, {15, 21}},
    {kCx2388x, 13, AnalogVideo_NTSC_M, 1, kAmerica, {15, 21, 30}},
    {kCx2388xTuner, 21, AnalogVideo_PAL_B, 49, kEurope, {13}},
    {kCx2388xIo, 11, AnalogVideo_NTSC_M_J, 81, kJapan, {5}},
};

TEST_F(BtScan, BothBands) {
  for (const Case& one : kCases) {
    SCOPED_TRACE(one.setUp.name);
    PlugTv(one.setUp, {.tunerType = one.tvType}, MakeAir(one.carriers, one.standard));
    ZELK_put_TVFormat(one.standard, one.country);
    // On a Bt878 the modules of the MK3 generation are set up with the change to TV.
    ZELK_TVInit();
    ZELK_put_TVFormat(one.standard, one.country);
    std::vector<std::uint32_t> expected;
    for (const double carrier : one.carriers) {
      expected.push_back(static_cast<std::uint32_t>(carrier / 250 + 0.5) * 250);
    }
    EXPECT_THAT(ScanTv(), ElementsAreArray(expected));
    for (const std::uint32_t type : one.fmTypes) {
      SCOPED_TRACE(type);
      virtual_cards::Air air;
      air.fm = SampleStations(type == 5 ? 76000 : 87500, 108000);
      PlugFm(one.setUp, {.tunerType = type}, air);
      ExpectFmScanFinds(air.fm);
    }
  }
}

}  // namespace
}  // namespace zelk::test
