// The figures in which the card driver reports a silicon tuner's FM station.
#pragma once

#include <cstdint>

#include "virtual_cards/chips/reception.h"

namespace zelk::virtual_cards {

// Smaller is stronger: 250000 for 80 dB(µV), 1198000 for the weakest station, 2000000 for noise.
std::uint32_t FmLevelFigure(const FmReception& reception);
// Tuned frequency minus station: -2 to 2, nominally in steps of 50 kHz. 2 also without a station.
std::int32_t FmAfcStep(const FmReception& reception);
bool FmStereoIndicated(const FmReception& reception);

}  // namespace zelk::virtual_cards
