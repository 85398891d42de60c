// A silicon tuner behind its demodulator's bus gate.
#pragma once

#include "virtual_cards/chips/silicon_demodulator.h"
#include "virtual_cards/chips/silicon_tuner.h"

namespace zelk::virtual_cards {

class SiliconFrontEnd final : public FrontEnd {
 public:
  // `air` must outlive the object.
  SiliconFrontEnd(SiliconRevision revision, const Air& air)
      : tuner_(revision, air), demodulator_(tuner_) {}
  SiliconFrontEnd(const SiliconFrontEnd&) = delete;
  SiliconFrontEnd& operator=(const SiliconFrontEnd&) = delete;

  void AttachTo(I2cBus& bus);

  SiliconRevision Revision() const { return tuner_.Revision(); }
  double TunedKHz() const override;
  // What the tuner is set to when the card receives FM.
  double TunedFmKHz() const { return tuner_.ReceiveFm(SiliconDemodulator::kFmIfKHz).tunedKHz; }
  const FmDetector& Fm() const { return demodulator_; }
  const TvCarrier* Picture() const override { return demodulator_.Locked(); }
  void SetPowered(bool powered) override { tuner_.SetPowered(powered); }

 private:
  // The tuner as the card's bus sees it: absent while the gate is closed.
  class GatedTuner final : public I2cDevice {
   public:
    explicit GatedTuner(SiliconFrontEnd& frontEnd) : frontEnd_(frontEnd) {}
    bool Acknowledges(I2cDirection) override { return frontEnd_.demodulator_.GateOpen(); }
    bool Write(std::span<const std::uint8_t> bytes) override;
    bool Read(std::span<std::uint8_t> bytes) override;

   private:
    SiliconFrontEnd& frontEnd_;
  };

  SiliconTuner tuner_;
  SiliconDemodulator demodulator_;
  GatedTuner gatedTuner_{*this};
};

}  // namespace zelk::virtual_cards
