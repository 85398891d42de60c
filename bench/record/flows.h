// What is done with the plugged card.
#pragma once

#include <cstdint>
#include <functional>

#include "ZElkAPI.h"
#include "bench/record/cards.h"

namespace zelk::record {

// Every export but HWInit, Free and the start of a scan, with its places and without.
void EveryExport();
// A whole life: initialised, TV, radio, freed.
void WholeFlow();
// The same in fewer steps, with short scans. It takes the same way whatever the card answers.
void ShortFlow();
// Initialised, asked what it is, tuned once in each mode.
void BoardFlow();
// Every standard in every country that has rules of its own.
void EveryFormat();
// Both scans over the whole bands, in all directions and modes.
void WholeScans();
// Both scans, each time with one thing done at one moment: at an event, or by a window procedure
// while a probe looks at the thread's messages.
void InterruptedScans(const SetUp& setUp);
// What lies around a card: settings, names, keys, old log files, a crowded air.
void Surroundings();

// Takes a scan's events down and stops a scan that has gone on for long enough.
void ZELK_CALL OnScanEvent(std::uint32_t event, std::uint32_t value, std::uint32_t extra);
// What else is to be done at each event.
extern std::function<void(std::uint32_t event)> atEvent;
// The next scan is stopped after so many events; 0 lets it end by itself.
void LimitScan(std::uint32_t events);
void ScanTv(std::uint32_t events = 0);
void ScanFm(std::uint32_t direction, std::uint32_t reference, std::uint32_t low = 0,
            std::uint32_t high = 0, std::uint32_t events = 0);

}  // namespace zelk::record
