// The I2C bus, through the Vamp server. Every transfer selects its device anew.
#include <memory>
#include <new>

#include "backends/saa713x/bus_addresses.h"
#include "backends/saa713x/saa713x_device.h"
#include "backends/tuner_modules/words.h"
#include "common/store.h"

namespace zelk {

HRESULT Saa713xDevice::WriteBus(std::uint8_t device, const std::uint8_t* bytes,
                                std::uint32_t count) {
  ULONG status = 0;
  I2c->SelectDevice(device);
  return I2c->Write(bytes, count, &status);
}

bool Saa713xDevice::ReadBus(std::uint8_t device, std::uint8_t* buffer, std::uint32_t count) {
  ULONG status = 0;
  I2c->SelectDevice(device);
  return I2c->Read(buffer, count, &status) == S_OK && status != kVampBusFailed;
}

HRESULT Saa713xDevice::ReadBusAt(std::uint8_t device, std::uint8_t subaddress, std::uint8_t* buffer,
                                 std::uint32_t count) {
  ULONG status = 0;
  I2c->SelectDevice(device);
  return I2c->ReadAt(subaddress, buffer, count, &status);
}

HRESULT Saa713xDevice::I2CWriteSequence(std::uint8_t device, const std::uint8_t* bytes,
                                        std::uint32_t count) {
  if (!Ready("SAA713x I2CWriteSequence(): Hardware not initial")) return E_FAIL;
  const HRESULT code = bytes || count == 0 ? WriteBus(device, bytes, count) : E_FAIL;
  if (FAILED(code)) Log("SAA713x I2CWriteSequence() fail");
  return code;
}

HRESULT Saa713xDevice::I2CReadSequence(std::uint8_t device, std::uint8_t* buffer,
                                       std::uint32_t count) {
  if (!Ready("SAA713x I2CReadSequence(): Hardware not initial")) return E_FAIL;
  std::unique_ptr<std::uint8_t[]> dropped;
  if (!buffer) {
    dropped.reset(new (std::nothrow) std::uint8_t[count]);
    buffer = dropped.get();
  }
  if (buffer && ReadBus(device, buffer, count)) return S_OK;
  Log("SAA713x I2CRead() fail");
  return E_FAIL;
}

HRESULT Saa713xDevice::I2CRead(std::uint8_t device, std::uint8_t* byte) {
  if (!Ready("SAA713x I2CRead(): Hardware not initial")) return E_FAIL;
  if (ReadBus(device, byte, 1)) return S_OK;
  Log("SAA713x I2CRead() fail");
  return E_FAIL;
}

HRESULT Saa713xDevice::I2CWriteDWord(std::uint8_t device, std::uint16_t word1,
                                     std::uint16_t word2) {
  if (!Ready("SAA713x I2CWriteDWord(): Hardware not initial")) return E_FAIL;
  const auto bytes = WordBytes(word1, word2);
  const HRESULT code = WriteBus(device, bytes.data(), bytes.size());
  if (FAILED(code)) Log("SAA713x I2CWriteDWord() fail");
  return code;
}

HRESULT Saa713xDevice::ReadEEPROM(std::uint8_t address, std::uint8_t* byte) {
  if (!Ready("SAA713x ReadEEPROM(): Hardware not initial")) return E_FAIL;
  std::uint8_t value = 0;
  if (ReadBusAt(kEepromAddress, address, &value, 1) == S_OK) {
    Store(byte, value);
    return S_OK;
  }
  Store(byte, 0);
  Log("SAA713x ReadEEPROM(): Read data fail");
  return E_FAIL;
}

}  // namespace zelk
