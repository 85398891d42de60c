// The FM band scan.
#include "api/band_sweep.h"
#include "api/fm_strategies.h"
#include "common/log.h"
#include "platform/win32.h"

namespace zelk {
namespace {

constexpr char kLogFile[] = "FMAutoScan.log";
constexpr std::uint32_t kStepKHz = 50;
constexpr std::int32_t kMostStations = 99;
constexpr std::uint32_t kStereo = 1;

enum Direction : std::uint32_t { kSweep = 0, kSeekUp = 1, kSeekDown = 2 };

class FmProbes {
 public:
  FmProbes(std::uint32_t direction, FmStrategy& strategy)
      : direction_(direction), strategy_(strategy) {}

  AfterProbe operator()(BandSweep& sweep) {
    AskAny([&](auto& card) { card.SetFMFreq(sweep.frequency); });
    PumpMessages();

    ScanLine line;
    if (strategy_.FindsStation({sweep.frequency, candidate_, line})) {
      sweep.Report(ZELK_EVENT_FOUND, candidate_.frequency, candidate_.stereo ? 1 : 0);
      line.Append("   Lock=%d   AudioMode=%s", candidate_.frequency,
                  candidate_.stereo ? "Stereo" : "Mono");
      if (direction_ == kSeekUp || direction_ == kSeekDown) {
        library.ScanRunning = false;
        return AfterProbe::Leave;
      }
      ++sweep.found;
      sweep.frequency += 2 * kStepKHz;
    } else if (direction_ == kSweep || direction_ == kSeekUp) {
      sweep.frequency += kStepKHz;
    } else if (direction_ == kSeekDown) {
      // There is no lower end: past zero the frequency wraps and lies above the band.
      sweep.frequency -= kStepKHz;
    }
    AppendLogMessage(line.Text(), kLogFile);
    return AfterProbe::GoOn;
  }

 private:
  const std::uint32_t direction_;
  FmStrategy& strategy_;
  FmCandidate candidate_;
};

// The sweep itself, between the two events that frame it.
void Scan(std::uint32_t direction, BandSweep& sweep, std::uint32_t tunerType) {
  DeleteFileA(kLogFile);
  sweep.Report(ZELK_EVENT_STARTED, 0);
  FmStrategies strategies;
  RunSweep(sweep, FmProbes(direction, strategies.For(tunerType)));
}

}  // namespace
}  // namespace zelk

using namespace zelk;

HRESULT ZELK_CALL ZELK_FMAllFreqScan(ZELK_ScanCallback callback, uint32_t command,
                                     uint32_t direction, uint32_t referenceKHz, uint32_t bandLowKHz,
                                     uint32_t bandHighKHz) {
  if (!AskAny([](auto&) {})) return E_FAIL;
  if (command == ZELK_SCAN_START && library.ScanRunning) return S_OK;

  if (bandLowKHz == 0) {
    // A card that cannot say its limits has a band of one probe.
    ZELK_HWInfo info = {};
    AskAny([&](auto& card) { card.GetHWInfo(&info); });
    bandLowKHz = info.FmLowKHz;
    bandHighKHz = info.FmHighKHz;
  }
  std::uint32_t frequency = 87500;
  if (command == ZELK_SCAN_START) {
    frequency = bandLowKHz;
    library.ScanRunning = true;
  } else if (command == ZELK_SCAN_STOP && library.ScanRunning.exchange(false)) {
    return S_OK;
  }

  std::uint32_t audioMode = 0;
  std::uint32_t tunerType = 0;
  AskAny([&](auto& card) { card.GetFMAudioMode(&audioMode); });
  AskAny([](auto& card) { card.SetFMAudioMode(kStereo); });
  AskAny([&](auto& card) { card.GetTunerType(&tunerType); });
  if (direction == kSeekUp) frequency = referenceKHz + 2 * kStepKHz;
  if (direction == kSeekDown) frequency = referenceKHz - 2 * kStepKHz;
  library.FmScanCallback = callback;

  BandSweep sweep = {.frequency = frequency,
                     .low = bandLowKHz,
                     .high = bandHighKHz,
                     .foundLimit = kMostStations,
                     .reportsProgress = direction == kSweep,
                     .callback = library.FmScanCallback};
  if (library.ScanRunning) Scan(direction, sweep, tunerType);
  AskAny([&](auto& card) { card.SetFMAudioMode(audioMode); });
  sweep.Report(ZELK_EVENT_ENDED, 0);
  return S_OK;
}
