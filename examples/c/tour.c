/* A tour of the library in plain C, on a virtual card: what it finds it prints, and checks.
 *
 *     tour [CARD]      tour saa7135,tuner=14
 *
 * The exit code is 0 when everything was as expected. The checks are about what could go wrong
 * between a program and the library: records laid out alike, a double behind a pointer, sixteen
 * words by value, a callback that is called back. */
#include <inttypes.h>
#include <stdio.h>
#include <string.h>

#include "ZElkVirtual.h"

static int mistakes = 0;

static void Check(int isTrue, const char* what) {
  printf("  %s: %s\n", isTrue ? "ok" : "NOT OK", what);
  if (!isTrue) ++mistakes;
}

/* What is on the air below 230 MHz in the place that cards are in by default. */
static const uint32_t kChannels[] = {55250, 175250, 189250, 203250, 210250, 224250};
enum { kChannelCount = sizeof kChannels / sizeof kChannels[0], kScanEndKHz = 230000 };

static void ShowBoard(void) {
  char tuner[32];
  ZELK_HWInfo info;
  memset(&info, 0xFF, sizeof info);
  Check(ZELK_GetHWInfo(&info) == ZELK_S_OK, "the board's record");
  Check(ZELK_GetTunerName(tuner, sizeof tuner) == ZELK_S_OK, "the tuner's name");
  printf("%s, TV %" PRIu32 " to %" PRIu32 " kHz, FM %" PRIu32 " to %" PRIu32 " kHz\n", tuner,
         info.TvLowKHz, info.TvHighKHz, info.FmLowKHz, info.FmHighKHz);
  Check(info.TvLowKHz >= 40000 && info.TvLowKHz < info.TvHighKHz && info.TvHighKHz <= 870000,
        "a TV band");
  Check(info.FmLowKHz >= 62000 && info.FmLowKHz < info.FmHighKHz && info.FmHighKHz <= 108500,
        "an FM band");
  Check(info.BoardCode9 != 0xFFFFFFFF, "the record's last field is written");
}

/* The figures of the default card's tuner are known exactly. Others measure otherwise or, as the
 * ALPS modules, leave a figure alone that they do not measure. */
static void ShowSignal(uint32_t frequencyKHz, uint32_t expectedStrength, double expectedKHz,
                       int exact) {
  uint32_t present = 99;
  uint32_t strength = 99;
  double afcOffsetKHz = -12345;
  Check(ZELK_SetFreq(frequencyKHz, &present) == ZELK_S_OK && present == 1, "a channel is tuned");
  Check(ZELK_IsSignalPresent(&present, &strength, &afcOffsetKHz) == ZELK_S_OK, "its signal");
  printf("%" PRIu32 " kHz: present %" PRIu32 ", strength %" PRIu32 ", AFC %+.1f kHz\n",
         frequencyKHz, present, strength, afcOffsetKHz);
  Check(present == 1, "it is present");
  if (exact) Check(strength == expectedStrength, "the strength, behind a pointer");
  if (exact) Check(afcOffsetKHz == expectedKHz, "the offset, a double behind a pointer");
}

/* Sixteen words by value. Words 3, 4, 8 and 10 to 12 are not settings; what stands there must not
 * push the others out of place. */
static void ExchangeEncoderSettings(void) {
  const ZELK_MpegParams wanted = {
      .StreamType = 4,
      .Width = 720,
      .Height = 576,
      .Reserved3 = 103,
      .Reserved4 = 104,
      .BitRate = 6000,
      .MaxBitRate = 8000,
      .VariableBitRate = 1,
      .Reserved8 = 108,
      .Option9 = 15,
      .Option10 = 110,
      .Reserved11 = 111,
      .Reserved12 = 112,
      .AudioSampleRate = 32000,
      .AudioBitRate = 224,
      .AudioMode = 2,
  };
  ZELK_MpegParams found;
  const HRESULT set = ZELK_SetMPEGParam(wanted);
  memset(&found, 0, sizeof found);
  if (set == ZELK_E_NOTIMPL) {
    printf("This card has no MPEG encoder: the settings' way there and back is not checked.\n");
    Check(ZELK_GetMPEGParam(&found) == ZELK_E_NOTIMPL, "reading agrees that there is none");
    return;
  }
  Check(set == ZELK_S_OK, "the encoder takes sixteen words");
  Check(ZELK_GetMPEGParam(&found) == ZELK_S_OK, "and gives them back");
  printf("MPEG: %" PRIu32 " x %" PRIu32 ", %" PRIu32 " to %" PRIu32 " kbit/s, sound %" PRIu32
         " Hz, %" PRIu32 " kbit/s\n",
         found.Width, found.Height, found.BitRate, found.MaxBitRate, found.AudioSampleRate,
         found.AudioBitRate);
  Check(found.StreamType == 4 && found.Width == 720 && found.Height == 576, "stream and picture");
  Check(found.BitRate == 6000 && found.MaxBitRate == 8000 && found.VariableBitRate == 1,
        "bit rates");
  Check(found.Option9 == 15, "option");
  Check(found.AudioSampleRate == 32000 && found.AudioBitRate == 224 && found.AudioMode == 2,
        "sound, the last three words");
}

/* A callback has no argument of its own: what it knows stands beside it. */
static uint32_t found[kChannelCount + 1];
static int foundCount = 0;
static int started = 0;
static int ended = 0;

static void ZELK_CALL OnEvent(uint32_t event, uint32_t value, uint32_t reserved) {
  (void)reserved;
  switch (event) {
    case ZELK_EVENT_STARTED:
      ++started;
      break;
    case ZELK_EVENT_FOUND:
      printf("  %.3f MHz\n", value / 1000.0);
      if (foundCount <= kChannelCount) found[foundCount++] = value;
      break;
    case ZELK_EVENT_POSITION:
      if (value > kScanEndKHz) ZELK_AllFreqScan(NULL, ZELK_SCAN_STOP);
      break;
    case ZELK_EVENT_ENDED:
      ++ended;
      break;
  }
}

static void Scan(void) {
  printf("Channels below %d MHz:\n", kScanEndKHz / 1000);
  Check(ZELK_AllFreqScan(OnEvent, ZELK_SCAN_START) == ZELK_S_FALSE, "the scan ends");
  Check(started == 1 && ended == 1, "it says when it starts and ends");
  Check(foundCount == kChannelCount && memcmp(found, kChannels, sizeof kChannels) == 0,
        "it finds the channels that are on the air");
}

int main(int argc, char** argv) {
  const char* const description = argc > 1 ? argv[1] : "saa7134";
  const int exact = argc <= 1;
  ZELKV_Card* card;

  ZELKV_UseVirtualClock(); /* where there is none, the waits are real and the tour takes longer */
  card = ZELKV_PlugIn(description, NULL);
  if (!card) {
    fprintf(stderr, "tour: %s\n", ZELKV_LastError());
    return 1;
  }
  printf("%s\n", ZELKV_FriendlyName(card));
  Check(ZELK_HWInit(ZELKV_CaptureFilter(card), ZELKV_FriendlyName(card), ZELKV_TunerFilter(card),
                    0) >= 0,
        "the library accepts the card");
  ShowBoard();
  Check(ZELK_TVInit() == ZELK_S_OK, "TV mode");
  Check(ZELK_put_TVFormat(0x10 /* PAL B */, 49 /* Germany */) == ZELK_S_OK, "PAL B, Germany");
  ShowSignal(175250, 5, 0, exact);
  ShowSignal(189250, 3, 62.5, exact);
  ExchangeEncoderSettings();
  Scan();

  ZELK_Free();
  Check(ZELKV_LiveReferences(card) == 0, "the library has let go of the card");
  ZELKV_Unplug(card);
  printf(mistakes ? "%d checks failed\n" : "Everything as expected\n", mistakes);
  return mistakes ? 1 : 0;
}
