// Base of the COM objects that this project implements itself: the host's system objects, the
// virtual cards, scripted objects in tests.
#pragma once

#include <atomic>
#include <type_traits>

#include "platform/interface_id.h"

namespace zelk {

// Reference counting and QueryInterface for an object that offers `Interfaces` and everything they
// extend. The object starts with one reference and deletes itself with the last.
template <class... Interfaces>
class ComObject : public Interfaces... {
 public:
  ComObject() = default;
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (iid == IidOf<IUnknown>()) {
      *object = Identity();
    } else {
      static_cast<void>((Offer<Interfaces, Interfaces>(iid, object) || ...));
    }
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~ComObject() = default;

 private:
  template <class First, class...>
  struct FirstOf {
    using Type = First;
  };

  // The IUnknown of the first interface is the object's identity.
  void* Identity() {
    using First = typename FirstOf<Interfaces...>::Type;
    return static_cast<IUnknown*>(static_cast<First*>(this));
  }

  template <class Interface, class Offered>
  bool Offer(REFIID iid, void** object) {
    // An interface without a known identity is handed out by its object alone, never by query.
    constexpr bool hasIdentity = requires { InterfaceId<Interface>::value; };
    if constexpr (std::is_same_v<Interface, IUnknown> || !hasIdentity) {
      return false;
    } else {
      if (iid == IidOf<Interface>()) {
        *object = static_cast<Interface*>(static_cast<Offered*>(this));
        return true;
      }
      return Offer<typename InterfaceId<Interface>::Base, Offered>(iid, object);
    }
  }

  std::atomic<ULONG> references_{1};
};

}  // namespace zelk
