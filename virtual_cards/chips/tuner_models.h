// Tuner modules ("cans"): what the makers' data sheets say of each family, as data.
#pragma once

#include <array>
#include <cstdint>

namespace zelk::virtual_cards {

// One way to set the band switches of a module, and the RF range that is received then.
struct TunerBand {
  std::uint8_t byte = 0;
  double lowKHz = 0;
  double highKHz = 0;

  bool Covers(double kHz) const { return lowKHz <= kHz && kHz <= highKHz; }
};

// Where a module's AFC can be read.
enum class AfcReport {
  kPll,          // the PLL's 3-bit converter watches the AFC voltage
  kDemodulator,  // the separate IF demodulator reports it; the PLL's converter is not connected
};

struct TunerModel {
  std::uint64_t types;  // tuner type codes, one bit each
  double ifKHz;         // picture IF that the module's filters are made for
  double secondIfKHz;   // another one that they pass (SECAM L'), 0 for none
  // In the order low, mid, high, then further ways to select one of them. Unused ones have no
  // range.
  std::array<TunerBand, 4> bands;
  std::uint8_t positiveBit;  // bit of the band byte that selects positive modulation, 0 for none
  bool agcByte;              // takes a fifth byte, the AGC set-up
  bool separateDemodulator;  // the picture is demodulated by a chip at 0x86
  AfcReport afc;
  // A further bus address at which the status byte with the AFC is read, 0 for the PLL's own.
  std::uint8_t statusAddress;
};

// Type codes 42 to 45 stand for modules of the same name in two makes.
enum class ModuleMake {
  kUsual,
  kAmerican,  // made for the American IF whatever the country, with the usual FM section
};

// Null for a type without a PLL module that is known. A type of one make alone has that for both.
const TunerModel* FindTunerModel(std::uint32_t tunerType, ModuleMake make = ModuleMake::kUsual);

// Modules with a demodulator chip for their FM section alone.
bool HasFmDemodulator(std::uint32_t tunerType);

}  // namespace zelk::virtual_cards
