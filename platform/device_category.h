// The devices of a category of the system device enumerator.
#pragma once

#include "platform/com_ptr.h"

namespace zelk {

// Empty for a category without devices and for one that cannot be had.
inline ComPtr<IEnumMoniker> EnumerateCategory(REFCLSID category) {
  ComPtr<ICreateDevEnum> devices;
  ComPtr<IEnumMoniker> monikers;
  if (SUCCEEDED(CreateInstance(kClsidSystemDeviceEnum, CLSCTX_INPROC_SERVER, devices))) {
    Obtain(monikers, [&](IEnumMoniker** place) {
      return devices->CreateClassEnumerator(category, place, 0);
    });
  }
  return monikers;
}

// The device that a moniker stands for; empty when it cannot be made.
template <class Interface>
ComPtr<Interface> BindDevice(IMoniker& moniker) {
  ComPtr<Interface> device;
  ObtainAs(device, [&](REFIID iid, void** place) {
    return moniker.BindToObject(nullptr, nullptr, iid, place);
  });
  return device;
}

// A text among a device's properties, for as long as the object lives.
class DeviceText {
 public:
  DeviceText(IMoniker& moniker, const OLECHAR* property) {
    VariantInit(&value_);
    ComPtr<IPropertyBag> properties;
    if (FAILED(ObtainAs(properties, [&](REFIID iid, void** place) {
          return moniker.BindToStorage(nullptr, nullptr, iid, place);
        }))) {
      return;
    }
    value_.vt = VT_BSTR;
    value_.bstrVal = nullptr;
    const HRESULT code = properties->Read(property, &value_, nullptr);
    // What a failed call left behind is not touched.
    if (FAILED(code)) VariantInit(&value_);
    known_ = code == S_OK && value_.vt == VT_BSTR && value_.bstrVal;
  }
  DeviceText(const DeviceText&) = delete;
  DeviceText& operator=(const DeviceText&) = delete;
  ~DeviceText() { VariantClear(&value_); }

  // Null when the device does not tell.
  const OLECHAR* Get() const { return known_ ? value_.bstrVal : nullptr; }

 private:
  VARIANT value_;
  bool known_ = false;
};

class DeviceName : public DeviceText {
 public:
  explicit DeviceName(IMoniker& moniker) : DeviceText(moniker, L"FriendlyName") {}
};

}  // namespace zelk
