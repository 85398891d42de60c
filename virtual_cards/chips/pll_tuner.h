// The tuner part of a module: mixer, oscillator and the PLL chip (TSA5522 class) that steers them.
#pragma once

#include "virtual_cards/chips/fm_section.h"
#include "virtual_cards/chips/i2c_bus.h"
#include "virtual_cards/chips/reception.h"
#include "virtual_cards/chips/settle_timer.h"
#include "virtual_cards/chips/tuner_models.h"

namespace zelk::virtual_cards {

class PllTuner final : public I2cDevice {
 public:
  static constexpr std::uint8_t kAddress = 0xC2;       // on most boards
  static constexpr std::uint8_t kOtherAddress = 0xC0;  // with the address pin tied to ground

  // All must outlive the tuner. `fm` is null for a module without an FM section.
  PllTuner(const TunerModel& model, const Air& air, const FmSection* fm = nullptr)
      : model_(model), air_(air), fm_(fm) {}

  // Byte pairs: divider high and low, or control (bit 7 set) and band; in either order.
  bool Write(std::span<const std::uint8_t> bytes) override;
  // The status byte, as often as it is asked for.
  bool Read(std::span<std::uint8_t> bytes) override { return ReadStatus(bytes, afcInput_); }
  // The status byte with another AFC voltage at the converter; null leaves its input open. While
  // the FM section is selected, that one's voltages are at the converter.
  bool ReadStatus(std::span<std::uint8_t> bytes, const PictureDetector* afcInput);
  // Wires a detector's AFC voltage to the converter.
  void ConnectAfc(const PictureDetector* detector) { afcInput_ = detector; }

  // Wires the FM section's detector to the converter and the stereo indicator.
  void ConnectFm(const FmDetector* detector) { fmInput_ = detector; }

  // Oscillator frequency for what was written, 0 while the loop cannot run.
  double OscillatorKHz() const;
  // What arrives at a detector on picture IF `ifKHz`: nothing when the module's filters do not pass
  // that IF, or when the band switches do not cover the frequency.
  Reception Receive(double ifKHz) const;

  // Null while the band switches do not select the FM section.
  const FmSection* SelectedFm() const;
  // The same for a detector on FM IF `ifKHz`.
  FmReception ReceiveFm(double ifKHz) const;

  // Whether the band byte selects positive modulation.
  bool PositiveModulation() const { return (band_ & model_.positiveBit) != 0; }
  bool Settled(std::uint32_t milliseconds) const { return settle_.Passed(milliseconds); }
  // Whether what the FM section shows is valid.
  bool FmSettled() const { return fmJump_.Passed(kAfcSettleMs) && Settled(kFmStepSettleMs); }
  bool Powered() const { return powered_; }
  void SetPowered(bool powered) { powered_ = powered; }

 private:
  const TunerBand* SelectedBand() const;
  bool PassesIf(double ifKHz) const;
  bool InRange() const;
  std::uint8_t AfcReading(const PictureDetector* afcInput) const;

  const TunerModel& model_;
  const Air& air_;
  const FmSection* const fm_;
  const PictureDetector* afcInput_ = nullptr;
  const FmDetector* fmInput_ = nullptr;
  SettleTimer settle_;  // since the last write
  SettleTimer fmJump_;  // since the FM section was selected or moved by more than a small step
  std::uint16_t divider_ = 0;
  std::uint8_t control_ = 0;
  std::uint8_t band_ = 0;
  bool powered_ = true;
  bool powerOnReset_ = true;
};

}  // namespace zelk::virtual_cards
