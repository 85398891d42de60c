#include "virtual_cards/chips/silicon_tuner.h"

#include <algorithm>

namespace zelk::virtual_cards {

namespace {

constexpr std::size_t kDividerHigh = 0x00;
constexpr std::size_t kDividerLow = 0x10;
constexpr std::size_t kOscillator = 0x40;
constexpr unsigned kSubaddressStep = 0x10;

// What one of the chip's oscillators reaches. Neighbours overlap, as temperature moves their ends.
struct OscillatorRange {
  std::uint8_t number;
  double lowKHz;
  double highKHz;
};
constexpr OscillatorRange kTda8275Ranges[] = {
    {1, 510000, 625000}, {2, 590000, 760000}, {3, 725000, 900000}};
constexpr OscillatorRange kTda8275aRanges[] = {
    {0, 445000, 560000}, {1, 530000, 660000}, {2, 640000, 790000}, {3, 770000, 925000}};

std::span<const OscillatorRange> RangesOf(SiliconRevision revision) {
  if (revision == SiliconRevision::kTda8275) return kTda8275Ranges;
  return kTda8275aRanges;
}

// Register 0x40: SPD, DIV1P5, BS and BP in the TDA8275; SPD, SVCO and SBS in the TDA8275A.
SiliconOscillator Decode(SiliconRevision revision, std::uint8_t value) {
  if (revision == SiliconRevision::kTda8275) {
    return {static_cast<unsigned>(value >> 6), (value & 0x20) != 0,
            static_cast<std::uint8_t>(value >> 3 & 3)};
  }
  return {static_cast<unsigned>(value >> 5), false, static_cast<std::uint8_t>(value >> 3 & 3)};
}

double RunsAtKHz(const SiliconOscillator& oscillator, double mixerKHz) {
  return mixerKHz * (1U << oscillator.doublings) * (oscillator.timesOneAndHalf ? 1.5 : 1);
}

bool Reaches(SiliconRevision revision, const SiliconOscillator& oscillator, double mixerKHz,
             double marginKHz = 0) {
  const double frequency = RunsAtKHz(oscillator, mixerKHz);
  for (const OscillatorRange& range : RangesOf(revision)) {
    if (range.number == oscillator.range) {
      return range.lowKHz + marginKHz <= frequency && frequency <= range.highKHz - marginKHz;
    }
  }
  return false;
}

}  // namespace

bool SiliconTuner::Write(std::span<const std::uint8_t> bytes) {
  if (!powered_) return false;
  if (bytes.empty()) return true;
  std::uint8_t subaddress = bytes[0];
  for (const std::uint8_t byte : bytes.subspan(1)) {
    registers_[subaddress] = byte;
    subaddress = static_cast<std::uint8_t>(subaddress + kSubaddressStep);
    settle_.Restart();
  }
  return true;
}

bool SiliconTuner::Read(std::span<std::uint8_t> bytes) {
  if (!powered_) return false;
  std::fill(bytes.begin(), bytes.end(), 0xFF);
  return true;
}

double SiliconTuner::OscillatorKHz() const {
  if (!powered_) return 0;
  const SiliconOscillator oscillator = Decode(revision_, registers_[kOscillator]);
  // The two lowest bits of the divider are not connected.
  const unsigned divider = (registers_[kDividerHigh] << 8 | registers_[kDividerLow]) >> 2;
  const double mixerKHz = divider * kSiliconStepKHz / (1U << oscillator.doublings);
  return Reaches(revision_, oscillator, mixerKHz) ? mixerKHz : 0;
}

Reception SiliconTuner::Receive(double ifKHz) const {
  const double oscillatorKHz = OscillatorKHz();
  if (oscillatorKHz <= ifKHz) return {};
  return ReceiveAt(air_, oscillatorKHz - ifKHz);
}

FmReception SiliconTuner::ReceiveFm(double ifKHz) const {
  const double oscillatorKHz = OscillatorKHz();
  if (oscillatorKHz <= ifKHz) return {};
  return ReceiveFmAt(air_, oscillatorKHz - ifKHz);
}

SiliconOscillator ChooseOscillator(SiliconRevision revision, double oscillatorKHz) {
  constexpr unsigned kMostDoublings = 4;
  constexpr double kMarginKHz = 1000;  // the divider's rounding must not leave the range
  const unsigned most = revision == SiliconRevision::kTda8275 ? kMostDoublings - 1 : kMostDoublings;
  const bool halves = revision == SiliconRevision::kTda8275;
  SiliconOscillator last;
  for (unsigned doublings = 0; doublings <= most; ++doublings) {
    for (const bool half : {false, true}) {
      if (half && !halves) continue;
      for (const OscillatorRange& range : RangesOf(revision)) {
        last = {doublings, half, range.number};
        if (Reaches(revision, last, oscillatorKHz, kMarginKHz)) return last;
      }
    }
  }
  return last;
}

}  // namespace zelk::virtual_cards
