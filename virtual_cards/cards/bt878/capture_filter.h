// The capture filter of a Bt878 card.
#pragma once

#include <memory>

#include "platform/com_ptr.h"
#include "virtual_cards/cards/bt878/hardware.h"

namespace zelk::virtual_cards {

ComPtr<IUnknown> MakeBt878CaptureFilter(const std::shared_ptr<Bt878Hardware>& hardware);

}  // namespace zelk::virtual_cards
