#include "virtual_cards/cards/bt_family/hardware.h"

#include <utility>

#include "virtual_cards/chips/silicon_front_end.h"
#include "virtual_cards/chips/tuner_can.h"

namespace zelk::virtual_cards {

namespace {

constexpr std::uint32_t kTda8275Type = 40;

}  // namespace

BtHardware::BtHardware(const BtBoard& board, Air air) : air_(std::move(air)) {
  FitEeprom(board);
  FitTuner(board);
}

void BtHardware::FitEeprom(const BtBoard& board) {
  if (board.eepromState == EepromState::kMissing) return;
  eeprom_.emplace(board.eeprom);
  bus_.Attach(Eeprom::kAddress, &*eeprom_);
  if (board.eepromState != EepromState::kDying) return;
  dyingEeprom_.emplace(*eeprom_, board.eepromTransfers);
  bus_.Attach(Eeprom::kAddress, &*dyingEeprom_);
}

void BtHardware::FitTuner(const BtBoard& board) {
  if (board.tunerType == kTda8275Type) {
    auto silicon = std::make_unique<SiliconFrontEnd>(SiliconRevision::kTda8275, air_);
    silicon->AttachTo(bus_);
    driver_.emplace(bus_, silicon->Revision());
    frontEnd_ = std::move(silicon);
    return;
  }
  auto can = std::make_unique<TunerCan>(board.tunerType, air_, board.pllAddress, board.make);
  can->AttachTo(bus_);
  driver_.emplace(bus_, *FindTunerModel(board.tunerType, board.make),
                  FindFmSection(board.tunerType, board.make), board.pllAddress);
  frontEnd_ = std::move(can);
}

std::uint32_t BtHardware::VideoStandard() const {
  if (setStandard_) return *setStandard_;
  return air_.tv.empty() ? 0 : air_.tv.front().standard;
}

}  // namespace zelk::virtual_cards
