#include "virtual_cards/cards/media_type.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace zelk::virtual_cards {

namespace {

constexpr WORD kBitsPerPixel = 16;
constexpr DWORD kUyvy = 0x59565955;            // the letters
constexpr REFERENCE_TIME kFrameTime = 400000;  // 40 ms
constexpr DWORD kFramesPerSecond = 25;

// What both records have in common.
template <class Header>
Header DescribePicture(LONG width, LONG height) {
  Header header{};
  header.rcSource = {0, 0, width, height};
  header.rcTarget = header.rcSource;
  header.AvgTimePerFrame = kFrameTime;
  BITMAPINFOHEADER& picture = header.bmiHeader;
  picture.biSize = sizeof picture;
  picture.biWidth = width;
  picture.biHeight = height;
  picture.biPlanes = 1;
  picture.biBitCount = kBitsPerPixel;
  picture.biCompression = kUyvy;
  picture.biSizeImage = static_cast<DWORD>(width * height * kBitsPerPixel / 8);
  header.dwBitRate = picture.biSizeImage * 8 * kFramesPerSecond;
  return header;
}

template <class Header>
std::vector<BYTE> BytesOf(const Header& header) {
  std::vector<BYTE> bytes(sizeof header);
  std::memcpy(bytes.data(), &header, sizeof header);
  return bytes;
}

}  // namespace

MediaType MediaType::Video(LONG width, LONG height, bool videoInfo2) {
  MediaType made;
  if (videoInfo2) {
    auto header = DescribePicture<VIDEOINFOHEADER2>(width, height);
    header.dwPictAspectRatioX = 4;
    header.dwPictAspectRatioY = 3;
    made.block_ = BytesOf(header);
  } else {
    made.block_ = BytesOf(DescribePicture<VIDEOINFOHEADER>(width, height));
  }
  made.type_.majortype = kMediaTypeVideo;
  made.type_.subtype = kMediaSubtypeUyvy;
  made.type_.bFixedSizeSamples = TRUE;
  made.type_.formattype = videoInfo2 ? kFormatVideoInfo2 : kFormatVideoInfo;
  made.type_.lSampleSize = made.Picture().biSizeImage;
  return made;
}

AM_MEDIA_TYPE* MediaType::MakeCopy() const {
  auto* const copy = static_cast<AM_MEDIA_TYPE*>(CoTaskMemAlloc(sizeof(AM_MEDIA_TYPE)));
  auto* const block = static_cast<BYTE*>(CoTaskMemAlloc(block_.size()));
  if (!copy || !block) {
    CoTaskMemFree(copy);
    CoTaskMemFree(block);
    return nullptr;
  }
  *copy = type_;
  std::copy(block_.begin(), block_.end(), block);
  copy->cbFormat = static_cast<ULONG>(block_.size());
  copy->pbFormat = block;
  return copy;
}

bool MediaType::SameKind(const AM_MEDIA_TYPE& other) const {
  return other.majortype == type_.majortype && other.subtype == type_.subtype &&
         other.formattype == type_.formattype && other.pbFormat && other.cbFormat >= block_.size();
}

const BITMAPINFOHEADER* MediaType::PictureIn(const BYTE* block, bool videoInfo2) {
  const std::size_t offset =
      videoInfo2 ? offsetof(VIDEOINFOHEADER2, bmiHeader) : offsetof(VIDEOINFOHEADER, bmiHeader);
  return reinterpret_cast<const BITMAPINFOHEADER*>(block + offset);
}

}  // namespace zelk::virtual_cards
