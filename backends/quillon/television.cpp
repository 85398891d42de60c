// Television: switching to it, standard and country, tuning, signal. The tuner's driver tunes; the
// card's own work is to tell it standard and country.
#include "backends/quillon/quillon_device.h"
#include "backends/tuner_modules/countries.h"
#include "common/store.h"
#include "common/wait.h"
#include "platform/property_request.h"
#include "platform/win32.h"

namespace zelk {
namespace {

constexpr std::uint32_t kSettlingMs = 80;
// Of the driver's figures for the strength only this one is a carrier.
constexpr std::uint32_t kFullStrength = 100;

// The frequency record as property data, and as instance data the record again from its frequency
// on. The driver is told the whole record's length for both, so that a record's worth of zeros
// stands behind the instance data.
struct FrequencyRequest {
  KSPROPERTY_TUNER_FREQUENCY_S data = {};
  KSPROPERTY_TUNER_FREQUENCY_S instance = {};
  std::uint8_t behindInstance[sizeof(KSPROPERTY)] = {};

  void* Instance() { return &instance.Frequency; }
};
constexpr DWORD kFrequencyBytes = sizeof(KSPROPERTY_TUNER_FREQUENCY_S);
static_assert(offsetof(FrequencyRequest, behindInstance) ==
              offsetof(FrequencyRequest, instance) + kFrequencyBytes);
static_assert(offsetof(KSPROPERTY_TUNER_FREQUENCY_S, Frequency) == sizeof(KSPROPERTY));

}  // namespace

void QuillonDevice::SwitchTunerMode(AMTunerModeType mode) {
  ComPtr<IAMTVTuner> tuner;
  if (TunerFilter && SUCCEEDED(Query(TunerFilter.Get(), tuner))) tuner->put_Mode(mode);
}

HRESULT QuillonDevice::InitialTV() {
  if (!Ready("Quillon InitialTV(): Hardware not initial")) return E_FAIL;
  SwitchTunerMode(AMTUNER_MODE_TV);
  CurrentMode = Mode::TV;
  return S_OK;
}

bool QuillonDevice::SetTunerFrequency(std::uint32_t frequencyHz) {
  if (!TunerProps) return false;
  FrequencyRequest request;
  DWORD returned = 0;
  if (FAILED(TunerProps->Get(kPropsetTuner, KSPROPERTY_TUNER_FREQUENCY, request.Instance(),
                             kFrequencyBytes, &request.data, kFrequencyBytes, &returned))) {
    Log("api: Get Tuner Property Failed");
    return false;
  }
  request.data.Frequency = frequencyHz;
  request.instance.Frequency = frequencyHz;
  const HRESULT code =
      TunerProps->Set(kPropsetTuner, KSPROPERTY_TUNER_FREQUENCY, request.Instance(),
                      kFrequencyBytes, &request.data, kFrequencyBytes);
  if (FAILED(code)) Log("api: Set Tuner Property Failed");
  OutputDebugStringA("After QL2IF_SetTunerFreq");
  return code == S_OK;
}

HRESULT QuillonDevice::SetTVFreq(std::uint32_t frequencyKHz) {
  if (!SetTunerFrequency(frequencyKHz * 1000)) return E_FAIL;
  TvFrequency = frequencyKHz;
  return S_OK;
}

HRESULT QuillonDevice::ChangeTunerCountry(std::uint32_t country) {
  ComPtr<IAMTVTuner> tuner;
  if (const HRESULT code = Query(TunerFilter.Get(), tuner); FAILED(code)) {
    OutputDebugStringA("Quillon: SetTVFormat: QueryInterface(IAMTVTUNER) failed!");
    return code;
  }
  LONG channel = 0;
  LONG videoSubchannel = -1;
  LONG audioSubchannel = -1;
  tuner->get_Channel(&channel, &videoSubchannel, &audioSubchannel);
  tuner->put_Channel(channel, videoSubchannel, audioSubchannel);
  if (const HRESULT code = tuner->put_CountryCode(static_cast<LONG>(country)); FAILED(code)) {
    OutputDebugStringA("Quillon: SetTVFormat: put_CountryCode failed!");
    return code;
  }
  tuner.Reset();
  SetTVFreq(TvFrequency);
  return S_OK;
}

HRESULT QuillonDevice::SetTVFormat(std::uint32_t standard, std::uint32_t country) {
  if (!TunerFilter) {
    OutputDebugStringA("Quillon: SetTVFormat: g_pTunerFilter ==NULL failed!");
    return E_FAIL;
  }
  if (NeedsSubstitute(country, CountryCode)) country = CountryWithStandard(standard, country);
  if (CountryCode != country) {
    if (const HRESULT code = ChangeTunerCountry(country); FAILED(code)) return code;
  }
  CountryCode = country;

  if (!CaptureFilter) return E_FAIL;
  ComPtr<IAMAnalogVideoDecoder> decoder;
  if (SUCCEEDED(Query(CaptureFilter.Get(), decoder)) &&
      FAILED(decoder->put_TVFormat(static_cast<LONG>(standard)))) {
    OutputDebugStringA("Quillon: Set Video Standared Fail");
    return E_FAIL;
  }
  return S_OK;
}

HRESULT QuillonDevice::PutTVSystem(std::uint32_t standard, std::uint32_t selector) {
  const auto country = CountryForSystem(standard, selector, selector);
  if (!country) return E_FAIL;
  const HRESULT result = SetTVFormat(standard, *country);
  const std::uint32_t frequency = TvFrequency;
  TvFrequency = 0;
  SetTVFreq(frequency);
  return result;
}

HRESULT QuillonDevice::IsSignalPresent_TUNER(std::uint32_t* present, std::uint32_t* strength,
                                             double* offset) {
  WaitMs(kSettlingMs);
  Store(present, 0);
  Store(strength, 0);
  Store(offset, 0.0);
  KSPROPERTY_TUNER_STATUS_S status = {};
  const HRESULT code =
      GetProperty(TunerProps.Get(), kPropsetTuner, KSPROPERTY_TUNER_STATUS, status);
  if (FAILED(code)) return code;
  // Quirk: an unsigned figure, which is a large one below the carrier.
  Store(offset, static_cast<double>(static_cast<std::uint32_t>(status.PLLOffset)));
  Store(strength, status.SignalStrength);
  Store(present, status.SignalStrength == kFullStrength);
  return S_OK;
}

HRESULT QuillonDevice::IsSignalPresent_DECODER(std::uint32_t* present) {
  if (!Ready("Quillon IsSignalPresent_DECODER(): Hardware not initial")) return E_FAIL;
  WaitMs(kSettlingMs);
  Store(present, 0);
  if (!CaptureFilter) return E_FAIL;
  ComPtr<IAMAnalogVideoDecoder> decoder;
  HRESULT code = Query(CaptureFilter.Get(), decoder);
  if (FAILED(code)) return code;
  LONG locked = 0;
  code = decoder->get_HorizontalLocked(&locked);
  if (SUCCEEDED(code)) Store(present, locked);
  return code;
}

}  // namespace zelk
