// What Bt878 and CX2388x boards have in common: chips, bus, the video decoder, the driver's locks
// and its hold on the tuner. A card's COM objects share it; it lives as long as the last of them.
#pragma once

#include <array>
#include <memory>
#include <optional>

#include "platform/dshow.h"
#include "virtual_cards/cards/bt_family/board_driver.h"
#include "virtual_cards/cards/bt_family/eeprom_state.h"
#include "virtual_cards/cards/card_object.h"
#include "virtual_cards/cards/request_gate.h"
#include "virtual_cards/chips/dying_chip.h"
#include "virtual_cards/chips/eeprom.h"
#include "virtual_cards/chips/i2c_bus.h"
#include "virtual_cards/chips/i2c_steps.h"
#include "virtual_cards/chips/reception.h"

namespace zelk::virtual_cards {

struct BtBoard {
  std::uint32_t tunerType;
  ModuleMake make;
  std::uint8_t pllAddress;
  Eeprom::Image eeprom;
  EepromState eepromState;
  unsigned eepromTransfers;  // that a dying EEPROM still answers
};

class BtHardware {
 public:
  // The tuner's type is among those that the board's family carries.
  BtHardware(const BtBoard& board, Air air);
  BtHardware(const BtHardware&) = delete;
  BtHardware& operator=(const BtHardware&) = delete;

  RequestGate& Gate() { return gate_; }
  // The count of references to COM objects of this card. It keeps the hardware alive.
  static std::shared_ptr<ReferenceCount> References(const std::shared_ptr<BtHardware>& self) {
    return {self, &self->references_};
  }

  const I2cBus& Bus() const { return bus_; }
  // The chip's bus lines, driven one step at a time.
  I2cSteps& Steps() { return steps_; }
  BoardDriver& Driver() { return *driver_; }

  bool HorizontalLocked() const { return frontEnd_->Picture() != nullptr; }
  // The standard set last, or the first on the air.
  std::uint32_t VideoStandard() const;
  HRESULT SetVideoStandard(std::uint32_t standard) {
    setStandard_ = standard;
    return S_OK;
  }

  // The two hardware locks, 0 and 1. They are flags for the driver's clients: nothing on the board
  // minds them.
  bool Lock(unsigned kind) const { return locks_.at(kind); }
  void SetLock(unsigned kind, bool on) { locks_.at(kind) = on; }

  void FitChip(std::uint8_t address, I2cDevice* chip) { bus_.Attach(address, chip); }
  double TunedKHz() const { return frontEnd_->TunedKHz(); }

 protected:
  ~BtHardware() = default;

 private:
  void FitEeprom(const BtBoard& board);
  void FitTuner(const BtBoard& board);

  RequestGate gate_;
  ReferenceCount references_{0};

  const Air air_;
  I2cBus bus_;
  I2cSteps steps_{bus_};
  std::optional<Eeprom> eeprom_;
  std::optional<DyingChip> dyingEeprom_;
  std::unique_ptr<FrontEnd> frontEnd_;
  std::optional<BoardDriver> driver_;
  std::optional<std::uint32_t> setStandard_;
  std::array<bool, 2> locks_{};
};

}  // namespace zelk::virtual_cards
