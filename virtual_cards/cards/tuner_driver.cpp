#include "virtual_cards/cards/tuner_driver.h"

#include <cmath>

#include "virtual_cards/chips/pll_tuner.h"
#include "virtual_cards/chips/silicon_demodulator.h"

namespace zelk::virtual_cards {

namespace {

// Countries whose transmission system is not B/G.
struct CountrySystem {
  std::uint32_t country;
  const DemodulatorSystem& system;
};
constexpr CountrySystem kCountrySystems[] = {
    {1, kSystemMN},  {52, kSystemMN},  {54, kSystemMN},  {55, kSystemMN}, {81, kSystemMN},
    {82, kSystemMN}, {886, kSystemMN}, {7, kSystemDK},   {36, kSystemDK}, {48, kSystemDK},
    {86, kSystemDK}, {359, kSystemDK}, {370, kSystemDK}, {27, kSystemI},  {44, kSystemI},
    {353, kSystemI}, {852, kSystemI},  {33, kSystemL}};

// L' is L with the sound below the picture, in band I alone.
constexpr double kHighestLPrimeKHz = 66000;
// VHF channels are 7 MHz wide in B, UHF channels 8 MHz in G.
constexpr double kHighestBKHz = 300000;

const DemodulatorSystem& SystemOf(std::uint32_t country, double pictureKHz) {
  for (const CountrySystem& row : kCountrySystems) {
    if (row.country != country) continue;
    if (&row.system == &kSystemL && pictureKHz < kHighestLPrimeKHz) return kSystemLPrime;
    return row.system;
  }
  return pictureKHz < kHighestBKHz ? kSystemB : kSystemGH;
}

template <std::size_t count>
bool Send(const I2cBus& bus, std::uint8_t address, const std::uint8_t (&bytes)[count]) {
  return bus.Write(address, bytes);
}

constexpr std::uint8_t High(unsigned value) { return static_cast<std::uint8_t>(value >> 8); }
constexpr std::uint8_t Low(unsigned value) { return static_cast<std::uint8_t>(value); }

// Registers 0x00 to 0x40; the others keep what the board's initialisation gave them.
bool SendSiliconImage(const I2cBus& bus, SiliconRevision revision, double oscillatorKHz) {
  const SiliconOscillator oscillator = ChooseOscillator(revision, oscillatorKHz);
  const auto steps = static_cast<unsigned>(
      std::lround(oscillatorKHz * (1U << oscillator.doublings) / kSiliconStepKHz));
  const unsigned divider = steps * 4;
  if (revision == SiliconRevision::kTda8275) {
    const unsigned select = oscillator.doublings << 6 | (oscillator.timesOneAndHalf ? 1U << 5 : 0) |
                            unsigned{oscillator.range} << 3;
    return Send(bus, SiliconTuner::kAddress,
                {0x00, High(divider), Low(divider), 0x40, 0x52, Low(select)});
  }
  const unsigned select = oscillator.doublings << 5 | unsigned{oscillator.range} << 3;
  return Send(bus, SiliconTuner::kAddress,
              {0x00, High(divider), Low(divider), 0x00, 0x10, Low(select)});
}

}  // namespace

HRESULT DriveCan(const I2cBus& bus, std::uint8_t address, const TunerModel& model,
                 double pictureKHz, std::uint32_t country) {
  // Steps of 62.5 kHz, normal charge pump, tuning voltage on.
  constexpr std::uint8_t kControl = 0x8E;
  constexpr double kStepKHz = 62.5;

  const auto divider = static_cast<unsigned>(std::lround((pictureKHz + model.ifKHz) / kStepKHz));
  for (const TunerBand& band : model.bands) {
    if (!band.Covers(pictureKHz)) continue;
    const bool positive = SystemOf(country, pictureKHz).positive;
    const unsigned switches = band.byte | (positive ? model.positiveBit : 0U);
    const bool heard = Send(bus, address, {High(divider), Low(divider), kControl, Low(switches)});
    return heard ? S_OK : E_FAIL;
  }
  return E_INVALIDARG;
}

HRESULT DriveSiliconTuner(const I2cBus& bus, SiliconRevision revision, double pictureKHz,
                          std::uint32_t country) {
  constexpr double kLowestKHz = 40000;
  constexpr double kHighestKHz = 866000;
  if (pictureKHz < kLowestKHz || pictureKHz > kHighestKHz) return E_INVALIDARG;

  const DemodulatorSystem& system = SystemOf(country, pictureKHz);
  const bool heard = Send(bus, SiliconDemodulator::kAddress, {0x01, system.code}) &&
                     Send(bus, SiliconDemodulator::kAddress, {0x21, 0xC0}) &&
                     SendSiliconImage(bus, revision, pictureKHz + system.pictureIfKHz);
  const bool closed = Send(bus, SiliconDemodulator::kAddress, {0x21, 0x80});
  return heard && closed ? S_OK : E_FAIL;
}

}  // namespace zelk::virtual_cards
