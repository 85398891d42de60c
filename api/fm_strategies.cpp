#include "api/fm_strategies.h"

#include "backends/tuner_modules/afc.h"
#include "backends/tuner_modules/fm_receiver.h"
#include "backends/tuner_modules/tuner_set.h"
#include "common/log.h"
#include "common/wait.h"

namespace zelk {
namespace {

constexpr std::uint32_t kSettlingMs = 80;

template <class... Backends>
std::uint8_t ReadStatusByte() {
  std::uint8_t status = 0;
  Ask<Backends...>([&](auto& card) { card.GetFMStatusByte(&status, nullptr); });
  return status;
}

template <class... Backends>
std::uint8_t ReadAfc() {
  std::uint8_t status = 0;
  Ask<Backends...>([&](auto& card) { card.GetFMStatusByte(nullptr, &status); });
  return DemodulatorAfcCode(status);
}

}  // namespace

// --- ThreeReadings ---

bool ThreeReadings::Forget() {
  previousSum_ = kNone;
  return false;
}

void ThreeReadings::ReadStatus() {
  status_ = ReadStatusByte<Saa713xDevice, Bt878Device, Bt88xDevice, QuillonDevice>();
}

bool ThreeReadings::Remember(const FmProbe& probe, int sum) {
  previousSum_ = static_cast<std::uint8_t>(sum);
  ReadStatus();
  probe.MakeCandidate(isStereo_(status_));
  probe.line.Append("   StatusPL=%2x", status_);
  return false;
}

bool ThreeReadings::FindsStation(const FmProbe& probe) {
  probe.line.Append("Freq=%d    AFC=", probe.frequency);
  int sum = 0;
  bool farOff = false;
  for (int reading = 0; reading < 3 && !farOff; ++reading) {
    const int afc = ReadAfc<Saa713xDevice, Bt878Device, Bt88xDevice, QuillonDevice>();
    probe.line.Append("%2X", afc);
    farOff = afc >= 6 && afc <= 9;
    sum += afc <= 7 ? afc : afc - 15;
  }
  if (farOff) {
    previousSum_ = kNone;
    sum = -1;
  }
  if (previousSum_ != kNone || sum != -1) probe.line.Append("   Value=%2d", sum);

  if (sum >= 3) return Remember(probe, sum);
  if (previousSum_ < sum) return Forget();
  if (sum >= 0 && previousSum_ != kNone) return Remember(probe, sum);
  if (sum >= 0 || previousSum_ == kNone) return Forget();
  // Crossed. The nearer side of the station is the smaller sum.
  if (previousSum_ > -sum) {
    ReadStatus();
    probe.MakeCandidate(isStereo_(status_));
  }
  Forget();
  probe.line.Append("   StatusPL=%2x", status_);
  return true;
}

// --- FourReadings ---

bool FourReadings::FindsStation(const FmProbe& probe) {
  probe.line.Append("Freq=%d    AFC=", probe.frequency);
  int sum = 0;
  for (int reading = 0; reading < 4; ++reading) {
    const int afc = ReadAfc<Saa713xDevice, Bt878Device, Bt88xDevice>();
    probe.line.Append("%2X", afc);
    sum += afc > 7 ? 15 - afc : -afc;
  }
  probe.line.Append("   Value=%2d", sum);

  const bool remembered = previousSum_ != kNone;
  if (sum >= 6 || (previousSum_ >= sum && sum >= 0 && remembered)) {
    constexpr StereoTest kIsStereo = {0x07, 0x04};
    previousSum_ = static_cast<std::uint8_t>(sum);
    probe.MakeCandidate(kIsStereo(ReadStatusByte<Saa713xDevice, Bt878Device, Bt88xDevice>()));
    return false;
  }
  const bool crossed = sum < 0 && remembered;
  previousSum_ = kNone;
  return crossed;
}

// --- ReceiverCrossing ---

// False when the card with the receiver is not the live one.
bool ReceiverCrossing::ReadStatus() const {
  const auto read = [](auto& card) { card.ReadFmReceiverStatus(); };
  return onSaa713x_ ? Ask<Saa713xDevice>(read) : Ask<QuillonDevice>(read);
}

bool ReceiverCrossing::FindsStation(const FmProbe& probe) {
  // Reading 53 is the middle of the receiver's IF counter.
  constexpr int kMiddle = 53;
  constexpr int kWellAbove = 8;
  constexpr int kStrongEnough = 7;

  probe.line.Append("Freq=%d    AFC=", probe.frequency);
  WaitMs(kSettlingMs);
  if (!ReadStatus()) return false;
  const int afc = (FmReceiverStatus[2] & 0x7F) - kMiddle;
  const bool stereo = FmReceiverStatus[2] >> 7;
  const std::uint8_t level = FmReceiverStatus[3] >> 4;
  probe.line.Clear();
  probe.line.Append("Freq=%6d  PLL=0x%2X  AFC=%3d  Level=%2d  ST=%d", probe.frequency,
                    FmReceiverStatus[1], afc, level, stereo);

  const bool remembered = previousAfc_ != kNone;
  if (afc >= kWellAbove || (afc >= 0 && remembered && previousAfc_ >= afc)) {
    previousAfc_ = afc;
    previousLevel_ = level;
    probe.MakeCandidate(stereo);
    return false;
  }
  const bool crossed = afc < 0 && remembered && previousLevel_ >= kStrongEnough;
  // Either way the station lies between the two probes; the ALPS boards' receiver is trusted with
  // the earlier one when its AFC was near the middle.
  if (crossed && (!onSaa713x_ || previousAfc_ >= kWellAbove)) probe.MakeCandidate(stereo);
  previousAfc_ = kNone;
  return crossed;
}

// --- SiliconLock ---

bool SiliconLock::FindsStation(const FmProbe& probe) {
  constexpr char kLogFile[] = "TDA8275.log";
  probe.line.Append("nFreq = %6d ", probe.frequency);
  AppendLogMessage(probe.line.Text(), kLogFile);
  Ask<Saa713xDevice>([&](auto& card) { card.SetFMFreq(probe.frequency); });
  WaitMs(kSettlingMs);
  const std::uint8_t status = ReadStatusByte<Saa713xDevice>();
  probe.line.Clear();
  probe.line.Append("nStatusPLL: %d \n", status);
  AppendLogMessage(probe.line.Text(), kLogFile);

  if (status == 1 && previousStatus_ == 0) {
    // Stations stand on multiples of 100 kHz; the lock may have been a step late.
    if (probe.candidate.frequency % 100 != 0) probe.candidate.frequency -= 50;
    previousStatus_ = 1;
    return true;
  }
  previousStatus_ = status;
  std::uint32_t stereo = 0;
  Ask<Saa713xDevice>([&](auto& card) { card.GetFMStereo(&stereo); });
  probe.MakeCandidate(stereo != 0);
  return false;
}

// --- LockStatus ---

bool LockStatus::SecondLook(const FmProbe& probe) {
  std::uint8_t status = 0;
  const auto setTuneFlag = [](std::uint32_t value) {
    Ask<Saa713xDevice, Bt878Device, Bt88xDevice>([&](auto& card) { card.SetFMTuneFlag(value); });
  };
  setTuneFlag(0);
  AskAny([&](auto& card) { card.SetFMFreq(probe.candidate.frequency); });
  AskAny([&](auto& card) { card.GetFMStatusByte(&status, nullptr); });
  setTuneFlag(1);
  return (status & 0x07) > 2;
}

bool LockStatus::FindsStation(const FmProbe& probe) {
  constexpr std::uint8_t kStereo = 0x10;
  probe.line.Append("Freq=%d    AFC=", probe.frequency);
  const std::uint8_t byte =
      ReadStatusByte<Saa713xDevice, Bt878Device, Bt88xDevice, QuillonDevice>();
  const std::uint8_t status = byte & 0x07;
  probe.line.Append("%2X", status);
  if (status == 2 || status == 3) {
    previous_ = status;
    probe.MakeCandidate((byte & kStereo) != 0);
    return false;
  }
  // Below the station's middle the reading was 2 or 3, above it is 0 or 1.
  const bool passed = status <= 1 && (previous_ == 2 || previous_ == 3);
  previous_ = 0;
  return passed && SecondLook(probe);
}

// --- The choice ---

FmStrategy& FmStrategies::For(std::uint32_t tunerType) {
  struct Row {
    TunerSet tunerTypes;
    FmStrategy& strategy;
  };
  const Row rows[] = {
      {{13, 15}, mk3_},      {{21, 23}, mk5_},          {{19}, easternMk3_},
      {{46, 47, 48}, alps_}, {{49, 50, 51}, partsnic_}, {{40, 41}, silicon_},
  };
  for (const Row& row : rows) {
    if (row.tunerTypes.Has(tunerType)) return row.strategy;
  }
  return other_;
}

}  // namespace zelk
