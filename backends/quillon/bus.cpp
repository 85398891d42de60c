// The I2C bus, the driver's two locks and the audio converter, through the capture filter's driver.
#include <algorithm>

#include "backends/quillon/driver_requests.h"
#include "backends/quillon/quillon_device.h"
#include "common/store.h"
#include "platform/property_request.h"
#include "platform/win32.h"

namespace zelk {
namespace {

// The lock properties, by lock index, and whether a driver without the lock is worth a line.
struct LockRow {
  DWORD property;
  const char* notSettable;
};

constexpr LockRow kLocks[] = {
    {kQl2Lock0, "Quillon SetHWLock: QuerySupported PropertySet fail"},
    {kQl2Lock1, nullptr},
};

const LockRow* FindLock(std::uint32_t index) {
  return index < std::size(kLocks) ? &kLocks[index] : nullptr;
}

constexpr std::uint8_t kAdcAddress = 0x34;

constexpr std::int32_t kLongestTransfer = sizeof(Ql2I2cRequest::data);

}  // namespace

bool QuillonDevice::ReadI2C(std::uint8_t address, std::uint8_t* buffer, std::int32_t length) {
  Ql2I2cRequest request = {.address = address, .length = static_cast<std::uint8_t>(length)};
  if (length > kLongestTransfer ||
      !IsSupported(CaptureProps.Get(), kPropsetQl2I2c, kQl2I2cRead, KSPROPERTY_SUPPORT_GET)) {
    return false;
  }
  const HRESULT code = GetProperty(CaptureProps.Get(), kPropsetQl2I2c, kQl2I2cRead, request);
  if (buffer && length > 0) std::copy_n(request.data, length, buffer);
  return code == S_OK;
}

bool QuillonDevice::WriteI2C(std::uint8_t address, const std::uint8_t* buffer,
                             std::int32_t length) {
  Ql2I2cRequest request = {.address = address, .length = static_cast<std::uint8_t>(length)};
  if (length > kLongestTransfer || (!buffer && length > 0) ||
      !IsSupported(CaptureProps.Get(), kPropsetQl2I2c, kQl2I2cWrite, KSPROPERTY_SUPPORT_SET)) {
    return false;
  }
  if (length > 0) std::copy_n(buffer, length, request.data);
  return SetProperty(CaptureProps.Get(), kPropsetQl2I2c, kQl2I2cWrite, request) == S_OK;
}

HRESULT QuillonDevice::I2CRead(std::uint8_t address, std::uint8_t* byte) {
  if (ReadI2C(address, byte, 1)) return S_OK;
  Log("Quillon I2CRead() fail");
  return E_FAIL;
}

HRESULT QuillonDevice::GetHWLock(std::uint32_t index, std::uint32_t* value) {
  const LockRow* const lock = FindLock(index);
  if (!lock ||
      !IsSupported(CaptureProps.Get(), kPropsetQl2Board, lock->property, KSPROPERTY_SUPPORT_GET)) {
    return E_FAIL;
  }
  Ql2BoardRequest request;
  const HRESULT code = GetProperty(CaptureProps.Get(), kPropsetQl2Board, lock->property, request);
  Store(value, request.payload0 & 0xFF);
  return code;
}

HRESULT QuillonDevice::SetHWLock(std::uint32_t index, std::uint32_t value) {
  if (!Ready("Quillon SetHWLock(): Hardware not initial")) return E_FAIL;
  if (!CaptureFilter) {
    Log("Quillon SetHWLock() no video caprture filter");
    return E_FAIL;
  }
  if (CurrentMode == Mode::None) {
    Log("Quillon SetHWLock(): Current mode not TV or FM");
    return VFW_E_WRONG_STATE;
  }
  const LockRow* const lock = FindLock(index);
  if (!lock) {
    Log("Unknown lock hardware type");
    return E_FAIL;
  }
  if (!IsSupported(CaptureProps.Get(), kPropsetQl2Board, lock->property, KSPROPERTY_SUPPORT_SET)) {
    if (lock->notSettable) Log(lock->notSettable);
    return E_FAIL;
  }
  Ql2BoardRequest request = {.payload0 = value & 0xFF};
  return SetProperty(CaptureProps.Get(), kPropsetQl2Board, lock->property, request);
}

HRESULT QuillonDevice::SetAdcVolume() {
  struct GainRow {
    std::uint8_t bytes[2];  // register, gain
    const char* failure;
  };
  static constexpr GainRow kGains[] = {{{0x00, 0x1F}, "Set ADC Volume R0 failed."},
                                       {{0x02, 0x1F}, "Set ADC Volume R1 failed."}};
  for (const GainRow& gain : kGains) {
    if (!WriteI2C(kAdcAddress, gain.bytes, sizeof(gain.bytes))) OutputDebugStringA(gain.failure);
  }
  OutputDebugStringA("end of set adc volume");
  return S_OK;
}

}  // namespace zelk
