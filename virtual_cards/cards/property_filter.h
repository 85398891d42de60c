// Base of a virtual card's filters: a driver's property sets, and DirectShow interfaces beside
// them.
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "virtual_cards/cards/card_object.h"
#include "virtual_cards/cards/property_dispatch.h"

namespace zelk::virtual_cards {

// A filter's texts in the trace.
struct FilterNames {
  std::string_view filter;
  std::string_view propertySetQuery;
  std::string_view interfaceQuery;   // for the first interface beside the property sets
  std::string_view graphQuery = {};  // for IBaseFilter behind it
};

template <class Interface, class... Further>
class PropertyFilter : public CardObject<IKsPropertySet, Interface, Further...>,
                       protected PropertyHandler {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    std::string_view request;
    if (iid == IidOf<IKsPropertySet>()) request = names_.propertySetQuery;
    if (iid == IidOf<IBaseFilter>()) request = names_.graphQuery;
    if (iid == IidOf<Interface>()) request = names_.interfaceQuery;
    return gate_.PassQuery(request, object, [&] { return Object::QueryInterface(iid, object); });
  }

  // --- IKsPropertySet ---
  HRESULT STDMETHODCALLTYPE Set(REFGUID set, DWORD id, LPVOID instance, DWORD instanceBytes,
                                LPVOID data, DWORD dataBytes) override {
    return dispatch_.Set(set, id, instance, instanceBytes, data, dataBytes);
  }
  HRESULT STDMETHODCALLTYPE Get(REFGUID set, DWORD id, LPVOID instance, DWORD instanceBytes,
                                LPVOID data, DWORD dataBytes, DWORD* returned) override {
    return dispatch_.Get(set, id, instance, instanceBytes, data, dataBytes, returned);
  }
  HRESULT STDMETHODCALLTYPE QuerySupported(REFGUID set, DWORD id, DWORD* support) override {
    return dispatch_.QuerySupported(set, id, support);
  }

 protected:
  // `gate` and `rows` must outlive the object.
  PropertyFilter(std::shared_ptr<ReferenceCount> references, RequestGate& gate,
                 const FilterNames& names, std::span<const PropertyRow> rows)
      : Object(std::move(references)),
        gate_(gate),
        names_(names),
        dispatch_(gate, names.filter, rows, *this) {}

  RequestGate& Gate() { return gate_; }

 private:
  using Object = CardObject<IKsPropertySet, Interface, Further...>;

  RequestGate& gate_;
  const FilterNames names_;
  PropertyDispatch dispatch_;
};

}  // namespace zelk::virtual_cards
