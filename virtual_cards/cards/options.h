// A virtual card's options as a person writes them.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_cards/chips/eeprom.h"

namespace zelk::virtual_cards {

// "KEY=VALUE".
struct OptionText {
  std::string_view key;
  std::string_view value;
};

// Throws std::invalid_argument: the option, and what it wants.
[[noreturn]] void RejectOption(const OptionText& option, std::string_view wanted);

// Decimal, or hexadecimal behind 0x.
std::optional<std::uint32_t> ParseNumber(std::string_view text);
// 0 or 1; rejects anything else.
bool ParseFlag(const OptionText& option);
// A file of 256 bytes, or nothing for "none"; rejects anything else.
std::optional<Eeprom::Image> ParseEepromImage(const OptionText& option);

// A key that a family of cards knows; `parse` puts its value into the family's own record.
template <class Parsed>
struct OptionParser {
  std::string_view key;
  void (*parse)(const OptionText& option, Parsed& parsed);
};

// Puts all options into `parsed`. Throws std::invalid_argument with a message for people;
// `cardName` is the card with its article ("an SAA713x card").
template <class Parsed>
void ParseOptions(std::span<const OptionText> options,
                  std::span<const OptionParser<Parsed>> parsers, std::string_view cardName,
                  Parsed& parsed) {
  for (const OptionText& option : options) {
    const OptionParser<Parsed>* found = nullptr;
    std::string known;
    for (const OptionParser<Parsed>& parser : parsers) {
      if (parser.key == option.key) found = &parser;
      known += (known.empty() ? "" : ", ") + std::string(parser.key);
    }
    if (!found) {
      throw std::invalid_argument("unknown option \"" + std::string(option.key) + "\" of " +
                                  std::string(cardName) + "; there are " + known);
    }
    found->parse(option, parsed);
  }
}

}  // namespace zelk::virtual_cards
