// Television: switching to it, choosing standard and country, the decoder's standard.
#include <cstring>

#include "backends/saa713x/bus_addresses.h"
#include "backends/saa713x/country_rules.h"
#include "backends/saa713x/saa713x_device.h"
#include "backends/tuner_modules/countries.h"
#include "backends/tuner_modules/tuner_set.h"
#include "common/log.h"
#include "platform/property_request.h"

namespace zelk {
namespace {

// Two words for the IF demodulator: subaddress and switching byte, then adjust and data byte.
struct DemodulatorWords {
  std::uint16_t word1;
  std::uint16_t word2;
};

constexpr DemodulatorWords kDemodulatorDk = {0x0056, 0x7F4B};

struct TvModeRow {
  TunerSet tunerTypes;
  DemodulatorWords words;
};

// Modules whose demodulator is set up once, with the change to TV.
constexpr TvModeRow kTvModeDemodulators[] = {
    {{12, 13}, {0x0056, 0x3044}},
    {{16, 17}, {0x0056, 0x1040}},
    {{18, 19}, kDemodulatorDk},
};

// Modules whose demodulator has no set-up until a format is chosen.
constexpr TunerSet kFormatOnTvMode = {14, 15, 20, 21};

constexpr std::uint32_t kAnyStandard = 0xFFFFFFFF;
constexpr std::uint32_t kSystemB = AnalogVideo_PAL_B | AnalogVideo_SECAM_B;
constexpr std::uint32_t kSystemBg = kSystemB | AnalogVideo_PAL_G | AnalogVideo_SECAM_G;
constexpr std::uint32_t kSystemD = AnalogVideo_PAL_D | AnalogVideo_SECAM_D;
constexpr std::uint32_t kSystemDk = kSystemD | AnalogVideo_SECAM_K | AnalogVideo_SECAM_K1;

struct FormatRow {
  TunerSet tunerTypes;
  std::uint32_t standards;  // one bit each
  DemodulatorWords words;
};

constexpr FormatRow kFormatDemodulators[] = {
    {{46}, kAnyStandard, {0x00D6, 0x1004}},
    {{47}, kAnyStandard, {0x00D6, 0x7009}},
    {{48}, kAnyStandard, {0x00D6, 0x7000}},
    {{14, 15}, kSystemB, {0x0016, 0x7049}},
    {{14, 15}, kSystemD, {0x0016, 0x704B}},
    {{14, 15}, AnalogVideo_PAL_I, {0x0016, 0x704A}},
    {{14, 15}, AnalogVideo_SECAM_L, {0x0006, 0x504B}},
    {{20, 21}, kSystemBg, {0x0016, 0x7049}},
    {{20, 21}, kSystemDk, {0x0016, 0x704B}},
    {{20, 21}, AnalogVideo_PAL_I, {0x0016, 0x704A}},
    {{20, 21}, AnalogVideo_SECAM_L, {0x0006, 0x4E4B}},
    {{20, 21}, AnalogVideo_SECAM_L1, {0x0086, 0x4E4B}},
};

// Matches a row's standards: any at all, or exactly one of them.
bool Covers(std::uint32_t standards, std::uint32_t standard) {
  if (standards == kAnyStandard) return true;
  return (standards & standard) != 0 && (standard & (standard - 1)) == 0;
}

}  // namespace

HRESULT Saa713xDevice::InitialTV() {
  if (!Ready("SAA713x InitialTV(): Hardware not initial")) return E_FAIL;
  CurrentMode = Mode::TV;

  if (kFormatOnTvMode.Has(Board.TunerType)) SetTVFormat(VideoStandard, CountryCode);
  for (const TvModeRow& row : kTvModeDemodulators) {
    if (row.tunerTypes.Has(Board.TunerType)) {
      I2CWriteDWord(kDemodulatorAddress, row.words.word1, row.words.word2);
    }
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
  for (const FormatRow& row : kFormatDemodulators) {
    if (row.tunerTypes.Has(Board.TunerType) && Covers(row.standards, standard)) {
      return I2CWriteDWord(kDemodulatorAddress, row.words.word1, row.words.word2);
    }
  }
  return S_OK;
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
  const auto country = CountryForSystem(standard, system, 0);
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
  if (kSetUpWithDecoder.Has(Board.TunerType) && Covers(kSystemD, standard)) {
    I2CWriteDWord(kDemodulatorAddress, kDemodulatorDk.word1, kDemodulatorDk.word2);
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
