// The PLL settings of this family's tuner modules.
#pragma once

#include "backends/tuner_modules/tv_pll.h"

namespace zelk {

// TvPllFor with the rows of this family.
std::optional<PllSetting> PllFor(std::uint32_t tunerType, std::uint32_t frequencyKHz,
                                 std::uint32_t videoStandard);

}  // namespace zelk
