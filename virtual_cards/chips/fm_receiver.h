// A complete FM receiver in one chip, of the TEA5767 class: five bytes in, five bytes out. It mixes
// from below, and a crystal of 13 MHz gives its loop steps of 50 kHz at four times the oscillator's
// frequency.
#pragma once

#include <array>

#include "virtual_cards/chips/i2c_bus.h"
#include "virtual_cards/chips/reception.h"
#include "virtual_cards/chips/settle_timer.h"

namespace zelk::virtual_cards {

class FmReceiver final : public I2cDevice {
 public:
  static constexpr std::uint8_t kAddress = 0xC0;

  // `air` must outlive the chip.
  explicit FmReceiver(const Air& air) : air_(air) {}

  // Divider high and low, then mode, set-up and reference. A shorter write leaves the rest as it
  // is.
  bool Write(std::span<const std::uint8_t> bytes) override;
  // Ready flag and divider, stereo and IF counter, level, nothing.
  bool Read(std::span<std::uint8_t> bytes) override;

  // 0 before the first write, in standby, with another crystal's settings, and beyond the ends of
  // the band selected.
  double TunedKHz() const;

 private:
  const Air& air_;
  SettleTimer settle_;
  std::array<std::uint8_t, 5> registers_{};
};

}  // namespace zelk::virtual_cards
