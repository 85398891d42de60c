/* Tunes a channel of a virtual card and asks for the signal. */
#include <stdio.h>

#include "ZElkVirtual.h"

int main(void) {
  uint32_t present = 0;
  uint32_t strength = 0;
  double afcOffsetKHz = 0;
  ZELKV_Card* card;
  HRESULT result;

  ZELKV_UseVirtualClock(); /* waits take no time */
  card = ZELKV_PlugIn("saa7134,tuner=14", "western-europe-city");
  if (!card) {
    fprintf(stderr, "%s\n", ZELKV_LastError());
    return 1;
  }
  result =
      ZELK_HWInit(ZELKV_CaptureFilter(card), ZELKV_FriendlyName(card), ZELKV_TunerFilter(card), 0);
  if (result < 0) {
    fprintf(stderr, "the card was refused; the log file in this folder says why\n");
    return 1;
  }

  /* From here on the program is the same with a real card. */
  ZELK_TVInit();
  ZELK_put_TVFormat(0x10 /* PAL B */, 49 /* Germany */);
  ZELK_SetFreq(175250, NULL);
  ZELK_IsSignalPresent(&present, &strength, &afcOffsetKHz);
  printf("175.250 MHz: %s, strength %u, %+.1f kHz beside the carrier\n",
         present ? "a signal" : "nothing", (unsigned)strength, afcOffsetKHz);

  ZELK_Free();        /* the library lets go of the card */
  ZELKV_Unplug(card); /* then the card may go */
  return 0;
}
