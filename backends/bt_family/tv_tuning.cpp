// Tuning a TV channel: by the driver of the tuner filter where there is one, else by the module's
// PLL.
#include "backends/bt_family/bt_family_device.h"
#include "backends/tuner_modules/tv_pll.h"
#include "backends/tuner_modules/words.h"
#include "platform/property_request.h"

namespace zelk {
namespace {

// Modules that no other family carries, and those whose band limits are drawn otherwise here.
constexpr TvPllRow kTvPlls[] = {
    {{18, 19}, 38900, 160000, 442000, 0x8641, 0x8642, 0x8644},
    {{42, 44}, 45750, 169250, 469250, 0xCE01, 0xCE02, 0xCE04},
    {{43, 45}, 45750, 161250, 463250, 0xCE01, 0xCE02, 0xCE04},
};

}  // namespace

HRESULT BtFamilyDevice::SetTVFreq(std::uint32_t frequencyKHz) {
  if (!Ready("SetTVFreq", "(): Hardware not initial or frequency not correct")) return E_FAIL;
  if (!InMode(Mode::TV, "SetTVFreq")) return VFW_E_WRONG_STATE;
  TvFrequency = frequencyKHz;
  return TunerProps ? TuneByDriver(frequencyKHz, CountryCode) : WriteTvPll();
}

HRESULT BtFamilyDevice::RequestTunerFrequency(std::uint32_t frequencyKHz, std::uint32_t country) {
  KSPROPERTY_TUNER_FREQUENCY_S request = {};
  request.Frequency = frequencyKHz * 1000;
  request.Country = country;
  return SetProperty(TunerProps.Get(), kPropsetTuner, KSPROPERTY_TUNER_FREQUENCY, request);
}

HRESULT BtFamilyDevice::TuneByDriver(std::uint32_t frequencyKHz, std::uint32_t country) {
  const HRESULT code = RequestTunerFrequency(frequencyKHz, country);
  if (FAILED(code)) Family.Log.Say(" SetTVFreq() fail");
  return code;
}

HRESULT BtFamilyDevice::WriteTvPll() {
  std::optional<PllSetting> pll;
  if (TunerType <= Family.HighestTunerType) {
    pll = TvPllFor(kTvPlls, TunerType, TvFrequency, VideoStandard);
  }
  if (!pll) {
    Family.UnknownTunerLog.Say(" This tuner type has not yet implemented in ZELK_SetFreq()");
    // Quirk: an unknown module is sent the frequency itself.
    const auto raw = static_cast<std::uint16_t>(TvFrequency);
    pll = PllSetting{raw, raw};
  }
  const auto fifthByte = TvPllFifthByte(TunerType);
  if (!fifthByte) return WriteDWord(Family.PllAddress, pll->divider, pll->control);
  const auto words = WordBytes(pll->divider, pll->control);
  const std::uint8_t bytes[] = {words[0], words[1], words[2], words[3], *fifthByte};
  return Bus->Write(Family.PllAddress, bytes, sizeof(bytes));
}

}  // namespace zelk
