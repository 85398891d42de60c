#include "virtual_cards/cards/ql2/hardware.h"

#include <utility>

#include "virtual_cards/video_standard.h"

namespace zelk::virtual_cards {

namespace {

// Boards by the tuner code that they report. Odd codes are the twins with FM radio.
struct Board {
  std::uint8_t tunerCode;
  std::uint8_t tunerType;
  bool fmReceiver = false;  // a chip of its own, not a section of the tuner module
};
constexpr Board kBoards[] = {
    {10, 14}, {11, 15},       {16, 12}, {17, 13},       {24, 22}, {25, 23},       {26, 20},
    {48, 50}, {49, 50, true}, {50, 51}, {51, 51, true}, {52, 49}, {53, 49, true},
};
constexpr Board kOtherBoard = {0xFF, 21};

Board BoardOf(const Ql2Options& options) {
  for (const Board& board : kBoards) {
    if (options.tunerInfo && board.tunerCode == (options.tunerCode & 0xFF)) return board;
  }
  return kOtherBoard;
}

// The standard of the countries that a module's IF is made for.
struct HomeStandard {
  double ifKHz;
  std::uint32_t standard;
  LONG lines;  // of a picture, without the blanking
};
constexpr HomeStandard kHomeStandards[] = {
    {45750, AnalogVideo_NTSC_M, 480},
    {58750, AnalogVideo_NTSC_M_J, 480},
    {38900, AnalogVideo_PAL_B, 576},
};
constexpr LONG kFullWidth = 720;

const HomeStandard& HomeOf(const TunerModel& model) {
  for (const HomeStandard& row : kHomeStandards) {
    if (row.ifKHz == model.ifKHz) return row;
  }
  return kHomeStandards[2];
}

}  // namespace

Ql2Hardware::Ql2Hardware(const Ql2Options& options, Air air)
    : air_(std::move(air)),
      knowsTuner_(options.tunerInfo),
      tunerCode_(options.tunerCode),
      tunerType_(BoardOf(options).tunerType),
      fmReceiverFitted_(BoardOf(options).fmReceiver),
      // The receiver cannot leave its address, so on boards that have one the PLL makes room.
      canAddress_(fmReceiverFitted_ ? PllTuner::kAddress : PllTuner::kOtherAddress),
      model_(*FindTunerModel(tunerType_)),
      fm_(FindFmSection(tunerType_)),
      can_(tunerType_, air_, canAddress_),
      standard_(HomeOf(model_).standard),
      format_(MediaType::Video(kFullWidth, HomeOf(model_).lines, options.videoInfo2)) {
  can_.AttachTo(bus_);
  if (fmReceiverFitted_) bus_.Attach(FmReceiver::kAddress, &fmReceiver_);
  bus_.Attach(AudioAdc::kAddress, &adc_);
}

HRESULT Ql2Hardware::SetVideoStandard(std::uint32_t standard) {
  if (NameOfVideoStandard(standard).empty()) return E_INVALIDARG;
  standard_ = standard;
  return S_OK;
}

LONG Ql2Hardware::AvailableModes() const {
  return AMTUNER_MODE_TV | (fm_ || fmReceiverFitted_ ? AMTUNER_MODE_FM_RADIO : 0);
}

HRESULT Ql2Hardware::SetTunerMode(AMTunerModeType mode) {
  const bool single = mode == AMTUNER_MODE_TV || mode == AMTUNER_MODE_FM_RADIO;
  if (!single || !(AvailableModes() & mode)) return E_INVALIDARG;
  mode_ = mode;
  // For TV the demodulator waits for a frequency: the transmission system depends on it.
  return InFm() && fm_ && fm_->ByChip() ? SetUpRadio(bus_) : S_OK;
}

HRESULT Ql2Hardware::SetCountry(LONG country) {
  if (country <= 0) return E_INVALIDARG;
  country_ = country;
  return S_OK;
}

HRESULT Ql2Hardware::Tune(std::uint32_t hertz, std::uint32_t country) {
  // A separate receiver is the application's own business.
  if (InFm() && !fm_) return E_INVALIDARG;
  const double kHz = hertz / 1000.0;
  const auto system = country != 0 ? country : static_cast<std::uint32_t>(country_);
  const HRESULT code =
      InFm() ? DriveFmSection(Can(), *fm_, kHz) : DriveWholeCan(Can(), kHz, system);
  if (SUCCEEDED(code)) lastHertz_ = std::exchange(hertz_, hertz);
  return code;
}

double Ql2Hardware::TunedKHz() const {
  return InFm() && fmReceiverFitted_ ? fmReceiver_.TunedKHz() : can_.TunedKHz();
}

}  // namespace zelk::virtual_cards
