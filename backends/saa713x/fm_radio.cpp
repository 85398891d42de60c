// FM radio: switching to it, tuning stations, stereo and mono.
#include <algorithm>

#include "backends/saa713x/bus_addresses.h"
#include "backends/saa713x/saa713x_device.h"
#include "backends/tuner_modules/demodulator.h"
#include "backends/tuner_modules/fm_pll.h"
#include "common/store.h"
#include "common/wait.h"

namespace zelk {
namespace {

constexpr TunerSet kAlpsTuners = {46, 47, 48};

// This module is sent two bytes more than are known of its set-up. They are zero.
constexpr TunerSet kTwoMoreBytes = {13};

constexpr TunerSet kTnfTuners = {44, 45};
// Without a row nothing is written.
constexpr FmControlRow kTnfFmControls[] = {{1, 1, 0xC891}, {1, 0, 0xC811}, {0, 1, 0xC831}};

// Modules whose demodulator chooses stereo or mono.
struct AudioModeRow {
  TunerSet tunerTypes;
  AudioModeWords words;
};

constexpr AudioModeRow kAudioModeDemodulators[] = {
    {{0, 2, 6}, kMk3AudioMode},
    {{8}, kMk5AudioMode},
};

// Modules whose audio mode is the TV-audio device's.
constexpr TunerSet kTvAudioTuners = {27, 28};
constexpr LONG kTvAudioMono = 1;
constexpr LONG kTvAudioStereo = 2;

// One copy for all cards, last byte first, the order in which the receiver takes them.
std::array<std::uint8_t, 8> FmSearchLevels;

}  // namespace

HRESULT Saa713xDevice::InitialFM(std::uint32_t audioMode) {
  if (!Ready("SAA713x InitialFM(): Hardware not initial")) return E_FAIL;
  // These boards have no FM receiver: the mode stays what it was.
  if (kAlpsTuners.Has(Board.TunerType) && Board.StandardBoard) return S_OK;
  const HRESULT result = SetUpFmTuner();
  CurrentMode = Mode::FM;
  FmAudioMode = audioMode;
  FmTuneFlag = 1;
  return result;
}

HRESULT Saa713xDevice::SetUpFmTuner() {
  constexpr char kModeFailure[] = "SAA713x pTVTuner->put_Mode fail";
  if (IsSilicon()) return SwitchTunerMode(AMTUNER_MODE_FM_RADIO, kModeFailure);
  if (kAlpsTuners.Has(Board.TunerType)) {
    SwitchTunerMode(AMTUNER_MODE_FM_RADIO, kModeFailure);
    Gpio->SetLine(kTvSwitchLine, 0);
    return WriteFmReceiver({0x17, 0xAE, 0x01, FmReceiverBand(), 0x00});
  }
  const FmSetUp* const setUp = FmSetUpFor(Board.TunerType);
  if (!setUp) return S_OK;
  if (setUp->pllByteCount) {
    std::uint8_t bytes[7] = {};
    std::copy_n(setUp->pllBytes, setUp->pllByteCount, bytes);
    const std::uint32_t more = kTwoMoreBytes.Has(Board.TunerType) ? 2 : 0;
    I2CWriteSequence(kTunerAddress, bytes, setUp->pllByteCount + more);
  }
  if (setUp->waitMs) WaitMs(setUp->waitMs);
  const std::uint8_t device =
      setUp->target == FmSetUp::Target::Pll ? kTunerAddress : kDemodulatorAddress;
  return I2CWriteDWord(device, setUp->word1, setUp->word2);
}

std::uint8_t Saa713xDevice::FmReceiverBand() const {
  return Board.TunerType == 48 ? kFmReceiverJapaneseBand : kFmReceiverWesternBand;
}

HRESULT Saa713xDevice::WriteFmReceiver(const FmReceiverBytes& bytes) {
  return I2CWriteSequence(kFmReceiverAddress, bytes.data(),
                          static_cast<std::uint32_t>(bytes.size()));
}

HRESULT Saa713xDevice::TuneFmReceiver() {
  Gpio->SetLine(kTvSwitchLine, 0);
  return WriteFmReceiver(FmReceiverWord(FmFrequency, FmAudioMode == kFmStereo, FmReceiverBand()));
}

HRESULT Saa713xDevice::SetFMFreq(std::uint32_t frequencyKHz) {
  if (!Initialised || frequencyKHz > HwInfo.FmHighKHz || frequencyKHz < HwInfo.FmLowKHz) {
    Log("SAA713x SetFMFreq(): Hardware not initial or frequency not correct");
    return E_FAIL;
  }
  if (CurrentMode != Mode::FM) {
    Log("SAA713x SetFMFreq(): Current mode not FM");
    return VFW_E_WRONG_STATE;
  }
  FmFrequency = frequencyKHz;
  if (Board.TunerType == 40) return TuneSiliconFmA(frequencyKHz * 1000);
  if (Board.TunerType == 41) return TuneSiliconFmB(frequencyKHz * 1000);
  if (!Board.StandardBoard) return TuneFmReceiver();
  return TuneFmPll();
}

HRESULT Saa713xDevice::TuneFmPll() {
  const FmPll pll = FmPllFor(Board.TunerType, FmFrequency);
  if (pll.byteCount) return I2CWriteSequence(kTunerAddress, pll.bytes, pll.byteCount);
  if (!kTnfTuners.Has(Board.TunerType)) {
    return I2CWriteDWord(kTunerAddress, pll.divider, FmControlWord(FmAudioMode, FmTuneFlag));
  }
  for (const FmControlRow& row : kTnfFmControls) {
    if (row.audioMode == FmAudioMode && row.tuneFlag == FmTuneFlag) {
      return I2CWriteDWord(kTunerAddress, pll.divider, row.word);
    }
  }
  // Quirk: the frequency is the result.
  return static_cast<HRESULT>(FmFrequency);
}

HRESULT Saa713xDevice::SetFMAudioMode(std::uint32_t mode) {
  if (!Ready("SAA713x SetFMAudioMode(): Hardware not initial")) return E_FAIL;
  if (CurrentMode != Mode::FM) {
    Log("SAA713x SetFMAudioMode(): Current mode not FM");
    return VFW_E_WRONG_STATE;
  }
  FmAudioMode = mode;

  if ((Board.AlpsTsehTsej == 1 || Board.AlpsTsez == 1) && !Board.StandardBoard) {
    const HRESULT code = TuneFmReceiver();
    if (FAILED(code)) Log("SAA713x I2CWriteDWord() fail");
    return code;
  }
  const bool stereo = mode == kFmStereo;
  for (const AudioModeRow& row : kAudioModeDemodulators) {
    if (row.tunerTypes.Has(Board.TunerType)) {
      return I2CWriteDWord(kDemodulatorAddress, row.words.word1,
                           stereo ? row.words.stereo : row.words.mono);
    }
  }
  if (kTvAudioTuners.Has(Board.TunerType)) {
    if (TvAudio) TvAudio->put_TVAudioMode(stereo ? kTvAudioStereo : kTvAudioMono);
    return S_OK;
  }
  return SetFMFreq(FmFrequency);
}

HRESULT Saa713xDevice::GetFMAudioMode(std::uint32_t* mode) const {
  if (!Ready("SAA713x GetFMAudioMode(): Hardware not initial")) return E_FAIL;
  Store(mode, FmAudioMode);
  return S_OK;
}

std::uint32_t Saa713xDevice::FM_SetSearchLevel(const std::uint8_t* levels) {
  std::reverse_copy(levels, levels + FmSearchLevels.size(), FmSearchLevels.begin());
  return 1;
}

}  // namespace zelk
