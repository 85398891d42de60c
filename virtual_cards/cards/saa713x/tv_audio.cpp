#include "virtual_cards/cards/saa713x/tv_audio.h"

#include "virtual_cards/cards/tv_audio_modes.h"

namespace zelk::virtual_cards {

namespace {

class TvAudio final : public TvAudioModes<CardObject<IAMTVAudio>> {
 public:
  explicit TvAudio(const std::shared_ptr<Saa713xHardware>& hardware)
      : TvAudioModes(hardware->Gate(), Saa713xHardware::References(hardware)),
        hardware_(hardware) {}

  // A moniker's BindToObject arrives here as a query for the wanted interface.
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    const std::string_view request = iid == IidOf<IAMTVAudio>() ? "tv-audio bind" : "";
    return hardware_->Gate().PassQuery(request, object,
                                       [&] { return CardObject::QueryInterface(iid, object); });
  }

 private:
  const std::shared_ptr<Saa713xHardware> hardware_;
};

}  // namespace

ComPtr<IUnknown> MakeTvAudio(const std::shared_ptr<Saa713xHardware>& hardware) {
  return ComPtr<IUnknown>::Adopt(new TvAudio(hardware));
}

}  // namespace zelk::virtual_cards
