// What sits on a virtual SAA713x card: chips, bus, GPIO lines, the decoder, and the card driver's
// state. The card's COM objects share it; it lives as long as the last of them.
#pragma once

#include <array>
#include <memory>
#include <optional>

#include "platform/dshow.h"
#include "virtual_cards/cards/card_object.h"
#include "virtual_cards/cards/request_gate.h"
#include "virtual_cards/cards/saa713x/gpio_lines.h"
#include "virtual_cards/cards/saa713x_card.h"
#include "virtual_cards/chips/eeprom.h"
#include "virtual_cards/chips/fm_receiver.h"
#include "virtual_cards/chips/i2c_bus.h"
#include "virtual_cards/chips/reception.h"
#include "virtual_cards/chips/remote_receiver.h"
#include "virtual_cards/chips/silicon_front_end.h"
#include "virtual_cards/chips/tuner_models.h"

namespace zelk::virtual_cards {

class Saa713xHardware {
 public:
  // Throws std::invalid_argument for options that no such card can have.
  Saa713xHardware(const Saa713xOptions& options, Air air);
  Saa713xHardware(const Saa713xHardware&) = delete;
  Saa713xHardware& operator=(const Saa713xHardware&) = delete;

  RequestGate& Gate() { return gate_; }
  // The count of references to COM objects of this card. It keeps the hardware alive.
  static std::shared_ptr<ReferenceCount> References(const std::shared_ptr<Saa713xHardware>& self) {
    return {self, &self->references_};
  }

  // --- The chip ---
  std::uint32_t ChipId() const { return chipId_; }
  std::uint32_t BoardConfig() const { return boardConfig_; }
  const I2cBus& Bus() const { return bus_; }
  GpioLines& Gpio() { return gpio_; }

  // --- The decoder ---
  bool HorizontalLocked() const;
  // Status bytes 0x1C to 0x1F of the chip in one word: bit 24 when the decoder is locked,
  // bits 17..16 the colour system that it found.
  std::uint32_t DecoderStatus() const;
  // The standard that the decoder reports: a detected one, the one set last, or the first on the
  // air.
  std::uint32_t VideoStandard() const;
  HRESULT SetVideoStandard(std::uint32_t standard) {
    setStandard_ = standard;
    return S_OK;
  }
  void SetDetectedStandard(std::uint32_t standard) { detectedStandard_ = standard; }

  // --- The driver ---
  // A word of the driver's own property set, 0 before it was set.
  std::uint32_t DriverWord(DWORD id) const;
  void SetDriverWord(DWORD id, std::uint32_t value);
  // What the driver reads of a silicon tuner's station; `id` is one of kSaaFmLevel, kSaaFmAfc,
  // kSaaFmStereo. Without such a tuner it has nothing to read and answers 0.
  std::uint32_t FmReading(DWORD id) const;
  // A tuning notification: between phase 1 and phase 2 the driver shows a frozen picture, and the
  // decoder has no lock to report.
  HRESULT NotifyTuning(std::uint32_t phase);
  // Tunes as the tuner filter's frequency property does.
  HRESULT TuneByDriver(std::uint32_t hertz, std::uint32_t country);
  AMTunerModeType TunerMode() const { return tunerMode_; }
  HRESULT SetTunerMode(AMTunerModeType mode);

  // --- The outside ---
  void PressKey(std::uint8_t kind, std::uint8_t code);
  void FitChip(std::uint8_t address, I2cDevice* chip) { bus_.Attach(address, chip); }
  double TunedKHz() const;

 private:
  // What answers at 0xC0 on a board whose GPIO line 27 switches between the TV tuner's status and
  // the FM receiver.
  class TvFmSwitch final : public I2cDevice {
   public:
    explicit TvFmSwitch(const GpioLines& gpio) : gpio_(gpio) {}
    void ConnectTv(I2cDevice* device) { tv_ = device; }
    void ConnectFm(I2cDevice* device) { fm_ = device; }
    bool OnTv() const { return gpio_.Read(GpioLines::kTvFmSwitch); }
    bool Write(std::span<const std::uint8_t> bytes) override;
    bool Read(std::span<std::uint8_t> bytes) override;

   private:
    I2cDevice* Selected() const { return OnTv() ? tv_ : fm_; }

    const GpioLines& gpio_;
    I2cDevice* tv_ = nullptr;
    I2cDevice* fm_ = nullptr;
  };

  void FitTuner(std::uint32_t tunerType);
  bool TelevisionSelected() const;
  bool SiliconInFm() const { return silicon_ && tunerMode_ == AMTUNER_MODE_FM_RADIO; }
  bool FmReceiverSelected() const { return fmReceiver_ && !tvFmSwitch_.OnTv(); }

  RequestGate gate_;
  ReferenceCount references_{0};

  const Air air_;
  const std::uint32_t chipId_;
  std::uint32_t boardConfig_ = 0;

  I2cBus bus_;
  GpioLines gpio_;
  TvFmSwitch tvFmSwitch_{gpio_};
  std::optional<FmReceiver> fmReceiver_;  // and with it the switch
  std::optional<Eeprom> eeprom_;
  RemoteReceiver remote_;
  std::unique_ptr<FrontEnd> frontEnd_;
  const TunerModel* can_ = nullptr;           // a PLL module is fitted
  const SiliconFrontEnd* silicon_ = nullptr;  // a silicon tuner is fitted

  // Words of the driver's own set, by property id from the first one on.
  static constexpr DWORD kFirstDriverWord = 0x65;
  std::array<std::uint32_t, 0x14> driverWords_{};
  std::optional<std::uint32_t> setStandard_;
  std::optional<std::uint32_t> detectedStandard_;
  AMTunerModeType tunerMode_ = AMTUNER_MODE_DEFAULT;
  bool pictureFrozen_ = false;
};

}  // namespace zelk::virtual_cards
