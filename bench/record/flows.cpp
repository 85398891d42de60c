#include "bench/record/flows.h"

#include "bench/record/recorder.h"

namespace zelk::record {

namespace {

std::uint32_t* const kWord = places.words;

constexpr std::uint8_t kBytes[20] = {0x0D, 0x62, 0xCE, 0x90, 5,  6,  7,  8,  9,  10,
                                     11,   12,   13,   14,   15, 16, 17, 18, 19, 20};

// Each set of places that an application may leave out.
void AskSignal(HRESULT(ZELK_CALL* ask)(std::uint32_t*, std::uint32_t*, double*), const char* name) {
  Call(name, ask, kWord, kWord + 1, &places.number);
  Call(name, ask, kWord, kWord + 1, nullptr);
  Call(name, ask, kWord, nullptr, &places.number);
  Call(name, ask, kWord, nullptr, nullptr);
  Call(name, ask, nullptr, nullptr, nullptr);
}

void AskTvSignal() { AskSignal(ZELK_IsSignalPresent, "ZELK_IsSignalPresent"); }
void AskFmSignal() { AskSignal(ZELK_FMIsSignalPresent, "ZELK_FMIsSignalPresent"); }

void Identity() {
  ZELK_CALLED(ZELK_GetHWInfo, &places.info);
  ZELK_CALLED(ZELK_GetTunerType, kWord);
  ZELK_CALLED(ZELK_GetTunerName, places.name, 40);
  ZELK_CALLED(ZELK_GetTunerName, places.name, 0);
  ZELK_CALLED(ZELK_GetDecoder, kWord);
}

void Properties() {
  constexpr std::pair<const char*, HRESULT(ZELK_CALL*)(std::uint32_t)> kSetters[] = {
      {"ZELK_SetVolume", ZELK_SetVolume},
      {"ZELK_SetFUSE", ZELK_SetFUSE},
      {"ZELK_SetAUDIOSYSTEM", ZELK_SetAUDIOSYSTEM},
      {"ZELK_SetRussiaFlag", ZELK_SetRussiaFlag},
      {"ZELK_Set7135VirtualMode", ZELK_Set7135VirtualMode},
      {"ZELK_Set7135VirtualStereoEffect", ZELK_Set7135VirtualStereoEffect},
      {"ZELK_Set7135Bass", ZELK_Set7135Bass},
      {"ZELK_Set7135Treble", ZELK_Set7135Treble},
      {"ZELK_SETCaptureStandard", ZELK_SETCaptureStandard}};
  constexpr std::pair<const char*, HRESULT(ZELK_CALL*)(std::uint32_t*)> kGetters[] = {
      {"ZELK_GetFUSE", ZELK_GetFUSE},
      {"ZELK_GetAUDIOSYSTEM", ZELK_GetAUDIOSYSTEM},
      {"ZELK_Get7135VirtualMode", ZELK_Get7135VirtualMode},
      {"ZELK_Get7135VirtualStereoEffect", ZELK_Get7135VirtualStereoEffect},
      {"ZELK_Get7135Bass", ZELK_Get7135Bass},
      {"ZELK_Get7135Treble", ZELK_Get7135Treble},
      {"ZELK_GetVIDEOSTANDARD", ZELK_GetVIDEOSTANDARD}};
  for (const auto& [name, set] : kSetters) {
    for (const std::uint32_t value : {0x20u, 0x10u, 0u, 1u}) Call(name, set, value);
  }
  for (const auto& [name, get] : kGetters) {
    Call(name, get, kWord);
    Call(name, get, nullptr);
  }
  for (const std::uint32_t id : {0x67u, 0x71u, 0x100u}) {
    ZELK_CALLED(ZELK_SetGainValue, id, 0);
    ZELK_CALLED(ZELK_GetGainValue, id, kWord);
  }
  for (const int level : {-1, 0, 9, 10}) ZELK_CALLED(ZELK_FM_SetSearchLevel, level);
}

void Buses() {
  ZELK_CALLED(ZELK_GetRemoteData, kWord);
  ZELK_CALLED(ZELK_GetRemoteICData, places.bytes);
  for (const std::uint32_t offset : {0u, 0x20u, 0x41u, 0xFFu, 0x120u}) {
    ZELK_CALLED(ZELK_ReadEEPROM, offset, places.bytes);
  }
  for (const std::uint32_t address : {0xC1u, 0x87u, 0xA1u, 0x81u, 0x03u}) {
    for (const std::uint32_t length : {1u, 5u, 16u, 17u}) {
      ZELK_CALLED(ZELK_I2CReadSequence, address, places.bytes, length);
      ZELK_CALLED(ZELK_ReadI2C, address, places.bytes, length);
    }
  }
  for (const std::uint32_t address : {0xC2u, 0x02u}) {
    for (const std::uint32_t length : {0u, 1u, 4u, 16u, 17u}) {
      ZELK_CALLED(ZELK_I2CWriteSequence, address, kBytes, length);
      ZELK_CALLED(ZELK_WriteI2C, address, kBytes, length);
    }
  }
  // A length that is negative where it counts as signed.
  ZELK_CALLED(ZELK_ReadI2C, 0xC1, places.bytes, 0xFFFFFFFF);
  ZELK_CALLED(ZELK_WriteI2C, 0xC2, kBytes, 0xFFFFFFFF);
  for (const std::uint32_t lock : {0u, 1u, 2u}) {
    ZELK_CALLED(ZELK_SetHWLock, lock, 1);
    ZELK_CALLED(ZELK_GetHWLock, lock, kWord);
    ZELK_CALLED(ZELK_SetHWLock, lock, 0);
  }
}

void Encoder() {
  ZELK_CALLED(ZELK_GetMPEGParam, &places.encoder);
  // A DVD's, a Video CD's, and one that no encoder knows.
  const ZELK_MpegParams kParams[] = {
      {1, 720, 576, 0, 0, 6000, 8000, 1, 0, 0, 0, 0, 0, 48000, 384, 0},
      {0, 352, 288, 0, 0, 1150, 0, 0, 0, 1, 2, 0, 0, 44100, 224, 1},
      {4, 350, 9, 0, 0, 9000, 1, 1, 0, 0, 0, 0, 0, 11025, 64, 9}};
  for (const ZELK_MpegParams& params : kParams) {
    ZELK_CALLED(ZELK_SetMPEGParam, params);
    ZELK_CALLED(ZELK_GetMPEGParam, &places.encoder);
  }
  ZELK_CALLED(ZELK_SetAdcVolume);
}

void WithoutPlaces() {
  ZELK_CALLED(ZELK_GetHWInfo, nullptr);
  ZELK_CALLED(ZELK_GetTunerType, nullptr);
  ZELK_CALLED(ZELK_GetTunerName, nullptr, 40);
  ZELK_CALLED(ZELK_GetDecoder, nullptr);
  ZELK_CALLED(ZELK_GetRemoteData, nullptr);
  ZELK_CALLED(ZELK_GetRemoteICData, nullptr);
  ZELK_CALLED(ZELK_ReadEEPROM, 0x20, nullptr);
  ZELK_CALLED(ZELK_I2CReadSequence, 0xC1, nullptr, 5);
  ZELK_CALLED(ZELK_I2CWriteSequence, 0xC2, nullptr, 4);
  ZELK_CALLED(ZELK_ReadI2C, 0xC1, nullptr, 5);
  ZELK_CALLED(ZELK_GetHWLock, 1, nullptr);
  ZELK_CALLED(ZELK_GetGainValue, 0x71, nullptr);
  ZELK_CALLED(ZELK_FMGetAudioMode, nullptr);
  ZELK_CALLED(ZELK_GetMPEGParam, nullptr);
}

void Stubs() {
  ZELK_CALLED(ZELK_GetAudioSource);
  ZELK_CALLED(ZELK_GetAvailableTVAudioModes);
  ZELK_CALLED(ZELK_GetTVAudioMode);
  ZELK_CALLED(ZELK_GetVideoSource);
  ZELK_CALLED(ZELK_SetAudioSource);
  ZELK_CALLED(ZELK_SetTVAudioMode);
  ZELK_CALLED(ZELK_SetVideoSource);
}

void TuneTv(std::uint32_t frequency) { ZELK_CALLED(ZELK_SetFreq, frequency, kWord); }

void Television() {
  ZELK_CALLED(ZELK_TVInit);
  for (const std::uint32_t standard : {0x1u, 0x2u, 0x10u, 0x20u, 0x100u, 0x1000u, 0x40000u, 0u}) {
    ZELK_CALLED(ZELK_put_TVFormat, standard, 49);
    TuneTv(175250);
    for (const std::uint32_t sound : {0u, 1u, 2u, 4u}) {
      ZELK_CALLED(ZElk_put_TVSystem, standard, sound);
    }
  }
  const auto [standard, country] = HomeOfTuner();
  ZELK_CALLED(ZELK_put_TVFormat, standard, country);
  ZELK_HWInfo info = {};
  ZELK_GetHWInfo(&info);
  const std::uint32_t low = info.TvLowKHz;
  for (const std::uint32_t frequency :
       {0u, 40000u, 158000u, 170000u, 422000u, 450000u, 468000u, 863250u, 1000000u, low, low + 7000,
        low + 128000, low + 135000, low + 420000}) {
    TuneTv(frequency);
  }
  ZELK_CALLED(ZELK_SetFreq, low + 128000, nullptr);
  AskTvSignal();
}

void Radio() {
  ZELK_CALLED(ZELK_FMInit);
  ZELK_HWInfo info = {};
  ZELK_GetHWInfo(&info);
  const std::uint32_t low = info.FmLowKHz;
  for (const std::uint32_t frequency :
       {0u,        61950u,    62000u,    65800u,     76000u,     87450u,     87500u,
        90000u,    91050u,    98000u,    107450u,    108000u,    108050u,    120000u,
        low + 100, low + 650, low + 750, low + 1100, low + 5000, low + 10900}) {
    ZELK_CALLED(ZELK_FMSetFreq, frequency, kWord);
  }
  ZELK_CALLED(ZELK_FMSetFreq, low + 3000, nullptr);
  AskFmSignal();
  for (const std::uint32_t mode : {0u, 2u, 1u}) {
    ZELK_CALLED(ZELK_FMSetAudioMode, mode);
    ZELK_CALLED(ZELK_FMGetAudioMode, kWord);
    ZELK_CALLED(ZELK_FMSetFreq, low + 700, kWord);
  }
}

}  // namespace

void EveryExport() {
  Identity();
  Properties();
  Buses();
  Encoder();
  WithoutPlaces();
  Stubs();
  ZELK_CALLED(ZELK_put_TVFormat, 0x10, 49);
  ZELK_CALLED(ZElk_put_TVSystem, 0x10, 1);
  TuneTv(175250);
  AskTvSignal();
  ZELK_CALLED(ZELK_FMSetFreq, 98000, kWord);
  ZELK_CALLED(ZELK_FMSetFreq, 98000, nullptr);
  ZELK_CALLED(ZELK_FMSetAudioMode, 1);
  ZELK_CALLED(ZELK_FMGetAudioMode, kWord);
  AskFmSignal();
  for (const std::uint32_t command : {0u, 2u}) {
    ZELK_CALLED(ZELK_AllFreqScan, OnScanEvent, command);
    ZELK_CALLED(ZELK_AllFreqScan, nullptr, command);
    ZELK_CALLED(ZELK_FMAllFreqScan, OnScanEvent, command, 0, 0, 0, 0);
    ZELK_CALLED(ZELK_FMAllFreqScan, nullptr, command, 1, 98000, 87500, 108000);
  }
  ZELK_CALLED(ZELK_SetTunerPowerState, 0);
  ZELK_CALLED(ZELK_SetTunerPowerState, 1);
}

void WholeFlow() {
  InitCard();
  EveryExport();
  Television();
  EveryExport();
  Radio();
  EveryExport();
  Television();
  FreeCard();
  EveryExport();
}

void ShortFlow() {
  InitCard(1);
  Identity();
  ZELK_CALLED(ZELK_TVInit);
  ZELK_CALLED(ZELK_put_TVFormat, 0x10, 49);
  TuneTv(175250);
  AskTvSignal();
  ZELK_CALLED(ZElk_put_TVSystem, 0x20, 4);
  ScanTv(12);
  Properties();
  Buses();
  Encoder();
  ZELK_CALLED(ZELK_FMInit);
  ZELK_CALLED(ZELK_FMSetFreq, 98000, kWord);
  AskFmSignal();
  ZELK_CALLED(ZELK_FMSetAudioMode, 0);
  ScanFm(0, 0, 88000, 88900);
  FreeCard();
}

void EveryFormat() {
  constexpr std::uint32_t kCountries[] = {
      1,   7,   20,  27,  30,  31,  32,  33,  34,  36,  39,  40,  41,  42,  44,   45, 46, 47,
      48,  49,  52,  55,  60,  61,  63,  64,  65,  66,  81,  82,  84,  86,  91,   92, 98, 353,
      355, 358, 359, 370, 371, 372, 380, 420, 421, 852, 886, 966, 971, 972, 4201, 0};
  InitCard();
  ZELK_CALLED(ZELK_TVInit);
  // The country changes each time: the one in force is not set up anew.
  for (std::uint32_t standard = 1; standard <= 0x100000; standard *= 2) {
    for (const std::uint32_t country : kCountries) {
      ZELK_CALLED(ZELK_put_TVFormat, standard, country);
      TuneTv(175250);
    }
    ZELK_CALLED(ZELK_SetAUDIOSYSTEM, 2);
  }
  FreeCard();
}

void BoardFlow() {
  InitCard();
  Identity();
  ZELK_CALLED(ZELK_TVInit);
  TuneTv(175250);
  ZELK_CALLED(ZELK_FMInit);
  ZELK_CALLED(ZELK_FMSetFreq, 98000, kWord);
  FreeCard();
}

}  // namespace zelk::record
