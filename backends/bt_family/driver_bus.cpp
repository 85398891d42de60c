#include "backends/bt_family/driver_bus.h"

namespace zelk {

KsI2cRequest I2cRequest(I2cCommand command) {
  KsI2cRequest request = {};
  request.command = command;
  return request;
}

HRESULT DriverBus::SetUpI2c(I2cCommand command) {
  KsI2cRequest request = I2cRequest(command);
  request.set = kPropsetZelkCapture;
  request.id = kI2cProperty;
  request.clockHz = kI2cClockHz;
  return Set(kI2cProperty, request);
}

HRESULT DriverBus::ReadHorizontalLock(LONG& locked) {
  locked = 0;
  ComPtr<IAMAnalogVideoDecoder> decoder;
  HRESULT code = Query(Capture.Get(), decoder);
  if (FAILED(code)) return code;
  code = decoder->get_HorizontalLocked(&locked);
  if (FAILED(code)) locked = 0;
  return code;
}

}  // namespace zelk
