// The video capture filter of a virtual SAA713x card.
#pragma once

#include <memory>

#include "virtual_cards/cards/saa713x/hardware.h"

namespace zelk::virtual_cards {

ComPtr<IUnknown> MakeCaptureFilter(const std::shared_ptr<Saa713xHardware>& hardware);

}  // namespace zelk::virtual_cards
