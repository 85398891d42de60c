#include "bench/record/flows.h"
#include "bench/record/recorder.h"

namespace zelk::record {

namespace {

std::uint32_t eventsLeft;  // 0: no limit

}  // namespace

std::function<void(std::uint32_t event)> atEvent;

void ZELK_CALL OnScanEvent(std::uint32_t event, std::uint32_t value, std::uint32_t extra) {
  recorder->Event(event, value, extra);
  if (atEvent) atEvent(event);
  if (eventsLeft > 0 && event != ZELK_EVENT_ENDED && --eventsLeft == 0) {
    ++eventsLeft;  // a scan around this one is stopped at its next event
    ZELK_CALLED(ZELK_AllFreqScan, OnScanEvent, ZELK_SCAN_STOP);
  }
}

void LimitScan(std::uint32_t events) { eventsLeft = events; }

void ScanTv(std::uint32_t events) {
  LimitScan(events);
  ZELK_CALLED(ZELK_AllFreqScan, OnScanEvent, ZELK_SCAN_START);
}

void ScanFm(std::uint32_t direction, std::uint32_t reference, std::uint32_t low, std::uint32_t high,
            std::uint32_t events) {
  LimitScan(events);
  ZELK_CALLED(ZELK_FMAllFreqScan, OnScanEvent, ZELK_SCAN_START, direction, reference, low, high);
}

void WholeScans() {
  ZELK_CALLED(ZELK_TVInit);
  const auto [standard, country] = HomeOfTuner();
  ZELK_CALLED(ZELK_put_TVFormat, standard, country);
  ScanTv();
  ScanFm(0, 0, 0, 0, 30);  // in the wrong mode
  ZELK_CALLED(ZELK_FMInit);
  ZELK_HWInfo info = {};
  ZELK_GetHWInfo(&info);
  const std::uint32_t low = info.FmLowKHz;
  ScanFm(0, 0);
  for (const std::uint32_t reference : {low + 1200, low + 9000}) {
    ScanFm(1, reference);
    ScanFm(2, reference, 0, 0, 300);
  }
  ScanFm(3, 0, 0, 0, 10);
  ScanFm(0, 0, low + 10000, low + 11500);
  ScanFm(0, 0, low + 1500, low + 1000);  // upside down
  ScanTv(30);                            // in the wrong mode
}

}  // namespace zelk::record
