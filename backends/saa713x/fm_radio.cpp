// FM radio: switching to it, tuning stations, stereo and mono.
#include <algorithm>

#include "backends/saa713x/bus_addresses.h"
#include "backends/saa713x/saa713x_device.h"
#include "backends/tuner_modules/tuner_set.h"
#include "common/store.h"
#include "common/wait.h"

namespace zelk {
namespace {

constexpr std::uint32_t kStereo = 1;
constexpr TunerSet kAlpsTuners = {46, 47, 48};

// Two words for the IF demodulator, or divider and control for a PLL.
struct WordsTo {
  std::uint8_t device;
  std::uint16_t word1;
  std::uint16_t word2;
};

// How a module is switched to FM: bytes for its PLL, time to follow, then two words.
struct FmSetUpRow {
  TunerSet tunerTypes;
  std::uint8_t pllBytes[7];
  std::uint32_t pllByteCount;
  std::uint32_t waitMs;
  WordsTo words;
};

constexpr FmSetUpRow kFmSetUps[] = {
    {{1, 3, 5, 7, 9, 11, 26, 28, 32, 34}, {}, 0, 0, {kTunerAddress, 0x085E, 0x8EA0}},
    // This module takes seven bytes, of which the last two do not matter.
    {{13}, {0x0C, 0x3C, 0x86, 0x41, 0xA0, 0, 0}, 7, 0, {kDemodulatorAddress, 0x004E, 0x9074}},
    {{15}, {0x0B, 0xCE, 0x86, 0x21, 0xA0}, 5, 80, {kDemodulatorAddress, 0x004E, 0xD077}},
    {{19}, {}, 0, 0, {kDemodulatorAddress, 0x004E, 0xDF5C}},
    {{21}, {0x0B, 0xCE, 0xCE, 0x01}, 4, 80, {kDemodulatorAddress, 0x005A, 0x9020}},
};

// The PLL of a classic module in FM: N = (frequency * factor + IF) / step.
struct FmPllRow {
  TunerSet tunerTypes;
  std::uint32_t factor;
  std::uint32_t ifInSteps;
  std::uint32_t step;
  // Control, band and further bytes; none where the control word depends on the audio mode.
  std::uint8_t fixedBytes[3];
  std::uint32_t fixedByteCount;
};

constexpr FmPllRow kFmPllRows[] = {
    {{13, 15}, 2, 21400, 100, {0x80, 0x19, 0xA0}, 3},
    {{19}, 2, 66600, 100, {0x80, 0x19, 0xB0}, 3},
    {{21}, 2, 21400, 100, {0x88, 0x09}, 2},
    {{30}, 1, 41250, 50, {}, 0},
};
// 50 kHz steps and an IF of 10.7 MHz.
constexpr FmPllRow kOtherFmPll = {{}, 2, 21400, 100, {}, 0};

// The control word by audio mode and tune flag: the module's FM section and its forced mono.
struct FmControlRow {
  std::uint32_t audioMode;
  std::uint32_t tuneFlag;
  std::uint16_t word;
};

constexpr FmControlRow kFmControls[] = {{1, 1, 0x88A5}, {1, 0, 0x88A4}, {0, 1, 0x88A7}};
constexpr std::uint16_t kOtherFmControl = 0x88A6;

constexpr TunerSet kTnfTuners = {44, 45};
constexpr FmControlRow kTnfFmControls[] = {{1, 1, 0xC891}, {1, 0, 0xC811}, {0, 1, 0xC831}};

// Modules whose demodulator chooses stereo or mono.
struct AudioModeRow {
  TunerSet tunerTypes;
  std::uint16_t word1;
  std::uint16_t stereo;
  std::uint16_t mono;
};

constexpr AudioModeRow kAudioModeDemodulators[] = {
    {{0, 2, 6}, 0x004E, 0x904B, 0x304B},
    {{8}, 0x004F, 0x947D, 0x347D},
};

// Modules whose audio mode is the TV-audio device's.
constexpr TunerSet kTvAudioTuners = {27, 28};
constexpr LONG kTvAudioMono = 1;
constexpr LONG kTvAudioStereo = 2;

template <std::size_t Count>
const FmControlRow* FindControl(const FmControlRow (&rows)[Count], std::uint32_t audioMode,
                                std::uint32_t tuneFlag) {
  for (const FmControlRow& row : rows) {
    if (row.audioMode == audioMode && row.tuneFlag == tuneFlag) return &row;
  }
  return nullptr;
}

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
  for (const FmSetUpRow& row : kFmSetUps) {
    if (!row.tunerTypes.Has(Board.TunerType)) continue;
    if (row.pllByteCount) I2CWriteSequence(kTunerAddress, row.pllBytes, row.pllByteCount);
    if (row.waitMs) WaitMs(row.waitMs);
    return I2CWriteDWord(row.words.device, row.words.word1, row.words.word2);
  }
  return S_OK;
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
  return WriteFmReceiver(FmReceiverWord(FmFrequency, FmAudioMode == kStereo, FmReceiverBand()));
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
  const auto* const row =
      std::find_if(std::begin(kFmPllRows), std::end(kFmPllRows),
                   [&](const FmPllRow& one) { return one.tunerTypes.Has(Board.TunerType); });
  const FmPllRow& pll = row != std::end(kFmPllRows) ? *row : kOtherFmPll;
  const auto divider =
      static_cast<std::uint16_t>((FmFrequency * pll.factor + pll.ifInSteps) / pll.step);

  if (pll.fixedByteCount) {
    std::uint8_t bytes[5] = {static_cast<std::uint8_t>(divider >> 8),
                             static_cast<std::uint8_t>(divider)};
    std::copy_n(pll.fixedBytes, pll.fixedByteCount, bytes + 2);
    return I2CWriteSequence(kTunerAddress, bytes, 2 + pll.fixedByteCount);
  }
  if (kTnfTuners.Has(Board.TunerType)) {
    const FmControlRow* const control = FindControl(kTnfFmControls, FmAudioMode, FmTuneFlag);
    // Without a control word nothing is written, and applications know the frequency as the result.
    if (!control) return static_cast<HRESULT>(FmFrequency);
    return I2CWriteDWord(kTunerAddress, divider, control->word);
  }
  const FmControlRow* const control = FindControl(kFmControls, FmAudioMode, FmTuneFlag);
  return I2CWriteDWord(kTunerAddress, divider, control ? control->word : kOtherFmControl);
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
  const bool stereo = mode == kStereo;
  for (const AudioModeRow& row : kAudioModeDemodulators) {
    if (row.tunerTypes.Has(Board.TunerType)) {
      return I2CWriteDWord(kDemodulatorAddress, row.word1, stereo ? row.stereo : row.mono);
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
