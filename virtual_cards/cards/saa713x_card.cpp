#include "virtual_cards/cards/saa713x_card.h"

#include <stdexcept>
#include <utility>

#include "platform/vamp.h"
#include "virtual_cards/cards/registration.h"
#include "virtual_cards/cards/saa713x/capture_filter.h"
#include "virtual_cards/cards/saa713x/hardware.h"
#include "virtual_cards/cards/saa713x/tuner_filter.h"
#include "virtual_cards/cards/saa713x/tv_audio.h"
#include "virtual_cards/cards/saa713x/vamp_server.h"

namespace zelk::virtual_cards {

namespace {

constexpr wchar_t kTvAudioName[] = L"SAA713x TV Audio";

class PluggedCard final : public Saa713xCard {
 public:
  PluggedCard(const Saa713xOptions& options, Air air)
      : friendlyName_(options.friendlyName),
        hardware_(std::make_shared<Saa713xHardware>(options, std::move(air))),
        references_(Saa713xHardware::References(hardware_)),
        captureFilter_(MakeCaptureFilter(hardware_)),
        vampClass_(MakeVampClass(hardware_)),
        tvAudio_(MakeTvAudio(hardware_)),
        vampRegistration_(kClsidVampService, vampClass_.Get()),
        tvAudioRegistration_(kCategoryTvAudio, kTvAudioName, tvAudio_.Get()) {
    if (options.tunerFilter) tunerFilter_ = MakeTunerFilter(hardware_);
    ownReferences_ = *references_;
  }

  // The trace may be gone when the last of the application's objects goes.
  ~PluggedCard() override { hardware_->Gate().AttachTrace(nullptr); }

  // --- VirtualCard ---
  const std::string& FriendlyName() const override { return friendlyName_; }
  ComPtr<IUnknown> CaptureFilter() override { return captureFilter_; }
  ComPtr<IUnknown> TunerFilter() override { return tunerFilter_; }
  void AttachTrace(BusTrace* trace) override { hardware_->Gate().AttachTrace(trace); }
  void Refuse(std::string_view request, HRESULT code) override {
    hardware_->Gate().Refuse(request, code);
  }
  void ClearRefusals() override { hardware_->Gate().ClearRefusals(); }
  int LiveReferences() const override { return *references_ - ownReferences_; }

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

  const std::string friendlyName_;
  const std::shared_ptr<Saa713xHardware> hardware_;
  const std::shared_ptr<ReferenceCount> references_;
  const ComPtr<IUnknown> captureFilter_;
  ComPtr<IUnknown> tunerFilter_;
  const ComPtr<IUnknown> vampClass_;
  const ComPtr<IUnknown> tvAudio_;
  ClassRegistration vampRegistration_;
  DeviceRegistration tvAudioRegistration_;
  // What the card itself and its registrations hold.
  int ownReferences_ = 0;
};

}  // namespace

std::unique_ptr<Saa713xCard> Saa713xCard::Create(const Saa713xOptions& options, Air air) {
  return std::make_unique<PluggedCard>(options, std::move(air));
}

}  // namespace zelk::virtual_cards
