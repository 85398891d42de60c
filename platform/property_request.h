// Requests on a driver's property set. The drivers of these cards take one buffer as instance data
// and as property data, with the same length for both.
#pragma once

#include "platform/dshow.h"

namespace zelk {

// Both answer E_FAIL without an interface, else the driver's code.
inline HRESULT SetProperty(IKsPropertySet* properties, REFGUID set, DWORD id, void* block,
                           DWORD size) {
  return properties ? properties->Set(set, id, block, size, block, size) : E_FAIL;
}

inline HRESULT GetProperty(IKsPropertySet* properties, REFGUID set, DWORD id, void* block,
                           DWORD size) {
  DWORD returned = 0;
  return properties ? properties->Get(set, id, block, size, block, size, &returned) : E_FAIL;
}

template <class Block>
HRESULT SetProperty(IKsPropertySet* properties, REFGUID set, DWORD id, Block& block) {
  return SetProperty(properties, set, id, &block, sizeof(Block));
}

template <class Block>
HRESULT GetProperty(IKsPropertySet* properties, REFGUID set, DWORD id, Block& block) {
  return GetProperty(properties, set, id, &block, sizeof(Block));
}

// Whether the driver says that it offers a property for reading (KSPROPERTY_SUPPORT_GET) or writing
// (KSPROPERTY_SUPPORT_SET). A driver that does not answer offers nothing.
inline bool IsSupported(IKsPropertySet* properties, REFGUID set, DWORD id, DWORD access) {
  DWORD support = 0;
  return properties && SUCCEEDED(properties->QuerySupported(set, id, &support)) &&
         (support & access) != 0;
}

}  // namespace zelk
