#include "virtual_cards/cards/ql2_card.h"

#include <optional>
#include <stdexcept>
#include <utility>

#include "virtual_cards/cards/plugged_card.h"
#include "virtual_cards/cards/ql2/filters.h"
#include "virtual_cards/cards/registration.h"

namespace zelk::virtual_cards {

namespace {

class PluggedQl2 final : public PluggedCard<Ql2Card, Ql2Hardware> {
 public:
  PluggedQl2(const Ql2Options& options, const std::shared_ptr<Ql2Hardware>& hardware)
      : PluggedCard(options.friendlyName, hardware, MakeQl2CaptureFilter(hardware),
                    MakeQl2TunerFilter(hardware)),
        encoder_(MakeQl2EncoderFilter(hardware)),
        tvAudio_(MakeQl2TvAudioFilter(hardware)) {
    if (options.captureDevice)
      captureDevice_.emplace(kCategoryVideoInput, kQl2CaptureName, CaptureFilter().Get());
    if (options.tunerDevice)
      tunerDevice_.emplace(kCategoryTvTuner, kQl2TunerName, TunerFilter().Get());
    if (options.encoderDevice)
      encoderDevice_.emplace(kCategoryEncoder, kQl2EncoderName, encoder_.Get());
    if (options.tvAudio) tvAudioDevice_.emplace(kCategoryTvAudio, kQl2TvAudioName, tvAudio_.Get());
    CountOwnReferences();
  }

  // --- Ql2Card ---
  void FitChip(std::uint8_t address, I2cDevice* chip) override {
    hardware_->Bus().Attach(address, chip);
  }
  void SetEncoderValue(std::uint32_t property, std::uint32_t value, unsigned word) override {
    hardware_->Encoder().Poke(property, value, word);
  }
  std::uint32_t EncoderValue(std::uint32_t property, unsigned word) const override {
    const auto words = hardware_->Encoder().Words(property);
    return word < words.size() ? words[word] : 0;
  }
  PictureSize Picture() const override {
    const BITMAPINFOHEADER& picture = hardware_->Format().Picture();
    return {picture.biWidth, picture.biHeight};
  }
  double TunedKHz() const override { return hardware_->TunedKHz(); }
  bool HorizontalLocked() const override { return hardware_->HorizontalLocked(); }
  std::uint32_t Lock(unsigned index) const override {
    if (index > 1) throw std::out_of_range("a QL2 driver has two locks");
    return hardware_->Lock(index);
  }
  std::uint32_t BoardOption() const override { return hardware_->BoardOption(); }
  std::uint16_t AdcRegister(unsigned number) const override {
    return hardware_->Adc().Register(number);
  }

 private:
  const ComPtr<IUnknown> encoder_;
  const ComPtr<IUnknown> tvAudio_;
  std::optional<DeviceRegistration> captureDevice_;
  std::optional<DeviceRegistration> tunerDevice_;
  std::optional<DeviceRegistration> encoderDevice_;
  std::optional<DeviceRegistration> tvAudioDevice_;
};

}  // namespace

std::unique_ptr<Ql2Card> Ql2Card::Create(const Ql2Options& options, Air air) {
  return std::make_unique<PluggedQl2>(options,
                                      std::make_shared<Ql2Hardware>(options, std::move(air)));
}

}  // namespace zelk::virtual_cards
