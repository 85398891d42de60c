// Choosing standard and country. The tuner driver knows one standard for each country, so that in
// countries with several another country is named whose standard is the wanted one.
#include "backends/bt88x/bt88x_device.h"
#include "backends/tuner_modules/bus_addresses.h"
#include "backends/tuner_modules/demodulator.h"
#include "common/log.h"
#include "platform/property_request.h"
#include "platform/win32.h"

namespace zelk {
namespace {

constexpr TunerSet kMk3Tuners = {14, 15, 20, 21};

// Countries with several standards: what the tuner driver is told when one of them is chosen.
struct CountryRow {
  std::uint32_t standards;  // one bit each
  std::uint32_t country;
  std::uint32_t namedCountry;
  std::uint32_t namedStandard;
};

constexpr CountryRow kCountries[] = {
    {kSystemB, 33, 34, AnalogVideo_PAL_B},
    {kSystemB, 36, 34, AnalogVideo_PAL_B},
    {kSystemB, 48, 34, AnalogVideo_PAL_B},
    {kSystemB, 370, 34, AnalogVideo_PAL_B},
    {kSystemB, 359, 49, AnalogVideo_PAL_B},
    {kSystemB, 420, 49, AnalogVideo_PAL_B},
    {kSystemB, 4201, 49, AnalogVideo_PAL_B},
    {kSystemD, 7, 86, AnalogVideo_PAL_D},
    {kSystemD, 36, 86, AnalogVideo_PAL_D},
    {kSystemD, 370, 86, AnalogVideo_PAL_D},
    {kSystemD, 48, 48, AnalogVideo_PAL_D},
    {kSystemD, 359, 359, AnalogVideo_PAL_D},
    {kSystemD, 420, 420, AnalogVideo_PAL_D},
    {kSystemD, 4201, 4201, AnalogVideo_PAL_D},
    {AnalogVideo_SECAM_L, 33, 33, AnalogVideo_SECAM_L},
};

const CountryRow* FindCountry(std::uint32_t standard, std::uint32_t country) {
  for (const CountryRow& row : kCountries) {
    if (IsOneOf(row.standards, standard) && row.country == country) return &row;
  }
  return nullptr;
}

}  // namespace

HRESULT Bt88xDevice::SetTunerStandard(std::uint32_t standard) {
  // The block of a tuner's standard is the decoder's: a header and one value.
  KSPROPERTY_VIDEODECODER_S request = {};
  request.Value = standard;
  return SetProperty(TunerProps.Get(), kPropsetTuner, KSPROPERTY_TUNER_STANDARD, request);
}

HRESULT Bt88xDevice::SetTVFormat(std::uint32_t standard, std::uint32_t country) {
  if (!Ready("SetTVFormat")) return E_FAIL;
  VideoStandard = standard;
  CountryCode = country;
  if (!kMk3Tuners.Has(TunerType)) return S_OK;

  const DemodulatorWords* const words = DemodulatorWordsForFormat(kMk3Formats, standard);
  if (!words) return S_OK;
  const HRESULT written = WriteDWord(kDemodulatorAddress, words->word1, words->word2);
  const CountryRow* const row = FindCountry(standard, country);
  if (!row) return written;

  CountryCode = row->namedCountry;
  const HRESULT told = SetTunerStandard(row->namedStandard);
  if (!TunerProps) return told;
  char line[64];
  wsprintfA(line, "country = %d ", static_cast<int>(CountryCode));
  AppendLogMessage(line, Family.Log.fileName);
  return RequestTunerFrequency(TvFrequency, CountryCode);
}

}  // namespace zelk
