#include "virtual_cards/cards/tuner_driver.h"

#include <algorithm>
#include <cmath>

#include "virtual_cards/chips/if_demodulator.h"
#include "virtual_cards/chips/silicon_demodulator.h"

namespace zelk::virtual_cards {

namespace {

// Countries whose transmission system is not B/G.
struct CountrySystem {
  std::uint32_t country;
  const DemodulatorSystem& system;
};
constexpr CountrySystem kCountrySystems[] = {
    {1, kSystemMN},  {52, kSystemMN},  {54, kSystemMN}, {55, kSystemMN},  {81, kSystemMN},
    {82, kSystemMN}, {886, kSystemMN}, {7, kSystemDK},  {420, kSystemDK}, {4201, kSystemDK},
    {36, kSystemDK}, {48, kSystemDK},  {86, kSystemDK}, {359, kSystemDK}, {370, kSystemDK},
    {27, kSystemI},  {44, kSystemI},   {353, kSystemI}, {852, kSystemI},  {33, kSystemL}};

// L' is L with the sound below the picture, in band I alone.
constexpr double kHighestLPrimeKHz = 66000;
// VHF channels are 7 MHz wide in B, UHF channels 8 MHz in G.
constexpr double kHighestBKHz = 300000;

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

// The band that covers a frequency, or the one that comes closest to it.
const TunerBand& NearestBand(const TunerModel& model, double kHz) {
  const auto distance = [kHz](const TunerBand& band) {
    return std::max({band.lowKHz - kHz, kHz - band.highKHz, 0.0});
  };
  const TunerBand* nearest = &model.bands[0];
  for (const TunerBand& band : model.bands) {
    if (band.highKHz > 0 && distance(band) < distance(*nearest)) nearest = &band;
  }
  return *nearest;
}

HRESULT SendPicture(const CanOnBoard& can, const TunerBand& band, double oscillatorKHz,
                    bool positive) {
  // Steps of 62.5 kHz, normal charge pump, tuning voltage on.
  constexpr std::uint8_t kControl = 0x8E;
  constexpr double kStepKHz = 62.5;

  const auto divider = static_cast<unsigned>(std::lround(oscillatorKHz / kStepKHz));
  const unsigned switches = band.byte | (positive ? can.model.positiveBit : 0U);
  const bool heard =
      Send(can.bus, can.address, {High(divider), Low(divider), kControl, Low(switches)});
  return heard ? S_OK : E_FAIL;
}

// The IF demodulator's registers B and E for a picture.
constexpr std::uint8_t kPictureB = 0x06;
constexpr std::uint8_t kNegativeB = 0x10;
constexpr std::uint8_t kLowerEndB = 0x80;  // the board's filter for L'
constexpr std::uint8_t kPictureE = 0x40;
constexpr std::uint8_t kTakeOver = 0x70;  // register C: where the AGC moves on to the tuner

struct IfCode {
  double ifKHz;
  std::uint8_t code;
};
constexpr IfCode kIfCodes[] = {{58750, 0}, {45750, 1}, {38900, 2}};

unsigned SoundCode(const DemodulatorSystem& system) {
  if (&system == &kSystemMN) return 0;  // 4.5 MHz
  if (&system == &kSystemI) return 2;   // 6.0 MHz
  const bool fiveAndHalf = &system == &kSystemB || &system == &kSystemGH;
  return fiveAndHalf ? 1 : 3;  // else 6.5 MHz
}

// Status bytes as these chips show them.
constexpr std::uint8_t kPllInLock = 0x40;
constexpr std::uint8_t kDemodulatorCarrier = 0x80;
constexpr unsigned kCaught = 100;

// Five steps of 62.5 kHz around the middle; at the upper end there may be no carrier at all.
TunerReading ReadingOfPll(std::uint8_t status) {
  constexpr double kStepKHz = 62.5;
  constexpr unsigned kStrengths[] = {50, kCaught, kCaught, kCaught, 0, 0, 0, 0};
  const int afc = status & 7;
  const unsigned strength = kStrengths[afc];
  if (strength == 0) return {.inLock = true};
  return {
      .inLock = true, .offsetKHz = static_cast<int>((afc - 2) * kStepKHz), .strength = strength};
}

// Eight steps of 25 kHz to either side, named by the middle of the step. The IF is too low when the
// carrier lies above the tuned frequency.
TunerReading ReadingOfDemodulator(std::uint8_t status) {
  constexpr unsigned kStrengths[] = {kCaught, kCaught, kCaught, kCaught, 80, 60, 40, 20};
  if (!(status & kDemodulatorCarrier)) return {.inLock = true};
  const int afc = status >> 1 & 0xF;
  const int steps = afc <= 7 ? afc : 15 - afc;
  const int deviationKHz = steps * 25 + 12;
  return {.inLock = true,
          .offsetKHz = afc <= 7 ? deviationKHz : -deviationKHz,
          .strength = kStrengths[steps]};
}

}  // namespace

const DemodulatorSystem& SystemOf(std::uint32_t country, double pictureKHz) {
  for (const CountrySystem& row : kCountrySystems) {
    if (row.country != country) continue;
    if (&row.system == &kSystemL && pictureKHz < kHighestLPrimeKHz) return kSystemLPrime;
    return row.system;
  }
  return pictureKHz < kHighestBKHz ? kSystemB : kSystemGH;
}

HRESULT SetUpDemodulator(const I2cBus& bus, const DemodulatorSystem& system, double ifKHz) {
  const unsigned b = kPictureB | (system.positive ? 0U : kNegativeB) |
                     (&system == &kSystemLPrime ? kLowerEndB : 0U);
  unsigned ifCode = 0;
  for (const IfCode& row : kIfCodes) {
    if (row.ifKHz == ifKHz) ifCode = row.code;
  }
  const unsigned e = kPictureE | ifCode << 2 | SoundCode(system);
  return Send(bus, IfDemodulator::kAddress, {0x00, Low(b), kTakeOver, Low(e)}) ? S_OK : E_FAIL;
}

HRESULT DriveCan(const CanOnBoard& can, double pictureKHz, std::uint32_t country) {
  for (const TunerBand& band : can.model.bands) {
    if (!band.Covers(pictureKHz)) continue;
    const bool positive = SystemOf(country, pictureKHz).positive;
    return SendPicture(can, band, pictureKHz + can.model.ifKHz, positive);
  }
  return E_INVALIDARG;
}

HRESULT DriveWholeCan(const CanOnBoard& can, double pictureKHz, std::uint32_t country) {
  constexpr double kLowestKHz = 40000;
  constexpr double kHighestKHz = 910000;
  if (pictureKHz < kLowestKHz || pictureKHz > kHighestKHz) return E_INVALIDARG;

  const DemodulatorSystem& system = SystemOf(country, pictureKHz);
  const bool lowerEnd = &system == &kSystemLPrime && can.model.secondIfKHz > 0;
  const double ifKHz = lowerEnd ? can.model.secondIfKHz : can.model.ifKHz;
  if (can.model.separateDemodulator) {
    const HRESULT code = SetUpDemodulator(can.bus, system, can.model.ifKHz);
    if (FAILED(code)) return code;
  }
  return SendPicture(can, NearestBand(can.model, pictureKHz), pictureKHz + ifKHz, system.positive);
}

HRESULT DriveFmSection(const CanOnBoard& can, const FmSection& fm, double kHz) {
  return DriveFmSection(can, fm, kHz, fm.bandBytes[0]);
}

HRESULT DriveFmSection(const CanOnBoard& can, const FmSection& fm, double kHz,
                       std::uint8_t bandByte) {
  // Steps of 50 kHz.
  constexpr std::uint8_t kControl = 0x88;
  constexpr double kStepKHz = 50;

  if (!FmSection::Covers(kHz)) return E_INVALIDARG;
  const auto divider = static_cast<unsigned>(std::lround((kHz + fm.ifKHz) / kStepKHz));
  return Send(can.bus, can.address, {High(divider), Low(divider), kControl, bandByte}) ? S_OK
                                                                                       : E_FAIL;
}

HRESULT SetUpRadio(const I2cBus& bus) {
  return Send(bus, IfDemodulator::kAddress, {0x00, 0x4E, 0x90, 0x74}) ? S_OK : E_FAIL;
}

TunerReading ReadCan(const CanOnBoard& can) {
  std::uint8_t pll = 0;
  if (!can.bus.Read(can.address, {&pll, 1}) || !(pll & kPllInLock)) return {};
  if (can.model.afc == AfcReport::kPll) return ReadingOfPll(pll);
  std::uint8_t demodulator = 0;
  if (!can.bus.Read(IfDemodulator::kAddress, {&demodulator, 1})) return {.inLock = true};
  return ReadingOfDemodulator(demodulator);
}

void StartSiliconDemodulator(const I2cBus& bus) {
  Send(bus, SiliconDemodulator::kAddress, {0x07, 0x00});  // video output on
  Send(bus, SiliconDemodulator::kAddress, {0x30, 0x2F});  // PLL bandwidth
  Send(bus, SiliconDemodulator::kAddress, {0x20, 0x0B});  // sync
  Send(bus, SiliconDemodulator::kAddress, {0x01, kSystemB.code});
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
