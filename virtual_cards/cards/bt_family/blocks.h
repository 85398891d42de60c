// The requests of the drivers' own property set on the capture filter. Both families' drivers serve
// this set; the numbers of its properties differ.
#pragma once

#include <cstddef>
#include <cstring>
#include <span>

#include "platform/dshow.h"

namespace zelk::virtual_cards {

inline constexpr GUID kPropsetZelkCapture = {
    0xC44A1A10, 0x0A37, 0x11D2, {0x83, 0x28, 0x00, 0x60, 0x97, 0xBA, 0x83, 0xAB}};

struct BlockHeader {
  GUID set;
  ULONG id;
  ULONG flags;
};

// What the I2C property does, on either family.
enum I2cCommand : ULONG {
  kI2cSetUpHardware = 0x11000002,
  kI2cSetUpSoftware = 0x11000003,
  kI2cReadByHardware = 0x11000006,
  kI2cWriteByHardware = 0x1100000A,
  kI2cStart = 0x1100000B,
  kI2cStop = 0x1100000C,
  kI2cReadByte = 0x1100000D,
  kI2cWriteByte = 0x1100000E,
  kI2cSelect = 0x11000018,
};

struct I2cBlock {
  BlockHeader header;  // filled in for a set-up alone
  ULONG command;
  ULONG status;   // CX2388x: 1 after a transfer that failed
  ULONG clockHz;  // of a set-up
  BYTE unused1[12];
  BYTE address;
  BYTE unused2;
  BYTE data;
  BYTE unused3;
  BYTE bytes[64];  // of a write by hardware
  ULONG count;
};
static_assert(sizeof(I2cBlock) == 120);
static_assert(offsetof(I2cBlock, command) == 24 && offsetof(I2cBlock, clockHz) == 32);
static_assert(offsetof(I2cBlock, address) == 48 && offsetof(I2cBlock, data) == 50);
static_assert(offsetof(I2cBlock, bytes) == 52 && offsetof(I2cBlock, count) == 116);

enum GpioCommand : ULONG {
  kGpioSetOutputEnable = 8,
  kGpioReadData = 0x1000000B,
};

struct GpioBlock {
  BlockHeader header;
  ULONG command;
  ULONG unused1;
  ULONG value;  // of the output-enable bit: 0 for an input
  ULONG unused2;
  ULONG bit;
  ULONG unused3[3];
  ULONG firstBit;
  ULONG lastBit;
  ULONG unused4;
  ULONG data;  // bits first to last, the first in bit 0
  BYTE unused5[256];
};
static_assert(sizeof(GpioBlock) == 328);
static_assert(offsetof(GpioBlock, value) == 32 && offsetof(GpioBlock, bit) == 40);
static_assert(offsetof(GpioBlock, firstBit) == 56 && offsetof(GpioBlock, data) == 68);

struct LockBlock {
  BlockHeader header;
  BYTE on;
  BYTE unused[7];
};
static_assert(sizeof(LockBlock) == 32);

enum RegisterCommand : ULONG {
  kRegisterSelect = 0x30000001,
  kRegisterRead = 0x30000003,
};

struct RegisterBlock {
  BlockHeader header;
  ULONG command;
  ULONG address;
  ULONG value;
  ULONG unused;
};
static_assert(sizeof(RegisterBlock) == 40);
static_assert(offsetof(RegisterBlock, address) == 28 && offsetof(RegisterBlock, value) == 32);

struct EepromBlock {
  BlockHeader header;
  BYTE byte;  // the address, or the content
  BYTE unused[7];
};
static_assert(sizeof(EepromBlock) == 32);

// Callers' buffers need not be aligned.
template <class Block>
Block LoadBlock(std::span<const BYTE> content) {
  Block block;
  std::memcpy(&block, content.data(), sizeof block);
  return block;
}

template <class Block>
void StoreBlock(const Block& block, std::span<BYTE> content) {
  std::memcpy(content.data(), &block, sizeof block);
}

}  // namespace zelk::virtual_cards
