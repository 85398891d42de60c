// Cards built on the Conexant CX2388x, over their driver or over "PioGate880.dll". What they do not
// share with the Bt878 cards: one EEPROM byte names the tuner type, the driver's I2C engine takes
// whole transfers, and the tuner driver is told TV or FM, the standard and the FM stations too.
//
// Failures and refusals stand in "zelkapi_BT88X.log".
#pragma once

#include "backends/bt88x/driver_bus.h"
#include "backends/bt88x/library_bus.h"
#include "backends/bt_family/bt_family_device.h"

namespace zelk {

class Bt88xDevice final : public BtFamilyDevice {
 public:
  Bt88xDevice();

  HRESULT InitialTV();
  HRESULT InitialFM(std::uint32_t audioMode);
  HRESULT SetTVFormat(std::uint32_t standard, std::uint32_t country);
  // Names one AnalogVideoStandard bit to the tuner driver.
  HRESULT SetTunerStandard(std::uint32_t standard);

 private:
  bool SetUpDriver() override;
  bool SetUpLibrary() override;
  bool IdentifyBoard() override;
  void PrepareTuner() override;
  HRESULT TuneFm() override;
  HRESULT LockProperties(ComPtr<IKsPropertySet>& properties) override;

  enum class Channel { Keep, Preset };
  void SwitchTunerMode(AMTunerModeType mode, Channel channel = Channel::Keep);

  Bt88xDriverBus DriverTransport;
  Bt88xLibraryBus LibraryTransport;
};

}  // namespace zelk
