// What an export costs on top of the backend's operation.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <stdexcept>

#include "ZElkAPI.h"
#include "backends/saa713x/saa713x_device.h"
#include "platform/control.h"
#include "virtual_cards/cards/virtual_card.h"

namespace {

std::unique_ptr<zelk::virtual_cards::VirtualCard> Plug() {
  zelk::host::UseVirtualClock();
  return zelk::virtual_cards::CreateCard("saa7134", {});
}

void ThroughTheExport(benchmark::State& state) {
  const auto card = Plug();
  {
    const auto capture = card->CaptureFilter();
    if (ZELK_HWInit(capture.Get(), card->FriendlyName().c_str(), nullptr, 0) != ZELK_S_OK) {
      throw std::runtime_error("the virtual card was refused");
    }
  }
  std::uint32_t type = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(ZELK_GetTunerType(&type));
    benchmark::DoNotOptimize(type);
  }
  ZELK_Free();
}
BENCHMARK(ThroughTheExport);

void DirectCall(benchmark::State& state) {
  const auto card = Plug();
  zelk::Saa713xDevice device;
  {
    const auto capture = card->CaptureFilter();
    if (device.HWInit(capture.Get(), card->FriendlyName().c_str(), nullptr, 0) != ZELK_S_OK) {
      throw std::runtime_error("the virtual card was refused");
    }
  }
  std::uint32_t type = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(device.GetTunerType(&type));
    benchmark::DoNotOptimize(type);
  }
}
BENCHMARK(DirectCall);

}  // namespace

BENCHMARK_MAIN();
