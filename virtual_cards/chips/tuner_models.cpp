#include "virtual_cards/chips/tuner_models.h"

#include "virtual_cards/chips/tuner_types.h"

namespace zelk::virtual_cards {

namespace {

// Adjoining bands overlap by this much on either side of their nominal switch-over frequency, and
// the outer ends reach as far beyond the first and last channel.
constexpr double kOverlapKHz = 5000;

struct Plan {
  double firstKHz;     // lowest picture carrier
  double lowToMidKHz;  // nominal switch-over frequencies
  double midToHighKHz;
  double lastKHz;  // highest picture carrier
};

struct BandBytes {
  std::uint8_t low;
  std::uint8_t mid;
  std::uint8_t high;
  std::uint8_t alsoLow = 0;
};

constexpr std::array<TunerBand, 4> Bands(const Plan& plan, const BandBytes& bytes) {
  const TunerBand low{bytes.low, plan.firstKHz - kOverlapKHz, plan.lowToMidKHz + kOverlapKHz};
  const TunerBand mid{bytes.mid, plan.lowToMidKHz - kOverlapKHz, plan.midToHighKHz + kOverlapKHz};
  const TunerBand high{bytes.high, plan.midToHighKHz - kOverlapKHz, plan.lastKHz + kOverlapKHz};
  TunerBand further{};
  if (bytes.alsoLow) further = {bytes.alsoLow, low.lowKHz, low.highKHz};
  return {low, mid, high, further};
}

constexpr AfcReport kPll = AfcReport::kPll;
constexpr AfcReport kDemodulator = AfcReport::kDemodulator;
constexpr bool kBuiltIn = false;
constexpr bool kSeparate = true;
constexpr std::uint8_t kAtPll = 0;

// clang-format off
constexpr TunerModel kModels[] = {
    // types, IF, second IF, bands, positive bit, AGC byte, demodulator, AFC, status address
    {TunerTypes({0, 1, 6, 7, 8, 9, 26, 28, 33, 34}), 38900, 0,
     Bands({48250, 170000, 450000, 855250}, {0xA0, 0x90, 0x30}), 0, false, kBuiltIn, kPll, kAtPll},
    {TunerTypes({2, 3}), 38900, 0,
     Bands({48250, 170000, 450000, 855250}, {0xA1, 0x91, 0x31}), 0x02, false, kBuiltIn, kPll, kAtPll},
    {TunerTypes({4, 5, 31, 32}), 45750, 0,
     Bands({55250, 160000, 454000, 801250}, {0xA0, 0x90, 0x30}), 0, false, kBuiltIn, kPll, kAtPll},
    {TunerTypes({10, 11}), 58750, 0,
     Bands({91250, 160000, 454000, 765250}, {0xA0, 0x90, 0x30}), 0, false, kBuiltIn, kPll, kAtPll},
    {TunerTypes({12, 13}), 45750, 0,
     Bands({55250, 160000, 442000, 801250}, {0x41, 0x42, 0x44}), 0, true, kSeparate, kDemodulator, kAtPll},
    {TunerTypes({14, 15}), 38900, 33950,
     Bands({48250, 158000, 442000, 863250}, {0x21, 0x22, 0x24}), 0, true, kSeparate, kDemodulator, kAtPll},
    {TunerTypes({16, 17}), 58750, 0,
     Bands({91250, 160000, 442000, 765250}, {0x41, 0x42, 0x44}), 0, true, kSeparate, kDemodulator, kAtPll},
    {TunerTypes({18, 19}), 38900, 0,
     Bands({49250, 158000, 442000, 863250}, {0x41, 0x42, 0x44}), 0, true, kSeparate, kDemodulator, kAtPll},
    {TunerTypes({20, 21}), 38900, 33950,
     Bands({48250, 158000, 422000, 863250}, {0x01, 0x02, 0x04}), 0, false, kSeparate, kDemodulator, kAtPll},
    {TunerTypes({22, 23}), 45750, 0,
     Bands({55250, 160000, 442000, 801250}, {0x01, 0x02, 0x04}), 0, false, kSeparate, kDemodulator, kAtPll},
    // A module for the American IF: it reaches down to channel 2 although no board uses it so.
    {TunerTypes({24}), 45750, 0,
     Bands({55250, 170000, 468000, 801250}, {0x01, 0x02, 0x08}), 0, false, kSeparate, kDemodulator, kAtPll},
    {TunerTypes({25, 27}), 38900, 0,
     Bands({48250, 170000, 450000, 855250}, {0x01, 0x02, 0x08}), 0, false, kBuiltIn, kPll, kAtPll},
    // The picture falls 125 kHz above the usual 45.75 MHz in this module's IF filter.
    {TunerTypes({29, 30}), 45875, 0,
     Bands({55250, 170000, 450000, 801250}, {0x01, 0x02, 0x08}), 0, false, kBuiltIn, kPll, kAtPll},
    {TunerTypes({35}), 45750, 0,
     Bands({55250, 133250, 367250, 801250}, {0x01, 0x02, 0x08}), 0, false, kBuiltIn, kPll, kAtPll},
    {TunerTypes({36}), 58750, 0,
     Bands({91250, 171250, 409250, 765250}, {0x01, 0x02, 0x08}), 0, false, kBuiltIn, kPll, kAtPll},
    {TunerTypes({37}), 58750, 0,
     Bands({91250, 170000, 468000, 765250}, {0x01, 0x02, 0x08}), 0, false, kSeparate, kDemodulator, kAtPll},
    {TunerTypes({42}), 45750, 0,
     Bands({55250, 163250, 463250, 863250}, {0x01, 0x02, 0x04}), 0, false, kBuiltIn, kPll, kAtPll},
    {TunerTypes({43}), 38900, 0,
     Bands({48250, 161250, 471250, 863250}, {0x01, 0x02, 0x04}), 0, false, kBuiltIn, kPll, kAtPll},
    {TunerTypes({44}), 45750, 0,
     Bands({55250, 163250, 463250, 801250}, {0x01, 0x02, 0x04}), 0, false, kBuiltIn, kPll, kAtPll},
    {TunerTypes({45}), 38900, 0,
     Bands({55250, 161250, 471250, 863250}, {0x01, 0x02, 0x04}), 0, false, kBuiltIn, kPll, kAtPll},
    // The low band's second switch setting bridges a filter gap around 83.25 MHz.
    {TunerTypes({46}), 45750, 0,
     Bands({55250, 127250, 361250, 801250}, {0x11, 0x02, 0x08, 0x01}), 0, false, kSeparate, kPll, 0xC0},
    {TunerTypes({47}), 38900, 0,
     Bands({48250, 140250, 423250, 855250}, {0x01, 0x02, 0x08}), 0, false, kSeparate, kPll, 0xC0},
    {TunerTypes({48}), 58750, 0,
     Bands({91250, 165250, 373250, 765250}, {0x01, 0x02, 0x08}), 0, false, kSeparate, kPll, 0xC0},
    {TunerTypes({49}), 45750, 0,
     Bands({55250, 163250, 463250, 801250}, {0x01, 0x02, 0x04}), 0, false, kBuiltIn, kPll, kAtPll},
    {TunerTypes({50}), 58750, 0,
     Bands({91250, 170000, 463250, 771250}, {0x01, 0x02, 0x04}), 0, false, kBuiltIn, kPll, kAtPll},
    {TunerTypes({51}), 38900, 0,
     Bands({48250, 161250, 471250, 863250}, {0x01, 0x02, 0x04}), 0, false, kBuiltIn, kPll, kAtPll},
};

// The American make of modules that come in two.
constexpr TunerModel kAmericanModels[] = {
    {TunerTypes({42, 44}), 45750, 0,
     Bands({55250, 169250, 469250, 801250}, {0x01, 0x02, 0x04}), 0, false, kBuiltIn, kPll, kAtPll},
    {TunerTypes({43, 45}), 45750, 0,
     Bands({45250, 161250, 463250, 864250}, {0x01, 0x02, 0x04}), 0, false, kBuiltIn, kPll, kAtPll},
};
// clang-format on

constexpr std::uint64_t kFmDemodulatorTypes = TunerTypes({0, 2, 6, 8});

}  // namespace

const TunerModel* FindTunerModel(std::uint32_t tunerType, ModuleMake make) {
  if (make == ModuleMake::kAmerican) {
    for (const TunerModel& model : kAmericanModels) {
      if (HoldsTunerType(model.types, tunerType)) return &model;
    }
  }
  for (const TunerModel& model : kModels) {
    if (HoldsTunerType(model.types, tunerType)) return &model;
  }
  return nullptr;
}

bool HasFmDemodulator(std::uint32_t tunerType) {
  return HoldsTunerType(kFmDemodulatorTypes, tunerType);
}

}  // namespace zelk::virtual_cards
