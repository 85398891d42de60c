#include "virtual_cards/cards/bt_family/tuner_filter.h"

#include <cstring>

#include "virtual_cards/cards/property_filter.h"
#include "virtual_cards/cards/tuner_requests.h"
#include "virtual_cards/cards/tv_tuner.h"

namespace zelk::virtual_cards {

namespace {

// KSPROPERTY_TUNER_STANDARD_S: the standard follows the header.
constexpr DWORD kStandardOffset = sizeof(KSPROPERTY);
constexpr DWORD kStandardBytes = 32;

void DescribeStandardRequest(TraceLine& line, std::span<const BYTE> content) {
  line.Words(content.subspan(kStandardOffset, sizeof(ULONG)));
}

constexpr PropertyRow kRows[] = {
    {&kPropsetTuner, "TUNER", KSPROPERTY_TUNER_STANDARD, kStandardBytes, KSPROPERTY_SUPPORT_SET,
     DescribeStandardRequest},
    {&kPropsetTuner, "TUNER", KSPROPERTY_TUNER_FREQUENCY, sizeof(KSPROPERTY_TUNER_FREQUENCY_S),
     KSPROPERTY_SUPPORT_SET, DescribeTunerFrequency},
};

constexpr FilterNames kNames = {"tuner", "tuner query IKsPropertySet", "tuner query IAMTVTuner"};

class TunerFilter final : public PlainTvTuner<PropertyFilter<IAMTVTuner>> {
 public:
  explicit TunerFilter(const std::shared_ptr<BtHardware>& hardware)
      : PlainTvTuner(BtHardware::References(hardware), hardware->Gate(), kNames, kRows),
        hardware_(hardware) {}

  // --- IAMTVTuner ---
  HRESULT STDMETHODCALLTYPE put_Mode(AMTunerModeType mode) override {
    return Gate().Pass([=](TraceLine& line) { line.Text("tuner mode ").Number(mode); },
                       [&] { return hardware_->Driver().SetMode(mode); });
  }
  HRESULT STDMETHODCALLTYPE get_Mode(AMTunerModeType* mode) override {
    return Gate().PassNumber("tuner get-mode", mode, [this] { return hardware_->Driver().Mode(); });
  }
  // The driver tunes by frequency alone and keeps the channel for those who ask.
  HRESULT STDMETHODCALLTYPE put_Channel(LONG channel, LONG video, LONG audio) override {
    return Gate().Pass(
        [=](TraceLine& line) {
          line.Text("tuner channel ").Number(channel);
          line.Text(" ").Number(video).Text(" ").Number(audio);
        },
        [&] {
          channel_ = channel;
          return S_OK;
        });
  }
  HRESULT STDMETHODCALLTYPE get_Channel(LONG* channel, LONG* video, LONG* audio) override {
    if (!video || !audio) return E_POINTER;
    *video = *audio = 0;
    return Gate().PassNumber("tuner get-channel", channel, [this] { return channel_; });
  }
  HRESULT STDMETHODCALLTYPE put_CountryCode(LONG country) override {
    return Gate().Pass([=](TraceLine& line) { line.Text("tuner country ").Number(country); },
                       [&] {
                         hardware_->Driver().SetCountry(static_cast<std::uint32_t>(country));
                         return S_OK;
                       });
  }
  HRESULT STDMETHODCALLTYPE get_CountryCode(LONG* country) override {
    return Gate().PassNumber("tuner get-country", country,
                             [this] { return hardware_->Driver().Country(); });
  }

 private:
  HRESULT SetProperty(const PropertyRow& row, std::span<const BYTE> content) override {
    BoardDriver& driver = hardware_->Driver();
    if (row.id == KSPROPERTY_TUNER_FREQUENCY) {
      const KSPROPERTY_TUNER_FREQUENCY_S request = ReadTunerFrequency(content);
      return driver.Tune(request.Frequency / 1000.0, request.Country);
    }
    ULONG standard = 0;
    std::memcpy(&standard, &content[kStandardOffset], sizeof standard);
    driver.SetStandard(standard);
    return S_OK;
  }
  // No row supports it.
  HRESULT GetProperty(const PropertyRow&, std::span<BYTE>) override { return E_UNEXPECTED; }

  const std::shared_ptr<BtHardware> hardware_;
  LONG channel_ = 0;
};

}  // namespace

ComPtr<IUnknown> MakeBtTunerFilter(const std::shared_ptr<BtHardware>& hardware) {
  return ComPtr<IUnknown>::Adopt(static_cast<IKsPropertySet*>(new TunerFilter(hardware)));
}

}  // namespace zelk::virtual_cards
