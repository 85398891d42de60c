// Choosing standard and country. The tuner drivers of these cards know one standard for each
// country, so that in countries with several another country is named whose standard is the wanted
// one.
#include <optional>

#include "backends/bt878/bt878_device.h"
#include "backends/tuner_modules/countries.h"
#include "backends/tuner_modules/demodulator.h"

namespace zelk {
namespace {

constexpr TunerSet kMk3Tuners = {14, 15, 20, 21};

// The last but one write of the TDA8290's restart.
constexpr std::uint8_t kUsualSound = 0x01;

// The TDA8290's standard bit.
struct SiliconStandardRow {
  std::uint32_t standards;  // one bit each
  std::uint8_t bit;
};

constexpr SiliconStandardRow kSiliconStandards[] = {
    {AnalogVideo_NTSC_M | AnalogVideo_NTSC_M_J | AnalogVideo_PAL_M | AnalogVideo_PAL_N, 0x01},
    {kSystemB, 0x02},
    {kSystemD, 0x10},
    {AnalogVideo_PAL_G | AnalogVideo_PAL_H | AnalogVideo_SECAM_G | AnalogVideo_SECAM_H, 0x04},
    {AnalogVideo_PAL_I, 0x08},
    {AnalogVideo_SECAM_L, 0x20},
    {AnalogVideo_SECAM_L1, 0x40},
};

std::optional<std::uint8_t> SiliconStandardBit(std::uint32_t standard) {
  for (const SiliconStandardRow& row : kSiliconStandards) {
    if (IsOneOf(row.standards, standard)) return row.bit;
  }
  return std::nullopt;
}

// What a country with several standards asks for beyond its standard. The first row that fits is
// used.
constexpr std::uint32_t kAnyStandard = 0;
constexpr std::uint8_t kNoWrite = 0;
constexpr std::uint8_t kNoRestart = 0;

struct SiliconCountryRow {
  std::uint32_t country;
  std::uint32_t standard;
  std::uint32_t pushed;       // the country for the tuner driver
  std::uint8_t standardBit;   // kNoWrite: the standard stays as it was set
  std::uint8_t restartSound;  // kNoRestart: neither is the chip restarted
};

constexpr SiliconCountryRow kSiliconCountries[] = {
    {kFrance, AnalogVideo_PAL_B, kSpain, 0x02, kUsualSound},
    {kFrance, AnalogVideo_SECAM_L, kFrance, 0x20, kUsualSound},
    {kFrance, kAnyStandard, kFrance, kNoWrite, kUsualSound},
    {kRussia, AnalogVideo_PAL_D, kChina, kNoWrite, kNoRestart},
    {kRussia, AnalogVideo_SECAM_D, kRussia, 0x10, 0x05},
    {kRussia, kAnyStandard, kRussia, kNoWrite, kNoRestart},
};

const SiliconCountryRow* FindSiliconCountry(std::uint32_t standard, std::uint32_t country) {
  for (const SiliconCountryRow& row : kSiliconCountries) {
    if (row.country == country && (row.standard == kAnyStandard || row.standard == standard)) {
      return &row;
    }
  }
  return nullptr;
}

}  // namespace

HRESULT Bt878Device::SetTVFormat(std::uint32_t standard, std::uint32_t country) {
  if (!Ready("SetTVFormat")) return E_FAIL;
  if (TunerType == 40) return SetSiliconFormat(standard, country);
  const HRESULT result = kMk3Tuners.Has(TunerType) ? SetMk3Country(standard, country) : S_OK;
  VideoStandard = standard;
  CountryCode = country;
  return result;
}

// Names the country to the tuner driver and tunes again. Answers the code of the query for the
// driver's interface; `result` where there is no tuner filter to ask.
HRESULT Bt878Device::PushCountry(std::uint32_t country, HRESULT result) {
  if (TunerProps) {
    ComPtr<IAMTVTuner> tuner;
    result = Query(TunerProps.Get(), tuner);
    if (SUCCEEDED(result)) tuner->put_CountryCode(static_cast<LONG>(country));
  }
  Retune();
  return result;
}

HRESULT Bt878Device::SetMk3Country(std::uint32_t standard, std::uint32_t country) {
  if (NeedsSubstitute(country, CountryCode)) {
    return PushCountry(CountryWithStandard(standard, country), S_OK);
  }
  return country != CountryCode ? PushCountry(country, S_OK) : S_OK;
}

HRESULT Bt878Device::SetSiliconFormat(std::uint32_t standard, std::uint32_t country) {
  HRESULT result = S_OK;
  if (standard != VideoStandard || country != CountryCode) {
    const auto bit = SiliconStandardBit(standard);
    if (!bit) return E_FAIL;
    result = SetSiliconStandard(*bit);
    if (FAILED(result)) return result;
    result = RestartSilicon(kUsualSound);
  }
  if (HasMixedStandards(country, CountryCode)) {
    result = PushCountry(CountryWithStandard(standard, country), result);
  }
  if (const SiliconCountryRow* const row = FindSiliconCountry(standard, country)) {
    result = PushCountry(row->pushed, result);
    if (row->standardBit != kNoWrite) {
      result = SetSiliconStandard(row->standardBit);
      if (FAILED(result)) return result;
    }
    if (row->restartSound != kNoRestart) result = RestartSilicon(row->restartSound);
  }
  VideoStandard = standard;
  CountryCode = country;
  return result;
}

}  // namespace zelk
