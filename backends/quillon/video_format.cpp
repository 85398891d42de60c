#include "backends/quillon/video_format.h"

#include <string_view>

namespace zelk {

MediaType::~MediaType() {
  if (!type_) return;
  CoTaskMemFree(type_->pbFormat);
  const auto unknown = ComPtr<IUnknown>::Adopt(type_->pUnk);
  CoTaskMemFree(type_);
}

bool MediaType::HasPlainHeader() const {
  return HeaderOf<VIDEOINFOHEADER>(kFormatVideoInfo) != nullptr;
}

bool MediaType::HasExtendedHeader() const {
  return HeaderOf<VIDEOINFOHEADER2>(kFormatVideoInfo2) != nullptr;
}

BITMAPINFOHEADER* MediaType::Picture() const {
  if (auto* const plain = HeaderOf<VIDEOINFOHEADER>(kFormatVideoInfo)) return &plain->bmiHeader;
  if (auto* const extended = HeaderOf<VIDEOINFOHEADER2>(kFormatVideoInfo2)) {
    return &extended->bmiHeader;
  }
  return nullptr;
}

ComPtr<IPin> FindPinByName(IBaseFilter& filter, const OLECHAR* name) {
  ComPtr<IEnumPins> pins;
  if (FAILED(filter.EnumPins(pins.Receive())) || !pins) return {};
  while (ComPtr<IPin> pin = NextOf<IPin>(*pins.Get())) {
    PIN_INFO info = {};
    if (FAILED(pin->QueryPinInfo(&info))) continue;
    const auto owner = ComPtr<IBaseFilter>::Adopt(info.pFilter);
    if (std::wstring_view(info.achName) == name) return pin;
  }
  return {};
}

}  // namespace zelk
