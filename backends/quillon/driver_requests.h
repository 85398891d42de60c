// The property sets of the MPEG-encoder cards' driver and the records they exchange.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/dshow.h"

namespace zelk {

// --- Board: capture filter ---

inline constexpr GUID kPropsetQl2Board = {
    0x2D255A72, 0x849D, 0x4185, {0xA3, 0x9B, 0xA4, 0xF9, 0xF4, 0x50, 0x0C, 0xB9}};

enum Ql2BoardProperty : DWORD {
  kQl2Lock0 = 106,      // get, set: payload byte 0
  kQl2Lock1 = 109,      // get, set: payload byte 0
  kQl2BoardInit = 111,  // set: payload byte 0 = 1
  kQl2TunerInfo = 112,  // get: payload word 1, low byte = tuner code
};

struct Ql2BoardRequest {
  std::uint8_t header[24] = {};
  std::uint32_t payload0 = 0;
  std::uint32_t payload1 = 0;
};
static_assert(sizeof(Ql2BoardRequest) == 32);
static_assert(offsetof(Ql2BoardRequest, payload0) == 24);

// --- I2C bus: capture filter ---

inline constexpr GUID kPropsetQl2I2c = {
    0x3D23B637, 0x97FE, 0x422A, {0x9D, 0xB1, 0x24, 0x42, 0x10, 0xBD, 0x72, 0xF6}};

enum Ql2I2cProperty : DWORD { kQl2I2cWrite = 0, kQl2I2cRead = 1 };

struct Ql2I2cRequest {
  std::uint8_t address = 0;  // 8-bit bus address
  std::uint8_t length = 0;
  std::uint8_t data[16] = {};
};
static_assert(sizeof(Ql2I2cRequest) == 18);

// --- Encoder: encoder filter ---

inline constexpr GUID kPropsetQl2Encoder = {
    0x9D12BF07, 0x3548, 0x4EAC, {0x93, 0x44, 0x83, 0x0C, 0xFA, 0x79, 0xB9, 0x2F}};

enum Ql2EncoderProperty : DWORD {
  kQl2BitRate = 1,          // Ql2BitRate
  kQl2Flag2 = 2,            // 4 bytes, 0 or 1
  kQl2Selector3 = 3,        // 1 byte, 6 or 15
  kQl2AudioBitRate = 5,     // 1 byte, a code
  kQl2AudioMode = 7,        // 4 bytes, 0 to 3
  kQl2AudioSampleRate = 8,  // 4 bytes, a code
  kQl2StreamType = 9,       // 4 bytes, a code
};

struct Ql2BitRateRequest {
  std::uint32_t rateControl = 0;  // 1 constant, 0 variable
  std::uint32_t targetBitsPerSecond = 0;
  std::uint32_t peakBitsPerSecond = 0;
};
static_assert(sizeof(Ql2BitRateRequest) == 12);

}  // namespace zelk
