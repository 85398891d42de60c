// Scans, and what an application does in the middle of them.
#pragma once

#include <cstdint>
#include <functional>

#include "ZElkAPI.h"

namespace zelk::record {

// Writes the event down, does what is to be done at it, and stops a scan that has gone on for long
// enough.
void ZELK_CALL OnScanEvent(std::uint32_t event, std::uint32_t value, std::uint32_t extra);

// The next scan is stopped after so many events; 0 lets it end by itself.
void LimitScan(std::uint32_t events);
void ScanTv(std::uint32_t events = 0, std::uint32_t command = ZELK_SCAN_START);
void ScanFm(std::uint32_t direction, std::uint32_t reference, std::uint32_t low = 0,
            std::uint32_t high = 0, std::uint32_t events = 0);

// Both scans over the whole bands, in all directions and modes.
void WholeScans();

// What is to be done at each event, behind its record.
extern std::function<void(std::uint32_t event)> atEvent;
// Done by a window procedure, when the thread's messages are next looked at.
void PostMessageOfMine(std::function<void()> act);

}  // namespace zelk::record
