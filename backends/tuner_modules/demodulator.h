// The words that set up a module's IF demodulator (TDA9887 class).
#pragma once

#include <cstdint>
#include <span>

#include "platform/dshow.h"

namespace zelk {

struct DemodulatorWords {
  std::uint16_t word1;
  std::uint16_t word2;
};

// For modules whose demodulator is set up once, with the change to TV. Null for all others.
const DemodulatorWords* DemodulatorWordsForTv(std::uint32_t tunerType);

// For modules whose demodulator is set up for the standard.
struct FormatWords {
  std::uint32_t standards;  // one bit each
  DemodulatorWords words;
};

inline constexpr std::uint32_t kSystemB = AnalogVideo_PAL_B | AnalogVideo_SECAM_B;
inline constexpr std::uint32_t kSystemD = AnalogVideo_PAL_D | AnalogVideo_SECAM_D;

// The multi-standard modules of the MK3 generation.
inline constexpr FormatWords kMk3Formats[] = {
    {kSystemB, {0x0016, 0x7049}},
    {kSystemD, {0x0016, 0x704B}},
    {AnalogVideo_PAL_I, {0x0016, 0x704A}},
    {AnalogVideo_SECAM_L, {0x0006, 0x504B}},
};

// Whether `standard` is exactly one of `standards`: a mask of several is none.
constexpr bool IsOneOf(std::uint32_t standards, std::uint32_t standard) {
  return (standards & standard) != 0 && (standard & (standard - 1)) == 0;
}

// Null for a standard without a row.
const DemodulatorWords* DemodulatorWordsForFormat(std::span<const FormatWords> formats,
                                                  std::uint32_t standard);

// FM audio by the demodulator: MK3 modules and MK5 modules.
struct AudioModeWords {
  std::uint16_t word1;
  std::uint16_t stereo;
  std::uint16_t mono;
};

inline constexpr AudioModeWords kMk3AudioMode = {0x004E, 0x904B, 0x304B};
inline constexpr AudioModeWords kMk5AudioMode = {0x004F, 0x947D, 0x347D};

}  // namespace zelk
