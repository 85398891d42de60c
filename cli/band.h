// The two bands of a card, each with the library's functions for it.
#pragma once

#include <cstdint>

#include "ZElkAPI.h"

namespace zelk::cli {

struct Band {
  const char* name;
  HRESULT(ZELK_CALL* SetFreq)(std::uint32_t frequencyKHz, std::uint32_t* present);
  HRESULT(ZELK_CALL* IsSignalPresent)
  (std::uint32_t* present, std::uint32_t* strength, double* afcOffsetKHz);
  // Its ends in the board's record.
  std::uint32_t ZELK_HWInfo::*lowKHz;
  std::uint32_t ZELK_HWInfo::*highKHz;
};

inline constexpr Band kTvBand{"TV", ZELK_SetFreq, ZELK_IsSignalPresent, &ZELK_HWInfo::TvLowKHz,
                              &ZELK_HWInfo::TvHighKHz};
inline constexpr Band kFmBand{"FM", ZELK_FMSetFreq, ZELK_FMIsSignalPresent, &ZELK_HWInfo::FmLowKHz,
                              &ZELK_HWInfo::FmHighKHz};

}  // namespace zelk::cli
