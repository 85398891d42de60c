/* A part of an application: the list of what can be received. It knows nothing of virtual cards. */
#ifndef STATION_LIST_H
#define STATION_LIST_H

#include <stdint.h>

enum { kMostStations = 100 };

typedef struct StationList {
  int count;
  uint32_t frequencyKHz[kMostStations];
} StationList;

/* Scans the TV band of the card that ZELK_HWInit was given, for stations of a video standard (one
 * bit of AnalogVideoStandard) and a country (its dialling code). Returns 0, or the library's result
 * code when the card cannot be scanned; the list is empty then. */
int32_t FindStations(StationList* list, uint32_t standard, uint32_t country);

#endif
