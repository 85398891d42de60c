#include "backends/bt88x/driver_bus.h"

#include <algorithm>

#include "backends/bt88x/remote_control.h"
#include "backends/bt_family/software_i2c.h"
#include "common/store.h"
#include "common/wait.h"

namespace zelk {
namespace {

constexpr DWORD kRegisterProperty = 6;
constexpr DWORD kEepromAddressProperty = 104;
constexpr DWORD kEepromDataProperty = 105;

constexpr std::uint32_t kSelectRegister = 0x30000001;
constexpr std::uint32_t kReadRegister = 0x30000003;

constexpr std::uint32_t kTransferFailed = 1;

// GPIO registers of the decoder, eight lines each, the lowest first.
constexpr std::uint32_t kGpioRegisters[] = {0x350010, 0x350014, 0x350018};

constexpr char kReadFailure[] = " I2CRead(): Read data fail";

}  // namespace

// The driver reports a failed transfer in the block, not by its code.
HRESULT Bt88xDriverBus::Judge(HRESULT code, const KsI2cRequest& request,
                              const char* failure) const {
  if (SUCCEEDED(code) && request.status != kTransferFailed) return S_OK;
  Log.Say(failure);
  return E_FAIL;
}

HRESULT Bt88xDriverBus::Write(std::uint8_t device, const std::uint8_t* bytes, std::uint32_t count) {
  WaitMs(kI2cGapMs);
  KsI2cRequest request = I2cRequest(I2cCommand::HardwareWrite);
  request.address = device;
  std::copy_n(bytes, count, request.bytes);
  request.count = count;
  const HRESULT code = Set(kI2cProperty, request);
  // Quirk: a write fails with the line of a read.
  return Judge(code, request, kReadFailure);
}

HRESULT Bt88xDriverBus::Read(std::uint8_t device, std::optional<std::uint8_t>& byte) {
  WaitMs(kI2cGapMs);
  KsI2cRequest select = I2cRequest(I2cCommand::SetReadAddress);
  select.address = device;
  HRESULT code = Set(kI2cProperty, select);
  code = Judge(code, select, " I2CRead(): Set Read Address fail");
  if (FAILED(code)) return code;
  KsI2cRequest request = I2cRequest(I2cCommand::HardwareRead);
  code = Get(kI2cProperty, request);
  byte = request.data;
  return Judge(code, request, kReadFailure);
}

HRESULT Bt88xDriverBus::ReadEeprom(std::uint8_t address, std::uint8_t* byte) {
  KsEepromRequest select = {};
  select.byte = address;
  Set(kEepromAddressProperty, select);
  KsEepromRequest request = {};
  const HRESULT code = Get(kEepromDataProperty, request);
  Store(byte, request.byte);
  return code;
}

HRESULT Bt88xDriverBus::ReadGpio(std::uint32_t& levels) {
  if (!Capture) {
    Log.Say(" Internal_ReadGPIO() no video caprture filter");
    return E_FAIL;
  }
  levels = 0;
  HRESULT code = E_FAIL;
  std::uint32_t shift = 0;
  for (const std::uint32_t address : kGpioRegisters) {
    KsRegRequest select = {};
    select.command = kSelectRegister;
    select.address = address;
    Set(kRegisterProperty, select);
    KsRegRequest request = {};
    request.command = kReadRegister;
    request.address = address;
    code = Get(kRegisterProperty, request);
    levels |= (request.value & 0xFF) << shift;
    shift += 8;
  }
  if (FAILED(code)) Log.Say(" Internal_ReadGPIO() fail");
  return code;
}

HRESULT Bt88xDriverBus::ReadRemote(std::uint32_t* code) {
  std::uint32_t levels = 0;
  if (FAILED(ReadGpio(levels))) return E_FAIL;
  Store(code, RemoteCodeOfPort(static_cast<std::uint8_t>(levels >> 16)));
  return S_OK;
}

}  // namespace zelk
