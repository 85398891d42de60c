// The property sets of the QL2 card driver.
#pragma once

#include <cstddef>

#include "platform/dshow.h"

namespace zelk::virtual_cards {

// On the capture filter: the board.
inline constexpr GUID kPropsetQl2Board = {
    0x2D255A72, 0x849D, 0x4185, {0xA3, 0x9B, 0xA4, 0xF9, 0xF4, 0x50, 0x0C, 0xB9}};

inline constexpr DWORD kQl2Lock0 = 106;
inline constexpr DWORD kQl2Lock1 = 109;
inline constexpr DWORD kQl2BoardOption = 111;
inline constexpr DWORD kQl2TunerInformation = 112;

struct Ql2BoardRequest {
  BYTE header[24];  // of the property; the driver looks at none of it
  ULONG payload[2];
};
static_assert(sizeof(Ql2BoardRequest) == 32);

// On the capture filter: the I2C bus.
inline constexpr GUID kPropsetQl2I2c = {
    0x3D23B637, 0x97FE, 0x422A, {0x9D, 0xB1, 0x24, 0x42, 0x10, 0xBD, 0x72, 0xF6}};

inline constexpr DWORD kQl2I2cWrite = 0;
inline constexpr DWORD kQl2I2cRead = 1;

struct Ql2I2cRequest {
  BYTE address;
  BYTE count;
  BYTE data[16];
};
static_assert(sizeof(Ql2I2cRequest) == 18);

// On the encoder filter: the encoder's parameters, by their firmware's numbers. A parameter is as
// many bytes as its values need.
inline constexpr GUID kPropsetQl2Encoder = {
    0x9D12BF07, 0x3548, 0x4EAC, {0x93, 0x44, 0x83, 0x0C, 0xFA, 0x79, 0xB9, 0x2F}};

}  // namespace zelk::virtual_cards
