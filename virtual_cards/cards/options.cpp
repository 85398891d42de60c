#include "virtual_cards/cards/options.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>

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
  std::ifstream file(std::string(option.value), std::ios::binary);
  const std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  Eeprom::Image image;
  if (!file.is_open() || content.size() != image.size()) {
    RejectOption(option, "\"none\" or a readable file of 256 bytes");
  }
  std::copy(content.begin(), content.end(), image.begin());
  return image;
}

}  // namespace zelk::virtual_cards
