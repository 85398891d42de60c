#include "virtual_cards/cards/saa713x/tv_audio.h"

namespace zelk::virtual_cards {

namespace {

constexpr LONG kMono = 1;
constexpr LONG kStereo = 2;

class TvAudio final : public CardObject<IAMTVAudio> {
 public:
  explicit TvAudio(const std::shared_ptr<Saa713xHardware>& hardware)
      : CardObject(Saa713xHardware::References(hardware)), hardware_(hardware) {}

  // A moniker's BindToObject arrives here as a query for the wanted interface.
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    const std::string_view request = iid == IidOf<IAMTVAudio>() ? "tv-audio bind" : "";
    return hardware_->Gate().PassQuery(request, object,
                                       [&] { return CardObject::QueryInterface(iid, object); });
  }

  HRESULT STDMETHODCALLTYPE GetHardwareSupportedTVAudioModes(LONG* modes) override {
    return Answer("tv-audio hardware-modes", modes, kMono | kStereo);
  }
  HRESULT STDMETHODCALLTYPE GetAvailableTVAudioModes(LONG* modes) override {
    return Answer("tv-audio available-modes", modes, kMono | kStereo);
  }
  HRESULT STDMETHODCALLTYPE get_TVAudioMode(LONG* mode) override {
    return Answer("tv-audio get-mode", mode, mode_);
  }
  HRESULT STDMETHODCALLTYPE put_TVAudioMode(LONG mode) override {
    return hardware_->Gate().Pass(
        [=](TraceLine& line) { line.Text("tv-audio mode ").Number(mode); },
        [this, mode] {
          if (mode != kMono && mode != kStereo) return E_INVALIDARG;
          mode_ = mode;
          return S_OK;
        });
  }
  HRESULT STDMETHODCALLTYPE RegisterNotificationCallBack(IAMTunerNotification*, LONG) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE UnRegisterNotificationCallBack(IAMTunerNotification*) override {
    return E_NOTIMPL;
  }

 private:
  HRESULT Answer(std::string_view request, LONG* place, LONG value) {
    return hardware_->Gate().Pass([=](TraceLine& line) { line.Text(request); },
                                  [=] {
                                    if (!place) return E_POINTER;
                                    *place = value;
                                    return S_OK;
                                  },
                                  [=](TraceLine& line) { line.Answer().Number(value); });
  }

  const std::shared_ptr<Saa713xHardware> hardware_;
  LONG mode_ = kStereo;
};

}  // namespace

ComPtr<IUnknown> MakeTvAudio(const std::shared_ptr<Saa713xHardware>& hardware) {
  return ComPtr<IUnknown>::Adopt(new TvAudio(hardware));
}

}  // namespace zelk::virtual_cards
