// Cards built on the Bt878, over their driver or over "PioGate.dll". What they do not share with
// the CX2388x cards: the tuner type is made of three bit fields of the EEPROM, the driver has a
// software and a hardware I2C engine, and some boards carry a TDA8290 with a silicon tuner (tuner
// type 40).
//
// Failures stand in "zelkapi_BT878.log"; an operation that comes too early or in the wrong mode
// says nothing.
#pragma once

#include "backends/bt878/driver_bus.h"
#include "backends/bt878/library_bus.h"
#include "backends/bt_family/bt_family_device.h"

namespace zelk {

class Bt878Device final : public BtFamilyDevice {
 public:
  Bt878Device();

  HRESULT InitialTV();
  HRESULT InitialFM(std::uint32_t audioMode);
  HRESULT SetTVFormat(std::uint32_t standard, std::uint32_t country);
  // Writes a register index, then reads; by software I2C always.
  HRESULT I2CReadSequence(std::uint8_t device, std::uint8_t subaddress, std::uint8_t* bytes,
                          std::uint32_t count);

 private:
  bool SetUpDriver() override;
  bool SetUpLibrary() override;
  bool IdentifyBoard() override;
  HRESULT TvPresence(const SignalPlaces& places) override;

  // Country and standard (tv_format.cpp).
  HRESULT PushCountry(std::uint32_t country, HRESULT result);
  void Retune() { SetTVFreq(TvFrequency); }
  HRESULT SetMk3Country(std::uint32_t standard, std::uint32_t country);
  HRESULT SetSiliconFormat(std::uint32_t standard, std::uint32_t country);

  // The TDA8290 of tuner type 40 (silicon_tuner.cpp).
  HRESULT WriteSilicon(std::uint8_t subaddress, std::uint8_t value);
  HRESULT SetSiliconStandard(std::uint8_t standardBits);
  HRESULT RestartSilicon(std::uint8_t sound);
  HRESULT ReadSiliconAfc(std::uint8_t& status);

  Bt878DriverBus DriverTransport;
  Bt878LibraryBus LibraryTransport;
  SoftwareI2c* Software = nullptr;  // of the transport in use
};

}  // namespace zelk
