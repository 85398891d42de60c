#include "virtual_cards/chips/fm_section.h"

#include <algorithm>
#include <cmath>

#include "virtual_cards/chips/tuner_types.h"

namespace zelk::virtual_cards {

namespace {

constexpr double kUsualIfKHz = 10700;

// Band byte of most modules: bits 7, 5 and 2 select the FM section, bit 1 forces mono and bit 0
// chooses what is converted.
constexpr std::array<std::uint8_t, 4> kClassicBytes = {0xA4, 0xA5, 0xA6, 0xA7};
constexpr std::uint8_t kClassicAfc = 0x01;

constexpr FmSection kSections[] = {
    {TunerTypes({1, 3, 5, 7, 9, 11, 17, 26, 28, 32, 34}), kUsualIfKHz, kClassicBytes,
     FmConverter::kAfcOrLevel, kClassicAfc, FmDemodulation::kInModule},
    // This module demodulates FM in its television sound IF.
    {TunerTypes({30}), 41250, kClassicBytes, FmConverter::kAfcOrLevel, kClassicAfc,
     FmDemodulation::kInModule},
    {TunerTypes({13, 15}),
     kUsualIfKHz,
     {0x19},
     FmConverter::kLiftedByPilot,
     0,
     FmDemodulation::kChip},
    // The eastern module's FM IF is mixed with 44 MHz.
    {TunerTypes({19}), 33300, {0x19}, FmConverter::kLiftedByPilot, 0, FmDemodulation::kChipTurned},
    {TunerTypes({21, 23}),
     kUsualIfKHz,
     {0x09},
     FmConverter::kPulledByPilot,
     0,
     FmDemodulation::kChipRadioInput},
    // Bits 4 and 0 select the FM section; bit 7 converts the AFC in stereo, bit 5 in mono.
    {TunerTypes({44, 45}),
     kUsualIfKHz,
     {0x11, 0x31, 0x91},
     FmConverter::kAfcOrLevel,
     0xA0,
     FmDemodulation::kInModule},
};

// The American make of these modules has the FM section of most.
constexpr std::uint64_t kAmericanTypes = TunerTypes({44, 45});
constexpr std::uint32_t kClassicType = 1;

// Status byte.
constexpr std::uint8_t kStereoIndicator = 0x10;

// The converter's readings 0 to 4; as with a picture the AFC voltage takes a step for 62.5 kHz and
// drifts to the upper end when there is nothing to follow.
constexpr double kAfcStepKHz = 62.5;
constexpr int kLowest = 0;
constexpr int kMiddle = 2;
constexpr int kReceivable = 3;
constexpr int kHighest = 4;

// The level detector reaches the converter's last step.
constexpr double kStrongDbuV = 60;

int AfcReading(const FmReception& reception) {
  const FmReception followed = reception.Within(kFmAfcWindowKHz);
  if (!followed.station) return kHighest;
  const int step = static_cast<int>(std::lround(followed.OffsetKHz() / kAfcStepKHz));
  return std::clamp(kMiddle + step, kLowest, kHighest);
}

int LevelReading(const FmStation* station) {
  if (!station) return kLowest;
  return station->levelDbuV >= kStrongDbuV ? kHighest : kReceivable;
}

}  // namespace

bool FmSection::SelectedBy(std::uint8_t bandByte) const {
  return bandByte != 0 &&
         std::find(bandBytes.begin(), bandBytes.end(), bandByte) != bandBytes.end();
}

std::uint8_t FmSection::AfcBandByte() const {
  const auto found = std::find_if(bandBytes.begin(), bandBytes.end(),
                                  [this](std::uint8_t byte) { return (byte & afcBits) != 0; });
  return found == bandBytes.end() ? bandBytes[0] : *found;
}

std::uint8_t FmSection::StatusBits(std::uint8_t bandByte, const FmReception& reception) const {
  const FmStation* station = reception.Centred();
  const bool pilot = station && station->stereo;
  if (converter == FmConverter::kAfcOrLevel) {
    const bool afc = (bandByte & afcBits) != 0;
    const int reading = afc ? AfcReading(reception) : LevelReading(station);
    return static_cast<std::uint8_t>(reading | (pilot ? kStereoIndicator : 0));
  }
  if (!station) return kLowest;
  return pilot == (converter == FmConverter::kLiftedByPilot) ? kHighest : kMiddle;
}

const FmSection* FindFmSection(std::uint32_t tunerType, ModuleMake make) {
  if (make == ModuleMake::kAmerican && HoldsTunerType(kAmericanTypes, tunerType)) {
    return FindFmSection(kClassicType);
  }
  for (const FmSection& section : kSections) {
    if (HoldsTunerType(section.types, tunerType)) return &section;
  }
  return nullptr;
}

}  // namespace zelk::virtual_cards
