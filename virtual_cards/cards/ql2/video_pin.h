// Pin "656" of the capture filter: the picture on its way to the encoder.
#pragma once

#include <string_view>

#include "virtual_cards/cards/filter_pin.h"
#include "virtual_cards/cards/ql2/hardware.h"

namespace zelk::virtual_cards {

class Ql2VideoPin final : public FilterPin, public IAMStreamConfig {
 public:
  // `hardware` must outlive the pin.
  Ql2VideoPin(const PinOwner& owner, std::string_view name, Ql2Hardware& hardware)
      : FilterPin(owner, name, PINDIR_OUTPUT), hardware_(hardware) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return FilterPin::AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return FilterPin::Release(); }

  // --- IAMStreamConfig ---
  // Takes the pin's own kind of format in a size that the scaler can make.
  HRESULT STDMETHODCALLTYPE SetFormat(AM_MEDIA_TYPE* type) override;
  HRESULT STDMETHODCALLTYPE GetFormat(AM_MEDIA_TYPE** type) override;
  // The driver lists none.
  HRESULT STDMETHODCALLTYPE GetNumberOfCapabilities(int*, int*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetStreamCaps(int, AM_MEDIA_TYPE**, BYTE*) override {
    return E_NOTIMPL;
  }

 protected:
  const MediaType* Offered() const override { return &hardware_.Format(); }

 private:
  Ql2Hardware& hardware_;
};

}  // namespace zelk::virtual_cards
