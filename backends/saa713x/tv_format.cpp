// Television: switching to it, choosing standard and country, the decoder's standard.
#include <cstring>
#include <span>

#include "backends/saa713x/bus_addresses.h"
#include "backends/saa713x/country_rules.h"
#include "backends/saa713x/saa713x_device.h"
#include "backends/tuner_modules/demodulator.h"
#include "backends/tuner_modules/tuner_set.h"
#include "common/log.h"
#include "platform/property_request.h"

namespace zelk {
namespace {

// Modules whose demodulator has no set-up until a format is chosen.
constexpr TunerSet kFormatOnTvMode = {14, 15, 20, 21};

constexpr std::uint32_t kSystemBg = kSystemB | AnalogVideo_PAL_G | AnalogVideo_SECAM_G;
constexpr std::uint32_t kSystemDk = kSystemD | AnalogVideo_SECAM_K | AnalogVideo_SECAM_K1;

constexpr FormatWords kMk5Formats[] = {
    {kSystemBg, {0x0016, 0x7049}},
    {kSystemDk, {0x0016, 0x704B}},
    {AnalogVideo_PAL_I, {0x0016, 0x704A}},
    {AnalogVideo_SECAM_L, {0x0006, 0x4E4B}},
    {AnalogVideo_SECAM_L1, {0x0086, 0x4E4B}},
};

struct FormatRow {
  TunerSet tunerTypes;
  std::span<const FormatWords> formats;
};

constexpr FormatRow kFormats[] = {
    {{14, 15}, kMk3Formats},
    {{20, 21}, kMk5Formats},
};

// The ALPS modules' demodulator is the same for every format.
struct AlpsRow {
  std::uint32_t tunerType;
  DemodulatorWords words;
};

constexpr AlpsRow kAlpsDemodulators[] = {
    {46, {0x00D6, 0x1004}},
    {47, {0x00D6, 0x7009}},
    {48, {0x00D6, 0x7000}},
};

const DemodulatorWords* WordsFor(std::uint32_t tunerType, std::uint32_t standard) {
  for (const AlpsRow& row : kAlpsDemodulators) {
    if (row.tunerType == tunerType) return &row.words;
  }
  for (const FormatRow& row : kFormats) {
    if (row.tunerTypes.Has(tunerType)) return DemodulatorWordsForFormat(row.formats, standard);
  }
  return nullptr;
}

}  // namespace

HRESULT Saa713xDevice::InitialTV() {
  if (!Ready("SAA713x InitialTV(): Hardware not initial")) return E_FAIL;
  CurrentMode = Mode::TV;

  if (kFormatOnTvMode.Has(Board.TunerType)) SetTVFormat(VideoStandard, CountryCode);
  if (const DemodulatorWords* const words = DemodulatorWordsForTv(Board.TunerType)) {
    I2CWriteDWord(kDemodulatorAddress, words->word1, words->word2);
  }

  if (!Board.StandardBoard) Gpio->SetLine(kTvSwitchLine, 1);
  if (!Board.StandardBoard || IsSilicon()) SwitchTunerMode(AMTUNER_MODE_TV, nullptr);
  return S_OK;
}

// Lock 0 is open while the driver changes the tuner's mode, and closed afterwards. `failure` is
// logged when the driver refuses the change; null for silence.
HRESULT Saa713xDevice::SwitchTunerMode(LONG mode, const char* failure) {
  if (!TunerProps) return E_FAIL;
  SetHWLock(0, 0);
  ComPtr<IAMTVTuner> tuner;
  HRESULT code = Query(TunerProps.Get(), tuner);
  if (SUCCEEDED(code)) {
    code = tuner->put_Mode(static_cast<AMTunerModeType>(mode));
    if (FAILED(code) && failure) Log(failure);
  }
  tuner.Reset();
  SetHWLock(0, 1);
  return code;
}

// The drivers of these boards leave the choice among a country's standards to this library.
bool Saa713xDevice::NeedsCountrySubstitute(std::uint32_t country) const {
  const bool board = IsSilicon() || HwInfo.BoardOptionCode == 3 || HwInfo.BoardOptionCode == 4;
  return board && IsMultiStandardCountry(country);
}

HRESULT Saa713xDevice::SetUpDemodulatorFor(std::uint32_t standard) {
  const DemodulatorWords* const words = WordsFor(Board.TunerType, standard);
  return words ? I2CWriteDWord(kDemodulatorAddress, words->word1, words->word2) : S_OK;
}

HRESULT Saa713xDevice::SetTVFormat(std::uint32_t standard, std::uint32_t country) {
  if (!Ready("SAA713x SetTVFormat(): Hardware not initial")) return E_FAIL;
  std::optional<std::uint32_t> substitute;
  if (NeedsCountrySubstitute(country)) {
    Log("SAA713x SetTVFormat(): Multi-video-get interface.");
    substitute = SubstituteForFormat(standard, country);
  }
  const HRESULT result = SetUpDemodulatorFor(standard);

  // The country already in force: neither is the standard stored nor the card tuned again.
  if (CountryCode == country && !substitute) return result;
  CountryCode = substitute.value_or(country);
  if (!TunerProps) return result;

  if (FAILED(RequestTunerFrequency(TvFrequency, 1, 4, CountryCode))) {
    AppendLogMessage("SAA713x SetTVFormat() fail (TDA8275 tuner)", "zelkapi_713X.log");
  }
  VideoStandard = standard;
  SetTVFreq(TvFrequency);
  return result;
}

HRESULT Saa713xDevice::PutTVSystem(std::uint32_t standard, std::uint32_t system) {
  const auto country = CountryForSystem(standard, system);
  if (!country) return E_FAIL;
  const HRESULT result = SetTVFormat(standard, *country);
  Retune();
  return result;
}

HRESULT Saa713xDevice::ReadDecoderStandard(std::uint32_t& standard) const {
  KSPROPERTY_VIDEODECODER_S request = {};
  const HRESULT code = GetProperty(CaptureProps.Get(), kPropsetVideoDecoder,
                                   KSPROPERTY_VIDEODECODER_STANDARD, request);
  standard = request.Value;
  return code;
}

HRESULT Saa713xDevice::SetCaptureStandard(std::uint32_t standard) {
  KSPROPERTY_VIDEODECODER_S request = {};
  request.Value = standard;
  SetProperty(CaptureProps.Get(), kPropsetVideoDecoder, KSPROPERTY_VIDEODECODER_STANDARD, request);
  constexpr TunerSet kSetUpWithDecoder = {18, 19};
  if (kSetUpWithDecoder.Has(Board.TunerType) && IsOneOf(kSystemD, standard)) {
    const DemodulatorWords* const words = DemodulatorWordsForTv(Board.TunerType);
    I2CWriteDWord(kDemodulatorAddress, words->word1, words->word2);
  }
  return E_FAIL;
}

HRESULT Saa713xDevice::GetVIDEOSTANDARD(std::uint32_t* record) const {
  KSPROPERTY_VIDEODECODER_S request = {};
  GetProperty(CaptureProps.Get(), kPropsetVideoDecoder, KSPROPERTY_VIDEODECODER_STANDARD, request);
  if (record) std::memcpy(record, &request, sizeof(request));
  return E_FAIL;
}

}  // namespace zelk
