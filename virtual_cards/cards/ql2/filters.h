// The filters of a virtual QL2 card, one for each device that its driver shows.
#pragma once

#include <memory>

#include "virtual_cards/cards/ql2/hardware.h"

namespace zelk::virtual_cards {

// Video decoder, board and I2C bus.
ComPtr<IUnknown> MakeQl2CaptureFilter(const std::shared_ptr<Ql2Hardware>& hardware);
ComPtr<IUnknown> MakeQl2TunerFilter(const std::shared_ptr<Ql2Hardware>& hardware);
ComPtr<IUnknown> MakeQl2EncoderFilter(const std::shared_ptr<Ql2Hardware>& hardware);
ComPtr<IUnknown> MakeQl2TvAudioFilter(const std::shared_ptr<Ql2Hardware>& hardware);

}  // namespace zelk::virtual_cards
