#include "backends/bt88x/library_bus.h"

#include "backends/bt88x/remote_control.h"
#include "backends/tuner_modules/bus_addresses.h"
#include "common/store.h"

namespace zelk {

constinit PioGate880Api pioGate880;

namespace {

constexpr NamedEntry kEntries[] = {
    {"InitIO", &pioGate880.InitIo},
    {"FreeIO", &pioGate880.FreeIo},
    {"I2CIsInitOK", &pioGate880.I2cIsInitOk},
    {"I2CInitSWMode", &pioGate880.I2cInitSwMode},
    {"I2CSWStart", &pioGate880.I2cSwStart},
    {"I2CSWWrite", &pioGate880.I2cSwWrite},
    {"I2CSWRead", &pioGate880.I2cSwRead},
    {"I2CSWStop", &pioGate880.I2cSwStop},
    {"ReadDecoder", &pioGate880.ReadDecoder},
    {"SetGPIEBit", &pioGate880.SetGpieBit},
    {"GetGPDataBits", &pioGate880.GetGpDataBits},
    {"SetGPIOPort", &pioGate880.SetGpioPort},
    {"GetGPData", &pioGate880.GetGpData},
    {"SetGPData", &pioGate880.SetGpData},
};

constexpr int kRemotePort = 2;

}  // namespace

constinit const std::span<const NamedEntry> kPioGate880Entries = kEntries;

HRESULT Bt88xLibraryBus::ReadEeprom(std::uint8_t address, std::uint8_t* byte) {
  std::uint8_t value = 0;
  Start();
  Send(kEepromAddress);
  Send(address);
  Start();
  Send(kEepromAddress | 1);
  Receive(&value);
  Store(byte, value);
  return Stop();
}

HRESULT Bt88xLibraryBus::ReadRemote(std::uint32_t* code) {
  std::uint32_t levels = 0;
  pioGate880.SetGpioPort(kRemotePort);
  if (pioGate880.GetGpData(&levels, 0, 0) == 0) return E_FAIL;
  Store(code, RemoteCodeOfPort(static_cast<std::uint8_t>(levels)));
  return S_OK;
}

}  // namespace zelk
