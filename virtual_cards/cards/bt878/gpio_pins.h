// The Bt878's 24 GPIO pins with the remote-control receiver of these boards.
#pragma once

#include <cstdint>

namespace zelk::virtual_cards {

class GpioPins {
 public:
  static constexpr unsigned kCount = 24;

  // Makes a pin an output or an input. `pin` is below kCount.
  void SetOutputEnable(unsigned pin, bool output);
  // Pins `first` to `last`, the first in bit 0; they stand in order below kCount. An input shows
  // what the board puts on it, an output what the chip drives.
  std::uint32_t Read(unsigned first, unsigned last) const;

  void ShowKey(std::uint8_t code);
  void ShowNoKey() { inputs_ = 0; }

 private:
  // The driver leaves the receiver's pins as outputs, driven low, until somebody wants to read
  // them.
  std::uint32_t outputEnables_ = kRemotePins;
  std::uint32_t inputs_ = 0;

  static constexpr unsigned kRemoteFirst = 15;
  static constexpr std::uint32_t kRemotePins = 0x1FFU << kRemoteFirst;
};

}  // namespace zelk::virtual_cards
