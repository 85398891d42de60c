// The system device enumerator: it knows no devices but those of the process.
#include <utility>

#include "platform/control.h"
#include "platform/host/system_classes.h"
#include "platform/process/device_table.h"

namespace zelk::host {

std::uint32_t AddDevice(REFCLSID category, std::wstring friendlyName, IUnknown* object) {
  return DeviceTable::OfProcess().Add(category, std::move(friendlyName), object);
}

void RemoveDevice(std::uint32_t token) { DeviceTable::OfProcess().Remove(token); }

HRESULT CreateSystemDeviceEnum(REFIID iid, void** object) {
  return CreateDeviceEnum({}, iid, object);
}

}  // namespace zelk::host
