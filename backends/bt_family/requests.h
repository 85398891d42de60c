// The request blocks of the card drivers' own property set. A block goes over as instance data and
// as property data; answers come back in it. The first 24 bytes of each are the header of a
// kernel-streaming request, which is filled for the set-up of the I2C engine alone.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/dshow.h"

namespace zelk {

inline constexpr GUID kPropsetZelkCapture = {
    0xC44A1A10, 0x0A37, 0x11D2, {0x83, 0x28, 0x00, 0x60, 0x97, 0xBA, 0x83, 0xAB}};

inline constexpr DWORD kI2cProperty = 4;
inline constexpr std::uint32_t kI2cClockHz = 100000;
inline constexpr std::uint32_t kLongestI2cWrite = 64;

enum class I2cCommand : std::uint32_t {
  SetUpHardware = 0x11000002,
  SetUpSoftware = 0x11000003,
  HardwareRead = 0x11000006,
  HardwareWrite = 0x1100000A,
  SoftwareStart = 0x1100000B,
  SoftwareStop = 0x1100000C,
  SoftwareRead = 0x1100000D,
  SoftwareWrite = 0x1100000E,
  SetReadAddress = 0x11000018,
};

#pragma pack(push, 1)

struct KsI2cRequest {
  GUID set;          // of the set-up commands alone
  std::uint32_t id;  // of the set-up commands alone
  std::uint32_t flags;
  I2cCommand command;
  std::uint32_t status;   // a CX2388x driver answers 1 for a failed transfer
  std::uint32_t clockHz;  // of the set-up commands alone
  std::uint8_t unused1[12];
  std::uint8_t address;  // 8-bit bus address, of the hardware commands
  std::uint8_t unused2;
  std::uint8_t data;  // one byte, out and in
  std::uint8_t unused3;
  std::uint8_t bytes[kLongestI2cWrite];  // of a hardware write
  std::uint32_t count;
};
static_assert(sizeof(KsI2cRequest) == 120);
static_assert(offsetof(KsI2cRequest, command) == 24);
static_assert(offsetof(KsI2cRequest, status) == 28);
static_assert(offsetof(KsI2cRequest, clockHz) == 32);
static_assert(offsetof(KsI2cRequest, address) == 48);
static_assert(offsetof(KsI2cRequest, data) == 50);
static_assert(offsetof(KsI2cRequest, bytes) == 52);
static_assert(offsetof(KsI2cRequest, count) == 116);

struct KsGpioRequest {
  std::uint8_t header[24];
  std::uint32_t command;
  std::uint32_t unused1;
  std::uint32_t outputEnable;  // 0: the pin is an input
  std::uint32_t unused2;
  std::uint32_t pin;
  std::uint32_t unused3[2];
  std::uint32_t reserved;
  std::uint32_t firstPin;
  std::uint32_t lastPin;
  std::uint32_t unused4;
  std::uint32_t levels;  // firstPin in bit 0
  std::uint8_t unused5[256];
};
static_assert(sizeof(KsGpioRequest) == 328);
static_assert(offsetof(KsGpioRequest, command) == 24);
static_assert(offsetof(KsGpioRequest, outputEnable) == 32);
static_assert(offsetof(KsGpioRequest, pin) == 40);
static_assert(offsetof(KsGpioRequest, reserved) == 52);
static_assert(offsetof(KsGpioRequest, firstPin) == 56);
static_assert(offsetof(KsGpioRequest, lastPin) == 60);
static_assert(offsetof(KsGpioRequest, levels) == 68);

struct KsLockRequest {
  std::uint8_t header[24];
  std::uint8_t on;
  std::uint8_t unused[7];
};
static_assert(sizeof(KsLockRequest) == 32);
static_assert(offsetof(KsLockRequest, on) == 24);

// A register of the decoder.
struct KsRegRequest {
  std::uint8_t header[24];
  std::uint32_t command;
  std::uint32_t address;
  std::uint32_t value;
  std::uint32_t unused;
};
static_assert(sizeof(KsRegRequest) == 40);
static_assert(offsetof(KsRegRequest, command) == 24);
static_assert(offsetof(KsRegRequest, address) == 28);
static_assert(offsetof(KsRegRequest, value) == 32);

struct KsEepromRequest {
  std::uint8_t header[24];
  std::uint8_t byte;  // the address out, the data in
  std::uint8_t unused[7];
};
static_assert(sizeof(KsEepromRequest) == 32);
static_assert(offsetof(KsEepromRequest, byte) == 24);

#pragma pack(pop)

}  // namespace zelk
