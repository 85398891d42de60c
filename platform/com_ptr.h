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

  // The place for an out argument. What was held is released first.
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

// Asks `source` (null allowed) for an interface. A call that claims success but delivers nothing
// counts as E_NOINTERFACE, and whatever a failed call left behind is not touched.
template <class Interface>
HRESULT Query(IUnknown* source, ComPtr<Interface>& result) {
  result.Reset();
  if (!source) return E_POINTER;
  void* object = nullptr;
  const HRESULT code = source->QueryInterface(IidOf<Interface>(), &object);
  if (FAILED(code)) return code;
  if (!object) return E_NOINTERFACE;
  result = ComPtr<Interface>::Adopt(static_cast<Interface*>(object));
  return code;
}

// The next of what an enumerator lists; empty behind the last. A list that claims to have one more
// but hands out nothing has ended.
template <class Interface, class Enumerator>
ComPtr<Interface> NextOf(Enumerator& list) {
  ComPtr<Interface> next;
  if (list.Next(1, next.Receive(), nullptr) != S_OK) next.Reset();
  return next;
}

}  // namespace zelk
