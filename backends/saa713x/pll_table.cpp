#include "backends/saa713x/pll_table.h"

namespace zelk {
namespace {

// Modules that no other family carries, and those whose band limits or IF are drawn otherwise here.
constexpr TvPllRow kFamilyRows[] = {
    {{18, 19}, 38900, 158000, 442000, 0x8641, 0x8642, 0x8644},
    {{35}, 45750, 133250, 367250, 0xCE01, 0xCE02, 0xCE08},
    {{36}, 58750, 171250, 409250, 0xCE01, 0xCE02, 0xCE08},
    {{37}, 58750, 170000, 468000, 0xCE01, 0xCE02, 0xCE08},
    {{42, 44}, 45750, 163250, 463250, 0xCE01, 0xCE02, 0xCE04},
    {{43, 45}, 38900, 161250, 471250, 0xCE01, 0xCE02, 0xCE04},
    {{46}, 45750, 127250, 361250, 0xCE01, 0xCE02, 0xCE08, kAnyPllCase, 83250},
    {{46}, 45750, 127250, 361250, 0xCE11, 0xCE02, 0xCE08},
    {{47}, 38900, 140250, 423250, 0xCE01, 0xCE02, 0xCE08},
    {{48}, 58750, 165250, 373250, 0xCE01, 0xCE02, 0xCE08},
};

}  // namespace

std::optional<PllSetting> PllFor(std::uint32_t tunerType, std::uint32_t frequencyKHz,
                                 std::uint32_t videoStandard) {
  return TvPllFor(kFamilyRows, tunerType, frequencyKHz, videoStandard);
}

}  // namespace zelk
