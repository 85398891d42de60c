// Discovery: from a friendly name to a card that is known and ready.
#include <cstring>

#include "backends/quillon/driver_requests.h"
#include "backends/quillon/quillon_device.h"
#include "common/log.h"
#include "common/store.h"
#include "platform/property_request.h"
#include "platform/win32.h"

namespace zelk {
namespace {

constexpr const char* kAcceptedNames[] = {
    "Korvane Telmora Video Capture (QL2)",
    "Korvane Telmora Video Capture (P260)",
    "Korvane Telmora Video Capture (P260, Philips FM1286MK2 Tuner)",
    "Korvane Telmora Video Capture (P260, Philips FI1236MK3 Tuner)",
    "Korvane Telmora Video Capture (P260, Philips FM1216MK3 Tuner)",
    "Korvane Telmora Video Capture (P260, Philips FI1216MK3 Tuner)",
    "Korvane Telmora Video Capture (P260, Philips FQ1236MK5 Tuner)",
    "Korvane Telmora Video Capture (P260, Philips FQ1216MK5 Tuner)",
    "Korvane Telmora Video Capture (P260, Philips FM1216MK5 Tuner)",
    "Korvane Telmora Video Capture (P260, Philips FM1236MK5 Tuner)",
    "Korvane Telmora Video Capture (P260, Japan)",
    "Korvane Telmora Video Capture (P260 with FM, Japan)",
    "Korvane Telmora Video Capture (P260, Europe)",
    "Korvane Telmora Video Capture (P260 with FM, Europe)",
    "Korvane Telmora Video Capture (P260, NTSC)",
    "Korvane Telmora Video Capture (P260 with FM, NTSC)",
};

bool IsAcceptedName(const char* friendlyName) {
  for (const char* const accepted : kAcceptedNames) {
    if (std::strcmp(friendlyName, accepted) == 0) return true;
  }
  return false;
}

// What the driver's tuner code says of the board.
struct TunerRow {
  std::uint8_t code;
  std::uint32_t tunerType;
  std::uint32_t tvLowKHz;
  std::uint32_t tvHighKHz;
  bool fmPresent;
  bool fmViaTuner;
};

constexpr TunerRow kTuners[] = {
    {10, 14, 48250, 863250, false, true}, {11, 15, 48250, 863250, true, true},
    {16, 12, 50250, 900250, false, true}, {17, 13, 50250, 900250, true, true},
    {24, 22, 45250, 900250, false, true}, {25, 23, 50250, 900250, true, true},
    {26, 20, 45000, 900250, false, true}, {48, 50, 90250, 772250, false, true},
    {49, 50, 90250, 772250, true, false}, {50, 51, 45250, 863250, false, true},
    {51, 51, 45250, 863250, true, false}, {52, 49, 50250, 863250, false, true},
    {53, 49, 50250, 863250, true, false},
};
constexpr TunerRow kOtherTuner = {255, 21, 45000, 900250, true, true};

// The FM band of the user's country.
struct FmBandRow {
  int country;
  std::uint32_t lowKHz;
  std::uint32_t highKHz;
};

constexpr FmBandRow kFmBands[] = {{7, 62000, 108000}, {421, 66000, 108000}, {81, 76000, 91000}};
constexpr FmBandRow kOtherFmBand = {0, 87500, 108000};

int UserCountry() {
  char country[6] = {};
  GetLocaleInfoA(GetUserDefaultLCID(), LOCALE_IDEFAULTCOUNTRY, country, sizeof(country));
  return StrToIntA(country);
}

}  // namespace

QuillonDevice::QuillonDevice()
    : DebugApi(GetPrivateProfileIntA("AP_INFO", "DebugAPI", 0, "Telmora.ini") != 0) {}

QuillonDevice::~QuillonDevice() { UnregisterGraph(); }

void QuillonDevice::Log(const char* message) { AppendLogMessage(message, "zelkapi_Quillon.log"); }

bool QuillonDevice::Ready(const char* refusal) const {
  if (!Initialised) Log(refusal);
  return Initialised;
}

HRESULT QuillonDevice::HWInit(IUnknown* captureFilter, const char* friendlyName, IUnknown*) {
  ReleaseInterfaces();
  if (!captureFilter || !friendlyName) {
    Log("Quillon: get video capture filter fail");
    return E_FAIL;
  }
  if (!IsAcceptedName(friendlyName)) {
    Log("Quillon: Device is not Quillon series product from Korvane");
    return E_FAIL;
  }
  if (FAILED(CreateGraph())) {
    Log("Quillon: Get FGM fail");
    ReleaseInterfaces();
    return E_FAIL;
  }
  if (!BuildGraph()) {
    Log("Quillon: Build graph fail");
    ReleaseInterfaces();
    return E_FAIL;
  }
  if (FAILED(ObtainProperties())) {
    ReleaseInterfaces();
    return E_FAIL;
  }
  if (IsSupported(CaptureProps.Get(), kPropsetQl2Board, kQl2BoardInit, KSPROPERTY_SUPPORT_SET)) {
    Ql2BoardRequest request = {.payload0 = 1};
    SetProperty(CaptureProps.Get(), kPropsetQl2Board, kQl2BoardInit, request);
  }

  HwInfo = {};
  Initialised = true;
  EncoderReady = true;
  HwInfo.BoardFlag5 = 1;
  HwInfo.BoardCode6 = 1;
  HwInfo.BoardCode9 = 1;
  ApplyTunerCode(static_cast<std::uint8_t>(ReadTunerCode()));
  SetFmLimits();
  return S_OK;
}

// CaptureProps already holds the interface that BuildGraph obtained. It is asked for again like the
// others; Query releases the first reference, which nothing else would, so that the card's driver
// can be unloaded afterwards.
HRESULT QuillonDevice::ObtainProperties() {
  if (FAILED(Query(CaptureFilter.Get(), CaptureProps)) ||
      FAILED(Query(EncoderFilter.Get(), EncoderProps)) ||
      FAILED(Query(TunerFilter.Get(), TunerProps))) {
    return E_FAIL;
  }
  return S_OK;
}

// 255, an unknown tuner, from a driver that does not tell.
std::uint32_t QuillonDevice::ReadTunerCode() {
  constexpr std::uint32_t kUnknown = 255;
  if (!IsSupported(CaptureProps.Get(), kPropsetQl2Board, kQl2TunerInfo, KSPROPERTY_SUPPORT_GET)) {
    return kUnknown;
  }
  Ql2BoardRequest request;
  const HRESULT code = GetProperty(CaptureProps.Get(), kPropsetQl2Board, kQl2TunerInfo, request);
  return SUCCEEDED(code) ? request.payload1 : kUnknown;
}

void QuillonDevice::ApplyTunerCode(std::uint8_t code) {
  const TunerRow* tuner = &kOtherTuner;
  for (const TunerRow& row : kTuners) {
    if (row.code == code) tuner = &row;
  }
  HwInfo.FmTuner = tuner->fmPresent;
  TunerType = tuner->tunerType;
  HwInfo.TvLowKHz = tuner->tvLowKHz;
  HwInfo.TvHighKHz = tuner->tvHighKHz;
  FmViaTuner = tuner->fmViaTuner;
}

void QuillonDevice::SetFmLimits() {
  const int country = UserCountry();
  const FmBandRow* band = &kOtherFmBand;
  for (const FmBandRow& row : kFmBands) {
    if (row.country == country) band = &row;
  }
  HwInfo.FmLowKHz = band->lowKHz;
  HwInfo.FmHighKHz = band->highKHz;
}

HRESULT QuillonDevice::GetHWInfo(ZELK_HWInfo* record) const {
  if (!Ready("Quillon GetHWInfo(): Hardware not initial")) return E_FAIL;
  Store(record, HwInfo);
  return S_OK;
}

HRESULT QuillonDevice::GetTunerType(std::uint32_t* type) const {
  if (!Ready("Quillon GetTunerType(): Hardware not initial")) return E_FAIL;
  Store(type, TunerType);
  return S_OK;
}

}  // namespace zelk
