#include "virtual_cards/cards/trace_line.h"

namespace zelk::virtual_cards {

namespace {

std::uint32_t WordAt(std::span<const std::uint8_t> bytes) {
  return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

}  // namespace

TraceLine& TraceLine::Text(std::string_view text) {
  text_ += text;
  return *this;
}

TraceLine& TraceLine::Byte(std::uint8_t value) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  text_ += kDigits[value >> 4];
  text_ += kDigits[value & 0xF];
  return *this;
}

TraceLine& TraceLine::Bytes(std::span<const std::uint8_t> values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (i > 0) Text(" ");
    Byte(values[i]);
  }
  return *this;
}

TraceLine& TraceLine::Word(std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) Byte(static_cast<std::uint8_t>(value >> shift));
  return *this;
}

TraceLine& TraceLine::Words(std::span<const std::uint8_t> values) {
  for (bool first = true; values.size() >= 4; first = false) {
    if (!first) Text(" ");
    Word(WordAt(values));
    values = values.subspan(4);
    if (!values.empty() && values.size() < 4) Text(" ");
  }
  return Bytes(values);
}

TraceLine& TraceLine::Hex(std::uint32_t value) {
  TraceLine padded;
  padded.Word(value);
  const std::size_t start = padded.text_.find_first_not_of('0');
  return Text(start == std::string::npos ? "0" : std::string_view(padded.text_).substr(start));
}

TraceLine& TraceLine::Number(std::int64_t value) { return Text(std::to_string(value)); }

TraceLine& TraceLine::Identity(const GUID& value) {
  Text("{").Word(value.Data1).Text("-");
  Byte(static_cast<std::uint8_t>(value.Data2 >> 8)).Byte(static_cast<std::uint8_t>(value.Data2));
  Text("-");
  Byte(static_cast<std::uint8_t>(value.Data3 >> 8)).Byte(static_cast<std::uint8_t>(value.Data3));
  Text("-").Byte(value.Data4[0]).Byte(value.Data4[1]).Text("-");
  for (int i = 2; i < 8; ++i) Byte(value.Data4[i]);
  return Text("}");
}

}  // namespace zelk::virtual_cards
