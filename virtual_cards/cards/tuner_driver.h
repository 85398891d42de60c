// A card driver's own tuning code: it programs the board's tuner when an application hands it a
// frequency instead of writing to the chips itself, and reads the chips when it is asked for the
// tuner's status. Its traffic does not pass the card's gate.
#pragma once

#include "platform/com.h"
#include "virtual_cards/chips/fm_section.h"
#include "virtual_cards/chips/i2c_bus.h"
#include "virtual_cards/chips/silicon_demodulator.h"
#include "virtual_cards/chips/silicon_tuner.h"
#include "virtual_cards/chips/tuner_models.h"

namespace zelk::virtual_cards {

// The transmission system of a country, a dialling code, at a picture carrier.
const DemodulatorSystem& SystemOf(std::uint32_t country, double pictureKHz);

// A PLL module on its board; `address` is the PLL's.
struct CanOnBoard {
  const I2cBus& bus;
  std::uint8_t address;
  const TunerModel& model;
};

// All of these answer E_INVALIDARG for a frequency that no such tuner is made for, and E_FAIL when
// a chip does not answer. `country` is a dialling code; it selects the transmission system.

// Programs the PLL alone: an IF demodulator is the application's business.
HRESULT DriveCan(const CanOnBoard& can, double pictureKHz, std::uint32_t country);
// Programs the PLL and, where the module has one, the IF demodulator. A frequency beyond the
// module's own range goes to its nearest band; its PLL then does not lock.
HRESULT DriveWholeCan(const CanOnBoard& can, double pictureKHz, std::uint32_t country);
HRESULT DriveFmSection(const CanOnBoard& can, const FmSection& fm, double kHz);
// The same with one of the section's settings of the band switches.
HRESULT DriveFmSection(const CanOnBoard& can, const FmSection& fm, double kHz,
                       std::uint8_t bandByte);
// Sets up the IF demodulator for a module's picture IF.
HRESULT SetUpDemodulator(const I2cBus& bus, const DemodulatorSystem& system, double ifKHz);
// Switches the IF demodulator to FM radio, in stereo.
HRESULT SetUpRadio(const I2cBus& bus);
// What a TDA8290 needs once after power-on before it receives TV.
void StartSiliconDemodulator(const I2cBus& bus);
HRESULT DriveSiliconTuner(const I2cBus& bus, SiliconRevision revision, double pictureKHz,
                          std::uint32_t country);

// What the chips of a PLL module say of the frequency that it was tuned to.
struct TunerReading {
  bool inLock = false;
  int offsetKHz = 0;      // carrier minus tuned frequency, as exactly as the AFC tells
  unsigned strength = 0;  // 100: the AFC has caught the carrier; less the further off it lies
};
TunerReading ReadCan(const CanOnBoard& can);

}  // namespace zelk::virtual_cards
