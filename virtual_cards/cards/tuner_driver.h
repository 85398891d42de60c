// A card driver's own tuning code: it programs the board's tuner when an application hands it a
// frequency instead of writing to the chips itself. Its traffic does not pass the card's gate.
#pragma once

#include "platform/com.h"
#include "virtual_cards/chips/i2c_bus.h"
#include "virtual_cards/chips/silicon_tuner.h"
#include "virtual_cards/chips/tuner_models.h"

namespace zelk::virtual_cards {

// E_INVALIDARG for a frequency that the tuner cannot reach, E_FAIL when a chip does not answer.
// `country` is a dialling code; it selects the transmission system. `address` is the PLL's.
HRESULT DriveCan(const I2cBus& bus, std::uint8_t address, const TunerModel& model,
                 double pictureKHz, std::uint32_t country);
HRESULT DriveSiliconTuner(const I2cBus& bus, SiliconRevision revision, double pictureKHz,
                          std::uint32_t country);

}  // namespace zelk::virtual_cards
