/* Prints the channels that a card receives, here a virtual one. */
#include <stdio.h>

#include "ZElkVirtual.h"

static void ZELK_CALL OnEvent(uint32_t event, uint32_t value, uint32_t reserved) {
  (void)reserved;
  if (event == ZELK_EVENT_FOUND) printf("%u kHz\n", (unsigned)value);
}

static void Scan(struct IUnknown* captureFilter, const char* friendlyName,
                 struct IUnknown* tunerFilter) {
  if (ZELK_HWInit(captureFilter, friendlyName, tunerFilter, 0) < 0) return; /* the log says why */
  ZELK_TVInit();
  ZELK_put_TVFormat(0x10 /* PAL B */, 49 /* dialling code */);
  ZELK_AllFreqScan(OnEvent, ZELK_SCAN_START);
  ZELK_Free();
}

int main(void) {
  ZELKV_Card* const card = ZELKV_PlugIn("saa7134", "western-europe-city");
  if (!card) return 1;
  ZELKV_UseVirtualClock(); /* four minutes of waiting take none */
  Scan(ZELKV_CaptureFilter(card), ZELKV_FriendlyName(card), ZELKV_TunerFilter(card));
  ZELKV_Unplug(card);
  return 0;
}
