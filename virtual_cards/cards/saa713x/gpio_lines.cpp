#include "virtual_cards/cards/saa713x/gpio_lines.h"

namespace zelk::virtual_cards {

namespace {

constexpr std::uint32_t kRemoteLines = 0xFFU << GpioLines::kRemoteFirst;

std::uint32_t WithBit(std::uint32_t word, unsigned bit, bool set) {
  const std::uint32_t mask = 1U << bit;
  return set ? word | mask : word & ~mask;
}

}  // namespace

void GpioLines::Set(unsigned line, bool high) {
  driven_ = WithBit(driven_, line, true);
  outputs_ = WithBit(outputs_, line, high);
  if (remoteOnLines_ && line == kRemoteAcknowledge && high) inputs_ &= ~kRemoteLines;
}

bool GpioLines::Read(unsigned line) const {
  const std::uint32_t levels = (outputs_ & driven_) | (inputs_ & ~driven_);
  return (levels >> line & 1) != 0;
}

void GpioLines::Drive(unsigned line, bool high) { inputs_ = WithBit(inputs_, line, high); }

void GpioLines::ShowKey(std::uint8_t kind, std::uint8_t code) {
  inputs_ &= ~kRemoteLines;
  for (unsigned bit = 0; bit < 2; ++bit) Drive(kRemoteFirst + bit, (kind >> bit & 1) != 0);
  for (unsigned bit = 0; bit < 5; ++bit) Drive(kRemoteFirst + 7 - bit, (code >> bit & 1) != 0);
}

}  // namespace zelk::virtual_cards
