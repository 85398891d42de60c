#include "virtual_cards/cards/saa713x/hardware.h"

#include <stdexcept>
#include <utility>

#include "virtual_cards/cards/saa713x/boards.h"
#include "virtual_cards/cards/saa713x/fm_readings.h"
#include "virtual_cards/cards/saa713x/property_sets.h"
#include "virtual_cards/cards/tuner_driver.h"
#include "virtual_cards/chips/tuner_can.h"
#include "virtual_cards/chips/tv_standard.h"

namespace zelk::virtual_cards {

namespace {

constexpr std::uint32_t kDecoderLocked = 0x01000000;
constexpr unsigned kColourSystemShift = 16;

constexpr std::uint32_t kTda8275Type = 40;
constexpr std::uint32_t kTda8275aType = 41;

// The board that the options describe: a tuner type's usual one, with another board code where they
// say so.
Saa713xBoard ChooseBoard(const Saa713xOptions& options) {
  const Saa713xBoard* usual = BoardForTuner(options.tunerType);
  if (!usual && !options.boardConfig) {
    throw std::invalid_argument("no SAA713x board carries tuner type " +
                                std::to_string(options.tunerType));
  }
  Saa713xBoard board = usual ? *usual : Saa713xBoard{options.tunerType, 0};
  if (options.boardConfig) {
    board.boardCode = static_cast<std::uint8_t>(*options.boardConfig);
    const Saa713xBoard* coded = BoardForCode(board.boardCode);
    board.fmSwitch = coded && coded->fmSwitch;
  }
  return board;
}

}  // namespace

Saa713xHardware::Saa713xHardware(const Saa713xOptions& options, Air air)
    : air_(std::move(air)), chipId_(options.chipId), gpio_(!options.remoteChip) {
  const Saa713xBoard board = ChooseBoard(options);
  boardConfig_ = options.boardConfig.value_or(board.boardCode);
  if (options.eepromPresent) {
    eeprom_.emplace(options.eeprom ? *options.eeprom : DefaultEeprom(board, options.remoteChip));
    bus_.Attach(Eeprom::kAddress, &*eeprom_);
  }
  if (options.remoteChip) bus_.Attach(RemoteReceiver::kAddress, &remote_);
  FitTuner(options.tunerType);
  if (board.fmSwitch) {
    fmReceiver_.emplace(air_);
    tvFmSwitch_.ConnectTv(bus_.Attach(FmReceiver::kAddress, &tvFmSwitch_));
    tvFmSwitch_.ConnectFm(&*fmReceiver_);
  }
}

void Saa713xHardware::FitTuner(std::uint32_t tunerType) {
  if (tunerType == kTda8275Type || tunerType == kTda8275aType) {
    const auto revision =
        tunerType == kTda8275Type ? SiliconRevision::kTda8275 : SiliconRevision::kTda8275a;
    auto frontEnd = std::make_unique<SiliconFrontEnd>(revision, air_);
    frontEnd->AttachTo(bus_);
    silicon_ = frontEnd.get();
    frontEnd_ = std::move(frontEnd);
    return;
  }
  can_ = FindTunerModel(tunerType);
  if (!can_) return;  // nobody knows what is on the bus of such a board
  auto frontEnd = std::make_unique<TunerCan>(tunerType, air_);
  frontEnd->AttachTo(bus_);
  frontEnd_ = std::move(frontEnd);
}

bool Saa713xHardware::TvFmSwitch::Write(std::span<const std::uint8_t> bytes) {
  I2cDevice* device = Selected();
  return device && device->Write(bytes);
}

bool Saa713xHardware::TvFmSwitch::Read(std::span<std::uint8_t> bytes) {
  I2cDevice* device = Selected();
  return device && device->Read(bytes);
}

bool Saa713xHardware::TelevisionSelected() const {
  if (FmReceiverSelected()) return false;
  return !silicon_ || tunerMode_ == AMTUNER_MODE_TV || tunerMode_ == AMTUNER_MODE_DEFAULT;
}

bool Saa713xHardware::HorizontalLocked() const {
  return !pictureFrozen_ && TelevisionSelected() && frontEnd_ && frontEnd_->Picture();
}

std::uint32_t Saa713xHardware::DecoderStatus() const {
  if (!HorizontalLocked()) return 0;
  const TvStandard& received = DescribeStandard(frontEnd_->Picture()->standard);
  return kDecoderLocked | static_cast<std::uint32_t>(received.colour) << kColourSystemShift;
}

std::uint32_t Saa713xHardware::VideoStandard() const {
  if (detectedStandard_) return *detectedStandard_;
  if (setStandard_) return *setStandard_;
  return air_.tv.empty() ? 0 : air_.tv.front().standard;
}

std::uint32_t Saa713xHardware::DriverWord(DWORD id) const {
  const DWORD index = id - kFirstDriverWord;
  return index < driverWords_.size() ? driverWords_[index] : 0;
}

void Saa713xHardware::SetDriverWord(DWORD id, std::uint32_t value) {
  driverWords_.at(id - kFirstDriverWord) = value;
  if (id == kSaaTunerPowerDown && frontEnd_) frontEnd_->SetPowered(value == 0);
}

std::uint32_t Saa713xHardware::FmReading(DWORD id) const {
  if (!silicon_) return 0;
  const FmReception reception = SiliconInFm() ? silicon_->Fm().DetectFm() : FmReception{};
  switch (id) {
    case kSaaFmLevel:
      return FmLevelFigure(reception);
    case kSaaFmAfc:
      return static_cast<std::uint32_t>(FmAfcStep(reception));
    default:
      return FmStereoIndicated(reception) ? 1 : 0;
  }
}

double Saa713xHardware::TunedKHz() const {
  if (FmReceiverSelected()) return fmReceiver_->TunedKHz();
  if (SiliconInFm()) return silicon_->TunedFmKHz();
  return frontEnd_ ? frontEnd_->TunedKHz() : 0;
}

HRESULT Saa713xHardware::NotifyTuning(std::uint32_t phase) {
  if (phase != 1 && phase != 2) return E_INVALIDARG;
  pictureFrozen_ = phase == 1;
  return S_OK;
}

HRESULT Saa713xHardware::TuneByDriver(std::uint32_t hertz, std::uint32_t country) {
  const double pictureKHz = hertz / 1000.0;
  if (silicon_) return DriveSiliconTuner(bus_, silicon_->Revision(), pictureKHz, country);
  if (can_) return DriveCan({bus_, PllTuner::kAddress, *can_}, pictureKHz, country);
  return E_FAIL;
}

HRESULT Saa713xHardware::SetTunerMode(AMTunerModeType mode) {
  if (mode != AMTUNER_MODE_TV && mode != AMTUNER_MODE_FM_RADIO) return E_INVALIDARG;
  tunerMode_ = mode;
  return S_OK;
}

void Saa713xHardware::PressKey(std::uint8_t kind, std::uint8_t code) {
  remote_.PressKey(kind, code);
  gpio_.ShowKey(kind, code);
}

}  // namespace zelk::virtual_cards
