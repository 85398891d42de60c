// A COM object whose references a test can count.
#pragma once

#include "platform/com_object.h"

namespace zelk::testing {

class CountedObject : public ComObject<IPersist> {
 public:
  HRESULT STDMETHODCALLTYPE GetClassID(CLSID*) override { return E_NOTIMPL; }
};

inline ULONG References(IUnknown* object) {
  object->AddRef();
  return object->Release();
}

}  // namespace zelk::testing
