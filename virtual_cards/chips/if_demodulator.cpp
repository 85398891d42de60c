#include "virtual_cards/chips/if_demodulator.h"

#include <algorithm>
#include <cmath>

#include "virtual_cards/chips/tv_standard.h"

namespace zelk::virtual_cards {

namespace {

constexpr std::size_t kB = 0;
constexpr std::size_t kE = 2;
constexpr std::uint8_t kPort2 = 0x80;
constexpr std::uint8_t kNegative = 0x10;  // of no meaning in FM-radio mode
constexpr std::uint8_t kRadio = 0x08;

// With port 2 high the board switches its IF filter over to L', whose picture carrier lies at the
// lower end of the IF; the chip's own table has 33.9 MHz for it.
constexpr double kLowerEndIfKHz = 33950;

constexpr std::array<double, 8> kPictureIfsKHz = {58750, 45750, 38900, 38000, 33900, 0, 0, 0};
// In FM-radio mode the last code chooses the radio IF of the eastern modules; with the others the
// usual one passes.
constexpr unsigned kEasternRadioIf = 7;
constexpr double kEasternRadioIfKHz = 33300;
constexpr double kRadioIfKHz = 10700;

constexpr std::array<double, 4> kSoundOffsetsKHz = {4500, 5500, 6000, 6500};

// Status byte: bit 0 power-on reset, bits 4..1 AFC, then three level detectors. The first of these
// is the radio IF's in FM-radio mode.
constexpr std::uint8_t kPowerOnReset = 0x01;
constexpr std::uint8_t kSoundIfLevel = 0x20;
constexpr std::uint8_t kVisionIfLevel = 0x40;
constexpr std::uint8_t kCarrierDetected = 0x80;

// The AFC counts in steps of 25 kHz from the nominal IF: 0 to 7 downwards, 15 to 8 upwards.
constexpr double kAfcStepKHz = 25;
// Noise pulls its middle down to the end.
constexpr int kAfcNoCarrier = 7;

std::uint8_t AfcCode(double ifDeviationKHz) {
  const int steps =
      std::min(7, static_cast<int>(std::floor(std::abs(ifDeviationKHz) / kAfcStepKHz)));
  return static_cast<std::uint8_t>(ifDeviationKHz <= 0 ? steps : 15 - steps);
}

}  // namespace

bool IfDemodulator::Write(std::span<const std::uint8_t> bytes) {
  if (bytes.empty()) return true;
  std::size_t subaddress = bytes[0] & 3;
  for (const std::uint8_t byte : bytes.subspan(1)) {
    if (subaddress >= registers_.size()) break;
    registers_[subaddress] = byte;
    written_ = static_cast<std::uint8_t>(written_ | 1 << subaddress);
    ++subaddress;
    settle_.Restart();
  }
  return true;
}

bool IfDemodulator::Read(std::span<std::uint8_t> bytes) {
  std::fill(bytes.begin(), bytes.end(), Status());
  powerOnReset_ = false;
  return true;
}

IfDemodulator::Mode IfDemodulator::Modulation() const {
  if (registers_[kB] & kRadio) return Mode::kFmRadio;
  return registers_[kB] & kNegative ? Mode::kNegativeTv : Mode::kPositiveTv;
}

double IfDemodulator::PictureIfKHz() const {
  if (Modulation() == Mode::kPositiveTv && (registers_[kB] & kPort2)) return kLowerEndIfKHz;
  return kPictureIfsKHz[registers_[kE] >> 2 & 7];
}

double IfDemodulator::SoundOffsetKHz() const { return kSoundOffsetsKHz[registers_[kE] & 3]; }

double IfDemodulator::RadioIfKHz() const {
  return (registers_[kE] >> 2 & 7) == kEasternRadioIf ? kEasternRadioIfKHz : kRadioIfKHz;
}

Reception IfDemodulator::Detect() const {
  if (!SetUp() || Modulation() == Mode::kFmRadio) return {};
  Reception reception = tuner_.Receive(PictureIfKHz());
  if (reception.carrier) {
    const bool positive = DescribeStandard(reception.carrier->standard).positive;
    if (positive != (Modulation() == Mode::kPositiveTv)) reception.carrier = nullptr;
  }
  return reception;
}

FmReception IfDemodulator::DetectFm() const {
  const FmSection* fm = tuner_.SelectedFm();
  if (!fm || !fm->ByChip() || !SetUp() || Modulation() != Mode::kFmRadio) return {};
  if (!Settled(kAfcSettleMs) || !tuner_.FmSettled()) return {};
  const bool ownInput = fm->demodulation == FmDemodulation::kChipRadioInput;
  return tuner_.ReceiveFm(ownInput ? kRadioIfKHz : RadioIfKHz());
}

std::uint8_t IfDemodulator::Status() const {
  const std::uint8_t status = Modulation() == Mode::kFmRadio ? FmStatus() : TvStatus();
  return static_cast<std::uint8_t>(status | (powerOnReset_ ? kPowerOnReset : 0));
}

std::uint8_t IfDemodulator::TvStatus() const {
  Reception reception;
  if (Settled(kAfcSettleMs) && tuner_.Settled(kAfcSettleMs)) reception = Detect();
  if (!reception.carrier) return kAfcNoCarrier << 1;

  // The oscillator stands above the carrier: a carrier above the tuned frequency lowers the IF.
  auto status = static_cast<std::uint8_t>(AfcCode(-reception.OffsetKHz()) << 1);
  status |= kVisionIfLevel | kCarrierDetected;
  const TvStandard& received = DescribeStandard(reception.carrier->standard);
  if (received.soundOffsetKHz == SoundOffsetKHz()) status |= kSoundIfLevel;
  return status;
}

std::uint8_t IfDemodulator::FmStatus() const {
  const FmReception reception = DetectFm();
  if (!reception.station) return kAfcNoCarrier << 1;
  // As with a picture, unless the spectrum has been turned around on its way.
  const bool turned = tuner_.SelectedFm()->demodulation == FmDemodulation::kChipTurned;
  const double deviationKHz = turned ? reception.OffsetKHz() : -reception.OffsetKHz();
  const auto afc = static_cast<std::uint8_t>(AfcCode(deviationKHz) << 1);
  return afc | kSoundIfLevel | kCarrierDetected;
}

}  // namespace zelk::virtual_cards
