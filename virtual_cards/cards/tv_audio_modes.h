// A TV-audio device's choice between mono and stereo.
#pragma once

#include <utility>

#include "platform/dshow.h"
#include "virtual_cards/cards/request_gate.h"

namespace zelk::virtual_cards {

// `Base` is a card's object with the interface IAMTVAudio.
template <class Base>
class TvAudioModes : public Base {
 public:
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
    return gate_.Pass([=](TraceLine& line) { line.Text("tv-audio mode ").Number(mode); },
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

 protected:
  // `gate` must outlive the object.
  template <class... Arguments>
  explicit TvAudioModes(RequestGate& gate, Arguments&&... arguments)
      : Base(std::forward<Arguments>(arguments)...), gate_(gate) {}

 private:
  static constexpr LONG kMono = 1;
  static constexpr LONG kStereo = 2;

  HRESULT Answer(std::string_view request, LONG* place, LONG value) {
    return gate_.PassNumber(request, place, [value] { return value; });
  }

  RequestGate& gate_;
  LONG mode_ = kStereo;
};

}  // namespace zelk::virtual_cards
