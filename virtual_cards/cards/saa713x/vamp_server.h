// The Vamp COM server of a virtual SAA713x card.
#pragma once

#include <memory>

#include "virtual_cards/cards/saa713x/hardware.h"

namespace zelk::virtual_cards {

// The class object that makes IVampService objects.
ComPtr<IUnknown> MakeVampClass(const std::shared_ptr<Saa713xHardware>& hardware);

// The device's buses, each with its first reference.
IVampI2c* MakeVampI2c(const std::shared_ptr<Saa713xHardware>& hardware);
IVampGpio* MakeVampGpio(const std::shared_ptr<Saa713xHardware>& hardware);

}  // namespace zelk::virtual_cards
