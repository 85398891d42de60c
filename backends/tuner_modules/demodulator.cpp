#include "backends/tuner_modules/demodulator.h"

#include "backends/tuner_modules/tuner_set.h"

namespace zelk {
namespace {

struct TvModeRow {
  TunerSet tunerTypes;
  DemodulatorWords words;
};

constexpr TvModeRow kTvModes[] = {
    {{12, 13}, {0x0056, 0x3044}},
    {{16, 17}, {0x0056, 0x1040}},
    {{18, 19}, {0x0056, 0x7F4B}},
};

}  // namespace

const DemodulatorWords* DemodulatorWordsForTv(std::uint32_t tunerType) {
  for (const TvModeRow& row : kTvModes) {
    if (row.tunerTypes.Has(tunerType)) return &row.words;
  }
  return nullptr;
}

const DemodulatorWords* DemodulatorWordsForFormat(std::span<const FormatWords> formats,
                                                  std::uint32_t standard) {
  for (const FormatWords& row : formats) {
    if (IsOneOf(row.standards, standard)) return &row.words;
  }
  return nullptr;
}

}  // namespace zelk
