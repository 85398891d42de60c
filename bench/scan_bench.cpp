// How long scans of the TV and FM bands take, against the waits that the hardware demands.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "ZElkAPI.h"
#include "platform/control.h"
#include "virtual_cards/cards/virtual_card.h"

namespace {

using zelk::virtual_cards::Air;

// A card in TV or FM mode, initialised through the exports.
class LiveCard {
 public:
  LiveCard(const Air& air, HRESULT(ZELK_CALL* enterMode)(), const char* description = "saa7134")
      : card_(zelk::virtual_cards::CreateCard(description, air)) {
    const auto capture = card_->CaptureFilter();
    const auto tuner = card_->TunerFilter();
    if (ZELK_HWInit(capture.Get(), card_->FriendlyName().c_str(), tuner.Get(), 0) != ZELK_S_OK ||
        enterMode() != ZELK_S_OK) {
      throw std::runtime_error("the virtual card was refused");
    }
  }
  ~LiveCard() { ZELK_Free(); }

 private:
  std::unique_ptr<zelk::virtual_cards::VirtualCard> card_;
};

double Seconds(std::chrono::steady_clock::duration duration) {
  return std::chrono::duration<double>(duration).count();
}

std::uint32_t probes;
std::uint32_t found;
std::uint32_t stopAfterProbes;

void ZELK_CALL Count(uint32_t event, uint32_t, uint32_t) {
  if (event == ZELK_EVENT_FOUND) ++found;
  if (event != ZELK_EVENT_POSITION) return;
  if (++probes == stopAfterProbes) ZELK_AllFreqScan(Count, ZELK_SCAN_STOP);
}

void ScanTv() { ZELK_AllFreqScan(Count, ZELK_SCAN_START); }
void ScanFm() { ZELK_FMAllFreqScan(Count, ZELK_SCAN_START, 0, 0, 87500, 108000); }

// A whole band on the virtual clock. `times_faster` is the simulated waiting time over the time
// that the scan took.
void OnVirtualClock(benchmark::State& state, void (*scan)()) {
  stopAfterProbes = 0;
  double waited = 0;
  double taken = 0;
  for (auto _ : state) {
    probes = found = 0;
    const std::uint64_t before = zelk::host::SleptMilliseconds();
    const auto start = std::chrono::steady_clock::now();
    scan();
    taken += Seconds(std::chrono::steady_clock::now() - start);
    waited += static_cast<double>(zelk::host::SleptMilliseconds() - before) / 1000;
  }
  state.counters["probes"] = probes;
  state.counters["found"] = found;
  state.counters["waits_simulated_s"] = waited / static_cast<double>(state.iterations());
  state.counters["times_faster"] = waited / taken;
}

Air DefaultAir() { return zelk::virtual_cards::LoadAir(zelk::virtual_cards::kDefaultPlace); }

void TvBand(benchmark::State& state, const Air& air) {
  zelk::host::UseVirtualClock();
  const LiveCard card(air, ZELK_TVInit);
  OnVirtualClock(state, ScanTv);
}
BENCHMARK_CAPTURE(TvBand, default_air, DefaultAir())->Unit(benchmark::kMillisecond);
// With nothing on the air no probe is skipped.
BENCHMARK_CAPTURE(TvBand, empty_air, Air{})->Unit(benchmark::kMillisecond);

// FM scans write a record to their diagnostic file at each probe.
void FmBand(benchmark::State& state, const char* card) {
  zelk::host::UseVirtualClock();
  std::filesystem::current_path(std::filesystem::temp_directory_path());
  const LiveCard live(DefaultAir(), ZELK_FMInit, card);
  OnVirtualClock(state, ScanFm);
}
BENCHMARK_CAPTURE(FmBand, pll_tuner, "saa7134,tuner=1")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FmBand, demodulator, "saa7134,tuner=15")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FmBand, fm_receiver, "saa7134,board=0xE3")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(FmBand, silicon_tuner, "saa7134,tuner=41")->Unit(benchmark::kMillisecond);

// A hundred probes on the real clock with nothing on the air: each must wait 80 ms for the tuner to
// settle. `over_waits` is the elapsed time over the sum of these waits.
void HundredProbesRealClock(benchmark::State& state) {
  constexpr double kWaitsSeconds = 100 * 0.080;
  zelk::host::UseRealClock();
  const LiveCard card(Air{}, ZELK_TVInit);
  stopAfterProbes = 100;
  double taken = 0;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    probes = 0;
    ScanTv();
    taken += Seconds(std::chrono::steady_clock::now() - start);
  }
  state.counters["probes"] = probes;
  state.counters["over_waits"] = taken / kWaitsSeconds / static_cast<double>(state.iterations());
}
BENCHMARK(HundredProbesRealClock)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

BENCHMARK_MAIN();
