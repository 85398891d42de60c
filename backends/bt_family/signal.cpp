// Is there a signal? The decoder, the module's PLL or its IF demodulator says so.
#include "backends/bt_family/bt_family_device.h"
#include "backends/tuner_modules/bus_addresses.h"
#include "common/store.h"
#include "common/wait.h"

namespace zelk {
namespace {

// Modules whose IF demodulator knows the carrier: by its AFC, or only once all is found.
constexpr TunerSet kTvAfcDemodulators = {12, 13, 14, 15, 16, 17, 18, 19, 20, 21};
constexpr TunerSet kTvLockDemodulators = {24};
constexpr TunerSet kFmDemodulators = {13, 15, 19, 21};

// In television one step beside the middle is full strength on these cards.
constexpr std::array<AfcReading, 16> kTvDemodulatorAfc = [] {
  std::array<AfcReading, 16> meanings = kDemodulatorAfc;
  meanings[1].strength = 5;
  meanings[14].strength = 5;
  return meanings;
}();

}  // namespace

HRESULT BtFamilyDevice::IsSignalPresent_TUNER(std::uint32_t* present, std::uint32_t* strength,
                                              double* afcOffsetKHz) {
  if (!Ready("IsSignalPresent_TUNER")) return E_FAIL;
  if (!InMode(Mode::TV, "IsSignalPresent_TUNER")) return VFW_E_WRONG_STATE;
  WaitMs(kSettlingMs);
  return TvPresence({present, strength, afcOffsetKHz});
}

HRESULT BtFamilyDevice::TvPresence(const SignalPlaces& places) {
  const bool byAfc = kTvAfcDemodulators.Has(TunerType);
  const bool byLock = kTvLockDemodulators.Has(TunerType);
  std::optional<std::uint8_t> status;
  const HRESULT code = Bus->Read(byAfc || byLock ? kDemodulatorAddress : Family.PllAddress, status);
  if (!status) return StoreNoReading(places, code);
  // Quirk: the byte of a read that failed counts as any other.
  if (byAfc) {
    StoreDemodulatorTvAfc(places, *status, kTvDemodulatorAfc);
  } else if (byLock) {
    StoreDemodulatorTvLock(places, *status);
  } else {
    StoreTunerTvStatus(places, *status);
  }
  return code;
}

HRESULT BtFamilyDevice::IsSignalPresent_DECODER(std::uint32_t* present, std::uint32_t* strength) {
  if (!Ready("IsSignalPresent_DECODER")) return E_FAIL;
  WaitMs(kSettlingMs);
  LONG locked = 0;
  const HRESULT code = Bus->ReadHorizontalLock(locked);
  Store(present, locked);
  Store(strength, locked == 1 ? 5 : 0);
  return code;
}

HRESULT BtFamilyDevice::IsFMSignalPresent(std::uint32_t* present, std::uint32_t* strength,
                                          double* afcOffsetKHz) {
  if (!Ready("IsFMSignalPresent")) return E_FAIL;
  if (!InMode(Mode::FM, "IsFMSignalPresent")) return VFW_E_WRONG_STATE;
  WaitMs(Family.FmSignalWaitMs);
  const SignalPlaces places = {present, strength, afcOffsetKHz};
  std::optional<std::uint8_t> status;
  if (!kFmDemodulators.Has(TunerType)) {
    const HRESULT code = Bus->Read(Family.PllAddress, status);
    if (SUCCEEDED(code)) StoreTunerFmStatus(places, *status);
    return code;
  }
  HRESULT code = E_FAIL;
  {
    const HardwareI2c hardware(*Bus);
    code = Bus->Read(kDemodulatorAddress, status);
  }
  if (!status) return StoreNoReading(places, code);
  // Quirk: here too the byte of a read that failed counts as any other.
  const std::uint8_t afc = DemodulatorAfcCode(*status);
  Store(places.present, afc == 0 || afc == 15);
  StoreAfc(places, kDemodulatorAfc, afc);
  return code;
}

HRESULT BtFamilyDevice::GetFMStatusByte(std::uint8_t* tuner, std::uint8_t* demodulator) {
  if (!Ready("GetFMStatusByte")) return E_FAIL;
  if (!InMode(Mode::FM, "GetFMStatusByte")) return VFW_E_WRONG_STATE;
  if (Family.FmStatusWaitMs) WaitMs(Family.FmStatusWaitMs);
  if (!Family.FmStatusDemodulators.Has(TunerType)) {
    Store(demodulator, 0);
    return tuner ? ReadInto(Family.PllAddress, tuner) : E_FAIL;
  }
  const HardwareI2c hardware(*Bus);
  HRESULT code = E_FAIL;
  if (demodulator) code = ReadInto(kDemodulatorAddress, demodulator);
  if (tuner) code = ReadInto(Family.PllAddress, tuner);
  return code;
}

}  // namespace zelk
