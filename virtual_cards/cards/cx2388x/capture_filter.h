// The capture filter of a CX2388x card.
#pragma once

#include <memory>

#include "platform/com_ptr.h"
#include "virtual_cards/cards/cx2388x/hardware.h"

namespace zelk::virtual_cards {

ComPtr<IUnknown> MakeCx2388xCaptureFilter(const std::shared_ptr<Cx2388xHardware>& hardware);

}  // namespace zelk::virtual_cards
