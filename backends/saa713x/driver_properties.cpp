// The card driver's own property set: 32-bit values that pass through unchanged. These operations
// neither ask whether the card is initialised nor log: they need the capture filter alone.
#include "backends/saa713x/driver_property_ids.h"
#include "backends/saa713x/saa713x_device.h"
#include "common/store.h"
#include "platform/property_request.h"

namespace zelk {
namespace {

constexpr std::uint32_t kHardwareLocks = 2;

}  // namespace

HRESULT Saa713xDevice::SetDriverProperty(std::uint32_t id, std::uint32_t value) {
  return SetProperty(CaptureProps.Get(), kPropsetZelkSaa, id, value);
}

// The place receives the buffer whatever the driver answered: the preset when it wrote nothing.
HRESULT Saa713xDevice::GetDriverProperty(std::uint32_t id, std::uint32_t* value,
                                         std::uint32_t preset) const {
  if (!CaptureProps) return E_FAIL;
  const HRESULT code = GetProperty(CaptureProps.Get(), kPropsetZelkSaa, id, preset);
  Store(value, preset);
  return code;
}

HRESULT Saa713xDevice::SetHWLock(std::uint32_t index, std::uint32_t value) {
  return index < kHardwareLocks ? SetDriverProperty(kHardwareLock + index, value) : E_FAIL;
}

HRESULT Saa713xDevice::GetHWLock(std::uint32_t index, std::uint32_t* value) const {
  return index < kHardwareLocks ? GetDriverProperty(kHardwareLock + index, value) : E_FAIL;
}

HRESULT Saa713xDevice::SetTunerPowerState(std::uint32_t on) {
  if (Board.TunerPowerMode != 1) return S_FALSE;
  return SetDriverProperty(kTunerPowerDown, on == 0 ? 1 : 0);
}

HRESULT Saa713xDevice::SetRussiaFlag(std::uint32_t flag) {
  if (!CaptureProps) return E_FAIL;
  const HRESULT code = SetDriverProperty(kRussiaFlag, flag);
  RussiaFlag = flag;
  return code;
}

HRESULT Saa713xDevice::GetDecoder(std::uint32_t* chipNumber) const {
  return GetDriverProperty(kDecoderIdentity, chipNumber);
}

HRESULT Saa713xDevice::SetVolume(std::uint32_t value) { return SetDriverProperty(kVolume, value); }

HRESULT Saa713xDevice::SetFUSE(std::uint32_t value) { return SetDriverProperty(kFuse, value); }

HRESULT Saa713xDevice::GetFUSE(std::uint32_t* value) const {
  return GetDriverProperty(kFuse, value);
}

HRESULT Saa713xDevice::SetAudioSystemProperty(std::uint32_t value) {
  return SetDriverProperty(kAudioSystem, value);
}

HRESULT Saa713xDevice::GetAUDIOSYSTEM(std::uint32_t* value) const {
  return GetDriverProperty(kAudioSystem, value);
}

HRESULT Saa713xDevice::Set7135VirtualMode(std::uint32_t value) {
  return SetDriverProperty(k7135VirtualMode, value);
}

HRESULT Saa713xDevice::Set7135VirtualStereoEffect(std::uint32_t value) {
  return SetDriverProperty(k7135VirtualStereoEffect, value);
}

HRESULT Saa713xDevice::Set7135Bass(std::uint32_t value) {
  return SetDriverProperty(k7135Bass, value);
}

HRESULT Saa713xDevice::Set7135Treble(std::uint32_t value) {
  return SetDriverProperty(k7135Treble, value);
}

HRESULT Saa713xDevice::Get7135VirtualMode(std::uint32_t* value) const {
  return GetDriverProperty(k7135VirtualMode, value);
}

HRESULT Saa713xDevice::Get7135VirtualStereoEffect(std::uint32_t* value) const {
  return GetDriverProperty(k7135VirtualStereoEffect, value);
}

HRESULT Saa713xDevice::Get7135Bass(std::uint32_t* value) const {
  return GetDriverProperty(k7135Bass, value);
}

HRESULT Saa713xDevice::Get7135Treble(std::uint32_t* value) const {
  return GetDriverProperty(k7135Treble, value);
}

HRESULT Saa713xDevice::SetGainValue(std::uint32_t propertyId, std::uint32_t value) {
  return SetDriverProperty(propertyId, value);
}

// A driver that writes nothing leaves the property's own id in the place.
HRESULT Saa713xDevice::GetGainValue(std::uint32_t propertyId, std::uint32_t* value) const {
  return GetDriverProperty(propertyId, value, propertyId);
}

}  // namespace zelk
