#include "backends/tuner_modules/fm_pll.h"

#include <algorithm>
#include <iterator>

namespace zelk {
namespace {

using enum FmSetUp::Target;

constexpr FmSetUp kSetUps[] = {
    {{1, 3, 5, 7, 9, 11, 26, 28, 32, 34}, {}, 0, 0, Pll, 0x085E, 0x8EA0},
    {{13}, {0x0C, 0x3C, 0x86, 0x41, 0xA0}, 5, 0, Demodulator, 0x004E, 0x9074},
    {{15}, {0x0B, 0xCE, 0x86, 0x21, 0xA0}, 5, 80, Demodulator, 0x004E, 0xD077},
    {{19}, {}, 0, 0, Demodulator, 0x004E, 0xDF5C},
    {{21}, {0x0B, 0xCE, 0xCE, 0x01}, 4, 80, Demodulator, 0x005A, 0x9020},
};

// N = (frequency * factor + IF) / step.
struct PllRow {
  TunerSet tunerTypes;
  std::uint32_t factor;
  std::uint32_t ifInSteps;
  std::uint32_t step;
  // Control, band and further bytes.
  std::uint8_t fixedBytes[3];
  std::uint32_t fixedByteCount;
};

constexpr PllRow kRows[] = {
    {{13, 15}, 2, 21400, 100, {0x80, 0x19, 0xA0}, 3},
    {{19}, 2, 66600, 100, {0x80, 0x19, 0xB0}, 3},
    {{21}, 2, 21400, 100, {0x88, 0x09}, 2},
    {{30}, 1, 41250, 50, {}, 0},
};
// 50 kHz steps and an IF of 10.7 MHz.
constexpr PllRow kOtherModules = {{}, 2, 21400, 100, {}, 0};

}  // namespace

const FmSetUp* FmSetUpFor(std::uint32_t tunerType) {
  for (const FmSetUp& row : kSetUps) {
    if (row.tunerTypes.Has(tunerType)) return &row;
  }
  return nullptr;
}

FmPll FmPllFor(std::uint32_t tunerType, std::uint32_t frequencyKHz) {
  const auto* const found =
      std::find_if(std::begin(kRows), std::end(kRows),
                   [&](const PllRow& row) { return row.tunerTypes.Has(tunerType); });
  const PllRow& row = found != std::end(kRows) ? *found : kOtherModules;
  const auto divider =
      static_cast<std::uint16_t>((frequencyKHz * row.factor + row.ifInSteps) / row.step);
  FmPll pll = {divider, {}, 0};
  if (row.fixedByteCount) {
    pll.bytes[0] = static_cast<std::uint8_t>(divider >> 8);
    pll.bytes[1] = static_cast<std::uint8_t>(divider);
    std::copy_n(row.fixedBytes, row.fixedByteCount, pll.bytes + 2);
    pll.byteCount = 2 + row.fixedByteCount;
  }
  return pll;
}

}  // namespace zelk
