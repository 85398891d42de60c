// FM radio: through the TV tuner, or on some boards through a separate receiver chip on the bus.
#include "backends/quillon/quillon_device.h"
#include "backends/tuner_modules/afc.h"
#include "backends/tuner_modules/tuner_set.h"
#include "common/store.h"
#include "common/wait.h"

namespace zelk {
namespace {

constexpr std::uint32_t kSettlingMs = 80;
constexpr std::uint32_t kStereo = 1;

constexpr std::uint8_t kTunerAddress = 0xC0;
constexpr std::uint8_t kFmReceiverAddress = 0xC0;
constexpr std::uint8_t kFmReceiverReadAddress = 0xC1;
constexpr std::uint8_t kDemodulatorAddress = 0x86;

// Tuners whose IF demodulator reports the station.
constexpr TunerSet kDemodulatorTuners = {13, 15, 19, 21, 23};
// Tuners with a demodulator whose status byte can be read.
constexpr TunerSet kTunersWithDemodulator = {13, 15, 19, 20, 21, 22, 23};

// Stereo and mono of the IF demodulator: subaddress and the three registers behind it.
struct AudioModeRow {
  TunerSet tunerTypes;
  std::uint8_t stereo[4];
  std::uint8_t mono[4];
};

constexpr AudioModeRow kAudioModes[] = {
    {{13, 15, 19}, {0x00, 0x4E, 0x90, 0x4B}, {0x00, 0x4E, 0x30, 0x4B}},
    {{21, 23}, {0x00, 0x4F, 0x94, 0x7D}, {0x00, 0x4F, 0x34, 0x7D}},
};

// A PLL tuner's status byte in FM: lock, stereo and the AFC's middle.
constexpr std::uint8_t kTunerFmMask = 0x57;
constexpr std::uint8_t kTunerFmStation = 0x52;

constexpr std::uint8_t kWeakestReceiverLevel = 0xA0;

}  // namespace

HRESULT QuillonDevice::ReadyForFm(const char* notReady, const char* notFm) const {
  if (!Ready(notReady)) return E_FAIL;
  if (CurrentMode == Mode::FM) return S_OK;
  Log(notFm);
  return VFW_E_WRONG_STATE;
}

HRESULT QuillonDevice::InitialFM(std::uint32_t) {
  // The television's line: applications know this one.
  if (!Ready("Quillon InitialTV(): Hardware not initial")) return E_FAIL;
  SwitchTunerMode(AMTUNER_MODE_FM_RADIO);
  CurrentMode = Mode::FM;
  return S_OK;
}

bool QuillonDevice::WriteFmReceiver(bool japaneseBand) {
  const FmReceiverBytes bytes =
      FmReceiverWord(FmFrequency, FmAudioMode == kStereo,
                     japaneseBand ? kFmReceiverJapaneseBand : kFmReceiverWesternBand);
  return WriteI2C(kFmReceiverAddress, bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

HRESULT QuillonDevice::SetFMFreq(std::uint32_t frequencyKHz) {
  const bool inBand = frequencyKHz >= HwInfo.FmLowKHz && frequencyKHz <= HwInfo.FmHighKHz;
  if (!Initialised || !inBand) {
    Log("Quillon SetFMFreq(): Hardware not initial or frequency not correct");
    return E_FAIL;
  }
  if (CurrentMode != Mode::FM) {
    Log("Quillon SetFMFreq(): Current mode not FM");
    return VFW_E_WRONG_STATE;
  }
  FmFrequency = frequencyKHz;
  // What the tuner receives last is its TV frequency too, a station included.
  if (FmViaTuner) return SetTVFreq(frequencyKHz);
  WaitMs(kSettlingMs);
  constexpr std::uint32_t kJapaneseTuner = 50;
  return WriteFmReceiver(TunerType == kJapaneseTuner) ? 1 : 0;
}

HRESULT QuillonDevice::SetFMAudioMode(std::uint32_t mode) {
  if (const HRESULT code = ReadyForFm("Quillon SetFMAudioMode(): Hardware not initial",
                                      "Quillon SetFMAudioMode(): Current mode not FM");
      FAILED(code)) {
    return code;
  }
  FmAudioMode = mode;
  if (!FmViaTuner) {
    // The ALPS module of this type is never found on these cards: the receiver is always left in
    // the western band here, even where SetFMFreq chooses the Japanese one.
    constexpr std::uint32_t kJapaneseAlpsTuner = 48;
    if (!WriteFmReceiver(TunerType == kJapaneseAlpsTuner)) Log("Quillon I2CWriteDWord() fail");
    return E_FAIL;
  }
  for (const AudioModeRow& row : kAudioModes) {
    if (!row.tunerTypes.Has(TunerType)) continue;
    const std::uint8_t(&bytes)[4] = mode == kStereo ? row.stereo : row.mono;
    return WriteI2C(kDemodulatorAddress, bytes, sizeof(bytes)) ? S_OK : E_FAIL;
  }
  return E_FAIL;
}

HRESULT QuillonDevice::GetFMAudioMode(std::uint32_t* mode) const {
  if (!Ready("Quillon GetFMAudioMode(): Hardware not initial")) return E_FAIL;
  Store(mode, FmAudioMode);
  return S_OK;
}

HRESULT QuillonDevice::IsFMSignalPresent(std::uint32_t* present, std::uint32_t* strength,
                                         double* offset) {
  if (const HRESULT code = ReadyForFm("Quillon IsFMSignalPresent(): Hardware not initial",
                                      "Quillon IsFMSignalPresent(): Current mode not FM");
      FAILED(code)) {
    return code;
  }
  if (!present) {
    Log("Quillon IsFMSignalPresent(): no pIsSignalPresent point");
    return E_FAIL;
  }
  WaitMs(kSettlingMs);
  if (!FmViaTuner) return ReceiverFmPresence(present, strength, offset);
  if (kDemodulatorTuners.Has(TunerType)) return DemodulatorFmPresence(present, strength, offset);
  return TunerFmPresence(present, strength, offset);
}

HRESULT QuillonDevice::ReceiverFmPresence(std::uint32_t* present, std::uint32_t* strength,
                                          double* offset) {
  ReadFmReceiverStatus();
  const std::uint8_t level = FmReceiverStatus[3] & 0xF0;
  const std::uint8_t coarse = level >> 5;
  Store(present, level >= kWeakestReceiverLevel);
  Store(strength, coarse >= 2 ? coarse - 2 : coarse);
  Store(offset, 0.0);
  return S_OK;
}

HRESULT QuillonDevice::DemodulatorFmPresence(std::uint32_t* present, std::uint32_t* strength,
                                             double* offset) {
  // A status that cannot be read counts as 0, the middle of a station.
  std::uint8_t status = 0;
  const HRESULT code = I2CRead(kDemodulatorAddress, &status);
  const std::uint8_t afc = DemodulatorAfcCode(SUCCEEDED(code) ? status : 0);
  Store(present, afc == 0 || afc == 15);
  if (!offset) return code;
  Store(offset, kDemodulatorAfc[afc].offsetKHz);
  Store(strength, kDemodulatorAfc[afc].strength);
  return code;
}

HRESULT QuillonDevice::TunerFmPresence(std::uint32_t* present, std::uint32_t* strength,
                                       double* offset) {
  std::uint8_t status = 0;
  const HRESULT code = I2CRead(kTunerAddress, &status);
  if (FAILED(code)) return code;
  const std::uint8_t afc = TunerAfcCode(status);
  Store(present, (status & kTunerFmMask) == kTunerFmStation);
  Store(strength, offset ? kTunerAfc[afc].strength : afc);
  Store(offset, kTunerAfc[afc].offsetKHz);
  return code;
}

HRESULT QuillonDevice::GetFMStatusByte(std::uint8_t* tuner, std::uint8_t* demodulator) {
  if (const HRESULT code = ReadyForFm("Quillon GetFMStatusByte(): Hardware not initial",
                                      "Quillon GetFMStatusByte(): Current mode not FM");
      FAILED(code)) {
    return code;
  }
  WaitMs(kSettlingMs);
  // One status for both: what cannot be read of the tuner shows as the demodulator's, or as 0.
  std::uint8_t status = 0;
  const auto read = [&](std::uint8_t address, std::uint8_t* place) {
    std::uint8_t byte = 0;
    const HRESULT code = I2CRead(address, &byte);
    if (SUCCEEDED(code)) status = byte;
    *place = status;
    return code;
  };
  HRESULT result = E_FAIL;
  if (!kTunersWithDemodulator.Has(TunerType)) {
    Store(demodulator, 0);
  } else if (demodulator) {
    result = read(kDemodulatorAddress, demodulator);
  }
  return tuner ? read(kTunerAddress, tuner) : result;
}

void QuillonDevice::ReadFmReceiverStatus() {
  // Without an answer nothing is left of the station before.
  FmReceiverStatus = {};
  ReadI2C(kFmReceiverReadAddress, FmReceiverStatus.data(),
          static_cast<std::uint32_t>(FmReceiverStatus.size()));
}

}  // namespace zelk
