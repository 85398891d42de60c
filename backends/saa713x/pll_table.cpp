#include "backends/saa713x/pll_table.h"

#include "backends/tuner_modules/tuner_set.h"
#include "platform/dshow.h"

namespace zelk {
namespace {

constexpr std::uint32_t kAny = 0;

struct PllRow {
  TunerSet tunerTypes;
  std::uint32_t ifKHz;
  std::uint32_t midFromKHz;   // a lower frequency takes the low band
  std::uint32_t highFromKHz;  // this one and above take the high band
  std::uint16_t low;
  std::uint16_t mid;
  std::uint16_t high;
  std::uint32_t standard = kAny;   // the row holds for this standard alone
  std::uint32_t onlyAtKHz = kAny;  // the row holds for this frequency alone
  std::uint16_t dividerBits = 0;   // set in every divider
};

// The first row that fits is used, so that a row for a special case stands above its general one.
constexpr PllRow kPllRows[] = {
    {{0, 1, 6, 7, 8, 9, 26, 28, 33, 34}, 38900, 170000, 450000, 0xCEA0, 0xCE90, 0xCE30},
    {{2, 3}, 38900, 170000, 450000, 0x8EA3, 0x8E93, 0x8E33, AnalogVideo_SECAM_L},
    {{2, 3}, 38900, 170000, 450000, 0x8EA1, 0x8E91, 0x8E31},
    {{4, 5, 31, 32}, 45750, 160000, 454000, 0x8EA0, 0x8E90, 0x8E30},
    {{10, 11}, 58750, 160000, 454000, 0x8EA0, 0x8E90, 0x8E30},
    {{12, 13}, 45750, 160000, 442000, 0x8641, 0x8642, 0x8644},
    {{14, 15}, 38900, 158000, 442000, 0x8621, 0x8622, 0x8624},
    {{16, 17}, 58750, 160000, 442000, 0x8641, 0x8642, 0x8644},
    {{18, 19}, 38900, 158000, 442000, 0x8641, 0x8642, 0x8644},
    {{20, 21}, 33950, 158000, 422000, 0xCE01, 0xCE02, 0xCE04, AnalogVideo_SECAM_L1},
    {{20, 21}, 38900, 158000, 422000, 0xCE01, 0xCE02, 0xCE04},
    {{24}, 45750, 170000, 468000, 0xCE01, 0xCE02, 0xCE08},
    {{25, 27}, 38900, 170000, 450000, 0xCE01, 0xCE02, 0xCE08},
    {{29, 30}, 45750, 170000, 450000, 0x8E01, 0x8E02, 0x8E08, kAny, kAny, 0x0002},
    {{35}, 45750, 133250, 367250, 0xCE01, 0xCE02, 0xCE08},
    {{36}, 58750, 171250, 409250, 0xCE01, 0xCE02, 0xCE08},
    {{37}, 58750, 170000, 468000, 0xCE01, 0xCE02, 0xCE08},
    {{42, 44}, 45750, 163250, 463250, 0xCE01, 0xCE02, 0xCE04},
    {{43, 45}, 38900, 161250, 471250, 0xCE01, 0xCE02, 0xCE04},
    {{46}, 45750, 127250, 361250, 0xCE01, 0xCE02, 0xCE08, kAny, 83250},
    {{46}, 45750, 127250, 361250, 0xCE11, 0xCE02, 0xCE08},
    {{47}, 38900, 140250, 423250, 0xCE01, 0xCE02, 0xCE08},
    {{48}, 58750, 165250, 373250, 0xCE01, 0xCE02, 0xCE08},
};

bool Fits(const PllRow& row, std::uint32_t tunerType, std::uint32_t frequencyKHz,
          std::uint32_t videoStandard) {
  return row.tunerTypes.Has(tunerType) && (row.standard == kAny || row.standard == videoStandard) &&
         (row.onlyAtKHz == kAny || row.onlyAtKHz == frequencyKHz);
}

}  // namespace

std::optional<PllSetting> PllFor(std::uint32_t tunerType, std::uint32_t frequencyKHz,
                                 std::uint32_t videoStandard) {
  for (const PllRow& row : kPllRows) {
    if (!Fits(row, tunerType, frequencyKHz, videoStandard)) continue;
    // Sixteenths of a megahertz are the 62.5 kHz steps of the divider.
    const std::uint32_t divider = (frequencyKHz + row.ifKHz) * 16 / 1000;
    const std::uint16_t control = frequencyKHz < row.midFromKHz     ? row.low
                                  : frequencyKHz >= row.highFromKHz ? row.high
                                                                    : row.mid;
    return PllSetting{static_cast<std::uint16_t>(divider | row.dividerBits), control};
  }
  return std::nullopt;
}

}  // namespace zelk
