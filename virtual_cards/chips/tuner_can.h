// A whole tuner module on its board: PLL tuner, picture detector and what of them is on the bus.
#pragma once

#include <optional>

#include "virtual_cards/chips/if_demodulator.h"
#include "virtual_cards/chips/pll_tuner.h"

namespace zelk::virtual_cards {

class TunerCan final : public FrontEnd {
 public:
  // `air` must outlive the module. `address` is the bus address of the PLL, 0xC2 or 0xC0: the board
  // chooses it by the voltage at the chip's address pin. Throws std::invalid_argument for a type
  // without a known module.
  TunerCan(std::uint32_t tunerType, const Air& air, std::uint8_t address = PllTuner::kAddress,
           ModuleMake make = ModuleMake::kUsual);
  TunerCan(const TunerCan&) = delete;
  TunerCan& operator=(const TunerCan&) = delete;

  void AttachTo(I2cBus& bus);

  double TunedKHz() const override;
  const TvCarrier* Picture() const override;
  void SetPowered(bool powered) override { tuner_.SetPowered(powered); }

 private:
  // The detector inside a module without a demodulator chip.
  class BuiltInDetector final : public PictureDetector, public FmDetector {
   public:
    explicit BuiltInDetector(const TunerCan& can) : can_(can) {}
    Reception Detect() const override { return can_.tuner_.Receive(can_.model_.ifKHz); }
    FmReception DetectFm() const override;

   private:
    const TunerCan& can_;
  };

  // A second address at which some modules show their status. It takes no writes.
  class StatusPort final : public I2cDevice {
   public:
    explicit StatusPort(TunerCan& can) : can_(can) {}
    bool Write(std::span<const std::uint8_t>) override { return false; }
    bool Read(std::span<std::uint8_t> bytes) override;

   private:
    TunerCan& can_;
  };

  const PictureDetector& Detector() const;

  const TunerModel& model_;
  const std::uint8_t address_;
  const FmSection* const fm_;  // null for a module without one
  PllTuner tuner_;
  std::optional<IfDemodulator> demodulator_;
  BuiltInDetector builtIn_{*this};
  StatusPort statusPort_{*this};
};

}  // namespace zelk::virtual_cards
