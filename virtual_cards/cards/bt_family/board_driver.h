// What a card's driver does with the board's tuner on its own: it sets the demodulators up when it
// starts, follows the country and standard that it is told, and tunes. Its traffic does not pass
// the card's gate.
#pragma once

#include <optional>

#include "platform/dshow.h"
#include "virtual_cards/chips/fm_section.h"
#include "virtual_cards/chips/i2c_bus.h"
#include "virtual_cards/chips/silicon_demodulator.h"
#include "virtual_cards/chips/silicon_tuner.h"
#include "virtual_cards/chips/tuner_models.h"

namespace zelk::virtual_cards {

class BoardDriver {
 public:
  // The tuner of the board: a module with its FM section (null for none) and the bus address of its
  // PLL, or a silicon tuner. Everything must outlive the driver.
  BoardDriver(const I2cBus& bus, const TunerModel& module, const FmSection* fm,
              std::uint8_t pllAddress);
  BoardDriver(const I2cBus& bus, SiliconRevision silicon) : bus_(bus), silicon_(silicon) {}

  // TV, for the system that the tuner is made for.
  void Start();

  AMTunerModeType Mode() const { return mode_; }
  // TV or FM radio; E_INVALIDARG for anything that the tuner does not receive.
  HRESULT SetMode(AMTunerModeType mode);
  // A dialling code, 0 before the first.
  std::uint32_t Country() const { return country_; }
  void SetCountry(std::uint32_t country);
  // An AnalogVideoStandard bit.
  void SetStandard(std::uint32_t standard);
  // A picture carrier or, in FM mode, a station. E_INVALIDARG for a frequency that the tuner cannot
  // reach, E_FAIL when a chip does not answer. Country 0 stands for the one set last.
  HRESULT Tune(double kHz, std::uint32_t country);

 private:
  void SetUpDemodulator() const;

  const I2cBus& bus_;
  const TunerModel* const module_ = nullptr;
  const FmSection* const fm_ = nullptr;
  const std::uint8_t pllAddress_ = 0;
  const std::optional<SiliconRevision> silicon_;
  AMTunerModeType mode_ = AMTUNER_MODE_TV;
  std::uint32_t country_ = 0;
  const DemodulatorSystem* system_ = &kSystemB;
};

}  // namespace zelk::virtual_cards
