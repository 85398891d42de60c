// The PLL settings of the classic tuner modules.
#pragma once

#include <cstdint>
#include <optional>

namespace zelk {

struct PllSetting {
  std::uint16_t divider;  // counts of 62.5 kHz
  std::uint16_t control;  // control byte (high) and band byte (low)
};

// What to write for a picture carrier. `videoStandard` is one AnalogVideoStandard bit: some modules
// need another set-up or another intermediate frequency for SECAM L. Empty for a tuner type without
// a PLL.
std::optional<PllSetting> PllFor(std::uint32_t tunerType, std::uint32_t frequencyKHz,
                                 std::uint32_t videoStandard);

}  // namespace zelk
