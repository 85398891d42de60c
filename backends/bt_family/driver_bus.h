// The transport through the capture driver's property sets, as far as the families agree.
#pragma once

#include "backends/bt_family/card_bus.h"
#include "backends/bt_family/family_log.h"
#include "backends/bt_family/requests.h"
#include "platform/com_ptr.h"
#include "platform/property_request.h"

namespace zelk {

class DriverBus : public CardBus {
 public:
  HRESULT ReadHorizontalLock(LONG& locked) override;

 protected:
  // Both belong to the device.
  DriverBus(const ComPtr<IKsPropertySet>& capture, const FamilyLog& log)
      : Capture(capture), Log(log) {}
  ~DriverBus() = default;

  template <class Block>
  HRESULT Set(DWORD id, Block& block) {
    return SetProperty(Capture.Get(), kPropsetZelkCapture, id, block);
  }
  template <class Block>
  HRESULT Get(DWORD id, Block& block) {
    return GetProperty(Capture.Get(), kPropsetZelkCapture, id, block);
  }
  // Tells the driver which of its I2C engines to use.
  HRESULT SetUpI2c(I2cCommand command);

  const ComPtr<IKsPropertySet>& Capture;
  const FamilyLog& Log;
};

// A cleared request.
KsI2cRequest I2cRequest(I2cCommand command);

}  // namespace zelk
