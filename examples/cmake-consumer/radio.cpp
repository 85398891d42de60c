// Lists the FM stations that a virtual card receives.
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "ZElkVirtual.h"

// A virtual card with the library on it, for as long as the object lives.
class PluggedCard {
 public:
  PluggedCard(const char* description, const char* air) : card_(ZELKV_PlugIn(description, air)) {
    if (!card_) throw std::runtime_error(ZELKV_LastError());
    if (ZELK_HWInit(ZELKV_CaptureFilter(card_.get()), ZELKV_FriendlyName(card_.get()),
                    ZELKV_TunerFilter(card_.get()), 0) < 0)
      throw std::runtime_error("the library does not accept the card");
  }

 private:
  // The library lets go first, then the card may go.
  struct Release {
    void operator()(ZELKV_Card* card) const {
      ZELK_Free();
      ZELKV_Unplug(card);
    }
  };
  std::unique_ptr<ZELKV_Card, Release> card_;
};

struct Station {
  uint32_t frequencyKHz;
  bool stereo;
};

static std::vector<Station> ScanFm() {
  // A C callback carries no state, so the list stands beside it.
  static std::vector<Station> stations;
  stations.clear();
  const auto onEvent = [](uint32_t event, uint32_t value, uint32_t stereo) {
    if (event == ZELK_EVENT_FOUND) stations.push_back({value, stereo == 1});
  };
  if (ZELK_FMInit() < 0) throw std::runtime_error("the card has no FM radio");
  ZELK_FMAllFreqScan(onEvent, ZELK_SCAN_START, 0, 0, 0, 0);
  return stations;
}

int main() try {
  ZELKV_UseVirtualClock();
  const PluggedCard card("saa7134", nullptr);
  for (const Station& station : ScanFm())
    std::printf("%.1f MHz, %s\n", station.frequencyKHz / 1000.0,
                station.stereo ? "stereo" : "mono");
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  std::fprintf(stderr, "radio: %s\n", error.what());
  return EXIT_FAILURE;
}
