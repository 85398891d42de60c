// Ownership of COM references. Every interface that this library takes lives in a ComPtr; nothing
// else calls Release.
#pragma once

#include <utility>

#include "platform/interface_id.h"

namespace zelk {

template <class Interface>
class ComPtr {
 public:
  constexpr ComPtr() = default;
  // Takes a reference of its own.
  explicit ComPtr(Interface* shared) : pointer_(shared) {
    if (pointer_) pointer_->AddRef();
  }
  ComPtr(const ComPtr& other) : ComPtr(other.pointer_) {}
  ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~ComPtr() { Reset(); }

  // Wraps a reference that the caller already owns.
  static ComPtr Adopt(Interface* owned) {
    ComPtr result;
    result.pointer_ = owned;
    return result;
  }

  Interface* Get() const { return pointer_; }
  Interface* operator->() const { return pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }

  void Reset() {
    if (Interface* old = std::exchange(pointer_, nullptr)) old->Release();
  }

  // The place for an out argument of a call that keeps it empty when it fails, as the objects of
  // this project do. What was held is released first. Calls to others go through Obtain.
  Interface** Receive() {
    Reset();
    return &pointer_;
  }
  void** ReceiveVoid() { return reinterpret_cast<void**>(Receive()); }

  // Hands the reference to the caller.
  [[nodiscard]] Interface* Detach() { return std::exchange(pointer_, nullptr); }

 private:
  Interface* pointer_ = nullptr;
};

// Makes a call that hands out an interface: `call(place)` with the place for it. A call that claims
// success but delivers nothing counts as E_NOINTERFACE, and whatever a failed call left behind is
// not touched.
template <class Interface, class Call>
HRESULT Obtain(ComPtr<Interface>& result, Call call) {
  result.Reset();
  Interface* object = nullptr;
  const HRESULT code = call(&object);
  if (FAILED(code)) return code;
  result = ComPtr<Interface>::Adopt(object);
  return object ? code : E_NOINTERFACE;
}

// The same for a call that is told which interface is wanted: `call(iid, place)`.
template <class Interface, class Call>
HRESULT ObtainAs(ComPtr<Interface>& result, Call call) {
  return Obtain(result, [&](Interface** place) {
    return call(IidOf<Interface>(), reinterpret_cast<void**>(place));
  });
}

// Asks `source` (null allowed) for an interface.
template <class Interface>
HRESULT Query(IUnknown* source, ComPtr<Interface>& result) {
  return ObtainAs(result, [&](REFIID iid, void** place) {
    return source ? source->QueryInterface(iid, place) : E_POINTER;
  });
}

template <class Interface>
HRESULT CreateInstance(REFCLSID classId, DWORD context, ComPtr<Interface>& result) {
  return ObtainAs(result, [&](REFIID iid, void** place) {
    return CoCreateInstance(classId, nullptr, context, iid, place);
  });
}

// The next of what an enumerator lists; empty behind the last, where S_FALSE is the answer. A list
// that claims to have one more but hands out nothing has ended.
template <class Interface, class Enumerator>
ComPtr<Interface> NextOf(Enumerator& list) {
  ComPtr<Interface> next;
  Obtain(next, [&](Interface** place) {
    const HRESULT code = list.Next(1, place, nullptr);
    return code == S_OK ? code : E_FAIL;
  });
  return next;
}

}  // namespace zelk
