// An IF demodulator chip of the TDA9887 class behind a tuner module.
#pragma once

#include <array>

#include "virtual_cards/chips/i2c_bus.h"
#include "virtual_cards/chips/pll_tuner.h"
#include "virtual_cards/chips/reception.h"

namespace zelk::virtual_cards {

class IfDemodulator final : public I2cDevice, public PictureDetector, public FmDetector {
 public:
  static constexpr std::uint8_t kAddress = 0x86;

  enum class Mode { kPositiveTv, kFmRadio, kNegativeTv };

  // The tuner must outlive the chip.
  explicit IfDemodulator(const PllTuner& tuner) : tuner_(tuner) {}

  // Subaddress, then registers B, C and E from there on.
  bool Write(std::span<const std::uint8_t> bytes) override;
  bool Read(std::span<std::uint8_t> bytes) override;

  // False until the three registers have been written since power-on.
  bool SetUp() const { return written_ == kAllRegisters; }
  Mode Modulation() const;
  // Picture IF in kHz, 0 for a code without a meaning.
  double PictureIfKHz() const;
  double SoundOffsetKHz() const;
  // IF in kHz that is demodulated in FM-radio mode when it arrives at the IF input.
  double RadioIfKHz() const;

  Reception Detect() const override;
  FmReception DetectFm() const override;
  bool Settled(std::uint32_t milliseconds) const { return settle_.Passed(milliseconds); }

 private:
  static constexpr std::uint8_t kAllRegisters = 7;

  std::uint8_t Status() const;
  std::uint8_t TvStatus() const;
  std::uint8_t FmStatus() const;

  const PllTuner& tuner_;
  SettleTimer settle_;
  std::array<std::uint8_t, 3> registers_{};
  std::uint8_t written_ = 0;  // a bit for each register
  bool powerOnReset_ = true;
};

}  // namespace zelk::virtual_cards
