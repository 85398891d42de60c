#include "virtual_cards/cards/graph_filter.h"
#include "virtual_cards/cards/ql2/filters.h"
#include "virtual_cards/cards/tv_audio_modes.h"

namespace zelk::virtual_cards {

namespace {

using Filter = GraphFilter<CardObject<IBaseFilter, IAMTVAudio>>;

class TvAudioFilter final : public TvAudioModes<Filter> {
 public:
  explicit TvAudioFilter(const std::shared_ptr<Ql2Hardware>& hardware)
      : TvAudioModes(hardware->Gate(), hardware->Gate(), "tv-audio",
                     Ql2Hardware::References(hardware)),
        hardware_(hardware) {
    AddPin<FilterPin>("TVAudio In", PINDIR_INPUT);
    AddPin<FilterPin>("TVAudio Out", PINDIR_OUTPUT);
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    std::string_view request;
    if (iid == IidOf<IBaseFilter>()) request = "tv-audio query IBaseFilter";
    if (iid == IidOf<IAMTVAudio>()) request = "tv-audio query IAMTVAudio";
    return hardware_->Gate().PassQuery(request, object,
                                       [&] { return Filter::QueryInterface(iid, object); });
  }

 private:
  const std::shared_ptr<Ql2Hardware> hardware_;
};

}  // namespace

ComPtr<IUnknown> MakeQl2TvAudioFilter(const std::shared_ptr<Ql2Hardware>& hardware) {
  return ComPtr<IUnknown>::Adopt(static_cast<IBaseFilter*>(new TvAudioFilter(hardware)));
}

}  // namespace zelk::virtual_cards
