// What the capture filters of both families have in common: the hardware I2C engine's set-up and
// transfers, and the locks.
#pragma once

#include <memory>

#include "virtual_cards/cards/analog_decoder.h"
#include "virtual_cards/cards/bt_family/blocks.h"
#include "virtual_cards/cards/bt_family/hardware.h"
#include "virtual_cards/cards/property_filter.h"

namespace zelk::virtual_cards {

// A property of the drivers' own set. All of them carry commands.
constexpr PropertyRow BtPropertyRow(DWORD id, DWORD bytes, DWORD support) {
  return {&kPropsetZelkCapture, "ZELK_CAPTURE", id, bytes, support, nullptr};
}

// Both families' drivers have it here.
inline constexpr DWORD kBtI2cProperty = 4;

class BtCaptureFilter : public AnalogDecoder<PropertyFilter<IAMAnalogVideoDecoder>, BtHardware> {
 protected:
  enum class I2cMode { kNotSetUp, kSoftware, kHardware };

  // `rows` must outlive the object.
  BtCaptureFilter(const std::shared_ptr<BtHardware>& hardware, std::span<const PropertyRow> rows)
      : AnalogDecoder(hardware, BtHardware::References(hardware), hardware->Gate(), kNames, rows) {}

  // S_OK, or E_INVALIDARG for a set-up that is not filled in as it must be.
  HRESULT SetUpI2c(const I2cBlock& block, I2cMode mode);
  I2cMode SetUpMode() const { return mode_; }

  // Transfers by the hardware engine, which must be set up: S_OK, kNotAcknowledged or a failure.
  HRESULT WriteByHardware(const I2cBlock& block);
  HRESULT ReadByHardware(std::uint8_t address, std::uint8_t& data);

  // A command that the driver does not know.
  HRESULT RejectCommand(std::string_view kind, ULONG command);

  HRESULT SetLock(unsigned kind, const LockBlock& block);
  HRESULT GetLock(unsigned kind, std::span<BYTE> content);

 private:
  // No row is a plain property.
  HRESULT SetProperty(const PropertyRow&, std::span<const BYTE>) override { return E_UNEXPECTED; }
  HRESULT GetProperty(const PropertyRow&, std::span<BYTE>) override { return E_UNEXPECTED; }

  static constexpr FilterNames kNames = {"capture", "capture query IKsPropertySet",
                                         "capture query IAMAnalogVideoDecoder"};

  I2cMode mode_ = I2cMode::kNotSetUp;
};

// What a driver or an I/O library answers that has not been set up for what it is asked.
inline constexpr auto kNotReady = static_cast<HRESULT>(0x80070015);  // ERROR_NOT_READY

}  // namespace zelk::virtual_cards
