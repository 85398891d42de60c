// Objects of COM classes and of device categories, as tests ask for them.
#pragma once

#include <string>

#include "platform/com_object.h"
#include "platform/device_category.h"

namespace zelk::test {

template <class Interface>
HRESULT Create(REFCLSID classId, ComPtr<Interface>& result, IUnknown* outer = nullptr) {
  return CoCreateInstance(classId, outer, CLSCTX_INPROC_SERVER, IidOf<Interface>(),
                          result.ReceiveVoid());
}

// The device of a category with a friendly name, bound to `Interface`; null when there is none.
template <class Interface>
ComPtr<Interface> FindDevice(REFCLSID category, const std::wstring& name) {
  const ComPtr<IEnumMoniker> devices = EnumerateCategory(category);
  if (!devices) return {};
  while (const ComPtr<IMoniker> device = NextOf<IMoniker>(*devices.Get())) {
    const DeviceName own(*device.Get());
    if (!own.Get() || own.Get() != name) continue;
    ComPtr<Interface> found;
    device->BindToObject(nullptr, nullptr, IidOf<Interface>(), found.ReceiveVoid());
    return found;
  }
  return {};
}

// How many references to an object there are.
inline ULONG References(IUnknown* object) {
  object->AddRef();
  return object->Release();
}

}  // namespace zelk::test
