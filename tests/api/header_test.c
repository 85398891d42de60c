/* The public header is C, and its records have the layout that applications compiled against it
 * expect. */
#include <stddef.h>

#include "ZElkAPI.h"

int HeaderFaults(void);

int HeaderFaults(void) {
  int faults = 0;
  faults += sizeof(ZELK_HWInfo) != 40;
  faults += offsetof(ZELK_HWInfo, TvHighKHz) != 32;
  faults += sizeof(ZELK_MpegParams) != 64;
  faults += offsetof(ZELK_MpegParams, AudioMode) != 60;
  faults += sizeof(HRESULT) != 4;
  faults += ZELK_E_FAIL >= 0;
  faults += ZELK_GetTunerName(0, 0) != ZELK_E_FAIL;
  return faults;
}
