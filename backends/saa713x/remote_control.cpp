// The remote control: a receiver chip on the I2C bus, or eight GPIO lines on boards without one.
#include "backends/saa713x/bus_addresses.h"
#include "backends/saa713x/saa713x_device.h"
#include "common/store.h"
#include "platform/win32.h"

namespace zelk {
namespace {

// Registers of the receiver chip.
constexpr std::uint8_t kKeyCode = 0x0D;
constexpr std::uint8_t kKeyKind = 0x0B;
// The pause between its two registers.
constexpr DWORD kRegisterGapMs = 20;

constexpr std::uint8_t ReverseFiveBits(std::uint8_t code) {
  std::uint8_t reversed = 0;
  for (int bit = 0; bit < 5; ++bit) {
    if ((code >> bit) & 1) reversed |= 0x10 >> bit;
  }
  return reversed;
}

}  // namespace

HRESULT Saa713xDevice::GetRemoteICData(std::uint8_t* key) {
  if (!Ready("SAA713x GetRemoteICData(): Hardware not initial")) return E_FAIL;
  std::uint8_t code = 0;
  std::uint8_t kind = 0;
  ULONG status = 0;
  WriteBus(kRemoteChipAddress, &kKeyCode, 1);
  I2c->Read(&code, 1, &status);
  Sleep(kRegisterGapMs);
  WriteBus(kRemoteChipAddress, &kKeyKind, 1);
  const HRESULT result = I2c->Read(&kind, 1, &status);

  std::uint8_t value = 0;
  if (kind == 2 && code <= 3) value = 0x30 + code;
  if (kind == 2 && code == 0xFF) value = 1;
  if (kind == 3 && code <= 3) value = 0x20 + code;
  Store(key, value);
  return result;
}

HRESULT Saa713xDevice::GetRemoteData(std::uint32_t* data) {
  if (!Ready("SAA713x GetRemoteData(): Hardware not initial")) return E_FAIL;
  std::uint8_t key = 0;
  const HRESULT result = RemotePresent ? RemoteFromChip(key) : RemoteFromGpio(key);
  Store(data, key);
  return result;
}

HRESULT Saa713xDevice::RemoteFromChip(std::uint8_t& key) {
  std::uint8_t code = 0;
  std::uint8_t kind = 0;
  ReadBusAt(kRemoteChipAddress, kKeyCode, &code, 1);
  Sleep(kRegisterGapMs);
  const HRESULT result = ReadBusAt(kRemoteChipAddress, kKeyKind, &kind, 1);
  // The first kind of key pad has 32 keys, the second four.
  const std::uint8_t keys = kind == 2 ? 32 : kind == 3 ? 4 : 0;
  if (code < keys) key = ReverseFiveBits(code) * 8 + kind;
  return result;
}

HRESULT Saa713xDevice::RemoteFromGpio(std::uint8_t& key) {
  ULONG level = 0;
  Gpio->ReadLine(kRemoteDataLine, &level);
  if (level == 1) key |= 1;
  level = 0;
  const HRESULT startCode = Gpio->ReadLine(kRemoteDataLine + 1, &level);
  if (level != 1) {
    // The second start bit is always high while a key waits.
    key = 0;
    return startCode;
  }
  key |= 2;
  for (std::uint32_t bit = 2; bit < 8; ++bit) {
    level = 0;
    Gpio->ReadLine(kRemoteDataLine + bit, &level);
    if (level == 1) key |= 1 << bit;
  }
  return Gpio->SetLine(kRemoteAcknowledgeLine, 1);
}

}  // namespace zelk
