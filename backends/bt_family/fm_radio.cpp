// FM radio: switching to it, tuning stations, stereo and mono.
#include <optional>

#include "backends/bt_family/bt_family_device.h"
#include "backends/tuner_modules/bus_addresses.h"
#include "backends/tuner_modules/demodulator.h"
#include "backends/tuner_modules/fm_pll.h"
#include "common/store.h"
#include "common/wait.h"

namespace zelk {
namespace {

// Modules whose demodulator chooses stereo or mono.
struct AudioModeRow {
  TunerSet tunerTypes;
  AudioModeWords words;
  bool hardwareI2c;
};

constexpr AudioModeRow kAudioModes[] = {
    {{13, 15, 19}, kMk3AudioMode, true},
    {{21}, kMk5AudioMode, false},
};

}  // namespace

HRESULT BtFamilyDevice::EnterFm(std::uint32_t audioMode) {
  HRESULT result = S_OK;
  if (const FmSetUp* const setUp = FmSetUpFor(TunerType)) {
    if (setUp->pllByteCount) Bus->Write(Family.PllAddress, setUp->pllBytes, setUp->pllByteCount);
    if (setUp->waitMs) WaitMs(setUp->waitMs);
    const bool toPll = setUp->target == FmSetUp::Target::Pll;
    result =
        WriteDWord(toPll ? Family.PllAddress : kDemodulatorAddress, setUp->word1, setUp->word2);
  }
  FmAudioMode = audioMode;
  CurrentMode = Mode::FM;
  FmTuneFlag = 1;
  return result;
}

HRESULT BtFamilyDevice::SetFMFreq(std::uint32_t frequencyKHz) {
  if (!Initialised || frequencyKHz < HwInfo.FmLowKHz || frequencyKHz > HwInfo.FmHighKHz) {
    LogRefusal("SetFMFreq", "(): Hardware not initial or frequency not correct");
    return E_FAIL;
  }
  if (!InMode(Mode::FM, "SetFMFreq")) return VFW_E_WRONG_STATE;
  FmFrequency = frequencyKHz;
  return TuneFm();
}

HRESULT BtFamilyDevice::TuneFm() {
  const FmPll pll = FmPllFor(TunerType, FmFrequency);
  if (pll.byteCount) return Bus->Write(Family.PllAddress, pll.bytes, pll.byteCount);
  return WriteDWord(Family.PllAddress, pll.divider, FmControlWord(FmAudioMode, FmTuneFlag));
}

HRESULT BtFamilyDevice::SetFMAudioMode(std::uint32_t mode) {
  if (!Ready("SetFMAudioMode")) return E_FAIL;
  if (!InMode(Mode::FM, "SetFMAudioMode")) return VFW_E_WRONG_STATE;
  FmAudioMode = mode;
  for (const AudioModeRow& row : kAudioModes) {
    if (!row.tunerTypes.Has(TunerType)) continue;
    std::optional<HardwareI2c> hardware;
    if (row.hardwareI2c) hardware.emplace(*Bus);
    return WriteDWord(kDemodulatorAddress, row.words.word1,
                      mode == kFmStereo ? row.words.stereo : row.words.mono);
  }
  return SetFMFreq(FmFrequency);
}

HRESULT BtFamilyDevice::GetFMAudioMode(std::uint32_t* mode) const {
  if (!Ready("GetFMAudioMode")) return E_FAIL;
  Store(mode, FmAudioMode);
  return S_OK;
}

}  // namespace zelk
