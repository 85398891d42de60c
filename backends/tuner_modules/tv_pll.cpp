#include "backends/tuner_modules/tv_pll.h"

#include "platform/dshow.h"

namespace zelk {
namespace {

// The first row that fits is used, so that a row for a special case stands above its general one.
constexpr TvPllRow kCommonRows[] = {
    {{0, 1, 6, 7, 8, 9, 26, 28, 33, 34}, 38900, 170000, 450000, 0xCEA0, 0xCE90, 0xCE30},
    {{2, 3}, 38900, 170000, 450000, 0x8EA3, 0x8E93, 0x8E33, AnalogVideo_SECAM_L},
    {{2, 3}, 38900, 170000, 450000, 0x8EA1, 0x8E91, 0x8E31},
    {{4, 5, 31, 32}, 45750, 160000, 454000, 0x8EA0, 0x8E90, 0x8E30},
    {{10, 11}, 58750, 160000, 454000, 0x8EA0, 0x8E90, 0x8E30},
    {{12, 13}, 45750, 160000, 442000, 0x8641, 0x8642, 0x8644},
    {{14, 15}, 38900, 158000, 442000, 0x8621, 0x8622, 0x8624},
    {{16, 17}, 58750, 160000, 442000, 0x8641, 0x8642, 0x8644},
    {{20, 21}, 33950, 158000, 422000, 0xCE01, 0xCE02, 0xCE04, AnalogVideo_SECAM_L1},
    {{20, 21}, 38900, 158000, 422000, 0xCE01, 0xCE02, 0xCE04},
    {{24}, 45750, 170000, 468000, 0xCE01, 0xCE02, 0xCE08},
    {{25, 27}, 38900, 170000, 450000, 0xCE01, 0xCE02, 0xCE08},
    {{29, 30}, 45750, 170000, 450000, 0x8E01, 0x8E02, 0x8E08, kAnyPllCase, kAnyPllCase, 0x0002},
};

struct FifthByteRow {
  TunerSet tunerTypes;
  std::uint8_t fifthByte;
};

constexpr FifthByteRow kFifthBytes[] = {
    {{12, 13, 14, 15}, 0xA0},
    {{16, 17, 18, 19}, 0xB0},
};

bool Fits(const TvPllRow& row, std::uint32_t tunerType, std::uint32_t frequencyKHz,
          std::uint32_t videoStandard) {
  return row.tunerTypes.Has(tunerType) &&
         (row.standard == kAnyPllCase || row.standard == videoStandard) &&
         (row.onlyAtKHz == kAnyPllCase || row.onlyAtKHz == frequencyKHz);
}

}  // namespace

std::optional<PllSetting> TvPllFor(std::span<const TvPllRow> familyRows, std::uint32_t tunerType,
                                   std::uint32_t frequencyKHz, std::uint32_t videoStandard) {
  for (const std::span<const TvPllRow> rows :
       {familyRows, std::span<const TvPllRow>(kCommonRows)}) {
    for (const TvPllRow& row : rows) {
      if (!Fits(row, tunerType, frequencyKHz, videoStandard)) continue;
      // Sixteenths of a megahertz are the 62.5 kHz steps of the divider.
      const std::uint32_t divider = (frequencyKHz + row.ifKHz) * 16 / 1000;
      const std::uint16_t control = frequencyKHz < row.midFromKHz     ? row.low
                                    : frequencyKHz >= row.highFromKHz ? row.high
                                                                      : row.mid;
      return PllSetting{static_cast<std::uint16_t>(divider | row.dividerBits), control};
    }
  }
  return std::nullopt;
}

std::optional<std::uint8_t> TvPllFifthByte(std::uint32_t tunerType) {
  for (const FifthByteRow& row : kFifthBytes) {
    if (row.tunerTypes.Has(tunerType)) return row.fifthByte;
  }
  return std::nullopt;
}

}  // namespace zelk
