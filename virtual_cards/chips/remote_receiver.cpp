#include "virtual_cards/chips/remote_receiver.h"

#include <algorithm>

namespace zelk::virtual_cards {

void RemoteReceiver::PressKey(std::uint8_t kind, std::uint8_t code) {
  kind_ = kind;
  code_ = code;
}

bool RemoteReceiver::Write(std::span<const std::uint8_t> bytes) {
  if (!bytes.empty()) pointer_ = bytes[0];
  return true;
}

bool RemoteReceiver::Read(std::span<std::uint8_t> bytes) {
  std::uint8_t value = 0;
  if (pointer_ == kKindRegister) value = kind_;
  if (pointer_ == kCodeRegister) value = code_;
  std::fill(bytes.begin(), bytes.end(), value);
  return true;
}

}  // namespace zelk::virtual_cards
