// What sits on a virtual CX2388x card.
#pragma once

#include "virtual_cards/cards/bt_family/hardware.h"

namespace zelk::virtual_cards {

class Cx2388xHardware final : public BtHardware {
 public:
  using BtHardware::BtHardware;

  void ShowKey(std::uint8_t code);
  void ShowNoKey() { remoteLines_ = 0; }

  // One of the chip's three ports of eight GPIO lines.
  static constexpr unsigned kGpioPorts = 3;
  std::uint8_t GpioPort(unsigned port) const { return port == kRemotePort ? remoteLines_ : 0; }

  // A register of the video decoder, its low byte; those that nobody reads are 0.
  std::uint8_t DecoderRegister(unsigned index) const;

 private:
  static constexpr unsigned kRemotePort = 2;

  std::uint8_t remoteLines_ = 0;
};

}  // namespace zelk::virtual_cards
