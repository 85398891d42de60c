// How long a scan of the TV band takes, against the waits that the hardware demands.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <stdexcept>

#include "ZElkAPI.h"
#include "platform/host/control.h"
#include "virtual_cards/cards/virtual_card.h"

namespace {

using zelk::virtual_cards::Air;

// A card in TV mode, initialised through the exports.
class LiveCard {
 public:
  explicit LiveCard(const Air& air) : card_(zelk::virtual_cards::CreateCard("saa7134", air)) {
    const auto capture = card_->CaptureFilter();
    const auto tuner = card_->TunerFilter();
    if (ZELK_HWInit(capture.Get(), card_->FriendlyName().c_str(), tuner.Get(), 0) != ZELK_S_OK ||
        ZELK_TVInit() != ZELK_S_OK) {
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
std::uint32_t channels;
std::uint32_t stopAfterProbes;

void ZELK_CALL Count(uint32_t event, uint32_t, uint32_t) {
  if (event == ZELK_EVENT_FOUND) ++channels;
  if (event != ZELK_EVENT_POSITION) return;
  if (++probes == stopAfterProbes) ZELK_AllFreqScan(Count, ZELK_SCAN_STOP);
}

void Scan() {
  probes = channels = 0;
  ZELK_AllFreqScan(Count, ZELK_SCAN_START);
}

// The whole band of the default card on the virtual clock. `times_faster` is the simulated waiting
// time over the time that the scan took.
void TvBandVirtualClock(benchmark::State& state, const Air& air) {
  zelk::host::UseVirtualClock();
  const LiveCard card(air);
  stopAfterProbes = 0;
  double waited = 0;
  double taken = 0;
  for (auto _ : state) {
    const std::uint64_t before = zelk::host::SleptMilliseconds();
    const auto start = std::chrono::steady_clock::now();
    Scan();
    taken += Seconds(std::chrono::steady_clock::now() - start);
    waited += static_cast<double>(zelk::host::SleptMilliseconds() - before) / 1000;
  }
  state.counters["probes"] = probes;
  state.counters["channels"] = channels;
  state.counters["waits_simulated_s"] = waited / static_cast<double>(state.iterations());
  state.counters["times_faster"] = waited / taken;
}
BENCHMARK_CAPTURE(TvBandVirtualClock, default_air,
                  zelk::virtual_cards::LoadAir(zelk::virtual_cards::kDefaultPlace))
    ->Unit(benchmark::kMillisecond);
// With nothing on the air no probe is skipped.
BENCHMARK_CAPTURE(TvBandVirtualClock, empty_air, Air{})->Unit(benchmark::kMillisecond);

// A hundred probes on the real clock with nothing on the air: each must wait 80 ms for the tuner to
// settle. `over_waits` is the elapsed time over the sum of these waits.
void HundredProbesRealClock(benchmark::State& state) {
  constexpr double kWaitsSeconds = 100 * 0.080;
  zelk::host::UseRealClock();
  const LiveCard card(Air{});
  stopAfterProbes = 100;
  double taken = 0;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    Scan();
    taken += Seconds(std::chrono::steady_clock::now() - start);
  }
  state.counters["probes"] = probes;
  state.counters["over_waits"] = taken / kWaitsSeconds / static_cast<double>(state.iterations());
}
BENCHMARK(HundredProbesRealClock)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

BENCHMARK_MAIN();
