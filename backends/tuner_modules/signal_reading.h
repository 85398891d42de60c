// What a status byte says of the signal, stored where a signal query wants it.
#pragma once

#include <array>
#include <cstdint>

#include "backends/tuner_modules/afc.h"
#include "platform/com.h"

namespace zelk {

// Where a signal query puts its answers. Any place may be null.
struct SignalPlaces {
  std::uint32_t* present;
  std::uint32_t* strength;
  double* offset;
};

// A status byte that could not be read says nothing of a carrier. Answers `code`.
HRESULT StoreNoReading(const SignalPlaces& places, HRESULT code);

// Strength and offset of an AFC reading. Without a place for the offset the strength is the raw
// reading.
template <std::size_t Count>
void StoreAfc(const SignalPlaces& places, const std::array<AfcReading, Count>& meanings,
              std::uint8_t reading) {
  if (places.strength) *places.strength = places.offset ? meanings[reading].strength : reading;
  if (places.offset) *places.offset = meanings[reading].offsetKHz;
}

// A PLL tuner's own status byte, in television (answers whether a carrier is present) and in FM.
bool StoreTunerTvStatus(const SignalPlaces& places, std::uint8_t status);
void StoreTunerFmStatus(const SignalPlaces& places, std::uint8_t status);

// An IF demodulator's status byte in television: its AFC near the carrier's middle …
void StoreDemodulatorTvAfc(const SignalPlaces& places, std::uint8_t status,
                           const std::array<AfcReading, 16>& meanings);
// … or, on modules whose AFC alone proves nothing, everything found. Leaves the offset alone.
void StoreDemodulatorTvLock(const SignalPlaces& places, std::uint8_t status);

// A TDA8290's AFC register: bit 7 is the lock, the rest a signed offset in counts of 13.2 kHz.
inline constexpr std::uint8_t kSiliconAfcRegister = 0x1B;
inline constexpr std::uint8_t kSiliconLocked = 0x80;
// The distance of the seven-bit count from its half scale: 64 at the carrier, 0 furthest from it.
std::uint32_t SiliconLevel(std::uint8_t status);
double SiliconOffsetKHz(std::uint8_t status);

}  // namespace zelk
