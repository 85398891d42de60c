// What the TV scan and the FM scan have in common: the loop over the band with its events, its
// limits, and the way it is stopped.
#pragma once

#include <cstdint>

#include "api/dispatch.h"

namespace zelk {

// A sweep on its way through a band. Probes move `frequency` and count what they find.
struct BandSweep {
  std::uint32_t frequency;  // of the next probe, kHz
  std::uint32_t low;
  std::uint32_t high;
  std::int32_t found = 1;  // found so far plus one
  std::int32_t foundLimit;
  bool reportsProgress = true;
  // By reference: ZELK_Free silences the FM scan by clearing its callback.
  const ZELK_ScanCallback& callback;

  void Report(std::uint32_t event, std::uint32_t value, std::uint32_t extra = 0) const {
    if (callback) callback(event, value, extra);
  }
};

// The part of the band that lies below `frequency`, in per cent, truncated toward zero. Above 100
// past the end of the band, negative (two's complement) in a band whose ends are exchanged.
std::uint32_t ProgressPercent(const BandSweep& sweep);

// Hands the calling thread's window messages to their windows. An application's window procedure
// may call anything from here, ZELK_Free included.
void PumpMessages();

enum class AfterProbe { GoOn, Leave };

// Runs `probe` along the band until somebody clears ScanRunning, the band ends, enough was found,
// or the probe says to leave at once.
template <class Probe>
void RunSweep(BandSweep& sweep, Probe&& probe) {
  while (library.ScanRunning) {
    if (probe(sweep) == AfterProbe::Leave) return;
    if (sweep.found > sweep.foundLimit || sweep.frequency >= sweep.high) {
      library.ScanRunning = false;
    }
    if (sweep.reportsProgress) sweep.Report(ZELK_EVENT_PROGRESS, ProgressPercent(sweep));
    sweep.Report(ZELK_EVENT_POSITION, sweep.frequency);
  }
}

}  // namespace zelk
