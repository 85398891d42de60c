// The conditions in which the EEPROM of a Bt878 or CX2388x board can be.
#pragma once

namespace zelk::virtual_cards {

enum class EepromState {
  kGood,
  kBlank,    // answers, but was never programmed
  kMissing,  // does not answer
  kDying,    // stops answering after some transfers
};

}  // namespace zelk::virtual_cards
