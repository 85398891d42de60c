#include "virtual_cards/cards/saa713x/fm_readings.h"

#include <algorithm>
#include <cmath>

namespace zelk::virtual_cards {

namespace {

constexpr double kFigureOfNoise = 2000000;
constexpr double kFigureAt80Db = 250000;
constexpr double kFigurePerDb = 23700;

// The driver thinks in the 50 kHz that applications step by, but the tuner moves in 31.25 or, from
// 107.4 MHz on, in 62.5 kHz. A station counts as hit within the tuner's resolution on either side:
// the borders between the steps lie 62.5 kHz apart, so that no stride of the tuner skips one.
constexpr double kBorderDistanceKHz = 62.5;
constexpr int kFarthestStep = 2;

}  // namespace

std::uint32_t FmLevelFigure(const FmReception& reception) {
  const FmStation* station = reception.Centred();
  const double figure =
      station ? kFigureAt80Db + (80 - station->levelDbuV) * kFigurePerDb : kFigureOfNoise;
  return static_cast<std::uint32_t>(std::max(0.0, figure));
}

std::int32_t FmAfcStep(const FmReception& reception) {
  const FmReception followed = reception.Within(kFmAfcWindowKHz);
  if (!followed.station) return kFarthestStep;
  // A border belongs to the step above it.
  const double steps = std::floor(-followed.OffsetKHz() / kBorderDistanceKHz + 0.5);
  return std::clamp(static_cast<int>(steps), -kFarthestStep, kFarthestStep);
}

bool FmStereoIndicated(const FmReception& reception) {
  const FmStation* station = reception.Centred();
  return station && station->stereo;
}

}  // namespace zelk::virtual_cards
