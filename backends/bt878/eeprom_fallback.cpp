#include "backends/bt878/eeprom_fallback.h"

#include "platform/win32.h"

namespace zelk {
namespace {

// A signed decimal number behind white space, up to the first character that is no digit; its low
// eight bits.
std::uint8_t LowByteOf(const char* text) {
  while (*text == ' ' || (*text >= '\t' && *text <= '\r')) ++text;
  const bool negative = *text == '-';
  if (*text == '-' || *text == '+') ++text;
  std::uint32_t value = 0;
  for (; *text >= '0' && *text <= '9'; ++text) {
    value = value * 10 + static_cast<std::uint32_t>(*text - '0');
  }
  return static_cast<std::uint8_t>(negative ? 0 - value : value);
}

}  // namespace

std::uint8_t EepromFallback(std::uint8_t address) {
  char key[8];
  wsprintfA(key, "0x%X", static_cast<unsigned>(address));
  char text[16] = {};
  GetPrivateProfileStringA("PRODUCTINFO", key, "", text, sizeof(text), "Telmora2k.ini");
  return *text ? LowByteOf(text) : 0xFF;
}

}  // namespace zelk
