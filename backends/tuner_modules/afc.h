// What the AFC readings of tuner modules mean: how far the tuned frequency lies from the carrier,
// and the signal strength that applications are shown for it.
#pragma once

#include <array>
#include <cstdint>

namespace zelk {

struct AfcReading {
  double offsetKHz;
  std::uint32_t strength;  // 0..5, larger is better
};

// Three-bit reading of a PLL tuner's own status byte, in steps of 62.5 kHz. The converter has five
// levels; a module that shows 5 to 7 shows its raw reading as strength.
inline constexpr std::array<AfcReading, 8> kTunerAfc = {{
    {-125.0, 0},
    {-62.5, 3},
    {0.0, 5},
    {62.5, 3},
    {125.0, 0},
    {125.0, 5},
    {125.0, 6},
    {125.0, 7},
}};

// Four-bit reading of an IF demodulator's status byte, in steps of 25 kHz: 0 to 7 on one side of
// the carrier, 15 down to 8 on the other.
inline constexpr std::array<AfcReading, 16> kDemodulatorAfc = {{
    {-12.5, 5},
    {-37.5, 4},
    {-62.5, 4},
    {-87.5, 3},
    {-112.5, 2},
    {-137.5, 1},
    {-162.5, 0},
    {-187.5, 0},
    {187.5, 0},
    {162.5, 0},
    {137.5, 1},
    {112.5, 2},
    {87.5, 3},
    {62.5, 4},
    {37.5, 4},
    {12.5, 5},
}};

// The reading in a demodulator's status byte.
constexpr std::uint8_t DemodulatorAfcCode(std::uint8_t status) { return (status >> 1) & 0x0F; }

// The reading in a PLL tuner's status byte.
constexpr std::uint8_t TunerAfcCode(std::uint8_t status) { return status & 0x07; }

}  // namespace zelk
