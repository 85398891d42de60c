/* Tests the station list against virtual cards. The exit code is 0 when all tests pass. */
#include <stdio.h>
#include <string.h>

#include "ZElkVirtual.h"
#include "station_list.h"

static int failures = 0;

#define EXPECT(condition) \
  ((condition) ? (void)0  \
               : (void)(++failures, fprintf(stderr, "line %d: %s\n", __LINE__, #condition)))

static ZELKV_Card* Plug(const char* description, const char* air) {
  ZELKV_Card* card = ZELKV_PlugIn(description, air);
  if (!card) fprintf(stderr, "%s\n", ZELKV_LastError());
  EXPECT(card != NULL);
  EXPECT(ZELK_HWInit(ZELKV_CaptureFilter(card), ZELKV_FriendlyName(card), ZELKV_TunerFilter(card),
                     0) >= 0);
  return card;
}

static void Unplug(ZELKV_Card* card) {
  ZELK_Free();
  EXPECT(ZELKV_LiveReferences(card) == 0); /* the application keeps no reference to a filter */
  ZELKV_Unplug(card);
}

static int32_t Find(StationList* list) {
  return FindStations(list, 0x10 /* PAL B */, 49 /* Germany */);
}

/* A place of our own: what is found must be exactly what is on the air. */
static void FindsWhatIsOnTheAir(void) {
  const char* const kPlace =
      "{\"place\": \"Hill\", \"raster\": \"pal-bg\", \"fm\": [], \"tv\": ["
      "{\"channel\": \"E5\", \"station\": \"One\", \"level_dbuv\": 70},"
      "{\"channel\": \"E7\", \"station\": \"Too weak\", \"level_dbuv\": 30},"
      "{\"channel\": \"K21\", \"station\": \"Two\", \"level_dbuv\": 60}]}";
  FILE* const file = fopen("hill.json", "w");
  StationList list;
  ZELKV_Card* card;
  EXPECT(file != NULL);
  if (!file) return;
  fputs(kPlace, file);
  fclose(file);

  card = Plug("saa7134", "hill.json");
  EXPECT(Find(&list) == 0);
  EXPECT(list.count == 2);
  EXPECT(list.frequencyKHz[0] == 175250 && list.frequencyKHz[1] == 471250);
  Unplug(card);
  remove("hill.json");
}

/* Cards differ: the same list must come out of every one. */
static void WorksWithEveryTuner(void) {
  static const char* const kCards[] = {"saa7134,tuner=1", "saa7134,tuner=14", "saa7135,tuner=40",
                                       "saa7130,tunerfilter=0"};
  size_t index;
  for (index = 0; index < sizeof kCards / sizeof kCards[0]; ++index) {
    StationList list;
    ZELKV_Card* const card = Plug(kCards[index], NULL);
    EXPECT(Find(&list) == 0);
    EXPECT(list.count == 20);
    Unplug(card);
  }
}

/* A card whose bus is broken: nothing is found, and nothing worse happens. */
static void SurvivesABrokenBus(void) {
  StationList list;
  ZELKV_Card* const card = Plug("saa7134", NULL);
  ZELKV_Refuse(card, "i2c", ZELK_E_FAIL); /* every transfer, there and back */
  EXPECT(Find(&list) == 0);
  EXPECT(list.count == 0);

  ZELKV_ClearRefusals(card);
  EXPECT(Find(&list) == 0);
  EXPECT(list.count == 20);
  Unplug(card);
}

static void SaysThatThereIsNoCard(void) {
  StationList list;
  EXPECT(Find(&list) == ZELK_E_FAIL);
}

/* What goes over the card's wires, as lines of text. */
static int tunings = 0;

static void ZELK_CALL OnLine(const char* line, void* context) {
  (void)context;
  if (strncmp(line, "i2c write C2", strlen("i2c write C2")) == 0) ++tunings;
}

static void TakesAsLongAsHardware(void) {
  StationList list;
  ZELKV_Card* const card = Plug("saa7134", NULL);
  const uint64_t before = ZELKV_ClockMilliseconds();
  ZELKV_Trace(card, OnLine, NULL);
  EXPECT(Find(&list) == 0);
  /* 2,828 probes of some 80 ms each: a person in front of a real card waits about four minutes. */
  EXPECT(tunings > 2800 && tunings < 2900);
  EXPECT(ZELKV_ClockMilliseconds() - before > 3 * 60 * 1000);
  Unplug(card);
}

int main(void) {
  ZELKV_UseVirtualClock();
  SaysThatThereIsNoCard();
  FindsWhatIsOnTheAir();
  WorksWithEveryTuner();
  SurvivesABrokenBus();
  TakesAsLongAsHardware();
  printf(failures ? "%d expectations failed\n" : "all tests passed\n", failures);
  return failures ? 1 : 0;
}
