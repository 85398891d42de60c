// The clock of a process on the host platform.
#include "ZElkVirtual.h"
#include "platform/control.h"

int32_t ZELK_CALL ZELKV_UseVirtualClock(void) {
  zelk::host::UseVirtualClock();
  return zelk::host::ClockIsVirtual() ? 1 : 0;
}

void ZELK_CALL ZELKV_UseRealClock(void) { zelk::host::UseRealClock(); }

uint64_t ZELK_CALL ZELKV_ClockMilliseconds(void) { return zelk::host::ClockMilliseconds(); }
