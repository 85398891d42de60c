// An analogue demodulator of the TDA8290 class: demodulates the low IF of a silicon tuner and
// switches the tuner's I2C bus through.
#pragma once

#include <array>

#include "virtual_cards/chips/silicon_tuner.h"

namespace zelk::virtual_cards {

// A transmission system as the demodulator knows it.
struct DemodulatorSystem {
  std::uint8_t code;    // content of register 0x01
  double pictureIfKHz;  // where its filters expect the picture carrier
  bool positive;        // picture modulation
};

inline constexpr DemodulatorSystem kSystemMN = {0x01, 5750, false};
inline constexpr DemodulatorSystem kSystemB = {0x02, 6750, false};
inline constexpr DemodulatorSystem kSystemGH = {0x04, 7750, false};
inline constexpr DemodulatorSystem kSystemDK = {0x08, 7750, false};
inline constexpr DemodulatorSystem kSystemI = {0x10, 7750, false};
inline constexpr DemodulatorSystem kSystemL = {0x20, 7750, true};
inline constexpr DemodulatorSystem kSystemLPrime = {0x40, 1250, true};

class SiliconDemodulator final : public I2cDevice, public PictureDetector, public FmDetector {
 public:
  static constexpr std::uint8_t kAddress = 0x96;

  // The tuner must outlive the chip.
  explicit SiliconDemodulator(const SiliconTuner& tuner) : tuner_(tuner) {}

  // Register number, then contents from there on; a read goes on where the last write ended.
  bool Write(std::span<const std::uint8_t> bytes) override;
  bool Read(std::span<std::uint8_t> bytes) override;

  // Whether the tuner's bus is switched through.
  bool GateOpen() const;
  // Null while register 0x01 selects no system.
  const DemodulatorSystem* System() const;

  Reception Detect() const override;
  // Detected, settled and close enough for line sync.
  const TvCarrier* Locked() const;

  // Where the FM filter expects a station.
  static constexpr double kFmIfKHz = 1600;
  FmReception DetectFm() const override;

 private:
  bool SetUpForFm() const;
  // Bit 7: lock. Bits 6..0: AFC, two's complement.
  std::uint8_t AfcRegister() const;

  const SiliconTuner& tuner_;
  std::array<std::uint8_t, 256> registers_{};
  std::uint8_t pointer_ = 0;
};

}  // namespace zelk::virtual_cards
