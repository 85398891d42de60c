#include "virtual_cards/cards/ql2/video_pin.h"

#include "platform/interface_id.h"

namespace zelk::virtual_cards {

namespace {

// The encoder works in macroblocks; in field pictures half a one is the least it takes.
constexpr LONG kWidthStep = 16;
constexpr LONG kHeightStep = 8;
constexpr LONG kWidest = 720;
constexpr LONG kHighest = 576;

bool ScalerMakes(const BITMAPINFOHEADER& picture) {
  const auto within = [](LONG length, LONG step, LONG most) {
    return length > 0 && length <= most && length % step == 0;
  };
  return within(picture.biWidth, kWidthStep, kWidest) &&
         within(picture.biHeight, kHeightStep, kHighest);
}

}  // namespace

HRESULT Ql2VideoPin::QueryInterface(REFIID iid, void** object) {
  if (!object) return E_POINTER;
  if (iid != IidOf<IAMStreamConfig>()) return FilterPin::QueryInterface(iid, object);
  *object = nullptr;
  return Gate().Pass([this](TraceLine& line) { Describe(line, " query IAMStreamConfig"); },
                     [&] {
                       *object = static_cast<IAMStreamConfig*>(this);
                       AddRef();
                       return S_OK;
                     });
}

HRESULT Ql2VideoPin::SetFormat(AM_MEDIA_TYPE* type) {
  const MediaType& format = hardware_.Format();
  const bool readable = type && format.SameKind(*type);
  return Gate().Pass(
      [&](TraceLine& line) {
        Describe(line, " set-format ");
        if (!readable) {
          line.Text("of another kind");
          return;
        }
        const BITMAPINFOHEADER& picture = format.PictureOf(*type);
        line.Number(picture.biWidth).Text("x").Number(picture.biHeight);
      },
      [&] {
        if (!type) return E_POINTER;
        if (!readable) return VFW_E_TYPE_NOT_ACCEPTED;
        const BITMAPINFOHEADER& picture = format.PictureOf(*type);
        if (!ScalerMakes(picture)) return VFW_E_TYPE_NOT_ACCEPTED;
        // Sizes in bytes follow from the picture's.
        hardware_.SetFormat(
            MediaType::Video(picture.biWidth, picture.biHeight, format.IsVideoInfo2()));
        return S_OK;
      });
}

HRESULT Ql2VideoPin::GetFormat(AM_MEDIA_TYPE** type) {
  return Gate().Pass([this](TraceLine& line) { Describe(line, " get-format"); },
                     [&] {
                       if (!type) return E_POINTER;
                       *type = hardware_.Format().MakeCopy();
                       return *type ? S_OK : E_OUTOFMEMORY;
                     });
}

}  // namespace zelk::virtual_cards
