// The exported functions, except for the card's life (library.cpp), the tuner's name
// (tuner_names.cpp) and the scans (tv_scan.cpp, fm_scan.cpp). One that makes several calls of the
// card ends with the call from whose inside the application frees it.
#include "api/dispatch.h"
#include "common/store.h"

using namespace zelk;

using S = Saa713xDevice;
using B8 = Bt878Device;
using BX = Bt88xDevice;
using Q = QuillonDevice;

// FM audio mode; any other value is mono.
constexpr uint32_t kFmStereo = 1;

// --- The card ---

HRESULT ZELK_CALL ZELK_GetHWInfo(ZELK_HWInfo* info) {
  return Dispatch<S, B8, BX, Q>(E_FAIL, [&](auto& card) { return card.GetHWInfo(info); });
}

HRESULT ZELK_CALL ZELK_GetTunerType(uint32_t* tunerType) {
  return Dispatch<S, B8, BX, Q>(E_FAIL, [&](auto& card) { return card.GetTunerType(tunerType); });
}

HRESULT ZELK_CALL ZELK_SetHWLock(uint32_t index, uint32_t value) {
  return Dispatch<BX, B8, S, Q>(E_FAIL, [&](auto& card) { return card.SetHWLock(index, value); });
}

HRESULT ZELK_CALL ZELK_GetHWLock(uint32_t index, uint32_t* value) {
  return Dispatch<BX, B8, S, Q>(E_FAIL, [&](auto& card) { return card.GetHWLock(index, value); });
}

HRESULT ZELK_CALL ZELK_GetDecoder(uint32_t* decoderKind) {
  Dispatch<S>(E_FAIL, [&](auto& card) {
    uint32_t chipNumber = 0;
    const HRESULT result = card.GetDecoder(&chipNumber);
    struct Row {
      uint32_t chipNumber;
      uint32_t kind;
    };
    static constexpr Row kKinds[] = {
        {0x7133, 3}, {0x7135, 3}, {0x7134, 4}, {0x7130, 0}, {0x7131, 1}};
    uint32_t kind = 0xFFFFFFFF;
    for (const Row& row : kKinds) {
      if (row.chipNumber == chipNumber) kind = row.kind;
    }
    Store(decoderKind, kind);
    return result;
  });
  return S_OK;
}

// --- Television ---

HRESULT ZELK_CALL ZELK_TVInit(void) {
  return Dispatch<S, B8, BX, Q>(E_FAIL, [](auto& card) { return card.InitialTV(); });
}

HRESULT ZELK_CALL ZELK_put_TVFormat(uint32_t videoStandard, uint32_t countryCode) {
  return Dispatch<S, B8, BX, Q>(
      E_FAIL, [&](auto& card) { return card.SetTVFormat(videoStandard, countryCode); });
}

HRESULT ZELK_CALL ZElk_put_TVSystem(uint32_t videoStandard, uint32_t soundSystem) {
  return Dispatch<S, Q>(E_FAIL,
                        [&](auto& card) { return card.PutTVSystem(videoStandard, soundSystem); });
}

namespace {

template <class Card>
HRESULT QuerySignal(Card& card, uint32_t* present, uint32_t* strength, double* afcOffsetKHz) {
  return card.IsSignalPresent_TUNER(present, strength, afcOffsetKHz);
}

// On the MPEG-encoder cards the decoder confirms what the tuner's driver reports. Failures are not
// told apart.
HRESULT QuerySignal(Q& card, uint32_t* present, uint32_t* strength, double* afcOffsetKHz) {
  uint32_t dropped = 0;
  uint32_t* const place = present ? present : &dropped;
  const HRESULT result = card.IsSignalPresent_TUNER(place, strength, afcOffsetKHz);
  if (FAILED(result)) return E_FAIL;
  return *place == 1 && !library.freed ? card.IsSignalPresent_DECODER(place) : result;
}

}  // namespace

HRESULT ZELK_CALL ZELK_SetFreq(uint32_t frequencyKHz, uint32_t* present) {
  return Dispatch<S, B8, BX, Q>(E_FAIL, [&](auto& card) {
    const HRESULT result = card.SetTVFreq(frequencyKHz);
    if (FAILED(result) || !present || library.freed) return result;
    return QuerySignal(card, present, nullptr, nullptr);
  });
}

HRESULT ZELK_CALL ZELK_IsSignalPresent(uint32_t* present, uint32_t* strength,
                                       double* afcOffsetKHz) {
  return Dispatch<S, B8, BX, Q>(
      E_FAIL, [&](auto& card) { return QuerySignal(card, present, strength, afcOffsetKHz); });
}

HRESULT ZELK_CALL ZELK_SETCaptureStandard(uint32_t videoStandard) {
  return Dispatch<S>(E_FAIL, [&](auto& card) { return card.SetCaptureStandard(videoStandard); });
}

HRESULT ZELK_CALL ZELK_GetVIDEOSTANDARD(uint32_t* record) {
  return Dispatch<S>(E_FAIL, [&](auto& card) { return card.GetVIDEOSTANDARD(record); });
}

// --- FM radio ---

HRESULT ZELK_CALL ZELK_FMInit(void) {
  return Dispatch<S, B8, BX, Q>(E_FAIL, [](auto& card) { return card.InitialFM(kFmStereo); });
}

HRESULT ZELK_CALL ZELK_FMSetFreq(uint32_t frequencyKHz, uint32_t* present) {
  return Dispatch<S, B8, BX, Q>(E_FAIL, [&](auto& card) {
    const HRESULT result = card.SetFMFreq(frequencyKHz);
    if (FAILED(result) || !present || library.freed) return result;
    return card.IsFMSignalPresent(present, nullptr, nullptr);
  });
}

HRESULT ZELK_CALL ZELK_FMIsSignalPresent(uint32_t* present, uint32_t* strength,
                                         double* afcOffsetKHz) {
  return Dispatch<S, B8, BX, Q>(
      E_FAIL, [&](auto& card) { return card.IsFMSignalPresent(present, strength, afcOffsetKHz); });
}

HRESULT ZELK_CALL ZELK_FMSetAudioMode(uint32_t mode) {
  return Dispatch<S, B8, BX, Q>(E_FAIL, [&](auto& card) { return card.SetFMAudioMode(mode); });
}

HRESULT ZELK_CALL ZELK_FMGetAudioMode(uint32_t* mode) {
  return Dispatch<Q>(E_FAIL, [&](auto& card) { return card.GetFMAudioMode(mode); });
}

HRESULT ZELK_CALL ZELK_FM_SetSearchLevel(int32_t level) {
  if (level < 0 || level > 9) return 0;
  return Dispatch<S>(0, [&](auto& card) {
    const uint8_t levels[8] = {0x45, 0x40, 0x0F, static_cast<uint8_t>(10 - level),
                               0x32, 0x29, 0x0F, static_cast<uint8_t>(12 - level)};
    return static_cast<HRESULT>(card.FM_SetSearchLevel(levels));
  });
}

HRESULT ZELK_CALL ZELK_SetRussiaFlag(uint32_t flag) {
  return Dispatch<S>(E_FAIL, [&](auto& card) { return card.SetRussiaFlag(flag); });
}

// --- Audio and driver properties ---

HRESULT ZELK_CALL ZELK_SetVolume(uint32_t volume) {
  return Dispatch<S>(E_FAIL, [&](auto& card) { return card.SetVolume(volume); });
}

HRESULT ZELK_CALL ZELK_SetFUSE(uint32_t value) {
  return Dispatch<S>(E_FAIL, [&](auto& card) { return card.SetFUSE(value); });
}

HRESULT ZELK_CALL ZELK_GetFUSE(uint32_t* value) {
  return Dispatch<S>(E_FAIL, [&](auto& card) { return card.GetFUSE(value); });
}

HRESULT ZELK_CALL ZELK_SetAUDIOSYSTEM(uint32_t value) {
  return Dispatch<S>(E_FAIL, [&](auto& card) { return card.SetAUDIOSYSTEM(value); });
}

HRESULT ZELK_CALL ZELK_GetAUDIOSYSTEM(uint32_t* value) {
  return Dispatch<S>(E_FAIL, [&](auto& card) { return card.GetAUDIOSYSTEM(value); });
}

HRESULT ZELK_CALL ZELK_SetGainValue(uint32_t propertyId, uint32_t value) {
  return Dispatch<S>(E_FAIL, [&](auto& card) { return card.SetGainValue(propertyId, value); });
}

HRESULT ZELK_CALL ZELK_GetGainValue(uint32_t propertyId, uint32_t* value) {
  return Dispatch<S>(E_FAIL, [&](auto& card) { return card.GetGainValue(propertyId, value); });
}

HRESULT ZELK_CALL ZELK_SetTunerPowerState(uint32_t state) {
  return Dispatch<S>(E_FAIL, [&](auto& card) { return card.SetTunerPowerState(state); });
}

HRESULT ZELK_CALL ZELK_Set7135VirtualMode(uint32_t value) {
  Dispatch<S>(E_FAIL, [&](auto& card) { return card.Set7135VirtualMode(value); });
  return S_OK;
}

HRESULT ZELK_CALL ZELK_Set7135VirtualStereoEffect(uint32_t value) {
  Dispatch<S>(E_FAIL, [&](auto& card) { return card.Set7135VirtualStereoEffect(value); });
  return S_OK;
}

HRESULT ZELK_CALL ZELK_Set7135Bass(uint32_t value) {
  Dispatch<S>(E_FAIL, [&](auto& card) { return card.Set7135Bass(value); });
  return S_OK;
}

HRESULT ZELK_CALL ZELK_Set7135Treble(uint32_t value) {
  Dispatch<S>(E_FAIL, [&](auto& card) { return card.Set7135Treble(value); });
  return S_OK;
}

HRESULT ZELK_CALL ZELK_Get7135VirtualMode(uint32_t* value) {
  Dispatch<S>(E_FAIL, [&](auto& card) { return card.Get7135VirtualMode(value); });
  return S_OK;
}

HRESULT ZELK_CALL ZELK_Get7135VirtualStereoEffect(uint32_t* value) {
  Dispatch<S>(E_FAIL, [&](auto& card) { return card.Get7135VirtualStereoEffect(value); });
  return S_OK;
}

HRESULT ZELK_CALL ZELK_Get7135Bass(uint32_t* value) {
  Dispatch<S>(E_FAIL, [&](auto& card) { return card.Get7135Bass(value); });
  return S_OK;
}

HRESULT ZELK_CALL ZELK_Get7135Treble(uint32_t* value) {
  Dispatch<S>(E_FAIL, [&](auto& card) { return card.Get7135Treble(value); });
  return S_OK;
}

// --- Remote control, EEPROM, I2C ---

HRESULT ZELK_CALL ZELK_GetRemoteData(uint32_t* data) {
  return Dispatch<S, B8, BX>(E_FAIL, [&](auto& card) { return card.GetRemoteData(data); });
}

HRESULT ZELK_CALL ZELK_GetRemoteICData(uint8_t* key) {
  return Dispatch<S>(E_FAIL, [&](auto& card) { return card.GetRemoteICData(key); });
}

HRESULT ZELK_CALL ZELK_ReadEEPROM(uint32_t offset, uint8_t* value) {
  return Dispatch<BX, B8, S>(
      E_FAIL, [&](auto& card) { return card.ReadEEPROM(static_cast<uint8_t>(offset), value); });
}

HRESULT ZELK_CALL ZELK_I2CReadSequence(uint32_t address, uint8_t* buffer, uint32_t length) {
  return Dispatch<S>(E_FAIL, [&](auto& card) {
    return card.I2CReadSequence(static_cast<uint8_t>(address), buffer, length);
  });
}

HRESULT ZELK_CALL ZELK_I2CWriteSequence(uint32_t address, const uint8_t* buffer, uint32_t length) {
  return Dispatch<S>(E_FAIL, [&](auto& card) {
    return card.I2CWriteSequence(static_cast<uint8_t>(address), buffer, length);
  });
}

HRESULT ZELK_CALL ZELK_ReadI2C(uint32_t address, uint8_t* buffer, uint32_t length) {
  return Dispatch<Q>(E_NOTIMPL, [&](auto& card) {
    return card.ReadI2C(static_cast<uint8_t>(address), buffer, static_cast<int32_t>(length))
               ? S_OK
               : E_NOTIMPL;
  });
}

HRESULT ZELK_CALL ZELK_WriteI2C(uint32_t address, const uint8_t* buffer, uint32_t length) {
  return Dispatch<Q>(E_NOTIMPL, [&](auto& card) {
    return card.WriteI2C(static_cast<uint8_t>(address), buffer, static_cast<int32_t>(length))
               ? S_OK
               : E_NOTIMPL;
  });
}

// --- MPEG encoder ---

HRESULT ZELK_CALL ZELK_GetMPEGParam(ZELK_MpegParams* params) {
  return Dispatch<Q>(E_NOTIMPL, [&](auto& card) { return card.GetMPEGParam(params); });
}

HRESULT ZELK_CALL ZELK_SetMPEGParam(ZELK_MpegParams params) {
  return Dispatch<Q>(E_NOTIMPL, [&](auto& card) { return card.SetMPEGParam(params); });
}

HRESULT ZELK_CALL ZELK_SetAdcVolume(void) {
  return Dispatch<Q>(S_FALSE, [](auto& card) { return card.SetAdcVolume(); });
}

// --- Not implemented ---

HRESULT ZELK_CALL ZELK_GetAudioSource(void) { return E_NOTIMPL; }
HRESULT ZELK_CALL ZELK_GetAvailableTVAudioModes(void) { return E_NOTIMPL; }
HRESULT ZELK_CALL ZELK_GetTVAudioMode(void) { return E_NOTIMPL; }
HRESULT ZELK_CALL ZELK_GetVideoSource(void) { return E_NOTIMPL; }
HRESULT ZELK_CALL ZELK_SetAudioSource(void) { return E_NOTIMPL; }
HRESULT ZELK_CALL ZELK_SetTVAudioMode(void) { return E_NOTIMPL; }
HRESULT ZELK_CALL ZELK_SetVideoSource(void) { return E_NOTIMPL; }
