// FM radio on the classic tuner modules: the change to FM, the PLL's divider and control.
#pragma once

#include <cstdint>

#include "backends/tuner_modules/tuner_set.h"

namespace zelk {

inline constexpr std::uint32_t kFmStereo = 1;  // audio mode; any other is mono

// How a module is switched to FM: bytes for its PLL, time to follow, then two words.
struct FmSetUp {
  enum class Target { Pll, Demodulator };

  TunerSet tunerTypes;
  std::uint8_t pllBytes[5];
  std::uint32_t pllByteCount;
  std::uint32_t waitMs;
  Target target;  // of the words
  std::uint16_t word1;
  std::uint16_t word2;
};

// Null for a module that needs nothing.
const FmSetUp* FmSetUpFor(std::uint32_t tunerType);

struct FmPll {
  std::uint16_t divider;
  // What goes to the PLL, for a module whose control bytes are always the same; none (count 0)
  // where FmControlWord follows the divider.
  std::uint8_t bytes[5];
  std::uint32_t byteCount;
};

FmPll FmPllFor(std::uint32_t tunerType, std::uint32_t frequencyKHz);

// Control word by audio mode and tune flag (0 while a scan tests a station a second time): the
// module's FM section and its forced mono.
struct FmControlRow {
  std::uint32_t audioMode;
  std::uint32_t tuneFlag;
  std::uint16_t word;
};

constexpr std::uint16_t FmControlWord(std::uint32_t audioMode, std::uint32_t tuneFlag) {
  constexpr FmControlRow kRows[] = {{1, 1, 0x88A5}, {1, 0, 0x88A4}, {0, 1, 0x88A7}};
  for (const FmControlRow& row : kRows) {
    if (row.audioMode == audioMode && row.tuneFlag == tuneFlag) return row.word;
  }
  return 0x88A6;
}

}  // namespace zelk
