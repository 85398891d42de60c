// The devices of a category of the system device enumerator.
#pragma once

#include "platform/com_ptr.h"

namespace zelk {

// Empty for a category without devices and for one that cannot be had.
inline ComPtr<IEnumMoniker> EnumerateCategory(REFCLSID category) {
  ComPtr<ICreateDevEnum> deviceEnumerator;
  ComPtr<IEnumMoniker> monikers;
  if (SUCCEEDED(CoCreateInstance(kClsidSystemDeviceEnum, nullptr, CLSCTX_INPROC_SERVER,
                                 IidOf<ICreateDevEnum>(), deviceEnumerator.ReceiveVoid())) &&
      deviceEnumerator &&
      FAILED(deviceEnumerator->CreateClassEnumerator(category, monikers.Receive(), 0))) {
    monikers.Reset();
  }
  return monikers;
}

// A text among a device's properties, for as long as the object lives.
class DeviceText {
 public:
  DeviceText(IMoniker& moniker, const OLECHAR* property) {
    VariantInit(&value_);
    ComPtr<IPropertyBag> properties;
    if (FAILED(moniker.BindToStorage(nullptr, nullptr, IidOf<IPropertyBag>(),
                                     properties.ReceiveVoid())) ||
        !properties) {
      return;
    }
    value_.vt = VT_BSTR;
    value_.bstrVal = nullptr;
    known_ = properties->Read(property, &value_, nullptr) == S_OK && value_.vt == VT_BSTR &&
             value_.bstrVal;
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
