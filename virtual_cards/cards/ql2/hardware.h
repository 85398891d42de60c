// What sits on a virtual QL2 card: chips, bus, the decoder, and the card driver's state. The card's
// COM objects share it; it lives as long as the last of them.
#pragma once

#include <array>
#include <memory>
#include <optional>

#include "platform/dshow.h"
#include "virtual_cards/cards/card_object.h"
#include "virtual_cards/cards/media_type.h"
#include "virtual_cards/cards/ql2_card.h"
#include "virtual_cards/cards/request_gate.h"
#include "virtual_cards/cards/tuner_driver.h"
#include "virtual_cards/chips/audio_adc.h"
#include "virtual_cards/chips/fm_receiver.h"
#include "virtual_cards/chips/i2c_bus.h"
#include "virtual_cards/chips/mpeg_encoder.h"
#include "virtual_cards/chips/tuner_can.h"

namespace zelk::virtual_cards {

// The channel that an application named last; the driver has no channel plan and only keeps it.
struct Ql2Channel {
  LONG number = 0;
  LONG videoSub = -1;
  LONG audioSub = -1;
};

class Ql2Hardware {
 public:
  Ql2Hardware(const Ql2Options& options, Air air);
  Ql2Hardware(const Ql2Hardware&) = delete;
  Ql2Hardware& operator=(const Ql2Hardware&) = delete;

  RequestGate& Gate() { return gate_; }
  // The count of references to COM objects of this card. It keeps the hardware alive.
  static std::shared_ptr<ReferenceCount> References(const std::shared_ptr<Ql2Hardware>& self) {
    return {self, &self->references_};
  }

  // --- The board ---
  // False when the driver does not know the board's tuner information.
  bool KnowsTuner() const { return knowsTuner_; }
  std::uint32_t TunerCode() const { return tunerCode_; }
  BYTE Lock(unsigned index) const { return locks_[index]; }
  void SetLock(unsigned index, BYTE value) { locks_[index] = value; }
  BYTE BoardOption() const { return boardOption_; }
  void SetBoardOption(BYTE value) { boardOption_ = value; }
  I2cBus& Bus() { return bus_; }
  const AudioAdc& Adc() const { return adc_; }
  MpegEncoder& Encoder() { return encoder_; }

  // --- The decoder ---
  bool HorizontalLocked() const { return can_.Picture() != nullptr; }
  std::uint32_t VideoStandard() const { return standard_; }
  // E_INVALIDARG for anything but one standard.
  HRESULT SetVideoStandard(std::uint32_t standard);
  const MediaType& Format() const { return format_; }
  void SetFormat(const MediaType& format) { format_ = format; }

  // --- The tuner driver ---
  AMTunerModeType TunerMode() const { return mode_; }
  // E_INVALIDARG for a mode that the board does not have.
  HRESULT SetTunerMode(AMTunerModeType mode);
  LONG AvailableModes() const;
  LONG Country() const { return country_; }
  // A dialling code.
  HRESULT SetCountry(LONG country);
  const Ql2Channel& Channel() const { return channel_; }
  void SetChannel(const Ql2Channel& channel) { channel_ = channel; }
  // In the mode that the driver is in; `country` 0 is the driver's own.
  HRESULT Tune(std::uint32_t hertz, std::uint32_t country);
  // The last frequency that was tuned to and the one before, 0 for none.
  std::uint32_t Hertz() const { return hertz_; }
  std::uint32_t LastHertz() const { return lastHertz_; }
  TunerReading ReadTuner() const { return ReadCan(Can()); }
  double TunedKHz() const;

 private:
  CanOnBoard Can() const { return {bus_, canAddress_, model_}; }
  bool InFm() const { return mode_ == AMTUNER_MODE_FM_RADIO; }

  RequestGate gate_;
  ReferenceCount references_{0};

  const Air air_;
  const bool knowsTuner_;
  const std::uint32_t tunerCode_;
  const std::uint32_t tunerType_;
  const bool fmReceiverFitted_;
  const std::uint8_t canAddress_;
  const TunerModel& model_;
  const FmSection* const fm_;

  I2cBus bus_;
  TunerCan can_;
  FmReceiver fmReceiver_{air_};
  AudioAdc adc_;
  MpegEncoder encoder_;

  std::uint32_t standard_;
  MediaType format_;
  AMTunerModeType mode_ = AMTUNER_MODE_TV;
  LONG country_ = 1;
  Ql2Channel channel_;
  std::uint32_t hertz_ = 0;
  std::uint32_t lastHertz_ = 0;
  std::array<BYTE, 2> locks_{};
  BYTE boardOption_ = 0;
};

}  // namespace zelk::virtual_cards
