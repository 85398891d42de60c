#include "station_list.h"

#include <stddef.h>

#include "ZElkAPI.h"

/* The library's callback has no argument for its owner's own use. */
static StationList* target;

static void ZELK_CALL OnEvent(uint32_t event, uint32_t value, uint32_t reserved) {
  (void)reserved;
  if (event != ZELK_EVENT_FOUND) return;
  target->frequencyKHz[target->count++] = value;
  if (target->count == kMostStations) ZELK_AllFreqScan(NULL, ZELK_SCAN_STOP);
}

int32_t FindStations(StationList* list, uint32_t standard, uint32_t country) {
  HRESULT result = ZELK_TVInit();
  list->count = 0;
  if (result < 0) return result;
  /* Without its standard a card that was set up for another hears nothing. */
  result = ZELK_put_TVFormat(standard, country);
  if (result < 0) return result;
  target = list;
  result = ZELK_AllFreqScan(OnEvent, ZELK_SCAN_START);
  return result < 0 ? result : 0; /* a scan that has ended answers 1 */
}
