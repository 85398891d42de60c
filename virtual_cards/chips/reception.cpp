#include "virtual_cards/chips/reception.h"

namespace zelk::virtual_cards {

Reception ReceiveAt(const Air& air, double tunedKHz) {
  const TvCarrier* carrier = air.NearestTv(tunedKHz, kAfcWindowKHz);
  if (carrier && carrier->levelDbuV < kSensitivityDbuV) carrier = nullptr;
  return {tunedKHz, carrier};
}

}  // namespace zelk::virtual_cards
