// The FM band scan. It is not part of this build yet: a card answers that it cannot.
#include "ZElkAPI.h"

HRESULT ZELK_CALL ZELK_FMAllFreqScan(ZELK_ScanCallback, uint32_t, uint32_t, uint32_t, uint32_t,
                                     uint32_t) {
  return ZELK_E_FAIL;
}
