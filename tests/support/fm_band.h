// A whole FM band on the air, and what a scan makes of it.
#pragma once

#include <cstdint>
#include <vector>

#include "virtual_cards/air.h"

namespace zelk::test {

// Stations at odd and even steps of the scan, strong and weak, a little off their frequency; the
// last one is too weak to be received.
std::vector<virtual_cards::FmStation> SampleStations(double lowKHz, double highKHz);

// Scans the card's own band and expects every station but the last, and nothing else. `stereoKnown`
// is false where the tuner cannot tell stereo from mono.
void ExpectFmScanFinds(const std::vector<virtual_cards::FmStation>& stations,
                       bool stereoKnown = true);

}  // namespace zelk::test
