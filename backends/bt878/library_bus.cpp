#include "backends/bt878/library_bus.h"

#include "backends/bt878/eeprom_fallback.h"
#include "backends/bt878/remote_control.h"
#include "backends/tuner_modules/bus_addresses.h"
#include "common/store.h"

namespace zelk {

constinit PioGateApi pioGate;

namespace {

constexpr NamedEntry kEntries[] = {
    {"INIT_IO", &pioGate.InitIo},
    {"FREE_IO", &pioGate.FreeIo},
    {"I2CISINITOK", &pioGate.I2cIsInitOk},
    {"I2CINITSWMODE", &pioGate.I2cInitSwMode},
    {"I2CSWSTART", &pioGate.I2cSwStart},
    {"I2CSWWRITE", &pioGate.I2cSwWrite},
    {"I2CSWREAD", &pioGate.I2cSwRead},
    {"I2CSWSTOP", &pioGate.I2cSwStop},
    {"READDECODER", &pioGate.ReadDecoder},
    {"SETGPIEBIT", &pioGate.SetGpieBit},
    {"GETGPDATABITS", &pioGate.GetGpDataBits},
};

}  // namespace

constinit const std::span<const NamedEntry> kPioGateEntries = kEntries;

HRESULT Bt878LibraryBus::ReadEeprom(std::uint8_t address, std::uint8_t* byte) {
  for (int probe = 0; probe < 3; ++probe) {
    Start();
    if (FAILED(Send(kEepromAddress))) return E_FAIL;
  }
  Store(byte, EepromFallback(address));
  return E_FAIL;
}

HRESULT Bt878LibraryBus::ReadRemote(std::uint32_t* code) {
  if (!pioGate.SetGpieBit) return E_FAIL;
  for (std::uint32_t pin = kFirstRemotePin; pin <= kLastRemotePin; ++pin) {
    pioGate.SetGpieBit(static_cast<int>(pin), 0);
  }
  std::uint32_t levels = 0;
  pioGate.GetGpDataBits(kFirstRemotePin, kLastRemotePin, &levels, 0);
  Store(code, RemoteCodeOfPins(levels));
  return S_OK;
}

}  // namespace zelk
