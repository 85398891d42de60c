// Two 16-bit words are what most chips of a tuner module take in one transfer: a PLL's divider and
// control, or a demodulator's subaddress and switching byte, then its adjust and data byte.
#pragma once

#include <array>
#include <cstdint>

namespace zelk {

// As they go over the bus, high byte first.
constexpr std::array<std::uint8_t, 4> WordBytes(std::uint16_t word1, std::uint16_t word2) {
  return {static_cast<std::uint8_t>(word1 >> 8), static_cast<std::uint8_t>(word1),
          static_cast<std::uint8_t>(word2 >> 8), static_cast<std::uint8_t>(word2)};
}

}  // namespace zelk
