#include "virtual_cards/cards/saa713x/tuner_filter.h"

#include "virtual_cards/cards/property_filter.h"
#include "virtual_cards/cards/tuner_requests.h"
#include "virtual_cards/cards/tv_tuner.h"

namespace zelk::virtual_cards {

namespace {

constexpr PropertyRow kRows[] = {
    {&kPropsetTuner, "TUNER", KSPROPERTY_TUNER_FREQUENCY, sizeof(KSPROPERTY_TUNER_FREQUENCY_S),
     KSPROPERTY_SUPPORT_SET, DescribeTunerFrequency},
};

constexpr FilterNames kNames = {"tuner", "tuner query IKsPropertySet", "tuner query IAMTVTuner"};

class TunerFilter final : public PlainTvTuner<PropertyFilter<IAMTVTuner>> {
 public:
  explicit TunerFilter(const std::shared_ptr<Saa713xHardware>& hardware)
      : PlainTvTuner(Saa713xHardware::References(hardware), hardware->Gate(), kNames, kRows),
        hardware_(hardware) {}

  // --- IAMTVTuner ---
  HRESULT STDMETHODCALLTYPE put_Mode(AMTunerModeType mode) override {
    return Gate().Pass([=](TraceLine& line) { line.Text("tuner mode ").Number(mode); },
                       [&] { return hardware_->SetTunerMode(mode); });
  }
  HRESULT STDMETHODCALLTYPE get_Mode(AMTunerModeType* mode) override {
    return Gate().PassNumber("tuner get-mode", mode, [this] { return hardware_->TunerMode(); });
  }

 private:
  HRESULT SetProperty(const PropertyRow&, std::span<const BYTE> content) override {
    const KSPROPERTY_TUNER_FREQUENCY_S request = ReadTunerFrequency(content);
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
