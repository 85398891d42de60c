// The TV and FM bands that tuner modules cover.
#pragma once

#include <cstdint>
#include <span>

#include "backends/tuner_modules/tuner_set.h"

namespace zelk {

// Picture carriers, both limits included.
struct TvBand {
  std::uint32_t lowKHz;
  std::uint32_t highKHz;
};

struct TvBandRow {
  TunerSet tunerTypes;
  TvBand band;
};

// `familyRows` are the modules whose limits a card family draws in a way of its own.
TvBand TvBandOf(std::span<const TvBandRow> familyRows, std::uint32_t tunerType);

inline constexpr std::uint32_t kWesternFmLowKHz = 87500;
inline constexpr std::uint32_t kJapaneseFmLowKHz = 76000;
// Eastern Europe's lower band; stations begin at 65.8 MHz.
inline constexpr std::uint32_t kEasternFmLowKHz = 62000;
inline constexpr std::uint32_t kWesternFmHighKHz = 108000;

// Two modules were made for another part of the world: 5 for Japan, 19 for Eastern Europe.
constexpr std::uint32_t FmLowKHzOf(std::uint32_t tunerType) {
  return tunerType == 5 ? kJapaneseFmLowKHz : tunerType == 19 ? kEasternFmLowKHz : kWesternFmLowKHz;
}

}  // namespace zelk
