// The property sets of the SAA713x card driver.
#pragma once

#include "platform/dshow.h"

namespace zelk::virtual_cards {

// On the capture filter: the card maker's own set. All properties are one 32-bit word, but for the
// FM stereo indicator, which is a byte.
inline constexpr GUID kPropsetZelkSaa = {
    0x42D300A6, 0x1CC7, 0x4B6C, {0x88, 0xDA, 0xCD, 0x0B, 0x04, 0x60, 0x3D, 0x55}};

inline constexpr DWORD kSaaTunerPowerDown = 0x67;
inline constexpr DWORD kSaaFmLevel = 0x6D;
inline constexpr DWORD kSaaFmAfc = 0x6E;
inline constexpr DWORD kSaaFmStereo = 0x6F;
inline constexpr DWORD kSaaChipNumber = 0x74;

// On the capture filter: the application's announcement that it retunes.
inline constexpr GUID kPropsetVampTune = {
    0x50468AC0, 0xD014, 0x11D3, {0xA4, 0xD9, 0x00, 0x60, 0x08, 0x0B, 0xA6, 0x34}};

inline constexpr DWORD kVampTuneNotification = 3;

struct TuneNotification {
  ULONG phase;  // 1 before tuning, 2 after it
  ULONG country;
  ULONG standard;
  ULONG phaseAgain;
};

}  // namespace zelk::virtual_cards
