// The TDA8290 in front of the silicon tuner (tuner type 40).
#include "backends/bt878/bt878_device.h"
#include "backends/tuner_modules/bus_addresses.h"
#include "common/store.h"
#include "common/wait.h"

namespace zelk {
namespace {

// Registers.
constexpr std::uint8_t kStandard = 0x01;  // one bit for each system; bit 7 starts the search
constexpr std::uint8_t kStart = 0x80;

constexpr std::uint32_t kLowestLevel = 48;  // about 211 kHz from the carrier
// Readings just below the carrier count even before the loop has locked.
constexpr bool IsNearCarrier(std::uint8_t status) { return status >= 0x7C && status <= 0x7E; }

}  // namespace

HRESULT Bt878Device::WriteSilicon(std::uint8_t subaddress, std::uint8_t value) {
  const std::uint8_t bytes[] = {subaddress, value};
  return Bus->Write(kSiliconDemodulatorAddress, bytes, sizeof(bytes));
}

HRESULT Bt878Device::SetSiliconStandard(std::uint8_t standardBits) {
  return WriteSilicon(kStandard, standardBits);
}

HRESULT Bt878Device::RestartSilicon(std::uint8_t sound) {
  std::uint8_t standard = 0;
  I2CReadSequence(kSiliconDemodulatorAddress, kStandard, &standard, 1);
  WriteSilicon(kStandard, standard | kStart);
  WriteSilicon(0x16, 0x01);
  WriteSilicon(0x14, sound);
  return WriteSilicon(0x0E, 0x08);
}

HRESULT Bt878Device::ReadSiliconAfc(std::uint8_t& status) {
  return I2CReadSequence(kSiliconDemodulatorAddress, kSiliconAfcRegister, &status, 1);
}

HRESULT Bt878Device::TvPresence(const SignalPlaces& places) {
  if (TunerType != 40) return BtFamilyDevice::TvPresence(places);
  std::uint8_t status = 0;
  HRESULT code = ReadSiliconAfc(status);
  if ((status & kSiliconLocked) == 0) {
    // A second look, after as much time again.
    WaitMs(kSettlingMs);
    code = ReadSiliconAfc(status);
  }
  // Quirk: the byte of a read that failed counts as any other.
  const std::uint32_t level = SiliconLevel(status);
  const bool found = (status & kSiliconLocked) != 0 || IsNearCarrier(status);
  Store(places.present, found && level >= kLowestLevel);
  Store(places.strength, level);
  Store(places.offset, SiliconOffsetKHz(status));
  return code;
}

}  // namespace zelk
