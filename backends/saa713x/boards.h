// What is known of the boards of this family: the names their drivers give them, and what the board
// code and the EEPROM say about the tuner module fitted.
#pragma once

#include <cstdint>
#include <optional>

#include "backends/tuner_modules/bands.h"

namespace zelk {

// How a board differs from the common one. The defaults are those of a board that says nothing of
// itself.
struct BoardSettings {
  std::uint32_t TunerType = 4;
  // 0: TV and FM are switched over GPIO line 27.
  bool StandardBoard = true;
  std::uint8_t AlpsTsehTsej = 0;  // 1: ALPS TSEH1 or TSEJ1 module
  std::uint8_t AlpsTsez = 0;      // 1: ALPS TSEZ1 module
  // 1: the module's supply can be switched. 2 is told apart but has no switch either.
  std::uint8_t TunerPowerMode = 0;
};

// Exact comparison; null is no accepted name.
bool IsAcceptedName(const char* friendlyName);

// Applies what a board code (the low byte of the board configuration) says. What it does not
// mention stays as it was, and a code that is not in the table changes nothing.
void ApplyBoardCode(std::uint32_t boardCode, BoardSettings& board);

// The tuner type that EEPROM byte 0x20 names, if it names one.
std::optional<std::uint32_t> TunerFromEeprom(std::uint8_t byte);

// The lowest and highest TV picture carrier of a tuner type.
TvBand TvBandOf(std::uint32_t tunerType);

}  // namespace zelk
