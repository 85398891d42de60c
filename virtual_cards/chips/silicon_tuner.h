// A silicon tuner: TDA8275 or its revision TDA8275A. It has no status that a driver reads; what it
// receives shows in the demodulator behind it.
#pragma once

#include <array>

#include "virtual_cards/chips/i2c_bus.h"
#include "virtual_cards/chips/reception.h"
#include "virtual_cards/chips/settle_timer.h"

namespace zelk::virtual_cards {

enum class SiliconRevision { kTda8275, kTda8275a };

class SiliconTuner final : public I2cDevice {
 public:
  static constexpr std::uint8_t kAddress = 0xC2;

  // `air` must outlive the chip.
  SiliconTuner(SiliconRevision revision, const Air& air) : revision_(revision), air_(air) {}

  // Subaddress, then register contents; subaddresses count in steps of 0x10.
  bool Write(std::span<const std::uint8_t> bytes) override;
  // Acknowledged, but the chip drives no data.
  bool Read(std::span<std::uint8_t> bytes) override;

  SiliconRevision Revision() const { return revision_; }
  // 0 while no divider is written or its oscillator cannot reach the frequency.
  double OscillatorKHz() const;
  Reception Receive(double ifKHz) const;
  FmReception ReceiveFm(double ifKHz) const;

  bool Settled(std::uint32_t milliseconds) const { return settle_.Passed(milliseconds); }
  void SetPowered(bool powered) { powered_ = powered; }

 private:
  const SiliconRevision revision_;
  const Air& air_;
  SettleTimer settle_;
  std::array<std::uint8_t, 256> registers_{};
  bool powered_ = true;
};

// The settings of a silicon tuner's oscillator.
struct SiliconOscillator {
  unsigned doublings = 0;  // the oscillator runs 2^doublings times above the mixer's frequency…
  bool timesOneAndHalf = false;  // …and another 1.5 times (TDA8275 alone)
  std::uint8_t range = 0;        // which oscillator
};

// The settings with which a chip reaches an oscillator frequency. Beyond its range (about 45 to 870
// MHz) the answer is the nearest end of it.
SiliconOscillator ChooseOscillator(SiliconRevision revision, double oscillatorKHz);

// The oscillator's divider counts in this step.
inline constexpr double kSiliconStepKHz = 250;

}  // namespace zelk::virtual_cards
