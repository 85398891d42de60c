// What the FM hardware says of the station it is tuned to.
#include "backends/saa713x/bus_addresses.h"
#include "backends/saa713x/driver_property_ids.h"
#include "backends/saa713x/saa713x_device.h"
#include "backends/tuner_modules/afc.h"
#include "backends/tuner_modules/tuner_set.h"
#include "common/store.h"
#include "common/wait.h"
#include "platform/property_request.h"

namespace zelk {
namespace {

constexpr std::uint32_t kSettlingMs = 80;

// Modules whose IF demodulator reports the station.
constexpr TunerSet kDemodulatorTuners = {13, 15, 19, 21};

// On these cards the demodulator's AFC codes count from one side of the station to the other, and
// the strength with the offset's sign: the middle codes are the edges of the channel.
constexpr AfcReading kFmDemodulatorAfc[16] = {
    {-187.5, 0}, {-162.5, 0}, {-137.5, 1}, {-112.5, 2}, {-87.5, 3}, {-62.5, 4},
    {-37.5, 4},  {-12.5, 5},  {12.5, 5},   {37.5, 4},   {62.5, 4},  {87.5, 3},
    {112.5, 2},  {137.5, 1},  {162.5, 0},  {187.5, 0},
};

// The silicon tuner's level: the driver's figure falls as the station gets stronger.
struct SiliconLevelRow {
  std::uint32_t below;
  std::uint32_t level;
};

constexpr SiliconLevelRow kSiliconLevels[] = {
    {300000, 100}, {400000, 95},  {500000, 90},  {600000, 85},  {700000, 80},
    {900000, 75},  {1000000, 70}, {1100000, 65}, {1200000, 60}, {1300000, 55},
    {1400000, 50}, {1500000, 45}, {1600000, 40},
};
constexpr std::uint32_t kWeakestSiliconStation = 1200000;

std::uint32_t SiliconFmLevel(std::uint32_t figure) {
  for (const SiliconLevelRow& row : kSiliconLevels) {
    if (figure < row.below) return row.level;
  }
  return 0;
}

// Its AFC step: the distance in steps of 50 kHz, with its sign exchanged.
double SiliconFmOffset(std::int32_t step) {
  switch (step) {
    case 2:
      return -100.0;
    case -1:
      return 50.0;
    case -2:
      return 100.0;
    default:
      return 0.0;
  }
}

}  // namespace

struct Saa713xDevice::FmPresenceTest {
  TunerSet tunerTypes;
  HRESULT (Saa713xDevice::*read)(const SignalPlaces&);
};

HRESULT Saa713xDevice::IsFMSignalPresent(std::uint32_t* present, std::uint32_t* strength,
                                         double* afcOffsetKHz) {
  if (!Ready("SAA713x IsFMSignalPresent(): Hardware not initial")) return E_FAIL;
  if (CurrentMode != Mode::FM) {
    Log("SAA713x IsFMSignalPresent(): Current mode not FM");
    return VFW_E_WRONG_STATE;
  }
  WaitMs(kSettlingMs);
  static constexpr FmPresenceTest kTests[] = {
      {{40, 41}, &Saa713xDevice::SiliconFmPresence},
      {kDemodulatorTuners, &Saa713xDevice::DemodulatorFmPresence},
      {{46, 47, 48}, &Saa713xDevice::ReceiverFmPresence},
  };
  const SignalPlaces places = {present, strength, afcOffsetKHz};
  for (const FmPresenceTest& test : kTests) {
    if (test.tunerTypes.Has(Board.TunerType)) return (this->*test.read)(places);
  }
  return TunerFmPresence(places);
}

HRESULT Saa713xDevice::SiliconFmPresence(const SignalPlaces& places) {
  std::uint32_t figure = 0;
  std::uint32_t stepBits = 0;
  GetDriverProperty(kFmSignalLevel, &figure);
  GetDriverProperty(kFmAfcStep, &stepBits);
  const auto step = static_cast<std::int32_t>(stepBits);
  Store(places.present, step >= -1 && step <= 1 && figure < kWeakestSiliconStation);
  Store(places.strength, SiliconFmLevel(figure));
  Store(places.offset, SiliconFmOffset(step));
  // Quirk: the figure itself is the result.
  return static_cast<HRESULT>(figure);
}

HRESULT Saa713xDevice::DemodulatorFmPresence(const SignalPlaces& places) {
  std::uint8_t status = 0;
  const HRESULT code = I2CRead(kDemodulatorAddress, &status);
  if (FAILED(code)) return StoreNoReading(places, code);
  const std::uint8_t afc = DemodulatorAfcCode(status);
  // Quirk: 14 and not 15.
  Store(places.present, afc == 0 || afc == 14);
  if (places.offset) {
    Store(places.strength, kFmDemodulatorAfc[afc].strength);
    Store(places.offset, kFmDemodulatorAfc[afc].offsetKHz);
  }
  return code;
}

HRESULT Saa713xDevice::ReceiverFmPresence(const SignalPlaces& places) {
  constexpr std::uint8_t kWeakestStation = 0x50;
  ReadFmReceiverStatus();
  StoreFmReceiverStatus(places, kWeakestStation);
  return S_OK;
}

HRESULT Saa713xDevice::TunerFmPresence(const SignalPlaces& places) {
  std::uint8_t status = 0;
  const HRESULT code = I2CRead(kTunerAddress, &status);
  if (FAILED(code)) return code;
  StoreTunerFmStatus(places, status);
  return code;
}

HRESULT Saa713xDevice::GetFMStatusByte(std::uint8_t* tuner, std::uint8_t* demodulator) {
  if (!Ready("SAA713x GetFMStatusByte(): Hardware not initial")) return E_FAIL;
  if (CurrentMode != Mode::FM) {
    Log("SAA713x GetFMStatusByte(): Current mode not FM");
    return VFW_E_WRONG_STATE;
  }
  WaitMs(kSettlingMs);
  if (IsSilicon()) {
    std::uint32_t step = 0;
    GetDriverProperty(kFmAfcStep, &step);
    Store(tuner, step & 0xFF);
    // Delivered, but never called a success.
    return E_FAIL;
  }
  HRESULT code = E_FAIL;
  if (!kDemodulatorTuners.Has(Board.TunerType)) {
    Store(demodulator, 0);
  } else if (demodulator) {
    code = I2CRead(kDemodulatorAddress, demodulator);
  }
  return tuner ? I2CRead(kTunerAddress, tuner) : code;
}

HRESULT Saa713xDevice::GetFMStereo(std::uint32_t* stereo) const {
  std::uint8_t indicator = 0;
  const HRESULT code =
      GetProperty(CaptureProps.Get(), kPropsetZelkSaa, kFmStereoIndicator, indicator);
  Store(stereo, indicator == 1);
  return code;
}

void Saa713xDevice::ReadFmReceiverStatus() {
  if (Initialised) {
    ReadBus(kFmReceiverAddress | 1, FmReceiverStatus.data(),
            static_cast<std::uint32_t>(FmReceiverStatus.size()));
  }
}

}  // namespace zelk
