// What stands in for an EEPROM that is missing, blank or out of reach: the profile file
// "Telmora2k.ini", section "PRODUCTINFO", a decimal number for each address ("0x41").
#pragma once

#include <cstdint>

namespace zelk {

// 0xFF where the file says nothing.
std::uint8_t EepromFallback(std::uint8_t address);

}  // namespace zelk
