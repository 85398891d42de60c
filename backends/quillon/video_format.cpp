#include "backends/quillon/video_format.h"

#include <algorithm>
#include <iterator>

namespace zelk {

MediaType::~MediaType() {
  if (!type_) return;
  CoTaskMemFree(type_->pbFormat);
  const auto unknown = ComPtr<IUnknown>::Adopt(type_->pUnk);
  CoTaskMemFree(type_);
}

bool MediaType::ReadFrom(IAMStreamConfig& pin) {
  AM_MEDIA_TYPE* type = nullptr;
  if (SUCCEEDED(pin.GetFormat(&type))) type_ = type;
  return type_ != nullptr;
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

ComPtr<IPin> FindPinByName(IBaseFilter& filter, std::wstring_view wanted) {
  ComPtr<IEnumPins> pins;
  if (FAILED(Obtain(pins, [&](IEnumPins** place) { return filter.EnumPins(place); }))) return {};
  while (ComPtr<IPin> pin = NextOf<IPin>(*pins.Get())) {
    PIN_INFO info = {};
    if (FAILED(pin->QueryPinInfo(&info))) continue;
    const auto owner = ComPtr<IBaseFilter>::Adopt(info.pFilter);
    // A name may fill its record and have no terminator.
    const OLECHAR* const name = std::cbegin(info.achName);
    const OLECHAR* const end = std::find(name, std::cend(info.achName), L'\0');
    if (std::wstring_view(name, end) == wanted) return pin;
  }
  return {};
}

}  // namespace zelk
