// The tuner filter of a Bt878 or CX2388x card.
#pragma once

#include <memory>

#include "platform/com_ptr.h"
#include "virtual_cards/cards/bt_family/hardware.h"

namespace zelk::virtual_cards {

ComPtr<IUnknown> MakeBtTunerFilter(const std::shared_ptr<BtHardware>& hardware);

}  // namespace zelk::virtual_cards
