#include "virtual_cards/cards/cx2388x_card.h"

#include <stdexcept>
#include <utility>

#include "virtual_cards/cards/bt_family/plugged_bt_card.h"
#include "virtual_cards/cards/cx2388x/capture_filter.h"
#include "virtual_cards/cards/cx2388x/eeprom_image.h"
#include "virtual_cards/cards/cx2388x/pio_gate_880.h"
#include "virtual_cards/chips/pll_tuner.h"

namespace zelk::virtual_cards {

std::unique_ptr<Cx2388xCard> Cx2388xCard::Create(const Cx2388xOptions& options, Air air) {
  using Plugged = PluggedBtCard<Cx2388xCard, Cx2388xOptions, Cx2388xHardware, PioGate880>;

  const std::optional<Eeprom::Image> image = Cx2388xEepromImage(options.tunerType);
  if (!image) {
    throw std::invalid_argument("no CX2388x board carries tuner type " +
                                std::to_string(options.tunerType) +
                                "; there are 0 to 17, 20, 21 and 24 to 30");
  }
  const BtBoard board = DescribeBoard(options, *image, ModuleMake::kUsual, PllTuner::kOtherAddress);
  return std::make_unique<Plugged>(
      options, std::make_shared<Cx2388xHardware>(board, std::move(air)), MakeCx2388xCaptureFilter);
}

}  // namespace zelk::virtual_cards
