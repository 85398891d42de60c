#include <cstring>

#include "virtual_cards/cards/graph_filter.h"
#include "virtual_cards/cards/property_filter.h"
#include "virtual_cards/cards/ql2/filters.h"
#include "virtual_cards/cards/tuner_requests.h"
#include "virtual_cards/cards/tv_tuner.h"

namespace zelk::virtual_cards {

namespace {

constexpr PropertyRow kRows[] = {
    // Applications may count the header into the instance data's length without passing one, so the
    // driver takes both lengths and looks at the content alone.
    {.set = &kPropsetTuner,
     .setName = "TUNER",
     .id = KSPROPERTY_TUNER_FREQUENCY,
     .bytes = sizeof(KSPROPERTY_TUNER_FREQUENCY_S),
     .support = KSPROPERTY_SUPPORT_GET | KSPROPERTY_SUPPORT_SET,
     .describe = DescribeTunerFrequency,
     .shortInstance = sizeof(KSPROPERTY_TUNER_FREQUENCY_S) - sizeof(KSPROPERTY)},
    {.set = &kPropsetTuner,
     .setName = "TUNER",
     .id = KSPROPERTY_TUNER_STATUS,
     .bytes = sizeof(KSPROPERTY_TUNER_STATUS_S),
     .support = KSPROPERTY_SUPPORT_GET,
     .describe = DescribeTunerStatus,
     .shortInstance = sizeof(KSPROPERTY_TUNER_STATUS_S) - sizeof(KSPROPERTY)},
};

constexpr FilterNames kNames = {"tuner", "tuner query IKsPropertySet", "tuner query IAMTVTuner",
                                "tuner query IBaseFilter"};

constexpr ULONG kTuneExactly = 1;

using Filter = GraphFilter<PropertyFilter<IAMTVTuner, IBaseFilter>>;

class TunerFilter final : public PlainTvTuner<Filter> {
 public:
  explicit TunerFilter(const std::shared_ptr<Ql2Hardware>& hardware)
      : PlainTvTuner(hardware->Gate(), kNames.filter, Ql2Hardware::References(hardware),
                     hardware->Gate(), kNames, kRows),
        hardware_(hardware) {
    AddPin<FilterPin>("Analog Video", PINDIR_OUTPUT);
    AddPin<FilterPin>("Analog Audio", PINDIR_OUTPUT);
  }

  // --- IAMTVTuner ---
  HRESULT STDMETHODCALLTYPE put_Mode(AMTunerModeType mode) override {
    return Gate().Pass([=](TraceLine& line) { line.Text("tuner mode ").Number(mode); },
                       [&] { return hardware_->SetTunerMode(mode); });
  }
  HRESULT STDMETHODCALLTYPE get_Mode(AMTunerModeType* mode) override {
    return Gate().PassNumber("tuner get-mode", mode, [this] { return hardware_->TunerMode(); });
  }
  HRESULT STDMETHODCALLTYPE GetAvailableModes(LONG* modes) override {
    return Gate().PassNumber("tuner available-modes", modes,
                             [this] { return hardware_->AvailableModes(); });
  }
  HRESULT STDMETHODCALLTYPE put_CountryCode(LONG country) override {
    return Gate().Pass([=](TraceLine& line) { line.Text("tuner country ").Number(country); },
                       [&] { return hardware_->SetCountry(country); });
  }
  HRESULT STDMETHODCALLTYPE get_CountryCode(LONG* country) override {
    return Gate().PassNumber("tuner get-country", country, [this] { return hardware_->Country(); });
  }
  HRESULT STDMETHODCALLTYPE put_Channel(LONG number, LONG videoSub, LONG audioSub) override {
    const Ql2Channel channel{number, videoSub, audioSub};
    return Gate().Pass(
        [&](TraceLine& line) { DescribeChannel(line.Text("tuner channel "), channel); },
        [&] {
          if (number < 0) return E_INVALIDARG;
          hardware_->SetChannel(channel);
          return S_OK;
        });
  }
  HRESULT STDMETHODCALLTYPE get_Channel(LONG* number, LONG* videoSub, LONG* audioSub) override {
    return Gate().Pass(
        [](TraceLine& line) { line.Text("tuner get-channel"); },
        [&] {
          if (!number || !videoSub || !audioSub) return E_POINTER;
          const Ql2Channel& channel = hardware_->Channel();
          *number = channel.number;
          *videoSub = channel.videoSub;
          *audioSub = channel.audioSub;
          return S_OK;
        },
        [this](TraceLine& line) { DescribeChannel(line.Answer(), hardware_->Channel()); });
  }
  HRESULT STDMETHODCALLTYPE SignalPresent(LONG* present) override {
    return Gate().PassNumber("tuner signal-present", present,
                             [this] { return hardware_->ReadTuner().strength == 100 ? 1 : 0; });
  }

 private:
  static void DescribeChannel(TraceLine& line, const Ql2Channel& channel) {
    line.Number(channel.number).Text(" ").Number(channel.videoSub);
    line.Text(" ").Number(channel.audioSub);
  }

  HRESULT SetProperty(const PropertyRow&, std::span<const BYTE> content) override {
    const KSPROPERTY_TUNER_FREQUENCY_S request = ReadTunerFrequency(content);
    return hardware_->Tune(request.Frequency, request.Country);
  }

  // The property's header is the caller's.
  HRESULT GetProperty(const PropertyRow& row, std::span<BYTE> content) override {
    const std::span<BYTE> answer = content.subspan(sizeof(KSPROPERTY));
    if (row.id == KSPROPERTY_TUNER_STATUS) {
      const TunerReading reading = hardware_->ReadTuner();
      const ULONG words[] = {hardware_->Hertz(), static_cast<ULONG>(reading.offsetKHz),
                             reading.strength, reading.inLock ? 0U : 1U};
      static_assert(sizeof words == sizeof(KSPROPERTY_TUNER_STATUS_S) -
                                        offsetof(KSPROPERTY_TUNER_STATUS_S, CurrentFrequency));
      std::memcpy(answer.data(), words, sizeof words);
      return S_OK;
    }
    const Ql2Channel& channel = hardware_->Channel();
    KSPROPERTY_TUNER_FREQUENCY_S frequency{};
    frequency.Frequency = hardware_->Hertz();
    frequency.LastFrequency = hardware_->LastHertz();
    frequency.TuningFlags = kTuneExactly;
    frequency.VideoSubChannel = static_cast<ULONG>(channel.videoSub);
    frequency.AudioSubChannel = static_cast<ULONG>(channel.audioSub);
    frequency.Channel = static_cast<ULONG>(channel.number);
    frequency.Country = static_cast<ULONG>(hardware_->Country());
    std::memcpy(answer.data(), &frequency.Frequency, answer.size());
    return S_OK;
  }

  const std::shared_ptr<Ql2Hardware> hardware_;
};

}  // namespace

ComPtr<IUnknown> MakeQl2TunerFilter(const std::shared_ptr<Ql2Hardware>& hardware) {
  return ComPtr<IUnknown>::Adopt(static_cast<IKsPropertySet*>(new TunerFilter(hardware)));
}

}  // namespace zelk::virtual_cards
