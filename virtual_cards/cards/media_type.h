// A media type with its format block.
#pragma once

#include <vector>

#include "platform/dshow.h"

namespace zelk::virtual_cards {

class MediaType {
 public:
  // A picture as UYVY. Both lengths in pixels; `videoInfo2` chooses the newer record.
  static MediaType Video(LONG width, LONG height, bool videoInfo2);

  // Null when there is no memory; else the caller frees block and record with CoTaskMemFree.
  AM_MEDIA_TYPE* MakeCopy() const;

  bool IsVideoInfo2() const { return type_.formattype == kFormatVideoInfo2; }
  // Major type, subtype and format type are the same, and the format block is there whole.
  bool SameKind(const AM_MEDIA_TYPE& other) const;
  // The picture's record in the format block of this type.
  const BITMAPINFOHEADER& Picture() const { return *PictureIn(block_.data(), IsVideoInfo2()); }
  // The picture's record in a type for which SameKind holds.
  const BITMAPINFOHEADER& PictureOf(const AM_MEDIA_TYPE& other) const {
    return *PictureIn(other.pbFormat, IsVideoInfo2());
  }

 private:
  static const BITMAPINFOHEADER* PictureIn(const BYTE* block, bool videoInfo2);

  AM_MEDIA_TYPE type_{};  // without its format block
  std::vector<BYTE> block_;
};

// For an enumerator of media types.
inline AM_MEDIA_TYPE* HandOut(const MediaType& type) { return type.MakeCopy(); }

}  // namespace zelk::virtual_cards
