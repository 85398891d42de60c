#include "tests/faults/life.h"

#include <cstdio>
#include <utility>

#include "ZElkAPI.h"
#include "tests/faults/calls.h"
#include "tests/faults/spy.h"

namespace zelk::faults {

std::unique_ptr<virtual_cards::VirtualCard> card;
std::function<void()> atEvent;

namespace {

std::string answers;
int eventsLeft = 0;

void Note(const char* name, std::int64_t value) {
  char text[64];
  std::snprintf(text, sizeof(text), "%s %llx\n", name, static_cast<unsigned long long>(value));
  answers += text;
}

// A call of the library, with its result written down.
template <class Result, class... Parameters, class... Arguments>
void Call(const char* name, Result(ZELK_CALL* function)(Parameters...), Arguments... arguments) {
  const AtWork library;
  if constexpr (std::is_void_v<Result>) {
    function(arguments...);
  } else {
    Note(name, function(arguments...));
  }
}
#define CALL(function, ...) Call(#function, function __VA_OPT__(, ) __VA_ARGS__)

std::uint32_t word, strength;
double offset;
std::uint8_t bytes[16];

void NoteSignal() {
  Note("present", std::exchange(word, 77));
  Note("strength", std::exchange(strength, 77));
  Note("offset", static_cast<std::int64_t>(std::exchange(offset, 77) * 10));
}

void ZELK_CALL AtScanEvent(uint32_t event, uint32_t value, uint32_t extra) {
  const AtWork outside(false);
  Note("event", event);
  Note("value", value + extra);
  if (atEvent) atEvent();
  if (--eventsLeft == 0) CALL(ZELK_AllFreqScan, AtScanEvent, ZELK_SCAN_STOP);
}

void Properties() {
  for (const auto set : {ZELK_SetVolume, ZELK_SetFUSE, ZELK_SetRussiaFlag, ZELK_Set7135VirtualMode,
                         ZELK_Set7135VirtualStereoEffect, ZELK_Set7135Bass, ZELK_Set7135Treble,
                         ZELK_SETCaptureStandard, ZELK_SetAUDIOSYSTEM}) {
    Call("set", set, 0x2000);
  }
  for (const auto get :
       {ZELK_GetFUSE, ZELK_GetAUDIOSYSTEM, ZELK_Get7135VirtualMode, ZELK_Get7135VirtualStereoEffect,
        ZELK_Get7135Bass, ZELK_Get7135Treble, ZELK_GetDecoder, ZELK_GetRemoteData}) {
    Call("get", get, &word);
    Note("value", std::exchange(word, 77));
  }
  std::uint32_t record[8] = {};
  CALL(ZELK_GetVIDEOSTANDARD, record);
  CALL(ZELK_SetGainValue, 0x71, 3);
  CALL(ZELK_GetGainValue, 0x71, &word);
  CALL(ZELK_FM_SetSearchLevel, 5);
  CALL(ZELK_SetTunerPowerState, 1);
  for (const std::uint32_t lock : {0u, 1u}) {
    CALL(ZELK_SetHWLock, lock, 1);
    CALL(ZELK_GetHWLock, lock, &word);
  }
}

void Buses() {
  CALL(ZELK_ReadEEPROM, 0x41, bytes);
  CALL(ZELK_GetRemoteICData, bytes);
  CALL(ZELK_I2CReadSequence, 0xC3, bytes, 4);
  CALL(ZELK_I2CReadSequence, 0xC3, nullptr, 4);
  CALL(ZELK_I2CWriteSequence, 0xC2, bytes, 0);
  CALL(ZELK_ReadI2C, 0xC1, bytes, 5);
  CALL(ZELK_WriteI2C, 0xC0, bytes, 0);
  CALL(ZELK_SetAdcVolume);
}

void Encoder() {
  ZELK_MpegParams params = {};
  CALL(ZELK_GetMPEGParam, &params);
  Note("size", params.Width * 10000 + params.Height);
  CALL(ZELK_SetMPEGParam, params);
}

void Television() {
  CALL(ZELK_TVInit);
  for (const auto& [standard, country] : {std::pair{0x10u, 36u}, {0x20u, 48u}, {0x40000u, 33u}}) {
    CALL(ZELK_put_TVFormat, standard, country);
  }
  CALL(ZElk_put_TVSystem, 0x10, 1);
  CALL(ZELK_SetFreq, 175250, &word);
  CALL(ZELK_IsSignalPresent, &word, &strength, &offset);
  NoteSignal();
  eventsLeft = 6;
  CALL(ZELK_AllFreqScan, AtScanEvent, ZELK_SCAN_START);
}

void Radio() {
  CALL(ZELK_FMInit);
  CALL(ZELK_FMSetFreq, 98000, &word);
  CALL(ZELK_FMSetAudioMode, 0);
  CALL(ZELK_FMGetAudioMode, &word);
  CALL(ZELK_FMIsSignalPresent, &word, &strength, &offset);
  NoteSignal();
  eventsLeft = 0;
  CALL(ZELK_FMAllFreqScan, AtScanEvent, ZELK_SCAN_START, 0, 0, 97900, 98100);
}

}  // namespace

void Plug(const std::string& description) {
  virtual_cards::Air air;
  air.tv.push_back({"", "", 175250, 70, AnalogVideo_PAL_B});
  air.fm.push_back({"", 98000, 70, true});
  card.reset();
  card = virtual_cards::CreateCard(description, std::move(air));
}

HRESULT InitCard() {
  const auto capture =
      ComPtr<IUnknown>::Adopt(StandInFor(card ? card->CaptureFilter().Get() : nullptr));
  const auto tuner =
      ComPtr<IUnknown>::Adopt(StandInFor(card ? card->TunerFilter().Get() : nullptr));
  const std::string name = card ? card->FriendlyName() : "";
  const AtWork library;
  return ZELK_HWInit(capture.Get(), name.c_str(), tuner.Get(), 0);
}

std::string Life() {
  answers.clear();
  Note("init", InitCard());
  ZELK_HWInfo info = {};
  CALL(ZELK_GetHWInfo, &info);
  Note("band", info.TvLowKHz);
  Note("band", info.FmHighKHz);
  char name[32];
  CALL(ZELK_GetTunerName, name, sizeof(name));
  Television();
  Properties();
  Buses();
  Encoder();
  Radio();
  CALL(ZELK_TVInit);
  CALL(ZELK_Free);
  return answers;
}

void AbsurdCalls() {
  constexpr std::uint32_t kMost = 0xFFFFFFFF;
  // Neither of the scans that others run ends by itself here.
  CALL(ZELK_AllFreqScan, nullptr, ZELK_SCAN_STOP);
  for (const auto get :
       {ZELK_GetTunerType, ZELK_GetDecoder, ZELK_FMGetAudioMode, ZELK_GetRemoteData, ZELK_GetFUSE,
        ZELK_GetAUDIOSYSTEM, ZELK_Get7135Bass, ZELK_GetVIDEOSTANDARD}) {
    Call("get", get, nullptr);
  }
  for (const auto set : {ZELK_SetVolume, ZELK_SetAUDIOSYSTEM, ZELK_SETCaptureStandard,
                         ZELK_FMSetAudioMode, ZELK_SetTunerPowerState}) {
    Call("set", set, kMost);
  }
  CALL(ZELK_GetHWInfo, nullptr);
  CALL(ZELK_GetTunerName, nullptr, kMost);
  CALL(ZELK_GetRemoteICData, nullptr);
  for (const std::uint32_t number : {0u, 2u, kMost}) {
    CALL(ZELK_SetHWLock, number, kMost);
    CALL(ZELK_GetHWLock, number, nullptr);
    CALL(ZELK_ReadEEPROM, number, nullptr);
    CALL(ZELK_GetGainValue, number, nullptr);
    CALL(ZELK_put_TVFormat, number, kMost);
    CALL(ZElk_put_TVSystem, number, kMost);
    CALL(ZELK_SetFreq, number, &word);
    CALL(ZELK_FMSetFreq, number, &word);
    CALL(ZELK_I2CReadSequence, number, bytes, 0);
    CALL(ZELK_I2CWriteSequence, number, nullptr, kMost);
    CALL(ZELK_ReadI2C, number, nullptr, kMost);
    CALL(ZELK_WriteI2C, number, nullptr, kMost);
  }
  CALL(ZELK_FM_SetSearchLevel, -1);
  CALL(ZELK_IsSignalPresent, nullptr, nullptr, nullptr);
  CALL(ZELK_FMIsSignalPresent, nullptr, nullptr, nullptr);
  CALL(ZELK_GetMPEGParam, nullptr);
  ZELK_MpegParams params;
  FillByChance(&params, sizeof(params));
  CALL(ZELK_SetMPEGParam, params);
  CALL(ZELK_FMAllFreqScan, nullptr, kMost, kMost, kMost, kMost, kMost);
}

}  // namespace zelk::faults
