#include "virtual_cards/cards/bt_family/board_driver.h"

#include "virtual_cards/cards/tuner_driver.h"

namespace zelk::virtual_cards {

namespace {

// 38.9 MHz is the European IF; those of the 525-line countries lie above.
constexpr double kHighestEuropeanIfKHz = 40000;
// A country's usual system: the exceptions lie in band I.
constexpr double kAboveBandIKHz = 100000;

struct StandardSystem {
  std::uint32_t standards;
  const DemodulatorSystem& system;
};
constexpr StandardSystem kStandardSystems[] = {
    {AnalogVideo_NTSC_M | AnalogVideo_NTSC_M_J | AnalogVideo_PAL_M | AnalogVideo_PAL_N, kSystemMN},
    {AnalogVideo_PAL_D | AnalogVideo_SECAM_D | AnalogVideo_SECAM_K | AnalogVideo_SECAM_K1,
     kSystemDK},
    {AnalogVideo_PAL_I, kSystemI},
    {AnalogVideo_SECAM_L, kSystemL},
    {AnalogVideo_SECAM_L1, kSystemLPrime}};

const DemodulatorSystem& SystemOfStandard(std::uint32_t standard) {
  for (const StandardSystem& row : kStandardSystems) {
    if (row.standards & standard) return row.system;
  }
  return kSystemB;
}

}  // namespace

BoardDriver::BoardDriver(const I2cBus& bus, const TunerModel& module, const FmSection* fm,
                         std::uint8_t pllAddress)
    : bus_(bus), module_(&module), fm_(fm), pllAddress_(pllAddress) {
  system_ = module.ifKHz < kHighestEuropeanIfKHz ? &kSystemB : &kSystemMN;
}

void BoardDriver::Start() {
  mode_ = AMTUNER_MODE_TV;
  if (silicon_) StartSiliconDemodulator(bus_);
  SetUpDemodulator();
}

HRESULT BoardDriver::SetMode(AMTunerModeType mode) {
  const bool possible = mode == AMTUNER_MODE_TV || (mode == AMTUNER_MODE_FM_RADIO && fm_);
  if (!possible) return E_INVALIDARG;
  const bool changed = mode != mode_;
  mode_ = mode;
  if (changed && mode == AMTUNER_MODE_TV) SetUpDemodulator();
  if (changed && mode == AMTUNER_MODE_FM_RADIO && fm_->ByChip()) SetUpRadio(bus_);
  return S_OK;
}

void BoardDriver::SetCountry(std::uint32_t country) {
  country_ = country;
  system_ = &SystemOf(country, kAboveBandIKHz);
  SetUpDemodulator();
}

void BoardDriver::SetStandard(std::uint32_t standard) {
  system_ = &SystemOfStandard(standard);
  SetUpDemodulator();
}

HRESULT BoardDriver::Tune(double kHz, std::uint32_t country) {
  const std::uint32_t where = country != 0 ? country : country_;
  if (silicon_) return DriveSiliconTuner(bus_, *silicon_, kHz, where);
  const CanOnBoard can{bus_, pllAddress_, *module_};
  if (mode_ == AMTUNER_MODE_FM_RADIO) return DriveFmSection(can, *fm_, kHz, fm_->AfcBandByte());
  return DriveCan(can, kHz, where);
}

void BoardDriver::SetUpDemodulator() const {
  if (!module_ || !module_->separateDemodulator) return;
  zelk::virtual_cards::SetUpDemodulator(bus_, *system_, module_->ifKHz);
}

}  // namespace zelk::virtual_cards
