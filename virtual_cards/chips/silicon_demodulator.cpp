#include "virtual_cards/chips/silicon_demodulator.h"

#include <algorithm>
#include <cmath>

#include "virtual_cards/chips/tv_standard.h"

namespace zelk::virtual_cards {

namespace {

constexpr const DemodulatorSystem* kSystems[] = {&kSystemMN, &kSystemB, &kSystemGH,    &kSystemDK,
                                                 &kSystemI,  &kSystemL, &kSystemLPrime};

constexpr std::size_t kSystemRegister = 0x01;
constexpr std::uint8_t kExpertMode = 0x80;
constexpr std::size_t kGateRegister = 0x21;
constexpr std::uint8_t kGateOpen = 0xC0;
constexpr std::uint8_t kAfcRegister = 0x1B;
constexpr std::uint8_t kLocked = 0x80;

// What has to stand in the chip before its picture PLL runs: video output, PLL bandwidth, sync.
struct RequiredSetting {
  std::size_t number;
  std::uint8_t value;
};
constexpr RequiredSetting kRequired[] = {{0x07, 0x00}, {0x30, 0x2F}, {0x20, 0x0B}};

// The same for FM behind a TDA8275: FM filter, its level, and the output switched through after
// tuning (0x88 mutes it). With a TDA8275A the card's driver sees to that when it goes to FM.
constexpr RequiredSetting kRequiredForFm[] = {{0x28, 0x14}, {0x0D, 0x47}, {0x0F, 0x81}};

constexpr double kAfcStepKHz = 13.2;
constexpr int kAfcNoCarrier = -64;

bool Holds(const std::array<std::uint8_t, 256>& registers,
           std::span<const RequiredSetting> settings) {
  return std::all_of(settings.begin(), settings.end(), [&](const RequiredSetting& setting) {
    return registers[setting.number] == setting.value;
  });
}

}  // namespace

bool SiliconDemodulator::Write(std::span<const std::uint8_t> bytes) {
  if (bytes.empty()) return true;
  pointer_ = bytes[0];
  for (const std::uint8_t byte : bytes.subspan(1)) registers_[pointer_++] = byte;
  return true;
}

bool SiliconDemodulator::Read(std::span<std::uint8_t> bytes) {
  for (std::uint8_t& byte : bytes) {
    byte = pointer_ == kAfcRegister ? AfcRegister() : registers_[pointer_];
    ++pointer_;
  }
  return true;
}

bool SiliconDemodulator::GateOpen() const { return registers_[kGateRegister] == kGateOpen; }

const DemodulatorSystem* SiliconDemodulator::System() const {
  const std::uint8_t code = registers_[kSystemRegister] & static_cast<std::uint8_t>(~kExpertMode);
  for (const DemodulatorSystem* system : kSystems) {
    if (system->code == code) return system;
  }
  return nullptr;
}

Reception SiliconDemodulator::Detect() const {
  const DemodulatorSystem* system = System();
  if (!Holds(registers_, kRequired) || !system) return {};
  Reception reception = tuner_.Receive(system->pictureIfKHz);
  if (reception.carrier &&
      DescribeStandard(reception.carrier->standard).positive != system->positive) {
    reception.carrier = nullptr;
  }
  return reception;
}

const TvCarrier* SiliconDemodulator::Locked() const {
  if (!tuner_.Settled(kSyncSettleMs)) return nullptr;
  const Reception reception = Detect();
  return std::abs(reception.OffsetKHz()) <= kSyncWindowKHz ? reception.carrier : nullptr;
}

FmReception SiliconDemodulator::DetectFm() const {
  if (!SetUpForFm() || !tuner_.Settled(kAfcSettleMs)) return {};
  return tuner_.ReceiveFm(kFmIfKHz);
}

bool SiliconDemodulator::SetUpForFm() const {
  return tuner_.Revision() == SiliconRevision::kTda8275a || Holds(registers_, kRequiredForFm);
}

std::uint8_t SiliconDemodulator::AfcRegister() const {
  int steps = kAfcNoCarrier;
  const Reception reception = tuner_.Settled(kSyncSettleMs) ? Detect() : Reception{};
  if (reception.carrier) {
    // Positive readings: the carrier lies below the tuned frequency.
    steps = static_cast<int>(std::lround(-reception.OffsetKHz() / kAfcStepKHz));
    steps = std::clamp(steps, -63, 63);
  }
  return static_cast<std::uint8_t>((steps & 0x7F) | (Locked() ? kLocked : 0));
}

}  // namespace zelk::virtual_cards
