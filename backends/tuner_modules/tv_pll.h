// The PLL settings of the classic tuner modules in television.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "backends/tuner_modules/tuner_set.h"

namespace zelk {

inline constexpr std::uint32_t kAnyPllCase = 0;

struct TvPllRow {
  TunerSet tunerTypes;
  std::uint32_t ifKHz;
  std::uint32_t midFromKHz;   // a lower frequency takes the low band
  std::uint32_t highFromKHz;  // this one and above take the high band
  std::uint16_t low;
  std::uint16_t mid;
  std::uint16_t high;
  std::uint32_t standard = kAnyPllCase;   // the row holds for this standard alone
  std::uint32_t onlyAtKHz = kAnyPllCase;  // the row holds for this frequency alone
  std::uint16_t dividerBits = 0;          // set in every divider
};

struct PllSetting {
  std::uint16_t divider;  // counts of 62.5 kHz
  std::uint16_t control;  // control byte (high) and band byte (low)
};

// What to write for a picture carrier. `familyRows` are the modules that a card family drives in a
// way of its own; all others are looked up among those that every family drives alike.
// `videoStandard` is one AnalogVideoStandard bit: some modules need another set-up or another
// intermediate frequency for SECAM L. Empty for a tuner type without a PLL.
std::optional<PllSetting> TvPllFor(std::span<const TvPllRow> familyRows, std::uint32_t tunerType,
                                   std::uint32_t frequencyKHz, std::uint32_t videoStandard);

// The modules of the MK3 generation take a fifth byte, the AGC take-over point.
std::optional<std::uint8_t> TvPllFifthByte(std::uint32_t tunerType);

}  // namespace zelk
