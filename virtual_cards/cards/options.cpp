#include "virtual_cards/cards/options.h"

#include <algorithm>
#include <charconv>
#include <fstream>

namespace zelk::virtual_cards {

void RejectOption(const OptionText& option, std::string_view wanted) {
  throw std::invalid_argument(std::string(option.key) + "=" + std::string(option.value) +
                              ": wanted " + std::string(wanted));
}

std::optional<std::uint32_t> ParseNumber(std::string_view text) {
  int base = 10;
  if (text.starts_with("0x") || text.starts_with("0X")) {
    text.remove_prefix(2);
    base = 16;
  }
  std::uint32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

bool ParseFlag(const OptionText& option) {
  if (option.value != "0" && option.value != "1") RejectOption(option, "0 or 1");
  return option.value == "1";
}

std::optional<Eeprom::Image> ParseEepromImage(const OptionText& option) {
  if (option.value == "none") return std::nullopt;
  Eeprom::Image image;
  std::string content(image.size() + 1, '\0');
  std::ifstream file(std::string(option.value), std::ios::binary);
  // A folder opens like a file and fails when it is read.
  file.read(content.data(), static_cast<std::streamsize>(content.size()));
  if (static_cast<std::size_t>(file.gcount()) != image.size()) {
    RejectOption(option, "\"none\" or a readable file of 256 bytes");
  }
  std::copy_n(content.begin(), image.size(), image.begin());
  return image;
}

}  // namespace zelk::virtual_cards
