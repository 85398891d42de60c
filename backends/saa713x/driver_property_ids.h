// The card driver's own property set on the capture filter. All values are 32 bits wide, except the
// stereo indicator, which is one byte.
#pragma once

#include <cstdint>

#include "platform/dshow.h"

namespace zelk {

inline constexpr GUID kPropsetZelkSaa = {
    0x42D300A6, 0x1CC7, 0x4B6C, {0x88, 0xDA, 0xCD, 0x0B, 0x04, 0x60, 0x3D, 0x55}};

inline constexpr std::uint32_t kHardwareLock = 0x65;  // lock 0; lock 1 is the next property
inline constexpr std::uint32_t kTunerPowerDown = 0x67;
inline constexpr std::uint32_t kFmSignalLevel = 0x6D;
inline constexpr std::uint32_t kFmAfcStep = 0x6E;  // signed
inline constexpr std::uint32_t kFmStereoIndicator = 0x6F;
inline constexpr std::uint32_t kRussiaFlag = 0x70;
inline constexpr std::uint32_t kVolume = 0x71;
inline constexpr std::uint32_t kFuse = 0x72;
inline constexpr std::uint32_t kAudioSystem = 0x73;
inline constexpr std::uint32_t kDecoderIdentity = 0x74;
inline constexpr std::uint32_t k7135VirtualMode = 0x75;
inline constexpr std::uint32_t k7135VirtualStereoEffect = 0x76;
inline constexpr std::uint32_t k7135Bass = 0x77;
inline constexpr std::uint32_t k7135Treble = 0x78;

}  // namespace zelk
