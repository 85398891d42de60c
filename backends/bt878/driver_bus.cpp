#include "backends/bt878/driver_bus.h"

#include <algorithm>

#include "backends/bt878/eeprom_fallback.h"
#include "backends/bt878/remote_control.h"
#include "backends/tuner_modules/bus_addresses.h"
#include "common/store.h"
#include "common/wait.h"

namespace zelk {
namespace {

constexpr DWORD kGpioProperty = 2;
constexpr std::uint32_t kSetOutputEnable = 8;
constexpr std::uint32_t kReadLevels = 0x1000000B;

}  // namespace

bool Bt878DriverBus::HasDriver(const char* operation) const {
  if (!Capture) Log.Say(" ", operation, "() no video caprture filter");
  return static_cast<bool>(Capture);
}

HRESULT Bt878DriverBus::Judge(const char* operation, HRESULT code) const {
  if (FAILED(code)) Log.Say(" ", operation, "() fail");
  return code;
}

HRESULT Bt878DriverBus::Command(const char* operation, KsI2cRequest request) {
  return HasDriver(operation) ? Judge(operation, Set(kI2cProperty, request)) : E_FAIL;
}

// The answer alone is judged; the place receives the byte of the block in any case.
HRESULT Bt878DriverBus::CommandForByte(const char* operation, KsI2cRequest request,
                                       std::uint8_t* byte) {
  if (!HasDriver(operation)) return E_FAIL;
  Set(kI2cProperty, request);
  const HRESULT code = Get(kI2cProperty, request);
  Store(byte, request.data);
  return Judge(operation, code);
}

HRESULT Bt878DriverBus::InitI2c(bool hardware) {
  if (!HasDriver("Internal_I2C_Init")) return E_FAIL;
  Hardware = hardware;
  const HRESULT code = SetUpI2c(hardware ? I2cCommand::SetUpHardware : I2cCommand::SetUpSoftware);
  if (FAILED(code)) Log.Say(": Initial I2C fail");
  return code;
}

HRESULT Bt878DriverBus::Start() {
  return Command("Internal_I2CSWStart", I2cRequest(I2cCommand::SoftwareStart));
}

HRESULT Bt878DriverBus::Stop() {
  return Command("Internal_I2CSWStop", I2cRequest(I2cCommand::SoftwareStop));
}

HRESULT Bt878DriverBus::Send(std::uint8_t byte) {
  KsI2cRequest request = I2cRequest(I2cCommand::SoftwareWrite);
  request.data = byte;
  return Command("Internal_I2CSWWrite", request);
}

HRESULT Bt878DriverBus::Receive(std::uint8_t* byte) {
  return CommandForByte("Internal_I2CSWRead", I2cRequest(I2cCommand::SoftwareRead), byte);
}

HRESULT Bt878DriverBus::HardwareRead(std::uint8_t device, std::uint8_t* byte) {
  KsI2cRequest request = I2cRequest(I2cCommand::HardwareRead);
  request.address = device;
  return CommandForByte("Internal_I2CHWRead", request, byte);
}

HRESULT Bt878DriverBus::HardwareWrite(std::uint8_t device, const std::uint8_t* bytes,
                                      std::uint32_t count) {
  constexpr char kOperation[] = "Internal_I2CHWWriteSequence";
  if (!HasDriver(kOperation)) return E_FAIL;
  KsI2cRequest request = I2cRequest(I2cCommand::HardwareWrite);
  request.address = device;
  std::copy_n(bytes, count, request.bytes);
  request.count = count;
  HRESULT code = Set(kI2cProperty, request);
  if (SUCCEEDED(code)) code = Get(kI2cProperty, request);
  return Judge(kOperation, code);
}

// The hardware engine is set up anew before every transfer.
HRESULT Bt878DriverBus::Write(std::uint8_t device, const std::uint8_t* bytes, std::uint32_t count) {
  if (!Hardware) return WriteSequence(device, bytes, count);
  InitI2c(true);
  WaitMs(kI2cGapMs);
  return HardwareWrite(device, bytes, count);
}

HRESULT Bt878DriverBus::Read(std::uint8_t device, std::optional<std::uint8_t>& byte) {
  if (!Hardware) return ReadByte(device, &byte.emplace());
  InitI2c(true);
  WaitMs(kI2cGapMs);
  return HardwareRead(device, &byte.emplace());
}

HRESULT Bt878DriverBus::ReadEeprom(std::uint8_t address, std::uint8_t* byte) {
  constexpr int kProbes = 3;
  constexpr std::uint32_t kDataWaitMs = 32;
  bool present = false;
  for (int probe = 0; probe < kProbes && !present; ++probe) {
    Start();
    present = SUCCEEDED(Send(kEepromAddress));
    Stop();
  }
  if (!present) {
    Store(byte, EepromFallback(address));
    return E_FAIL;
  }
  if (!AddressEeprom(address)) return E_FAIL;
  WaitMs(kDataWaitMs);
  std::uint8_t value = 0;
  Receive(&value);
  Stop();
  Store(byte, value != 0xFF ? value : EepromFallback(address));
  return value != 0xFF ? S_OK : E_FAIL;
}

// Brings the chip to the point where it sends the byte. A chip that is busy is asked again.
bool Bt878DriverBus::AddressEeprom(std::uint8_t address) {
  constexpr int kAttempts = 10;
  for (int attempt = 0; attempt <= kAttempts; ++attempt) {
    if (attempt > 0) Stop();
    Start();
    if (attempt == kAttempts) break;
    if (FAILED(Send(kEepromAddress))) continue;
    WaitMs(kI2cGapMs);
    const HRESULT addressed = Send(address);
    Stop();
    if (FAILED(addressed)) continue;
    WaitMs(kI2cGapMs);
    Start();
    if (SUCCEEDED(Send(kEepromAddress | 1))) return true;
    Stop();
  }
  return false;
}

void Bt878DriverBus::MakeInput(std::uint32_t pin) {
  if (!HasDriver("Internal_SetGPIO")) return;
  KsGpioRequest request = {};
  request.command = kSetOutputEnable;
  request.pin = pin;
  Set(kGpioProperty, request);
  Get(kGpioProperty, request);
}

HRESULT Bt878DriverBus::ReadPins(std::uint32_t first, std::uint32_t last, std::uint32_t& levels) {
  if (!HasDriver("Internal_ReadGPIO")) return E_FAIL;
  KsGpioRequest request = {};
  request.command = kReadLevels;
  request.firstPin = first;
  request.lastPin = last;
  Set(kGpioProperty, request);
  const HRESULT code = Get(kGpioProperty, request);
  levels = request.levels;
  return code;
}

HRESULT Bt878DriverBus::ReadRemote(std::uint32_t* code) {
  for (std::uint32_t pin = kFirstRemotePin; pin <= kLastRemotePin; ++pin) MakeInput(pin);
  std::uint32_t levels = 0;
  const HRESULT result = ReadPins(kFirstRemotePin, kLastRemotePin, levels);
  Store(code, RemoteCodeOfPins(levels));
  return result;
}

}  // namespace zelk
