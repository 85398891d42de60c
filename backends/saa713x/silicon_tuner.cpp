// The TDA8275 and TDA8275A silicon tuners with their TDA8290 demodulator: power-on set-up and the
// gate between the bus and the tuner.
#include <algorithm>

#include "backends/saa713x/bus_addresses.h"
#include "backends/saa713x/saa713x_device.h"

namespace zelk {
namespace {

using RegisterWrite = std::uint8_t[2];  // register, value

// The demodulator: operating mode where needed, then GPIO and IF set-up.
constexpr RegisterWrite kDemodulatorSetUpA[] = {{0x07, 0x00}, {0x30, 0x2F}, {0x20, 0x0B}};
constexpr RegisterWrite kDemodulatorSetUpB[] = {
    {0x00, 0x01}, {0x07, 0x00}, {0x30, 0x2F}, {0x20, 0x0B}};

// The tuners' power-on images, behind the subaddress of the first register.
constexpr std::uint8_t kTunerSetUpA[] = {0x00, 0x00, 0x00, 0x00, 0x7C, 0x04, 0xA3,
                                         0x3F, 0x2A, 0x04, 0xFF, 0x00, 0x00, 0x40};
constexpr std::uint8_t kTunerSetUpB[] = {0x00, 0x00, 0x00, 0x00, 0x1C, 0x04, 0xAB,
                                         0x38, 0x0A, 0x28, 0xFF, 0x40, 0x00, 0x39};

}  // namespace

void Saa713xDevice::SetTunerI2CGate(bool open) {
  const std::uint8_t bytes[] = {0x21, static_cast<std::uint8_t>(open ? 0xC0 : 0x80)};
  I2CWriteSequence(kSiliconDemodulatorAddress, bytes, sizeof(bytes));
}

void Saa713xDevice::InitSiliconTunerA() {
  std::copy_n(kTunerSetUpA + 1, TunerImageA.size(), TunerImageA.begin());
  SetTunerI2CGate(true);
  I2CWriteSequence(kTunerAddress, kTunerSetUpA, sizeof(kTunerSetUpA));
  SetTunerI2CGate(false);
  for (const RegisterWrite& write : kDemodulatorSetUpA) {
    I2CWriteSequence(kSiliconDemodulatorAddress, write, sizeof(write));
  }
}

void Saa713xDevice::InitSiliconTunerB() {
  for (const RegisterWrite& write : kDemodulatorSetUpB) {
    I2CWriteSequence(kSiliconDemodulatorAddress, write, sizeof(write));
  }
  // The image has one more register, its tenth, between the two runs that are written here.
  std::copy_n(kTunerSetUpB + 1, 9, TunerImageB.begin());
  std::copy_n(kTunerSetUpB + 10, 4, TunerImageB.begin() + 10);
  SetTunerI2CGate(true);
  I2CWriteSequence(kTunerAddress, kTunerSetUpB, sizeof(kTunerSetUpB));
  SetTunerI2CGate(false);
}

}  // namespace zelk
