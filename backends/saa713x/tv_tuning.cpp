// Tuning a TV channel: by the tuner's PLL over I2C, or by the driver of the tuner filter; either
// way the capture driver is told before and after.
#include "backends/saa713x/bus_addresses.h"
#include "backends/saa713x/country_rules.h"
#include "backends/saa713x/pll_table.h"
#include "backends/saa713x/saa713x_device.h"
#include "backends/tuner_modules/words.h"
#include "common/log.h"
#include "platform/property_request.h"

namespace zelk {
namespace {

constexpr GUID kPropsetVampTune = {
    0x50468AC0, 0xD014, 0x11D3, {0xA4, 0xD9, 0x00, 0x60, 0x08, 0x0B, 0xA6, 0x34}};
constexpr std::uint32_t kTuningNotification = 3;
constexpr std::uint32_t kBeforeTuning = 1;
constexpr std::uint32_t kAfterTuning = 2;

struct TuningNotification {
  std::uint32_t phase;
  std::uint32_t country;
  std::uint32_t standard;
  std::uint32_t phaseAgain;
};
static_assert(sizeof(TuningNotification) == 16);

// These modules take the four bytes twice.
constexpr TunerSet kWrittenTwice = {20, 21};

}  // namespace

HRESULT Saa713xDevice::NotifyTuning(std::uint32_t phase, std::uint32_t country) {
  TuningNotification notification = {phase, country, VideoStandard, phase};
  return SetProperty(CaptureProps.Get(), kPropsetVampTune, kTuningNotification, notification);
}

HRESULT Saa713xDevice::RequestTunerFrequency(std::uint32_t frequencyKHz, std::uint32_t flags,
                                             std::uint32_t channel, std::uint32_t country) {
  KSPROPERTY_TUNER_FREQUENCY_S request = {};
  request.Frequency = frequencyKHz * 1000;
  request.TuningFlags = flags;
  request.Channel = channel;
  request.Country = country;
  return SetProperty(TunerProps.Get(), kPropsetTuner, KSPROPERTY_TUNER_FREQUENCY, request);
}

HRESULT Saa713xDevice::SetTVFreq(std::uint32_t frequencyKHz) {
  if (!Ready("SAA713x SetTVFreq(): Hardware not initial or frequency not correct")) return E_FAIL;
  if (CurrentMode != Mode::TV) {
    Log("SAA713x SetTVFreq(): Current mode not TV");
    return VFW_E_WRONG_STATE;
  }

  std::optional<std::uint32_t> substitute;
  if (NeedsCountrySubstitute(CountryCode)) {
    substitute = SubstituteForTuning(VideoStandard, CountryCode);
  }
  const std::uint32_t country = substitute.value_or(CountryCode);

  const bool notify =
      TvFrequency != frequencyKHz || LastTunedCountry != static_cast<std::int32_t>(country);
  if (notify) NotifyTuning(kBeforeTuning, country);
  LastTunedCountry = static_cast<std::int32_t>(country);
  TvFrequency = frequencyKHz;

  HRESULT result = S_OK;
  if (TunerProps && IsSilicon()) {
    result = RequestTunerFrequency(frequencyKHz, 0, 4, country);
    if (FAILED(result)) {
      AppendLogMessage("SAA713x SetTVFreq() fail (TDA8275 tuner)", "zelkapi_713X.log");
    }
  } else {
    result = WritePll(frequencyKHz, country);
  }

  std::uint32_t decoderStandard = 0;
  if (ReadDecoderStandard(decoderStandard) == S_OK && substitute) {
    FollowDecoderStandard(decoderStandard);
  }
  if (notify) result = NotifyTuning(kAfterTuning, country);

  // The standard that the decoder reported becomes the capture standard.
  std::uint32_t chipNumber = 0;
  GetDecoder(&chipNumber);
  SetCaptureStandard(decoderStandard);
  return result;
}

HRESULT Saa713xDevice::WritePll(std::uint32_t frequencyKHz, std::uint32_t country) {
  const auto pll = PllFor(Board.TunerType, frequencyKHz, VideoStandard);
  if (!pll) {
    Log("SAA713x This tuner type has not yet implemented in ZELK_SetFreq()");
    return S_OK;
  }
  const auto words = WordBytes(pll->divider, pll->control);
  if (const auto fifthByte = TvPllFifthByte(Board.TunerType)) {
    const std::uint8_t bytes[] = {words[0], words[1], words[2], words[3], *fifthByte};
    I2CWriteSequence(kTunerAddress, bytes, sizeof(bytes));
  } else if (kWrittenTwice.Has(Board.TunerType)) {
    I2CWriteSequence(kTunerAddress, words.data(), words.size());
  }
  // The driver of this module tunes it itself.
  if (Board.TunerType == 43) return RequestTunerFrequency(TvFrequency, 1, 44, country);
  return I2CWriteDWord(kTunerAddress, pll->divider, pll->control);
}

// In a country with several standards the decoder's finding replaces the one that was asked for.
void Saa713xDevice::FollowDecoderStandard(std::uint32_t decoderStandard) {
  if (IsStandardOfCountry(decoderStandard, CountryCode)) VideoStandard = decoderStandard;
}

// Forgetting the frequency first makes the tuning a new one, with its notifications.
void Saa713xDevice::Retune() {
  const std::uint32_t frequency = TvFrequency;
  TvFrequency = 0;
  SetTVFreq(frequency);
}

HRESULT Saa713xDevice::SetAUDIOSYSTEM(std::uint32_t value) {
  if (!CaptureProps) return E_FAIL;
  const HRESULT result = SetAudioSystemProperty(value);
  Retune();
  std::uint32_t standard = 0;
  ReadDecoderStandard(standard);
  if (standard == AnalogVideo_SECAM_D) {
    InitialTV();
    SetTVFormat(AnalogVideo_SECAM_D, 7);
    SetAudioSystemProperty(value);
    Retune();
  }
  return result;
}

}  // namespace zelk
