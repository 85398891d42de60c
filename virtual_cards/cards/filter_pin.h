// Pins of virtual cards' filters. They can be looked at but not connected: nothing streams.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "platform/com_ptr.h"
#include "platform/dshow.h"
#include "virtual_cards/cards/media_type.h"
#include "virtual_cards/cards/request_gate.h"

namespace zelk::virtual_cards {

// The zero-terminated name, cut where it does not fit.
template <std::size_t size>
void CopyName(std::wstring_view name, WCHAR (&place)[size]) {
  const std::size_t length = std::min(name.size(), size - 1);
  *std::copy_n(name.begin(), length, place) = 0;
}

// The filter that a pin is a part of; all must outlive the pin. `filterName` names it in the trace.
struct PinOwner {
  IBaseFilter& filter;
  RequestGate& gate;
  std::string_view filterName;
};

// A pin's references are its filter's: the filter lives while somebody holds the pin.
class FilterPin : public IPin {
 public:
  // ASCII alone. The name is also the pin's id.
  FilterPin(const PinOwner& owner, std::string_view name, PIN_DIRECTION direction);
  virtual ~FilterPin() = default;
  FilterPin(const FilterPin&) = delete;
  FilterPin& operator=(const FilterPin&) = delete;

  const std::wstring& Name() const { return name_; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return owner_.filter.AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return owner_.filter.Release(); }

  HRESULT STDMETHODCALLTYPE QueryPinInfo(PIN_INFO* info) override;
  HRESULT STDMETHODCALLTYPE QueryDirection(PIN_DIRECTION* direction) override;
  HRESULT STDMETHODCALLTYPE QueryId(LPWSTR* id) override;
  HRESULT STDMETHODCALLTYPE EnumMediaTypes(IEnumMediaTypes** types) override;
  HRESULT STDMETHODCALLTYPE QueryAccept(const AM_MEDIA_TYPE* type) override;

  HRESULT STDMETHODCALLTYPE Connect(IPin*, const AM_MEDIA_TYPE*) override {
    return VFW_E_CANNOT_CONNECT;
  }
  HRESULT STDMETHODCALLTYPE ReceiveConnection(IPin*, const AM_MEDIA_TYPE*) override {
    return VFW_E_CANNOT_CONNECT;
  }
  HRESULT STDMETHODCALLTYPE Disconnect() override { return S_FALSE; }  // was not connected
  HRESULT STDMETHODCALLTYPE ConnectedTo(IPin** pin) override;
  HRESULT STDMETHODCALLTYPE ConnectionMediaType(AM_MEDIA_TYPE* type) override;
  // By definition: every input leads to every output.
  HRESULT STDMETHODCALLTYPE QueryInternalConnections(IPin**, ULONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE EndOfStream() override { return E_UNEXPECTED; }
  HRESULT STDMETHODCALLTYPE BeginFlush() override { return E_UNEXPECTED; }
  HRESULT STDMETHODCALLTYPE EndFlush() override { return E_UNEXPECTED; }
  HRESULT STDMETHODCALLTYPE NewSegment(REFERENCE_TIME, REFERENCE_TIME, double) override {
    return S_OK;
  }

 protected:
  // The type that the pin offers, null for a pin without one.
  virtual const MediaType* Offered() const { return nullptr; }

  RequestGate& Gate() const { return owner_.gate; }
  // "capture pin 656 info", with what follows the name.
  void Describe(TraceLine& line, std::string_view request) const;

 private:
  const PinOwner owner_;
  const std::string traceName_;
  const std::wstring name_;
  const PIN_DIRECTION direction_;
};

}  // namespace zelk::virtual_cards
