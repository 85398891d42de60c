#include "backends/tuner_modules/signal_reading.h"

#include <cstdlib>

#include "common/store.h"

namespace zelk {
namespace {

// A PLL tuner's status byte in FM: lock and the AFC's middle.
constexpr std::uint8_t kTunerFmMask = 0x57;
constexpr std::uint8_t kTunerFmStation = 0x52;

constexpr double kSiliconKHzPerCount = 13.2;

}  // namespace

HRESULT StoreNoReading(const SignalPlaces& places, HRESULT code) {
  Store(places.present, 0);
  Store(places.strength, 0);
  return code;
}

bool StoreTunerTvStatus(const SignalPlaces& places, std::uint8_t status) {
  const std::uint8_t afc = TunerAfcCode(status);
  const bool present = afc >= 1 && afc <= 3;
  Store(places.present, present);
  StoreAfc(places, kTunerAfc, afc);
  return present;
}

void StoreTunerFmStatus(const SignalPlaces& places, std::uint8_t status) {
  Store(places.present, (status & kTunerFmMask) == kTunerFmStation);
  StoreAfc(places, kTunerAfc, TunerAfcCode(status));
}

void StoreDemodulatorTvAfc(const SignalPlaces& places, std::uint8_t status,
                           const std::array<AfcReading, 16>& meanings) {
  const std::uint8_t afc = DemodulatorAfcCode(status);
  Store(places.present, afc <= 2 || afc >= 13);
  StoreAfc(places, meanings, afc);
}

void StoreDemodulatorTvLock(const SignalPlaces& places, std::uint8_t status) {
  // Carrier, picture and sound found, with the AFC in one of the two innermost steps.
  const std::uint8_t flagsAndAfc = status >> 1;
  Store(places.present, flagsAndAfc == 0x70 || flagsAndAfc == 0x7F);
  Store(places.strength, flagsAndAfc & 0x0F);
}

std::uint32_t SiliconLevel(std::uint8_t status) {
  return static_cast<std::uint32_t>(std::abs((status & 0x7F) - 64));
}

double SiliconOffsetKHz(std::uint8_t status) {
  const int count = status & 0x7F;
  return count < 64 ? count * -kSiliconKHzPerCount : (128 - count) * kSiliconKHzPerCount;
}

}  // namespace zelk
