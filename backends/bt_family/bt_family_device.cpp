// Discovery, teardown, the bus and the locks.
#include "backends/bt_family/bt_family_device.h"

#include <cstring>

#include "backends/bt_family/requests.h"
#include "backends/tuner_modules/bands.h"
#include "backends/tuner_modules/words.h"
#include "common/store.h"
#include "platform/property_request.h"

namespace zelk {
namespace {

// Modules that no other family carries, and those whose limits are drawn otherwise here.
constexpr TvBandRow kTvBands[] = {
    {{42}, {55250, 801250}},      // TNF 5533
    {{43, 45}, {45250, 864250}},  // TNF 9533, TNF 9833
    {{40}, {40000, 864000}},      // silicon
};
constexpr std::uint32_t kUnknownTuner = 0xFFFFFFFF;

}  // namespace

BtFamilyDevice::~BtFamilyDevice() { TearDown(); }

void BtFamilyDevice::TearDown() {
  CurrentMode = Mode::None;
  Initialised = false;
  Bus = nullptr;
  Library.Unload();
  TunerProps.Reset();
  CaptureProps.Reset();
}

bool BtFamilyDevice::Ready(const char* operation, const char* refusal) const {
  if (!Initialised) LogRefusal(operation, refusal);
  return Initialised;
}

void BtFamilyDevice::LogRefusal(const char* operation, const char* refusal) const {
  if (Family.LogsRefusals) Family.Log.Say(" ", operation, refusal);
}

bool BtFamilyDevice::InMode(Mode mode, const char* operation) const {
  if (CurrentMode == mode) return true;
  LogRefusal(operation, mode == Mode::TV ? "(): Current mode not TV" : "(): Current mode not FM");
  return false;
}

HRESULT BtFamilyDevice::HWInit(IUnknown* captureFilter, const char* friendlyName,
                               IUnknown* tunerFilter) {
  if (Initialised) TearDown();
  const bool reached = captureFilter && friendlyName
                           ? OpenDriver(captureFilter, friendlyName, tunerFilter)
                           : SetUpLibrary();
  if (!reached) return E_FAIL;
  Initialised = true;
  if (!IdentifyBoard()) {
    Library.Unload();
    Initialised = false;
    return E_FAIL;
  }
  SetBands();
  PrepareTuner();
  return S_OK;
}

bool BtFamilyDevice::OpenDriver(IUnknown* captureFilter, const char* friendlyName,
                                IUnknown* tunerFilter) {
  bool accepted = false;
  for (const char* name : Family.AcceptedNames) {
    if (std::strcmp(friendlyName, name) == 0) accepted = true;
  }
  if (!accepted) {
    Family.Log.Say(": Device is not ", Family.Log.tag, " series product from Korvane");
    return false;
  }
  if (FAILED(Query(captureFilter, CaptureProps))) {
    Family.Log.Say(": Get Video Capture IKsPropertySet interface fail");
    return false;
  }
  if (tunerFilter && FAILED(Query(tunerFilter, TunerProps))) {
    Family.Log.Say(": Get Tuner IKsPropertySet interface fail");
    return false;
  }
  return SetUpDriver();
}

void BtFamilyDevice::SetBands() {
  HwInfo.FmLowKHz = FmLowKHzOf(TunerType);
  HwInfo.FmHighKHz = kWesternFmHighKHz;
  const std::uint32_t known = TunerType <= Family.HighestTunerType ? TunerType : kUnknownTuner;
  const TvBand band = TvBandOf(kTvBands, known);
  HwInfo.TvLowKHz = band.lowKHz;
  HwInfo.TvHighKHz = band.highKHz;
}

HRESULT BtFamilyDevice::GetHWInfo(ZELK_HWInfo* record) const {
  if (!Ready("GetHWInfo")) return E_FAIL;
  Store(record, HwInfo);
  return S_OK;
}

HRESULT BtFamilyDevice::GetTunerType(std::uint32_t* type) const {
  if (!Ready("GetTunerType")) return E_FAIL;
  Store(type, TunerType);
  return S_OK;
}

HRESULT BtFamilyDevice::I2CWriteSequence(std::uint8_t device, const std::uint8_t* bytes,
                                         std::uint32_t count) {
  if (!Ready("I2CWriteSequence")) return E_FAIL;
  return count <= kLongestI2cWrite ? Bus->Write(device, bytes, count) : E_FAIL;
}

HRESULT BtFamilyDevice::I2CWriteDWord(std::uint8_t device, std::uint16_t word1,
                                      std::uint16_t word2) {
  return Ready("I2CWriteDWord") ? WriteDWord(device, word1, word2) : E_FAIL;
}

HRESULT BtFamilyDevice::WriteDWord(std::uint8_t device, std::uint16_t word1, std::uint16_t word2) {
  const auto bytes = WordBytes(word1, word2);
  return Bus->Write(device, bytes.data(), bytes.size());
}

HRESULT BtFamilyDevice::I2CRead(std::uint8_t device, std::uint8_t* byte) {
  return Ready("I2CRead") ? ReadInto(device, byte) : E_FAIL;
}

HRESULT BtFamilyDevice::ReadInto(std::uint8_t device, std::uint8_t* place) {
  std::optional<std::uint8_t> byte;
  const HRESULT code = Bus->Read(device, byte);
  if (byte) Store(place, *byte);
  return code;
}

HRESULT BtFamilyDevice::ReadEEPROM(std::uint8_t address, std::uint8_t* byte) {
  return Ready("ReadEEPROM") ? Bus->ReadEeprom(address, byte) : E_FAIL;
}

HRESULT BtFamilyDevice::GetRemoteData(std::uint32_t* code) {
  return Ready("GetRemoteData") ? Bus->ReadRemote(code) : E_FAIL;
}

// S_OK when a lock can be reached. Every family says why not.
HRESULT BtFamilyDevice::LockAccess(const char* operation, std::uint32_t index) const {
  if (!Initialised) {
    Family.Log.Say(" ", operation, "(): Hardware not initial");
    return E_FAIL;
  }
  if (!CaptureProps) {
    Family.Log.Say(" ", operation, "() no video caprture filter");
    return E_FAIL;
  }
  if (CurrentMode == Mode::None) {
    Family.Log.Say(" ", operation, "(): Current mode not TV or FM");
    return VFW_E_WRONG_STATE;
  }
  return index < std::size(Family.LockProperties) ? S_OK : E_FAIL;
}

HRESULT BtFamilyDevice::LockProperties(ComPtr<IKsPropertySet>& properties) {
  properties = CaptureProps;
  return S_OK;
}

HRESULT BtFamilyDevice::SetHWLock(std::uint32_t index, std::uint32_t value) {
  HRESULT code = LockAccess("SetHWLock", index);
  if (FAILED(code)) return code;
  ComPtr<IKsPropertySet> properties;
  code = LockProperties(properties);
  if (FAILED(code)) return code;
  KsLockRequest request = {};
  request.on = value == 1;
  return SetProperty(properties.Get(), kPropsetZelkCapture, Family.LockProperties[index], request);
}

HRESULT BtFamilyDevice::GetHWLock(std::uint32_t index, std::uint32_t* value) {
  const HRESULT access = LockAccess("GetHWLock", index);
  if (FAILED(access)) return access;
  KsLockRequest request = {};
  const HRESULT code =
      GetProperty(CaptureProps.Get(), kPropsetZelkCapture, Family.LockProperties[index], request);
  Store(value, request.on == 1);
  return code;
}

}  // namespace zelk
