// FM radio: through the TV tuner, or on some boards through a separate receiver chip on the bus.
#include "backends/quillon/quillon_device.h"
#include "backends/tuner_modules/bus_addresses.h"
#include "backends/tuner_modules/demodulator.h"
#include "backends/tuner_modules/fm_pll.h"
#include "backends/tuner_modules/tuner_set.h"
#include "backends/tuner_modules/words.h"
#include "common/store.h"
#include "common/wait.h"

namespace zelk {
namespace {

constexpr std::uint32_t kSettlingMs = 80;

constexpr std::uint8_t kTunerAddress = 0xC0;
constexpr std::uint8_t kFmReceiverAddress = 0xC0;
constexpr std::uint8_t kFmReceiverReadAddress = 0xC1;

// Tuners whose IF demodulator reports the station.
constexpr TunerSet kDemodulatorTuners = {13, 15, 19, 21, 23};
// Tuners with a demodulator whose status byte can be read.
constexpr TunerSet kTunersWithDemodulator = {13, 15, 19, 20, 21, 22, 23};

struct AudioModeRow {
  TunerSet tunerTypes;
  AudioModeWords words;
};

constexpr AudioModeRow kAudioModes[] = {
    {{13, 15, 19}, kMk3AudioMode},
    {{21, 23}, kMk5AudioMode},
};

constexpr std::uint8_t kWeakestReceiverLevel = 0xA0;

}  // namespace

HRESULT QuillonDevice::ReadyForFm(const char* notReady, const char* notFm) const {
  if (!Ready(notReady)) return E_FAIL;
  if (CurrentMode == Mode::FM) return S_OK;
  Log(notFm);
  return VFW_E_WRONG_STATE;
}

HRESULT QuillonDevice::InitialFM(std::uint32_t) {
  // Quirk: the line of the change to television.
  if (!Ready("Quillon InitialTV(): Hardware not initial")) return E_FAIL;
  SwitchTunerMode(AMTUNER_MODE_FM_RADIO);
  CurrentMode = Mode::FM;
  return S_OK;
}

bool QuillonDevice::WriteFmReceiver(bool japaneseBand) {
  const FmReceiverBytes bytes =
      FmReceiverWord(FmFrequency, FmAudioMode == kFmStereo,
                     japaneseBand ? kFmReceiverJapaneseBand : kFmReceiverWesternBand);
  return WriteI2C(kFmReceiverAddress, bytes.data(), static_cast<std::int32_t>(bytes.size()));
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
    const auto bytes =
        WordBytes(row.words.word1, mode == kFmStereo ? row.words.stereo : row.words.mono);
    return WriteI2C(kDemodulatorAddress, bytes.data(), static_cast<std::int32_t>(bytes.size()))
               ? S_OK
               : E_FAIL;
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
  const SignalPlaces places = {present, strength, offset};
  if (!FmViaTuner) {
    ReadFmReceiverStatus();
    StoreFmReceiverStatus(places, kWeakestReceiverLevel);
    return S_OK;
  }
  if (kDemodulatorTuners.Has(TunerType)) return DemodulatorFmPresence(places);
  return TunerFmPresence(places);
}

HRESULT QuillonDevice::DemodulatorFmPresence(const SignalPlaces& places) {
  std::uint8_t status = 0;
  const HRESULT code = I2CRead(kDemodulatorAddress, &status);
  // A status that cannot be read counts as 0, the middle of a station.
  const std::uint8_t afc = DemodulatorAfcCode(SUCCEEDED(code) ? status : 0);
  Store(places.present, afc == 0 || afc == 15);
  // The strength is shown with the offset alone.
  if (places.offset) StoreAfc(places, kDemodulatorAfc, afc);
  return code;
}

HRESULT QuillonDevice::TunerFmPresence(const SignalPlaces& places) {
  std::uint8_t status = 0;
  const HRESULT code = I2CRead(kTunerAddress, &status);
  if (SUCCEEDED(code)) StoreTunerFmStatus(places, status);
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
          static_cast<std::int32_t>(FmReceiverStatus.size()));
}

}  // namespace zelk
