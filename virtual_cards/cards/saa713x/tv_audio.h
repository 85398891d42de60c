// The TV-audio device of a virtual SAA713x card.
#pragma once

#include <memory>

#include "virtual_cards/cards/saa713x/hardware.h"

namespace zelk::virtual_cards {

ComPtr<IUnknown> MakeTvAudio(const std::shared_ptr<Saa713xHardware>& hardware);

}  // namespace zelk::virtual_cards
