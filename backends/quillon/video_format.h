// The video format of the pin that feeds the encoder.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/com_ptr.h"

namespace zelk {

// A media type that a pin handed out, given back with the object.
class MediaType {
 public:
  MediaType() = default;
  MediaType(const MediaType&) = delete;
  MediaType& operator=(const MediaType&) = delete;
  ~MediaType();

  // Asks a pin for the format in use. False when it gives none; what a failed call left behind is
  // not touched.
  bool ReadFrom(IAMStreamConfig& pin);
  AM_MEDIA_TYPE* Get() const { return type_; }

  // The picture within the format, whichever of the two headers it has. Null for another format.
  BITMAPINFOHEADER* Picture() const;
  // The older header, which carries no interlace flags or aspect ratio.
  bool HasPlainHeader() const;
  bool HasExtendedHeader() const;

 private:
  template <class Header>
  Header* HeaderOf(const GUID& format) const {
    const bool fits = type_ && type_->formattype == format && type_->pbFormat &&
                      type_->cbFormat >= sizeof(Header);
    return fits ? reinterpret_cast<Header*>(type_->pbFormat) : nullptr;
  }

  AM_MEDIA_TYPE* type_ = nullptr;
};

// The first pin of that name; empty when there is none.
ComPtr<IPin> FindPinByName(IBaseFilter& filter, std::wstring_view wanted);

}  // namespace zelk
