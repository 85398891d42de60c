// The operations that the families of cards have in common, to be called where they are refused.
#pragma once

#include <cstdint>
#include <vector>

#include "ZElkAPI.h"
#include "platform/dshow.h"

namespace zelk::test {

enum class Needs { Nothing, TV, FM, AnyMode };

template <class Device>
struct Operation {
  const char* name;
  Needs needs;
  HRESULT (*call)(Device&);
  const char* tooEarly = "(): Hardware not initial";
};

inline std::uint8_t byte;
inline std::uint32_t word;

template <class Device>
inline const std::vector<Operation<Device>> kOperations = {
    {"GetHWInfo", Needs::Nothing,
     [](Device& d) {
       ZELK_HWInfo info;
       return d.GetHWInfo(&info);
     }},
    {"GetTunerType", Needs::Nothing, [](Device& d) { return d.GetTunerType(&word); }},
    {"InitialTV", Needs::Nothing, [](Device& d) { return d.InitialTV(); }},
    {"InitialFM", Needs::Nothing, [](Device& d) { return d.InitialFM(1); }},
    {"SetTVFormat", Needs::Nothing, [](Device& d) { return d.SetTVFormat(AnalogVideo_PAL_B, 49); }},
    {"SetTVFreq", Needs::TV, [](Device& d) { return d.SetTVFreq(175250); },
     "(): Hardware not initial or frequency not correct"},
    {"IsSignalPresent_TUNER", Needs::TV,
     [](Device& d) { return d.IsSignalPresent_TUNER(&word, nullptr, nullptr); }},
    {"IsSignalPresent_DECODER", Needs::Nothing,
     [](Device& d) { return d.IsSignalPresent_DECODER(&word, nullptr); }},
    {"SetFMFreq", Needs::FM, [](Device& d) { return d.SetFMFreq(98000); },
     "(): Hardware not initial or frequency not correct"},
    {"SetFMAudioMode", Needs::FM, [](Device& d) { return d.SetFMAudioMode(1); }},
    {"GetFMAudioMode", Needs::Nothing, [](Device& d) { return d.GetFMAudioMode(&word); }},
    {"IsFMSignalPresent", Needs::FM,
     [](Device& d) { return d.IsFMSignalPresent(&word, nullptr, nullptr); }},
    {"GetFMStatusByte", Needs::FM, [](Device& d) { return d.GetFMStatusByte(&byte, nullptr); }},
    {"GetRemoteData", Needs::Nothing, [](Device& d) { return d.GetRemoteData(&word); }},
    {"ReadEEPROM", Needs::Nothing, [](Device& d) { return d.ReadEEPROM(0x42, &byte); }},
    {"I2CWriteSequence", Needs::Nothing,
     [](Device& d) { return d.I2CWriteSequence(0xA0, &byte, 0); }},
    {"I2CWriteDWord", Needs::Nothing, [](Device& d) { return d.I2CWriteDWord(0xA0, 0, 0); }},
    {"I2CRead", Needs::Nothing, [](Device& d) { return d.I2CRead(0xA0, &byte); }},
    {"SetHWLock", Needs::AnyMode, [](Device& d) { return d.SetHWLock(0, 1); }},
    {"GetHWLock", Needs::AnyMode, [](Device& d) { return d.GetHWLock(0, &word); }},
};

}  // namespace zelk::test
