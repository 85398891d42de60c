#include "virtual_cards/chips/reception.h"

#include <cmath>

namespace zelk::virtual_cards {

Reception ReceiveAt(const Air& air, double tunedKHz) {
  const TvCarrier* carrier = air.NearestTv(tunedKHz, kAfcWindowKHz);
  if (carrier && carrier->levelDbuV < kSensitivityDbuV) carrier = nullptr;
  return {tunedKHz, carrier};
}

FmReception FmReception::Within(double windowKHz) const {
  return {tunedKHz, std::abs(OffsetKHz()) <= windowKHz ? station : nullptr};
}

FmReception ReceiveFmAt(const Air& air, double tunedKHz) {
  const FmStation* station = air.NearestFm(tunedKHz, kFmReachKHz);
  if (station && station->levelDbuV < kSensitivityDbuV) station = nullptr;
  return {tunedKHz, station};
}

}  // namespace zelk::virtual_cards
