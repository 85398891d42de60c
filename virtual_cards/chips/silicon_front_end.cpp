#include "virtual_cards/chips/silicon_front_end.h"

namespace zelk::virtual_cards {

void SiliconFrontEnd::AttachTo(I2cBus& bus) {
  bus.Attach(SiliconDemodulator::kAddress, &demodulator_);
  bus.Attach(SiliconTuner::kAddress, &gatedTuner_);
}

double SiliconFrontEnd::TunedKHz() const {
  const DemodulatorSystem* system = demodulator_.System();
  return system ? tuner_.Receive(system->pictureIfKHz).tunedKHz : 0;
}

bool SiliconFrontEnd::GatedTuner::Write(std::span<const std::uint8_t> bytes) {
  return frontEnd_.tuner_.Write(bytes);
}

bool SiliconFrontEnd::GatedTuner::Read(std::span<std::uint8_t> bytes) {
  return frontEnd_.tuner_.Read(bytes);
}

}  // namespace zelk::virtual_cards
