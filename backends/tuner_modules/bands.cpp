#include "backends/tuner_modules/bands.h"

namespace zelk {
namespace {

constexpr TvBandRow kCommonRows[] = {
    {{0, 1, 2, 3, 6, 7, 8, 9, 25, 26, 27, 28, 33, 34}, {48250, 855250}},
    {{4, 5, 12, 13, 29, 30, 31, 32, 44}, {55250, 801250}},
    {{10, 11, 16, 17, 24}, {91250, 765250}},
    {{14, 15, 20, 21}, {48250, 863250}},
    {{18, 19}, {49250, 863250}},
};
constexpr TvBand kOtherTvBand = {52250, 802000};

}  // namespace

TvBand TvBandOf(std::span<const TvBandRow> familyRows, std::uint32_t tunerType) {
  for (const std::span<const TvBandRow> rows :
       {familyRows, std::span<const TvBandRow>(kCommonRows)}) {
    for (const TvBandRow& row : rows) {
      if (row.tunerTypes.Has(tunerType)) return row.band;
    }
  }
  return kOtherTvBand;
}

}  // namespace zelk
