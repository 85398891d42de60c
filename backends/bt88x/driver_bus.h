// The transport through the CX2388x driver: whole I2C transfers, the EEPROM and the decoder's
// registers.
#pragma once

#include "backends/bt_family/driver_bus.h"

namespace zelk {

class Bt88xDriverBus final : public DriverBus {
 public:
  Bt88xDriverBus(const ComPtr<IKsPropertySet>& capture, const FamilyLog& log)
      : DriverBus(capture, log) {}

  bool InitI2c() { return SUCCEEDED(SetUpI2c(I2cCommand::SetUpHardware)); }

  HRESULT Write(std::uint8_t device, const std::uint8_t* bytes, std::uint32_t count) override;
  HRESULT Read(std::uint8_t device, std::optional<std::uint8_t>& byte) override;
  HRESULT ReadEeprom(std::uint8_t address, std::uint8_t* byte) override;
  // A failure leaves the place alone.
  HRESULT ReadRemote(std::uint32_t* code) override;

 private:
  HRESULT Judge(HRESULT code, const KsI2cRequest& request, const char* failure) const;
  HRESULT ReadGpio(std::uint32_t& levels);
};

}  // namespace zelk
