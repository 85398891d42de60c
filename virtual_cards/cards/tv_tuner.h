// The methods of IAMTVTuner that a card's driver leaves out.
#pragma once

#include "platform/dshow.h"

namespace zelk::virtual_cards {

// Every method answers E_NOTIMPL; a card overrides those that its driver carries out. `Base` is
// a filter with the interface.
template <class Base>
class PlainTvTuner : public Base {
 public:
  HRESULT STDMETHODCALLTYPE put_Mode(AMTunerModeType) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Mode(AMTunerModeType*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_Channel(LONG, LONG, LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Channel(LONG*, LONG*, LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ChannelMinMax(LONG*, LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_CountryCode(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_CountryCode(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_TuningSpace(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_TuningSpace(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Logon(HANDLE) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Logout() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SignalPresent(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetAvailableModes(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE RegisterNotificationCallBack(IAMTunerNotification*, LONG) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE UnRegisterNotificationCallBack(IAMTunerNotification*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE get_AvailableTVFormats(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_TVFormat(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE AutoTune(LONG, LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE StoreAutoTune() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_NumInputConnections(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_InputType(LONG, TunerInputType) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_InputType(LONG, TunerInputType*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_ConnectInput(LONG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ConnectInput(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_VideoFrequency(LONG*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_AudioFrequency(LONG*) override { return E_NOTIMPL; }

 protected:
  using Base::Base;
};

}  // namespace zelk::virtual_cards
