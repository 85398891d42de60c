#include "virtual_cards/chips/fm_receiver.h"

#include <algorithm>
#include <cmath>

namespace zelk::virtual_cards {

namespace {

constexpr double kStepKHz = 12.5;
constexpr double kIfKHz = 225;

// What is written. The first byte's upper bits mute and search.
constexpr std::uint8_t kDividerHigh = 0x3F;
constexpr std::uint8_t kMixesFromAbove = 0x10;  // of byte 2
constexpr std::uint8_t kForcedMono = 0x08;
constexpr std::uint8_t kStandby = 0x40;  // of byte 3
constexpr std::uint8_t kJapaneseBand = 0x20;
constexpr std::uint8_t kWatchCrystal = 0x10;
constexpr std::uint8_t kOtherReference = 0x80;  // of byte 4

struct Band {
  double lowKHz;
  double highKHz;
};
constexpr Band kWestern = {87500, 108000};
constexpr Band kJapanese = {76000, 91000};

// What is read.
constexpr std::uint8_t kReady = 0x80;
constexpr std::uint8_t kStereo = 0x80;
constexpr int kHighestLevel = 15;

// The IF counter: its middle, one count for 5 kHz, fewer the higher the tuned frequency lies. On
// noise it counts too few zero crossings.
constexpr int kCounterMiddle = 53;
constexpr double kCounterKHz = 5;
constexpr int kCounterOnNoise = 31;

// The level converter takes a step for 5 dB.
constexpr double kLevelStepDb = 5;
constexpr int kLevelAtSensitivity = 7;
constexpr int kLevelOfNoise = 2;

int CounterReading(const FmReception& reception) {
  const FmReception counted = reception.Within(kFmAfcWindowKHz);
  if (!counted.station) return kCounterOnNoise;
  const int counts = static_cast<int>(std::lround(counted.OffsetKHz() / kCounterKHz));
  return std::clamp(kCounterMiddle + counts, 0, 127);
}

int LevelReading(const FmStation* station) {
  if (!station) return kLevelOfNoise;
  const double above = station->levelDbuV - kSensitivityDbuV;
  return std::min(kHighestLevel, kLevelAtSensitivity + static_cast<int>(above / kLevelStepDb));
}

}  // namespace

bool FmReceiver::Write(std::span<const std::uint8_t> bytes) {
  const std::size_t count = std::min(bytes.size(), registers_.size());
  std::copy_n(bytes.begin(), count, registers_.begin());
  if (count > 0) settle_.Restart();
  return true;
}

double FmReceiver::TunedKHz() const {
  const std::uint8_t setUp = registers_[3];
  if ((setUp & (kStandby | kWatchCrystal)) || (registers_[4] & kOtherReference)) return 0;
  const int divider = (registers_[0] & kDividerHigh) << 8 | registers_[1];
  const double side = registers_[2] & kMixesFromAbove ? -kIfKHz : kIfKHz;
  const double kHz = divider * kStepKHz + side;
  const Band& band = setUp & kJapaneseBand ? kJapanese : kWestern;
  return band.lowKHz <= kHz && kHz <= band.highKHz ? kHz : 0;
}

bool FmReceiver::Read(std::span<std::uint8_t> bytes) {
  const bool ready = settle_.Passed(kAfcSettleMs);
  const double tunedKHz = TunedKHz();
  const FmReception reception = ready && tunedKHz > 0 ? ReceiveFmAt(air_, tunedKHz) : FmReception{};
  const FmStation* station = reception.Centred();
  const bool stereo = station && station->stereo && !(registers_[2] & kForcedMono);
  const std::uint8_t status[] = {
      static_cast<std::uint8_t>((registers_[0] & kDividerHigh) | (ready ? kReady : 0)),
      registers_[1],
      static_cast<std::uint8_t>(CounterReading(reception) | (stereo ? kStereo : 0)),
      static_cast<std::uint8_t>(LevelReading(station) << 4),
      0,
  };
  for (std::size_t i = 0; i < bytes.size(); ++i)
    bytes[i] = i < std::size(status) ? status[i] : 0xFF;
  return true;
}

}  // namespace zelk::virtual_cards
