// Builds the text of one trace line. Bytes and words are upper-case hexadecimal.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/com.h"

namespace zelk::virtual_cards {

class TraceLine {
 public:
  TraceLine& Text(std::string_view text);
  TraceLine& Byte(std::uint8_t value);                     // "0D"
  TraceLine& Bytes(std::span<const std::uint8_t> values);  // "0D 62 CE"
  TraceLine& Word(std::uint32_t value);                    // "00007134"
  // Little-endian words, then what is left over as bytes: "00000001 00000031".
  TraceLine& Words(std::span<const std::uint8_t> values);
  TraceLine& Hex(std::uint32_t value);     // without leading zeros: "6F"
  TraceLine& Number(std::int64_t value);   // decimal
  TraceLine& Identity(const GUID& value);  // "{42D300A6-1CC7-4B6C-88DA-CD0B04603D55}"
  // In front of what the card answered.
  TraceLine& Answer() { return Text(" -> "); }

  const std::string& Str() const { return text_; }

 private:
  std::string text_;
};

}  // namespace zelk::virtual_cards
