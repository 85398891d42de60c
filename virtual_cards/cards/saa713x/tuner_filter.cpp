#include "virtual_cards/cards/saa713x/tuner_filter.h"

#include <cstring>

#include "virtual_cards/cards/property_filter.h"

namespace zelk::virtual_cards {

namespace {

KSPROPERTY_TUNER_FREQUENCY_S ReadFrequency(std::span<const BYTE> content) {
  KSPROPERTY_TUNER_FREQUENCY_S request;
  std::memcpy(&request, content.data(), sizeof request);
  return request;
}

void DescribeFrequency(TraceLine& line, std::span<const BYTE> content) {
  const KSPROPERTY_TUNER_FREQUENCY_S request = ReadFrequency(content);
  line.Text("frequency=").Number(request.Frequency);
  line.Text(" flags=").Number(request.TuningFlags);
  line.Text(" channel=").Number(request.Channel);
  line.Text(" country=").Number(request.Country);
}

constexpr PropertyRow kRows[] = {
    {&kPropsetTuner, "TUNER", KSPROPERTY_TUNER_FREQUENCY, sizeof(KSPROPERTY_TUNER_FREQUENCY_S),
     KSPROPERTY_SUPPORT_SET, DescribeFrequency},
};

constexpr FilterNames kNames = {"tuner", "tuner query IKsPropertySet", "tuner query IAMTVTuner"};

class TunerFilter final : public PropertyFilter<IAMTVTuner> {
 public:
  explicit TunerFilter(const std::shared_ptr<Saa713xHardware>& hardware)
      : PropertyFilter(Saa713xHardware::References(hardware), hardware->Gate(), kNames, kRows),
        hardware_(hardware) {}

  // --- IAMTVTuner ---
  HRESULT STDMETHODCALLTYPE put_Mode(AMTunerModeType mode) override {
    return Gate().Pass([=](TraceLine& line) { line.Text("tuner mode ").Number(mode); },
                       [&] { return hardware_->SetTunerMode(mode); });
  }
  HRESULT STDMETHODCALLTYPE get_Mode(AMTunerModeType* mode) override {
    return Gate().Pass([](TraceLine& line) { line.Text("tuner get-mode"); },
                       [&] {
                         if (!mode) return E_POINTER;
                         *mode = hardware_->TunerMode();
                         return S_OK;
                       },
                       [&](TraceLine& line) { line.Answer().Number(*mode); });
  }
  // What this driver leaves to the property set.
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

 private:
  HRESULT SetProperty(const PropertyRow&, std::span<const BYTE> content) override {
    const KSPROPERTY_TUNER_FREQUENCY_S request = ReadFrequency(content);
    return hardware_->TuneByDriver(request.Frequency, request.Country);
  }
  // No row supports it.
  HRESULT GetProperty(const PropertyRow&, std::span<BYTE>) override { return E_UNEXPECTED; }

  const std::shared_ptr<Saa713xHardware> hardware_;
};

}  // namespace

ComPtr<IUnknown> MakeTunerFilter(const std::shared_ptr<Saa713xHardware>& hardware) {
  return ComPtr<IUnknown>::Adopt(static_cast<IKsPropertySet*>(new TunerFilter(hardware)));
}

}  // namespace zelk::virtual_cards
