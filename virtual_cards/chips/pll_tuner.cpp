#include "virtual_cards/chips/pll_tuner.h"

#include <algorithm>
#include <cmath>

namespace zelk::virtual_cards {

namespace {

// Control byte: 1 CP T2 T1 T0 RSA RSB OS.
constexpr std::uint8_t kControlMark = 0x80;
constexpr std::uint8_t kTuningVoltageOff = 0x01;

// Status byte: POR FL I2 I1 I0 A2 A1 A0. The FM section puts I1 and the converter's three bits in
// place.
constexpr std::uint8_t kPowerOnReset = 0x80;
constexpr std::uint8_t kInLock = 0x40;

// The converter's five steps: carrier 125 kHz below, 62.5 kHz below, on, 62.5 kHz above, 125 kHz
// above the tuned frequency. An open input and a missing carrier let the voltage drift to the upper
// end.
constexpr double kAfcStepKHz = 62.5;
constexpr int kAfcCentre = 2;
constexpr int kAfcHighest = 4;

// An IF this far from nominal still falls into the flat part of the picture filter.
constexpr double kIfToleranceKHz = 200;

// Oscillator step by reference divider: 512, 1024 or 640 of a 4 MHz crystal, behind a prescaler
// of 8.
constexpr double StepKHz(std::uint8_t control) {
  switch (control >> 1 & 3) {
    case 3:
      return 62.5;
    case 1:
      return 31.25;
    default:
      return 50;
  }
}

}  // namespace

bool PllTuner::Write(std::span<const std::uint8_t> bytes) {
  if (!powered_) return false;
  const bool wasInFm = SelectedFm() != nullptr;
  const double oscillatorKHz = OscillatorKHz();
  while (bytes.size() >= 2) {
    const bool controlPair = (bytes[0] & kControlMark) != 0;
    if (controlPair) {
      control_ = bytes[0];
      band_ = bytes[1];
    } else {
      divider_ = static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
    }
    bytes = bytes.subspan(2);
    settle_.Restart();
    // The AGC byte ends the transfer. Its time constant and take-over point do not change what is
    // received at the levels an antenna delivers.
    const bool agcFollows = controlPair && !bytes.empty() && (bytes[0] & kControlMark) != 0;
    if (model_.agcByte && agcFollows) break;
  }
  if (!wasInFm || std::abs(OscillatorKHz() - oscillatorKHz) > kFmSmallStepKHz) fmJump_.Restart();
  return true;
}

bool PllTuner::ReadStatus(std::span<std::uint8_t> bytes, const PictureDetector* afcInput) {
  if (!powered_) return false;
  std::uint8_t status = 0;
  if (const FmSection* fm = SelectedFm()) {
    status = fm->StatusBits(band_, fmInput_ ? fmInput_->DetectFm() : FmReception{});
  } else {
    status = AfcReading(afcInput);
  }
  if (InRange() && (SelectedFm() ? FmSettled() : Settled(kAfcSettleMs))) status |= kInLock;
  if (powerOnReset_) status |= kPowerOnReset;
  std::fill(bytes.begin(), bytes.end(), status);
  powerOnReset_ = false;
  return true;
}

double PllTuner::OscillatorKHz() const {
  const bool running = powered_ && (control_ & kControlMark) && !(control_ & kTuningVoltageOff);
  return running ? divider_ * StepKHz(control_) : 0;
}

Reception PllTuner::Receive(double ifKHz) const {
  const double tunedKHz = OscillatorKHz() - ifKHz;
  const TunerBand* band = SelectedBand();
  if (!PassesIf(ifKHz) || !band || !band->Covers(tunedKHz)) return {};
  return ReceiveAt(air_, tunedKHz);
}

const FmSection* PllTuner::SelectedFm() const {
  const bool switched = (control_ & kControlMark) && fm_ && fm_->SelectedBy(band_);
  return switched ? fm_ : nullptr;
}

FmReception PllTuner::ReceiveFm(double ifKHz) const {
  const FmSection* fm = SelectedFm();
  const double tunedKHz = OscillatorKHz() - ifKHz;
  if (!fm || std::abs(ifKHz - fm->ifKHz) > kIfToleranceKHz || !FmSection::Covers(tunedKHz))
    return {};
  return ReceiveFmAt(air_, tunedKHz);
}

const TunerBand* PllTuner::SelectedBand() const {
  const std::uint8_t switches = band_ & static_cast<std::uint8_t>(~model_.positiveBit);
  for (const TunerBand& band : model_.bands) {
    if (band.highKHz > 0 && band.byte == switches) return &band;
  }
  return nullptr;
}

bool PllTuner::PassesIf(double ifKHz) const {
  const auto within = [ifKHz](double filterKHz) {
    return filterKHz > 0 && std::abs(ifKHz - filterKHz) <= kIfToleranceKHz;
  };
  return within(model_.ifKHz) || within(model_.secondIfKHz);
}

bool PllTuner::InRange() const {
  if (const FmSection* fm = SelectedFm()) return FmSection::Covers(OscillatorKHz() - fm->ifKHz);
  const TunerBand* band = SelectedBand();
  return band && band->Covers(OscillatorKHz() - model_.ifKHz);
}

std::uint8_t PllTuner::AfcReading(const PictureDetector* afcInput) const {
  if (!afcInput || !Settled(kAfcSettleMs)) return kAfcHighest;
  const Reception reception = afcInput->Detect();
  if (!reception.carrier) return kAfcHighest;
  const int step = static_cast<int>(std::lround(reception.OffsetKHz() / kAfcStepKHz));
  return static_cast<std::uint8_t>(std::clamp(kAfcCentre + step, 0, kAfcHighest));
}

}  // namespace zelk::virtual_cards
