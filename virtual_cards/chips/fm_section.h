// The FM section of a tuner module, as data: what selects it, and what the PLL's status shows of
// a station.
#pragma once

#include <array>
#include <cstdint>

#include "virtual_cards/chips/reception.h"
#include "virtual_cards/chips/tuner_models.h"

namespace zelk::virtual_cards {

// What the board puts on the PLL's 3-bit converter while the FM section is selected.
enum class FmConverter {
  // The module's AFC voltage or its level detector, as the band byte chooses; the stereo
  // indicator goes to an input bit of its own.
  kAfcOrLevel,
  // The demodulated signal's level, which the pilot lifts to the upper end.
  kLiftedByPilot,
  // The same level at the upper end, which the pilot pulls down to the middle.
  kPulledByPilot,
};

// Where the FM IF is demodulated.
enum class FmDemodulation {
  kInModule,
  // By the chip at 0x86, at its IF input: its register E says which IF it is to work at.
  kChip,
  // The same, but the IF is mixed once more from above on its way there, which mirrors it.
  kChipTurned,
  // By that chip, at the input that it has for 10.7 MHz alone.
  kChipRadioInput,
};

struct FmSection {
  std::uint64_t types;  // tuner type codes, one bit each
  double ifKHz;
  // Settings of the band switches that select it. Unused ones are 0, which selects nothing.
  std::array<std::uint8_t, 4> bandBytes;
  FmConverter converter;
  std::uint8_t afcBits;  // band byte: any of them puts the AFC voltage on the converter
  FmDemodulation demodulation;

  bool ByChip() const { return demodulation != FmDemodulation::kInModule; }
  bool SelectedBy(std::uint8_t bandByte) const;
  // A setting that selects it, if possible one that puts the AFC voltage on the converter.
  std::uint8_t AfcBandByte() const;
  // The input is wide open from the lower end of the eastern FM band to the upper end of the
  // western one.
  static constexpr bool Covers(double kHz) { return 62000 <= kHz && kHz <= 108500; }

  // Bits 4 and 2..0 of the PLL's status byte.
  std::uint8_t StatusBits(std::uint8_t bandByte, const FmReception& reception) const;
};

// Null for a module without an FM section.
const FmSection* FindFmSection(std::uint32_t tunerType, ModuleMake make = ModuleMake::kUsual);

}  // namespace zelk::virtual_cards
