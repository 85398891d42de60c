#include "virtual_cards/cards/saa713x_card.h"

#include <stdexcept>
#include <utility>

#include "platform/vamp.h"
#include "virtual_cards/cards/plugged_card.h"
#include "virtual_cards/cards/registration.h"
#include "virtual_cards/cards/saa713x/capture_filter.h"
#include "virtual_cards/cards/saa713x/hardware.h"
#include "virtual_cards/cards/saa713x/tuner_filter.h"
#include "virtual_cards/cards/saa713x/tv_audio.h"
#include "virtual_cards/cards/saa713x/vamp_server.h"

namespace zelk::virtual_cards {

namespace {

constexpr wchar_t kTvAudioName[] = L"SAA713x TV Audio";

class PluggedSaa713x final : public PluggedCard<Saa713xCard, Saa713xHardware> {
 public:
  PluggedSaa713x(const Saa713xOptions& options, const std::shared_ptr<Saa713xHardware>& hardware)
      : PluggedCard(options.friendlyName, hardware, MakeCaptureFilter(hardware),
                    options.tunerFilter ? MakeTunerFilter(hardware) : ComPtr<IUnknown>()),
        vampClass_(MakeVampClass(hardware)),
        tvAudio_(MakeTvAudio(hardware)),
        vampRegistration_(kClsidVampService, vampClass_.Get()),
        tvAudioRegistration_(kCategoryTvAudio, kTvAudioName, tvAudio_.Get()) {
    RegisterFilters();
    CountOwnReferences();
  }

  // --- Saa713xCard ---
  void PressKey(std::uint8_t kind, std::uint8_t code) override { hardware_->PressKey(kind, code); }
  void DriveGpioInput(unsigned line, bool high) override {
    hardware_->Gpio().Drive(Checked(line), high);
  }
  void SetDetectedStandard(std::uint32_t standard) override {
    hardware_->SetDetectedStandard(standard);
  }
  void FitChip(std::uint8_t address, I2cDevice* chip) override {
    hardware_->FitChip(address, chip);
  }
  bool GpioOutput(unsigned line) const override { return hardware_->Gpio().Output(Checked(line)); }
  double TunedKHz() const override { return hardware_->TunedKHz(); }
  bool HorizontalLocked() const override { return hardware_->HorizontalLocked(); }
  std::uint32_t DriverProperty(std::uint32_t id) const override {
    return hardware_->DriverWord(id);
  }

 private:
  static unsigned Checked(unsigned line) {
    if (line >= GpioLines::kCount) throw std::out_of_range("an SAA713x has 28 GPIO lines");
    return line;
  }

  const ComPtr<IUnknown> vampClass_;
  const ComPtr<IUnknown> tvAudio_;
  ClassRegistration vampRegistration_;
  DeviceRegistration tvAudioRegistration_;
};

}  // namespace

std::unique_ptr<Saa713xCard> Saa713xCard::Create(const Saa713xOptions& options, Air air) {
  return std::make_unique<PluggedSaa713x>(
      options, std::make_shared<Saa713xHardware>(options, std::move(air)));
}

}  // namespace zelk::virtual_cards
